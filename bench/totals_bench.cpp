// Recomputing a document's totals on a full archive. One document must take the same time in an
// archive of 1,000 documents as in one of 50,000 (target under 2 ms), and the bulk recomputation
// of the structure update must get through all 50,000 in under a minute.
// Each size works on its own copy of the generated archive, since the recomputation writes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <map>
#include <string>

#include "core/session.h"
#include "sales/totali.h"
#include "store/dao.h"
#include "support/archive_gen.h"

namespace {

namespace fs = std::filesystem;

bench::Dimensioni Misura(int documenti) {
    bench::Dimensioni d;
    if (documenti >= d.documenti) return d;
    const int quota = d.documenti / documenti;  // the other registers shrink with the documents
    d.documenti = documenti;
    d.clienti = std::max(10, d.clienti / quota);
    d.fornitori = std::max(5, d.fornitori / quota);
    d.servizi = std::max(10, d.servizi / quota);
    d.scadenze /= quota;
    d.pagamenti /= quota;
    d.spese = std::max(10, d.spese / quota);
    return d;
}

// Opens a private copy of the archive of that size as the session's archive.
void ApriCopia(int documenti) {
    static std::map<int, store::DatabasePtr> aperti;
    auto& db = aperti[documenti];
    if (!db) {
        const std::string origine = bench::ArchivioProva(Misura(documenti));
        const fs::path copia = fs::temp_directory_path() / ("brevano-totali-" + std::to_string(documenti) + ".mdb");
        fs::copy_file(origine, copia, fs::copy_options::overwrite_existing);
        db = store::Workspace::Default().OpenDatabase(copia.string());
    }
    core::session().dbArchivio = db;
}

void BM_CalcolaTotaliDocumento(benchmark::State& state) {
    const int documenti = static_cast<int>(state.range(0));
    ApriCopia(documenti);
    long cursore = 1;
    for (auto _ : state) {
        cursore = (cursore * 7919 + 17) % documenti;  // wander through the archive, never the same row twice running
        sales::CalcolaTotaliDocumento(cursore + 1);
    }
}
BENCHMARK(BM_CalcolaTotaliDocumento)->Arg(1000)->Arg(50000)->Unit(benchmark::kMillisecond);

void BM_RicalcoloDiTuttiIDocumenti(benchmark::State& state) {
    const int documenti = static_cast<int>(state.range(0));
    ApriCopia(documenti);
    // As the structure update runs it: the writes committed together, a few hundred at a time.
    for (auto _ : state) {
        store::WriteBatch batch(*core::session().dbArchivio);
        for (long id = 1; id <= documenti; ++id) sales::CalcolaTotaliDocumento(id);
        batch.End();
    }
    state.counters["documenti"] = documenti;
}
BENCHMARK(BM_RicalcoloDiTuttiIDocumenti)->Arg(50000)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
