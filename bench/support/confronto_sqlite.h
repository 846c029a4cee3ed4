// What the screen benchmarks set beside the program: SQLite alone on the same file, with the
// engine's functions and collation, running the text the engine runs for a statement of the
// dialect; and the means of the two sides with their ratio.
#pragma once

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>

#include "store/catalog_database.h"

namespace bench {

class Grezzo {
public:
    Grezzo(const std::string& path, store::Database& db) : motore_(db) {
        sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        store::sql::registerFunctions(db_);
        sqlite3_busy_timeout(db_, 4000);
    }
    ~Grezzo() { sqlite3_close_v2(db_); }
    Grezzo(const Grezzo&) = delete;
    Grezzo& operator=(const Grezzo&) = delete;

    sqlite3_stmt* prepara(const std::string& dialetto) {
        const store::sql::Translation t = motore_.impl().translate(dialetto);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db_, t.sql.c_str(), static_cast<int>(t.sql.size()), &s, nullptr);
        store::sql::bindParams(s, t.params);
        return s;
    }

    // Steps up to n rows (all with n < 0), reading every column as a row shown would be.
    long leggi(const std::string& dialetto, long n = -1) {
        sqlite3_stmt* s = prepara(dialetto);
        long righe = 0;
        while ((n < 0 || righe < n) && sqlite3_step(s) == SQLITE_ROW) {
            for (int c = 0, k = sqlite3_column_count(s); c < k; ++c) benchmark::DoNotOptimize(sqlite3_column_text(s, c));
            ++righe;
        }
        sqlite3_finalize(s);
        return righe;
    }

    void esegui(const std::string& sqlite) { sqlite3_exec(db_, sqlite.c_str(), nullptr, nullptr, nullptr); }

private:
    store::Database& motore_;
    sqlite3* db_ = nullptr;
};

// The two sides' times summed over the iterations; reported as means in milliseconds.
struct Misure {
    double motore = 0, grezzo = 0;
    int volte = 0;
    void riporta(benchmark::State& state) const {
        if (volte == 0) return;
        state.counters["motore_ms"] = motore / volte;
        state.counters["sqlite_ms"] = grezzo / volte;
        state.counters["rapporto"] = grezzo > 0 ? motore / grezzo : 0;
    }
};

}  // namespace bench
