// The exports on a generated archive: 100,000 instalments to a spreadsheet file, and the two files
// of the outside accounting program for 50,000 documents and 10,000 customers.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "core/esporta_excel.h"
#include "output/esporta_fatture.h"
#include "store/convert.h"
#include "support/archive_gen.h"

namespace {

namespace fs = std::filesystem;

store::DatabasePtr Archivio() {
    static store::DatabasePtr db = store::Workspace::Default().OpenDatabase(
        bench::ArchivioProva({.clienti = 10000, .documenti = 50000, .scadenze = 100000}));
    return db;
}

fs::path Uscita() {
    static const fs::path p = [] {
        fs::path c = fs::temp_directory_path() / "brevano-bench-esporta";
        fs::create_directories(c);
        return c;
    }();
    return p;
}

void BM_Excel100000Righe(benchmark::State& state) {
    auto db = Archivio();
    for (auto _ : state) {
        auto rs = db->OpenRecordset("Select * from Scadenze Order By ID");
        const long righe = core::ScriviExcel(*rs, {"Totale"}, Uscita() / "scadenze.xlsx");
        benchmark::DoNotOptimize(righe);
        state.counters["righe"] = static_cast<double>(righe);
    }
}
BENCHMARK(BM_Excel100000Righe)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_FatsAnas(benchmark::State& state) {
    auto db = Archivio();
    for (auto _ : state) {
        const auto esito = output::EsportaFatture(*db, store::DateSerial(1900, 1, 1), store::DateSerial(9999, 12, 31),
                                                  Uscita() / "FATS.txt", Uscita() / "ANAS.txt");
        state.counters["documenti"] = static_cast<double>(esito.documenti);
        state.counters["clienti"] = static_cast<double>(esito.clienti);
    }
}
BENCHMARK(BM_FatsAnas)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
