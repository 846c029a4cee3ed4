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

// The ids looked at move through the archive so no answer comes from a cache of the same row.
long prossimoId(long& cursore, long massimo) {
    cursore = (cursore * 7919 + 17) % massimo;
    return cursore + 1;
}

void BM_ScadenzeAperteDiUnDocumento(benchmark::State& state) {
    store::Database& db = archivio();
    long cursore = 1;
    for (auto _ : state) {
        auto rs = db.OpenRecordset("Select * from qrScadenzePagamenti where Documento=" +
                                   std::to_string(prossimoId(cursore, 50000)) + " and DaPagare<>0");
        benchmark::DoNotOptimize(percorri(*rs, "DaPagare"));
    }
}
BENCHMARK(BM_ScadenzeAperteDiUnDocumento)->Unit(benchmark::kMicrosecond);

void BM_SaldoDiUnDocumento(benchmark::State& state) {
    store::Database& db = archivio();
    long cursore = 3;
    for (auto _ : state) {
        auto rs = db.OpenRecordset("Select * from qrDocumentiIncassi Where ID=" +
                                   std::to_string(prossimoId(cursore, 50000)));
        benchmark::DoNotOptimize(percorri(*rs, "DaPagare"));
    }
}
BENCHMARK(BM_SaldoDiUnDocumento)->Unit(benchmark::kMicrosecond);

void BM_RegistroFatture(benchmark::State& state) {
    store::Database& db = archivio();
    long righe = 0;
    for (auto _ : state) {
        auto rs = db.OpenRecordset("Select * from qrDocumenti where Tipo=5");
        righe = percorri(*rs, "Denominazione");
    }
    state.counters["righe"] = static_cast<double>(righe);
}
BENCHMARK(BM_RegistroFatture)->Unit(benchmark::kMillisecond);

// The payment editor's list of documents still to collect: every fattura's payments are summed.
void BM_DocumentiDaIncassare(benchmark::State& state) {
    store::Database& db = archivio();
    long righe = 0;
    for (auto _ : state) {
        auto rs = db.OpenRecordset("Select * from qrDocumentiIncassi where DaPagare<>0");
        righe = percorri(*rs, "DaPagare");
    }
    state.counters["righe"] = static_cast<double>(righe);
}
BENCHMARK(BM_DocumentiDaIncassare)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
