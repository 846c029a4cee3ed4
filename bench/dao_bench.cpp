// The database objects against SQLite's own C interface on the same generated archive and the same
// statements: the document register walked reading every field, the register's join of Documenti
// with Clienti and CondizioniPagamento, MoveLast over the 600,000 document lines (and MoveLast then
// every line read from the first, as an export does), one document by its key. Each benchmark runs the two sides in turn within every iteration (engine, SQLite, engine,
// SQLite...), so whatever else loads the machine weighs on both alike, and reports the times of
// each side and their ratio. The sides are functions of their own (engine*, sqlite*), so that
// callgrind's inclusive instruction counts of the two can be compared as well.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "store/dao.h"
#include "support/archive_gen.h"
#include "support/misure.h"

namespace {

constexpr long kDocumenti = 50000;

const char* const kRegister = "SELECT * FROM Documenti";

const char* const kJoinJet =
    "SELECT Documenti.ID, Documenti.Numero, Documenti.Data, Documenti.ImportoTotale, Documenti.Pagato, "
    "Clienti.DescCliente, CondizioniPagamento.DescPagamento "
    "FROM (Documenti LEFT JOIN Clienti ON Documenti.Cliente = Clienti.ID) "
    "LEFT JOIN CondizioniPagamento ON Documenti.CondizioniPagamento = CondizioniPagamento.ID";

const char* const kJoinSqlite =
    "SELECT d.ID, d.Numero, d.Data, d.ImportoTotale, d.Pagato, c.DescCliente, p.DescPagamento "
    "FROM Documenti d LEFT JOIN Clienti c ON d.Cliente = c.ID "
    "LEFT JOIN CondizioniPagamento p ON d.CondizioniPagamento = p.ID";

const char* const kLines = "SELECT * FROM Movimenti";

// 50,000 documents of twelve lines each: Movimenti holds 600,000 rows.
const std::string& archive() {
    static const std::string path = bench::ArchivioProva({.documenti = static_cast<int>(kDocumenti), .righe = 12});
    return path;
}

// ---- the two sides -------------------------------------------------------------------------------

// Every field of the rows from the current one on: a text by its length, the rest by its value.
double engineRest(store::Recordset& rs) {
    double sum = 0;
    const int n = rs.FieldCount();
    for (; !rs.Eof(); rs.MoveNext())
        for (int i = 0; i < n; ++i) {
            store::Value v = rs.Fields(i).value();
            sum += v.kind() == store::Value::Kind::Text ? static_cast<double>(v.text().size()) : v.number();
        }
    return sum;
}

[[gnu::noinline]] double engineWalk(store::Database& db, const char* sql) { return engineRest(*db.OpenRecordset(sql)); }

[[gnu::noinline]] double sqliteWalk(sqlite3* db, const char* sql) {
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &s, nullptr);
    double sum = 0;
    const int n = sqlite3_column_count(s);
    while (sqlite3_step(s) == SQLITE_ROW)
        for (int i = 0; i < n; ++i) {
            if (sqlite3_column_type(s, i) == SQLITE_TEXT) {
                std::string text(reinterpret_cast<const char*>(sqlite3_column_text(s, i)),
                                 static_cast<std::size_t>(sqlite3_column_bytes(s, i)));
                sum += static_cast<double>(text.size());
            } else {
                sum += sqlite3_column_double(s, i);
            }
        }
    sqlite3_finalize(s);
    return sum;
}

[[gnu::noinline]] double engineMoveLast(store::Database& db) {
    auto rs = db.OpenRecordset(kLines);
    rs->MoveLast();
    return static_cast<double>(rs->RecordCount()) + rs->Fields(0).value().number();
}

[[gnu::noinline]] double sqliteMoveLast(sqlite3* db) {
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db, kLines, -1, &s, nullptr);
    long rows = 0;
    double last = 0;
    while (sqlite3_step(s) == SQLITE_ROW) {
        ++rows;
        last = sqlite3_column_double(s, 0);
    }
    sqlite3_finalize(s);
    return static_cast<double>(rows) + last;
}

// An export's way: MoveLast for the true count, then every row from the first.
[[gnu::noinline]] double engineCountThenWalk(store::Database& db) {
    auto rs = db.OpenRecordset(kLines);
    rs->MoveLast();
    const double count = static_cast<double>(rs->RecordCount());
    rs->MoveFirst();
    return count + engineRest(*rs);
}

[[gnu::noinline]] double sqliteCountThenWalk(sqlite3* db) { return sqliteMoveLast(db) + sqliteWalk(db, kLines); }

[[gnu::noinline]] double engineByKey(store::Database& db, long id) {
    auto rs = db.OpenRecordset("SELECT * FROM Documenti WHERE ID = " + std::to_string(id));
    return rs->get("ImportoTotale").number();
}

// The ImportoTotale of the statement's next row, found by its name as the engine finds it.
double sqliteTotal(sqlite3_stmt* s) {
    double v = 0;
    if (sqlite3_step(s) == SQLITE_ROW) {
        const int n = sqlite3_column_count(s);
        for (int i = 0; i < n; ++i)
            if (std::string(sqlite3_column_name(s, i)) == "ImportoTotale") v = sqlite3_column_double(s, i);
    }
    return v;
}

[[gnu::noinline]] double sqliteByKey(sqlite3* db, long id) {
    const std::string sql = "SELECT * FROM Documenti WHERE ID = " + std::to_string(id);
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &s, nullptr);
    const double v = sqliteTotal(s);
    sqlite3_finalize(s);
    return v;
}

// Named apart so that callgrind tells the register from the join.
[[gnu::noinline]] double engineRegister(store::Database& db) { return engineWalk(db, kRegister); }
[[gnu::noinline]] double sqliteRegister(sqlite3* db) { return sqliteWalk(db, kRegister); }
[[gnu::noinline]] double engineJoin(store::Database& db) { return engineWalk(db, kJoinJet); }
[[gnu::noinline]] double sqliteJoin(sqlite3* db) { return sqliteWalk(db, kJoinSqlite); }

// SQLite at its best: the statement prepared once, the key bound at each call.
[[gnu::noinline]] double sqliteByKeyPrepared(sqlite3_stmt* s, long id) {
    sqlite3_reset(s);
    sqlite3_bind_int64(s, 1, id);
    return sqliteTotal(s);
}

// ---- side by side --------------------------------------------------------------------------------

template <typename F>
double timed(F&& f) {
    const auto start = bench::Clock::now();
    benchmark::DoNotOptimize(f());
    return bench::ms(start);
}

// `repeat` calls of each side per turn, for the short ones; engine(database, i) and raw(connection, i).
template <typename Engine, typename Raw>
void sideBySide(benchmark::State& state, Engine engine, Raw raw, int repeat = 1) {
    auto db = store::Workspace::Default().OpenDatabase(archive());
    // The same connection flags as the engine's own: no mutex, one user per connection.
    sqlite3* connection = nullptr;
    sqlite3_open_v2(archive().c_str(), &connection, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    double engineMs = 0, rawMs = 0;
    for (auto _ : state) {
        engineMs += timed([&] { double s = 0; for (int i = 0; i < repeat; ++i) s += engine(*db, i); return s; });
        rawMs += timed([&] { double s = 0; for (int i = 0; i < repeat; ++i) s += raw(connection, i); return s; });
    }
    sqlite3_close_v2(connection);  // a statement the raw side prepared may outlive it
    const double n = static_cast<double>(state.iterations()) * repeat;
    state.counters["engine_ms"] = engineMs / n;
    state.counters["sqlite_ms"] = rawMs / n;
    state.counters["ratio"] = rawMs > 0 ? engineMs / rawMs : 0;
}

// A side that does the same whatever the turn.
template <typename F>
auto whole(F f) {
    return [f](auto& db, int) { return f(db); };
}

long key(int i) { return (static_cast<long>(i) * 7919 + 17) % kDocumenti + 1; }

void BM_Register(benchmark::State& state) { sideBySide(state, whole(engineRegister), whole(sqliteRegister)); }
void BM_DocumentJoin(benchmark::State& state) { sideBySide(state, whole(engineJoin), whole(sqliteJoin)); }
void BM_MoveLast600k(benchmark::State& state) { sideBySide(state, whole(engineMoveLast), whole(sqliteMoveLast)); }
void BM_CountThenWalk600k(benchmark::State& state) {
    sideBySide(state, whole(engineCountThenWalk), whole(sqliteCountThenWalk));
}

// What an editor or a recomputation does over and over: one row by its key, from the statement's text.
void BM_OneRowByKey(benchmark::State& state) {
    sideBySide(state, [](store::Database& db, int i) { return engineByKey(db, key(i)); },
               [](sqlite3* db, int i) { return sqliteByKey(db, key(i)); }, 1000);
}

// The change alone, in a batch so that the disk's flushes do not hide the engine's own cost. It
// writes to a copy of the archive, which the other benchmarks then leave alone.
void BM_OneRowEditUpdate(benchmark::State& state) {
    const std::string copy = archive() + ".edit";
    std::filesystem::copy_file(archive(), copy, std::filesystem::copy_options::overwrite_existing);
    {
        auto db = store::Workspace::Default().OpenDatabase(copy);
        store::WriteBatch batch(*db);
        long id = 1;
        for (auto _ : state) {
            id = (id * 7919 + 17) % kDocumenti + 1;
            auto rs = db->OpenRecordset("SELECT * FROM Documenti WHERE ID = " + std::to_string(id));
            rs->Edit();
            rs->set("ImportoTotale", store::Value::Double(static_cast<double>(id)));
            rs->Update();
        }
    }
    std::filesystem::remove(copy);
}

BENCHMARK(BM_Register)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DocumentJoin)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MoveLast600k)->Unit(benchmark::kMillisecond);
void BM_OneRowByKeyPrepared(benchmark::State& state) {
    sqlite3_stmt* s = nullptr;
    sideBySide(state, [](store::Database& db, int i) { return engineByKey(db, key(i)); },
               [&](sqlite3* db, int i) {
                   if (!s) sqlite3_prepare_v2(db, "SELECT * FROM Documenti WHERE ID = ?", -1, &s, nullptr);
                   return sqliteByKeyPrepared(s, key(i));
               },
               1000);
    sqlite3_finalize(s);
}

BENCHMARK(BM_CountThenWalk600k)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneRowByKey)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneRowByKeyPrepared)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneRowEditUpdate)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
