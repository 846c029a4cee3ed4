// The saved queries on a full year of a busy office: 50,000 documents, 250,000 lines, 100,000
// instalments, 120,000 payments. A look at one document or instalment must stay under a
// millisecond; the register of fatture under 300 ms to open and walk.
#include <benchmark/benchmark.h>

#include <string>

#include "store/dao.h"
#include "support/archive_gen.h"

namespace {

store::Database& archivio() {
    static store::DatabasePtr db = store::Workspace::Default().OpenDatabase(bench::ArchivioProva());
    return *db;
}

// Walks every row and reads one column, as a grid filling itself does.
long percorri(store::Recordset& rs, const char* colonna) {
    long righe = 0;
    for (; !rs.Eof(); rs.MoveNext()) {
        benchmark::DoNotOptimize(rs.get(colonna));
        ++righe;
    }
    return righe;
}

// One document's rows a time, the id put between testa and coda; the ids move through the archive so
// no answer comes from a cache of the same row.
void UnDocumento(benchmark::State& state, const std::string& testa, const std::string& coda, long cursore) {
    store::Database& db = archivio();
    for (auto _ : state) {
        cursore = (cursore * 7919 + 17) % 50000;
        auto rs = db.OpenRecordset(testa + std::to_string(cursore + 1) + coda);
        benchmark::DoNotOptimize(percorri(*rs, "DaPagare"));
    }
}

// A whole list opened and walked, its rows counted.
void Elenco(benchmark::State& state, const char* sql, const char* colonna) {
    store::Database& db = archivio();
    long righe = 0;
    for (auto _ : state) {
        auto rs = db.OpenRecordset(sql);
        righe = percorri(*rs, colonna);
    }
    state.counters["righe"] = static_cast<double>(righe);
}

void BM_ScadenzeAperteDiUnDocumento(benchmark::State& state) {
    UnDocumento(state, "Select * from qrScadenzePagamenti where Documento=", " and DaPagare<>0", 1);
}
BENCHMARK(BM_ScadenzeAperteDiUnDocumento)->Unit(benchmark::kMicrosecond);

void BM_SaldoDiUnDocumento(benchmark::State& state) {
    UnDocumento(state, "Select * from qrDocumentiIncassi Where ID=", "", 3);
}
BENCHMARK(BM_SaldoDiUnDocumento)->Unit(benchmark::kMicrosecond);

void BM_RegistroFatture(benchmark::State& state) {
    Elenco(state, "Select * from qrDocumenti where Tipo=5", "Denominazione");
}
BENCHMARK(BM_RegistroFatture)->Unit(benchmark::kMillisecond);

// The payment editor's list of documents still to collect: every fattura's payments are summed.
void BM_DocumentiDaIncassare(benchmark::State& state) {
    Elenco(state, "Select * from qrDocumentiIncassi where DaPagare<>0", "DaPagare");
}
BENCHMARK(BM_DocumentiDaIncassare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
