// What the register benchmarks share: the model's indexes added to an archive that lacks them, SQLite
// alone on the same file running the text the engine runs for a statement of the dialect, and the
// two sides' means reported side by side.
#pragma once

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <string>

#include "store/catalog_database.h"
#include "store/convert.h"
#include "store/model/model.h"

namespace bench {

using Clock = std::chrono::steady_clock;
inline double ms(Clock::time_point da) {
    return std::chrono::duration<double, std::milli>(Clock::now() - da).count();
}

// The indexes of the model that the archive lacks, added as the structure update adds them.
inline void aggiungiIndiciMancanti(store::Database& db) {
    for (const store::model::Tabella& t : store::model::TabelleArchivio()) {
        const auto def = db.GetTableDef(t.nome);
        if (!def) continue;
        for (const store::IndexDef& ix : t.definizione().Indexes) {
            bool ha = false;
            for (const store::IndexDef& a : def->Indexes) ha = ha || store::CompareText(a.Name, ix.Name) == 0;
            if (!ha) db.AppendIndex(t.nome, ix);
        }
    }
}

// SQLite alone on the archive's file, with the engine's functions, running what the engine
// translates a statement of the dialect into.
class Grezzo {
public:
    Grezzo(const std::string& path, store::Database& motore) : motore_(motore) {
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

// The mean of each side in milliseconds and their ratio.
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
