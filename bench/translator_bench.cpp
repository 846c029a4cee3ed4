// The translator's speed: translations a second of a statement already seen with new literals, and
// the HAVING statement over Movimenti/Documenti for one document at 1,000 and at 50,000 documents
// (5 lines each, index on Movimenti.Documento): the condition moved to WHERE makes both cost the same;
// and statements whose length grows with a list (an In list, a select list).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <initializer_list>
#include <map>
#include <string>

#include "store/errors.h"
#include "store/sql/translator.h"
#include "tests/store/sql_support.h"

namespace {

using store::sql::RelationInfo;

RelationInfo table(const std::string& name, std::initializer_list<const char*> columns) {
    RelationInfo r{name, false, {}, {}};
    for (const char* c : columns) r.columns.push_back(sqltest::col(c));
    return r;
}

sqltest::MemCatalog& catalog() {
    static auto* c = [] {
        auto* c = new sqltest::MemCatalog();
        c->put(table("Documenti",
                     {"ID:L", "Tipo:L", "Data:T", "Cliente:L", "Pagato:B", "Prefisso:S10", "ImportoTotale:D"}));
        c->put(table("Movimenti", {"ID:L", "Documento:L", "DescMovimento:S255", "Importo:D", "Iva:L"}));
        c->put(table("CodiciIva", {"ID:L", "DescIva:S30", "AliquotaIva:D"}));
        c->put(table("Utenti", {"ID:L", "Azienda:L", "Username:S50", "Password:S50"}));
        return c;
    }();
    return *c;
}

// A statement the program sends many times with other literals: testo(1), testo(2)...
template <class Testo>
void cached(benchmark::State& state, Testo testo) {
    store::sql::Translator tr(catalog());
    int id = 0;
    for (auto _ : state) {
        auto t = tr.translate(testo(++id));
        benchmark::DoNotOptimize(t);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_CachedTranslation(benchmark::State& state) {
    cached(state, [](int id) { return "Select * from Documenti where ID=" + std::to_string(id % 100000); });
}
BENCHMARK(BM_CachedTranslation);

void BM_CachedTranslationLong(benchmark::State& state) {
    cached(state, [](int id) {
        return "Select * from Utenti where Azienda=" + std::to_string(id % 7) + " and Username='utente" +
               std::to_string(id) + "' and Password='pa''ss' and ID<>" + std::to_string(id) +
               " and DateValue(Now)>=DateValue('0" + std::to_string(id % 9 + 1) + "/01/2024')";
    });
}
BENCHMARK(BM_CachedTranslationLong);

// The totals of one document, the key's condition in HAVING.
std::string totaliDocumento(const std::string& chiave, int documento) {
    return "SELECT Documenti.ID, Sum(Round([Importo],2)) AS Imponibile1, Sum(Round([Importo]/100*[AliquotaIva],2)) "
           "AS Imposta1 FROM (Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID) LEFT JOIN "
           "CodiciIva ON Movimenti.Iva = CodiciIva.ID GROUP BY Documenti.ID HAVING (((" + chiave + ")=" +
           std::to_string(documento) + "))";
}

// The first translation of a shape: lexer, parser, binder and generator.
void BM_FirstTranslation(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto* tr = new store::sql::Translator(catalog());
        state.ResumeTiming();
        auto t = tr->translate(totaliDocumento("Documenti.ID", ++n));
        benchmark::DoNotOptimize(t);
        state.PauseTiming();
        delete tr;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FirstTranslation);

// n documents of five lines each, in memory.
struct Archive {
    sqlite3* db = nullptr;
    explicit Archive(int n) {
        sqlite3_open(":memory:", &db);
        store::sql::registerFunctions(db);
        const std::string righe = std::to_string(5 * n - 1);
        sqlite3_exec(db,
                     ("CREATE TABLE Documenti (ID INTEGER, Tipo INTEGER, Data TEXT, Cliente INTEGER, Pagato INTEGER, "
                      "Prefisso TEXT COLLATE JET, ImportoTotale REAL);"
                      "CREATE UNIQUE INDEX Documenti_ID ON Documenti (ID);"
                      "CREATE TABLE Movimenti (ID INTEGER, Documento INTEGER, DescMovimento TEXT COLLATE JET, "
                      "Importo REAL, Iva INTEGER);"
                      "CREATE UNIQUE INDEX Movimenti_ID ON Movimenti (ID);"
                      "CREATE INDEX Movimenti_Documento ON Movimenti (Documento);"
                      "CREATE TABLE CodiciIva (ID INTEGER, DescIva TEXT COLLATE JET, AliquotaIva REAL);"
                      "CREATE UNIQUE INDEX CodiciIva_ID ON CodiciIva (ID);"
                      "INSERT INTO CodiciIva VALUES (1,'Iva 22',22),(2,'Iva 10',10),(3,'Iva 4',4);"
                      "WITH RECURSIVE r(x) AS (SELECT 0 UNION ALL SELECT x+1 FROM r WHERE x<" + righe + ") "
                      "INSERT INTO Movimenti SELECT x+1, x/5+1, 'riga', 10.5*(x%5+1)+(x/5+1)%7, x%5%3+1 FROM r;"
                      "INSERT INTO Documenti SELECT DISTINCT Documento,5,'2024-03-05',1,0,'A',0 FROM Movimenti;"
                      "ANALYZE")
                         .c_str(),
                     nullptr, nullptr, nullptr);
    }
    ~Archive() { sqlite3_close(db); }
};

// Translate (from the cache), prepare, bind and run the totals of one document, as the program does.
// keepInHaving: the same totals with an aggregate condition that must stay in HAVING (for contrast).
void havingRun(benchmark::State& state, bool keepInHaving) {
    static std::map<int, Archive> archives;
    const int n = static_cast<int>(state.range(0));
    Archive& a = archives.try_emplace(n, n).first->second;
    store::sql::Translator tr(catalog());
    int doc = 0;
    double total = 0;
    for (auto _ : state) {
        doc = doc % n + 1;
        auto t = tr.translate(totaliDocumento(keepInHaving ? "Max(Documenti.ID)" : "Documenti.ID", doc));
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
void BM_HavingOneDocument(benchmark::State& state) { havingRun(state, false); }
void BM_HavingLeftInHaving(benchmark::State& state) { havingRun(state, true); }
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
