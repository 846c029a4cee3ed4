// The translator's speed: translations a second of a statement already seen with new literals, and
// the HAVING statement over Movimenti/Documenti for one document at 1,000 and at 50,000 documents
// (5 lines each, index on Movimenti.Documento): the condition moved to WHERE makes both cost the same;
// and statements whose length grows with a list (an In list, a select list).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <map>
#include <string>

#include "store/errors.h"
#include "store/sql/translator.h"
#include "tests/store/sql_support.h"

namespace {

using store::FieldType;
using store::sql::RelationInfo;

using Cat = sqltest::MemCatalog;

Cat& catalog() {
    static Cat* c = [] {
        auto* c = new Cat();
        c->put({"Documenti", false,
                {{"ID", FieldType::Long, 0, {}}, {"Tipo", FieldType::Long, 0, {}}, {"Data", FieldType::Date, 0, {}},
                 {"Cliente", FieldType::Long, 0, {}}, {"Pagato", FieldType::Boolean, 0, {}},
                 {"Prefisso", FieldType::Text, 10, {}}, {"ImportoTotale", FieldType::Double, 0, {}}},
                {}});
        c->put({"Movimenti", false,
                {{"ID", FieldType::Long, 0, {}}, {"Documento", FieldType::Long, 0, {}},
                 {"DescMovimento", FieldType::Text, 255, {}}, {"Importo", FieldType::Double, 0, {}},
                 {"Iva", FieldType::Long, 0, {}}},
                {}});
        c->put({"CodiciIva", false,
                {{"ID", FieldType::Long, 0, {}}, {"DescIva", FieldType::Text, 30, {}},
                 {"AliquotaIva", FieldType::Double, 0, {}}},
                {}});
        c->put({"Utenti", false,
                {{"ID", FieldType::Long, 0, {}}, {"Azienda", FieldType::Long, 0, {}},
                 {"Username", FieldType::Text, 50, {}}, {"Password", FieldType::Text, 50, {}}},
                {}});
        return c;
    }();
    return *c;
}

// A statement the program sends many times with other ids.
void BM_CachedTranslation(benchmark::State& state) {
    store::sql::Translator tr(catalog());
    int id = 0;
    for (auto _ : state) {
        auto t = tr.translate("Select * from Documenti where ID=" + std::to_string(++id % 100000));
        benchmark::DoNotOptimize(t);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CachedTranslation);

void BM_CachedTranslationLong(benchmark::State& state) {
    store::sql::Translator tr(catalog());
    int id = 0;
    for (auto _ : state) {
        ++id;
        auto t = tr.translate(
            "Select * from Utenti where Azienda=" + std::to_string(id % 7) + " and Username='utente" +
            std::to_string(id) + "' and Password='pa''ss' and ID<>" + std::to_string(id) +
            " and DateValue(Now)>=DateValue('0" + std::to_string(id % 9 + 1) + "/01/2024')");
        benchmark::DoNotOptimize(t);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CachedTranslationLong);

// The first translation of a shape: lexer, parser, binder and generator.
void BM_FirstTranslation(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto* tr = new store::sql::Translator(catalog());
        state.ResumeTiming();
        auto t = tr->translate(
            "SELECT Documenti.ID, Sum(Round([Importo],2)) AS Imponibile1, Sum(Round([Importo]/100*[AliquotaIva],2)) "
            "AS Imposta1 FROM (Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID) LEFT JOIN "
            "CodiciIva ON Movimenti.Iva = CodiciIva.ID GROUP BY Documenti.ID HAVING (((Documenti.ID)=" +
            std::to_string(++n) + "))");
        benchmark::DoNotOptimize(t);
        state.PauseTiming();
        delete tr;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FirstTranslation);

struct Archive {
    sqlite3* db = nullptr;
    int documents = 0;
    explicit Archive(int n) : documents(n) {
        sqlite3_open(":memory:", &db);
        store::sql::registerFunctions(db);
        sqlite3_exec(db,
                     "CREATE TABLE Documenti (ID INTEGER, Tipo INTEGER, Data TEXT, Cliente INTEGER, Pagato INTEGER, "
                     "Prefisso TEXT COLLATE JET, ImportoTotale REAL);"
                     "CREATE UNIQUE INDEX Documenti_ID ON Documenti (ID);"
                     "CREATE TABLE Movimenti (ID INTEGER, Documento INTEGER, DescMovimento TEXT COLLATE JET, "
                     "Importo REAL, Iva INTEGER);"
                     "CREATE UNIQUE INDEX Movimenti_ID ON Movimenti (ID);"
                     "CREATE INDEX Movimenti_Documento ON Movimenti (Documento);"
                     "CREATE TABLE CodiciIva (ID INTEGER, DescIva TEXT COLLATE JET, AliquotaIva REAL);"
                     "CREATE UNIQUE INDEX CodiciIva_ID ON CodiciIva (ID);"
                     "INSERT INTO CodiciIva VALUES (1,'Iva 22',22),(2,'Iva 10',10),(3,'Iva 4',4);"
                     "BEGIN",
                     nullptr, nullptr, nullptr);
        sqlite3_stmt* d = nullptr;
        sqlite3_stmt* m = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO Documenti VALUES (?,5,'2024-03-05',1,0,'A',0)", -1, &d, nullptr);
        sqlite3_prepare_v2(db, "INSERT INTO Movimenti VALUES (?,?,'riga',?,?)", -1, &m, nullptr);
        int line = 0;
        for (int i = 1; i <= n; ++i) {
            sqlite3_bind_int(d, 1, i);
            sqlite3_step(d);
            sqlite3_reset(d);
            for (int k = 0; k < 5; ++k) {
                sqlite3_bind_int(m, 1, ++line);
                sqlite3_bind_int(m, 2, i);
                sqlite3_bind_double(m, 3, 10.5 * (k + 1) + i % 7);
                sqlite3_bind_int(m, 4, k % 3 + 1);
                sqlite3_step(m);
                sqlite3_reset(m);
            }
        }
        sqlite3_finalize(d);
        sqlite3_finalize(m);
        sqlite3_exec(db, "COMMIT; ANALYZE", nullptr, nullptr, nullptr);
    }
    ~Archive() { sqlite3_close(db); }
};

// Translate (from the cache), prepare, bind and run the totals of one document, as the program does.
// keepInHaving: the same totals with an aggregate condition that must stay in HAVING (for contrast).
void havingRun(benchmark::State& state, bool keepInHaving);
void BM_HavingOneDocument(benchmark::State& state) { havingRun(state, false); }
void BM_HavingLeftInHaving(benchmark::State& state) { havingRun(state, true); }

void havingRun(benchmark::State& state, bool keepInHaving) {
    static std::map<int, Archive*> archives;
    int n = static_cast<int>(state.range(0));
    if (!archives.count(n)) archives[n] = new Archive(n);
    Archive& a = *archives[n];
    store::sql::Translator tr(catalog());
    int doc = 0;
    double total = 0;
    for (auto _ : state) {
        doc = doc % n + 1;
        auto t = tr.translate(
            "SELECT Documenti.ID, Sum(Round([Importo],2)) AS Imponibile1, Sum(Round([Importo]/100*[AliquotaIva],2)) "
            "AS Imposta1 FROM (Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID) LEFT JOIN "
            "CodiciIva ON Movimenti.Iva = CodiciIva.ID GROUP BY Documenti.ID HAVING (((" +
            std::string(keepInHaving ? "Max(Documenti.ID)" : "Documenti.ID") + ")=" + std::to_string(doc) + "))");
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(a.db, t.sql.c_str(), -1, &st, nullptr) != SQLITE_OK) {
            state.SkipWithError(sqlite3_errmsg(a.db));
            break;
        }
        store::sql::bindParams(st, t.params);
        while (sqlite3_step(st) == SQLITE_ROW) total += sqlite3_column_double(st, 1);
        sqlite3_finalize(st);
    }
    benchmark::DoNotOptimize(total);
    state.SetItemsProcessed(state.iterations());
    state.counters["documents"] = n;
}
BENCHMARK(BM_HavingOneDocument)->Arg(1000)->Arg(50000);
BENCHMARK(BM_HavingLeftInHaving)->Arg(1000)->Arg(50000);

// Statements that grow with a user's list: an In list of n ids translated, prepared and run on 1,000
// documents, and a select list of n unknown names refused; both grow linearly with n.
void BM_LongInList(benchmark::State& state) {
    static Archive archive(1000);
    std::string sql = "Select ID from Documenti where ID In (";
    for (int i = 0; i < state.range(0); ++i) sql += (i ? "," : "") + std::to_string(i * 3);
    sql += ")";
    long rows = 0;
    for (auto _ : state) {
        store::sql::Translator tr(catalog());
        auto t = tr.translate(sql);
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(archive.db, t.sql.c_str(), static_cast<int>(t.sql.size()), &st, nullptr);
        store::sql::bindParams(st, t.params);
        while (sqlite3_step(st) == SQLITE_ROW) ++rows;
        sqlite3_finalize(st);
    }
    benchmark::DoNotOptimize(rows);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LongInList)->Arg(10000)->Arg(40000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_UnknownNames(benchmark::State& state) {
    std::string sql = "Select ";
    for (int i = 0; i < state.range(0); ++i) sql += (i ? ", p" : "p") + std::to_string(i);
    sql += " from Documenti";
    for (auto _ : state) {
        store::sql::Translator tr(catalog());
        try {
            tr.translate(sql);
        } catch (const store::JetError& e) {
            benchmark::DoNotOptimize(e.number());
        }
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_UnknownNames)->Arg(5000)->Arg(20000)->Arg(50000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace

BENCHMARK_MAIN();
