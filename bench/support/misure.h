// What the side-by-side benchmarks share: SQLite alone on the file the engine has open, running the
// text the engine runs for a statement of the dialect, and each side's mean time with their ratio.
#pragma once

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <ctime>
#include <string>
#include <utility>

#include "store/catalog_database.h"
#include "store/convert.h"
#include "store/dao.h"
#include "store/sql/translator.h"

namespace bench {

using Clock = std::chrono::steady_clock;
inline double ms(Clock::time_point da) { return std::chrono::duration<double, std::milli>(Clock::now() - da).count(); }

// The processor's time of this process since da, apart from the wall clock: on a loaded machine the
// wall clock also counts the time others had the processor.
inline double msCpu(std::clock_t da) { return 1000.0 * static_cast<double>(std::clock() - da) / CLOCKS_PER_SEC; }

// SQLite alone on the same file, with the engine's functions and collation.
class Grezzo {
public:
    Grezzo(const std::string& path, store::DatabasePtr motore) : motore_(std::move(motore)) {
        sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        store::sql::registerFunctions(db_);
        sqlite3_busy_timeout(db_, 4000);
    }
    ~Grezzo() { sqlite3_close_v2(db_); }
    Grezzo(const Grezzo&) = delete;
    Grezzo& operator=(const Grezzo&) = delete;

    sqlite3* db() { return db_; }

    // segnaposto: a number of the statement whose placeholder is answered in *posto, for binding it again.
    sqlite3_stmt* prepara(const std::string& dialetto, double segnaposto = 0, int* posto = nullptr) {
        const store::sql::Translation t = motore_->impl().translate(dialetto);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db_, t.sql.c_str(), static_cast<int>(t.sql.size()), &s, nullptr);
        store::sql::bindParams(s, t.params);
        for (size_t i = 0; posto && i < t.params.size(); ++i)
            if (t.params[i].isNumeric() && store::CDbl(t.params[i]) == segnaposto) *posto = static_cast<int>(i) + 1;
        return s;
    }

    // Steps up to n rows (all with n < 0), reading every column as a row shown would be.
    long leggi(const std::string& dialetto, long n = -1) {
        sqlite3_stmt* s = prepara(dialetto);
        long righe = 0;
        while ((n < 0 || righe < n) && sqlite3_step(s) == SQLITE_ROW) {
            for (int c = 0, k = sqlite3_column_count(s); c < k; ++c)
                benchmark::DoNotOptimize(sqlite3_column_text(s, c));
            ++righe;
        }
        sqlite3_finalize(s);
        return righe;
    }

    double primoNumero(const std::string& dialetto) {
        sqlite3_stmt* s = prepara(dialetto);
        const double v = sqlite3_step(s) == SQLITE_ROW ? sqlite3_column_double(s, 0) : 0;
        sqlite3_finalize(s);
        return v;
    }

    void esegui(const std::string& sqlite) { sqlite3_exec(db_, sqlite.c_str(), nullptr, nullptr, nullptr); }

private:
    store::DatabasePtr motore_;
    sqlite3* db_ = nullptr;
};

struct Misure {
    double motore = 0, grezzo = 0;
    int volte = 0;
    void riporta(benchmark::State& state) const {
        if (volte == 0) return;
        state.counters["motore_ms"] = motore / volte;
        state.counters["sqlite_ms"] = grezzo / volte;
        state.counters["rapporto"] = grezzo > 0 ? motore / grezzo : 0;
    }
    // Each iteration runs conMotore() then, while ancora() says the run goes on, conSqlite(), each
    // timed; then the means.
    template <class Motore, class Ancora, class Sqlite>
    void inTurno(benchmark::State& state, Motore conMotore, Ancora ancora, Sqlite conSqlite) {
        for (auto _ : state) {
            auto t = Clock::now();
            conMotore();
            motore += ms(t);
            if (!ancora()) break;
            t = Clock::now();
            conSqlite();
            grezzo += ms(t);
            ++volte;
        }
        riporta(state);
    }
    // SQLite's side of one iteration, timed: up to n rows of the statement (all with n < 0).
    void sqlite(Grezzo& g, const std::string& istruzione, long n) {
        const auto t = Clock::now();
        benchmark::DoNotOptimize(g.leggi(istruzione, n));
        grezzo += ms(t);
        ++volte;
    }
};

// Wall and processor time of each side.
struct MisureCpu : Misure {
    double motoreCpu = 0, grezzoCpu = 0;

    // Each iteration runs conMotore() then conSqlite(), each timed; then the means, with sulProcessore
    // the ratio of the processor's times (rapporto_cpu) instead of the wall's (rapporto).
    template <class Motore, class Sqlite>
    void inTurno(benchmark::State& state, bool sulProcessore, Motore conMotore, Sqlite conSqlite) {
        for (auto _ : state) {
            misura(conMotore, motore, motoreCpu);
            misura(conSqlite, grezzo, grezzoCpu);
            ++volte;
        }
        riporta(state, sulProcessore);
    }

    void riporta(benchmark::State& state, bool sulProcessore) const {
        if (volte == 0) return;
        Misure::riporta(state);
        state.counters["motore_cpu_ms"] = motoreCpu / volte;
        state.counters["sqlite_cpu_ms"] = grezzoCpu / volte;
        if (!sulProcessore) return;
        state.counters.erase("rapporto");
        state.counters["rapporto_cpu"] = grezzoCpu > 0 ? motoreCpu / grezzoCpu : 0;
    }

private:
    template <class Lato>
    static void misura(Lato& lato, double& parete, double& processore) {
        const auto t = Clock::now();
        const std::clock_t c = std::clock();
        lato();
        parete += ms(t);
        processore += msCpu(c);
    }
};

}  // namespace bench
