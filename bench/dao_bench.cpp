// The database objects against SQLite's own C interface on the same file and the same statements:
// a register of 50,000 rows opened and walked, and the document register's join of Documenti with
// Clienti and CondizioniPagamento.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "store/dao.h"

namespace {

constexpr int kDocumenti = 50000;
constexpr int kClienti = 2000;
constexpr int kCondizioni = 20;

const char* const kJoinJet =
    "SELECT Documenti.ID, Documenti.Numero, Documenti.Data, Documenti.ImportoTotale, Documenti.Pagato, "
    "Clienti.DescCliente, CondizioniPagamento.DescPagamento "
    "FROM (Documenti LEFT JOIN Clienti ON Documenti.Cliente = Clienti.ID) "
    "LEFT JOIN CondizioniPagamento ON Documenti.CondizioniPagamento = CondizioniPagamento.ID";

const char* const kJoinSqlite =
    "SELECT d.ID, d.Numero, d.Data, d.ImportoTotale, d.Pagato, c.DescCliente, p.DescPagamento "
    "FROM Documenti d LEFT JOIN Clienti c ON d.Cliente = c.ID "
    "LEFT JOIN CondizioniPagamento p ON d.CondizioniPagamento = p.ID";

void fillRows(const std::string& path) {
    sqlite3* raw = nullptr;
    sqlite3_open(path.c_str(), &raw);
    sqlite3_exec(raw,
                 "BEGIN;"
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20) "
                 "INSERT INTO CondizioniPagamento SELECT i, 'Rimessa diretta a ' || (i * 30) || ' giorni' FROM n;"
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
                 "INSERT INTO Clienti SELECT i, 'Cliente numero ' || i, 'Via Roma ' || i FROM n;"
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000) "
                 "INSERT INTO Documenti SELECT i, 5, CAST(i AS TEXT), date('2024-01-01', '+' || (i % 366) || ' days'), "
                 "(i % 2000) + 1, (i % 20) + 1, round(i * 1.37, 2), CASE WHEN i % 3 = 0 THEN -1 ELSE 0 END FROM n;"
                 "COMMIT;",
                 nullptr, nullptr, nullptr);
    sqlite3_close(raw);
}

// The archive is made once per run: tables through the engine (so it knows their fields), rows
// through SQLite in one transaction.
const std::string& archive() {
    static const std::string path = [] {
        std::string p = (std::filesystem::temp_directory_path() / "dao_bench.mdb").string();
        std::filesystem::remove(p);
        auto db = store::Workspace::Default().CreateDatabase(p);
        db->Execute("CREATE TABLE CondizioniPagamento (ID LONG, DescPagamento TEXT(50))");
        db->Execute("CREATE TABLE Clienti (ID LONG, DescCliente TEXT(50), Indirizzo TEXT(50))");
        db->Execute("CREATE TABLE Documenti (ID LONG, Tipo LONG, Numero TEXT(10), Data DATETIME, Cliente LONG, "
                    "CondizioniPagamento LONG, ImportoTotale DOUBLE, Pagato YESNO)");
        for (const char* t : {"CondizioniPagamento", "Clienti", "Documenti"})
            db->AppendIndex(t, store::TableDef::CreateIndex("PrimaryKey", {"ID"}, true, true));
        db->Close();
        fillRows(p);
        return p;
    }();
    return path;
}

void walkRecordset(benchmark::State& state, const char* sql) {
    auto db = store::Workspace::Default().OpenDatabase(archive());
    for (auto _ : state) {
        auto rs = db->OpenRecordset(sql);
        double sum = 0;
        long rows = 0;
        const int n = rs->FieldCount();
        for (; !rs->Eof(); rs->MoveNext(), ++rows)
            for (int i = 0; i < n; ++i) {
                store::Value v = rs->Fields(i).value();
                sum += v.kind() == store::Value::Kind::Text ? static_cast<double>(v.text().size()) : v.number();
            }
        benchmark::DoNotOptimize(sum);
        state.counters["rows"] = static_cast<double>(rows);
    }
}

void walkSqlite(benchmark::State& state, const char* sql) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(archive().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    for (auto _ : state) {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db, sql, -1, &s, nullptr);
        double sum = 0;
        long rows = 0;
        const int n = sqlite3_column_count(s);
        for (; sqlite3_step(s) == SQLITE_ROW; ++rows)
            for (int i = 0; i < n; ++i) {
                if (sqlite3_column_type(s, i) == SQLITE_TEXT) {
                    std::string text(reinterpret_cast<const char*>(sqlite3_column_text(s, i)), sqlite3_column_bytes(s, i));
                    sum += static_cast<double>(text.size());
                } else {
                    sum += sqlite3_column_double(s, i);
                }
            }
        sqlite3_finalize(s);
        benchmark::DoNotOptimize(sum);
        state.counters["rows"] = static_cast<double>(rows);
    }
    sqlite3_close(db);
}

void BM_Register50k_Recordset(benchmark::State& state) { walkRecordset(state, "Select * from Documenti"); }
void BM_Register50k_Sqlite(benchmark::State& state) { walkSqlite(state, "SELECT * FROM Documenti"); }
void BM_DocumentJoin_Recordset(benchmark::State& state) { walkRecordset(state, kJoinJet); }
void BM_DocumentJoin_Sqlite(benchmark::State& state) { walkSqlite(state, kJoinSqlite); }

// Opening alone: the first row is there at once, however long the register.
void BM_Register50k_OpenOnly(benchmark::State& state) {
    auto db = store::Workspace::Default().OpenDatabase(archive());
    for (auto _ : state) {
        auto rs = db->OpenRecordset("Select * from Documenti");
        benchmark::DoNotOptimize(rs->RecordCount());
    }
}

// What an editor or a recomputation does over and over: one row by its key, then a change to it.
void BM_OneRowByKey(benchmark::State& state) {
    auto db = store::Workspace::Default().OpenDatabase(archive());
    long id = 1;
    for (auto _ : state) {
        id = (id * 7919 + 17) % kDocumenti + 1;
        auto rs = db->OpenRecordset("SELECT * FROM Documenti WHERE ID = " + std::to_string(id));
        benchmark::DoNotOptimize(rs->get("ImportoTotale"));
    }
}

// The change alone, in a batch so that the disk's flushes do not hide the engine's own cost.
void BM_OneRowEditUpdate(benchmark::State& state) {
    auto db = store::Workspace::Default().OpenDatabase(archive());
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

BENCHMARK(BM_OneRowByKey)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OneRowEditUpdate)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Register50k_Recordset)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Register50k_Sqlite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DocumentJoin_Recordset)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DocumentJoin_Sqlite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Register50k_OpenOnly)->Unit(benchmark::kMicrosecond);

static_assert(kDocumenti == 50000 && kClienti == 2000 && kCondizioni == 20, "the fill statements use these sizes");

}  // namespace

BENCHMARK_MAIN();
