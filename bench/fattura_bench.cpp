// The shipped fattura layout on a realistic 30-line fattura, to PDF: statements, layout and painting,
// as the print screen's preview and "Salva PDF" run them.
#include <benchmark/benchmark.h>

#include "core/archivio_sql.h"
#include "support/avvio_prova.h"
#include "support/fattura_prova.h"
#include "ui/report/Motore.h"

namespace {

void BM_Fattura30RigheInPdf(benchmark::State& state) {
    prova::ProgrammaDiProva p;
    prova::apriEsercizioDiProva(p);
    prova::FatturaRealistica(*core::ArchivioAperto());
    ui::report::Motore m;
    prova::StampaFattura(m, 1);
    const std::string pdf = (p.dati / "fattura.pdf").string();
    for (auto _ : state) m.EsportaPdf(pdf);
    state.counters["pagine"] = static_cast<double>(m.Prepara().pagine.size());
}
BENCHMARK(BM_Fattura30RigheInPdf)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace

BENCHMARK_MAIN();
