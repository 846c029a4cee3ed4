// The report layer on a list of 10,000 rows: the whole list to PDF (statement, layout, painting), and
// what the user waits for before the preview shows its first page.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "report/report_support.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"
#include "ui/report/Motore.h"
#include "ui/report/Pittore.h"

namespace {

constexpr int kRighe = 10000;

// An A4 list of rows of 5 mm with headings, the carried total and page numbers.
struct Lista {
    Lista() {
        prova::applicazioneDiProva();
        db = store::Workspace::Default().CreateDatabase(cartella / "archivio.mdb");
        prova::CreaMovimenti(*db, kRighe, 40);
        std::string xml = prova::ReportElenco();
        const std::string pagina = R"(larghezza="150" altezza="100" sinistro="0" destro="0" alto="0" basso="0")";
        xml.replace(xml.find(pagina), pagina.size(), R"(larghezza="210" altezza="297" sinistro="15" destro="15" alto="12" basso="12")");
        const std::string dettaglio = R"(<banda tipo="dettaglio" altezza="10">)";
        xml.replace(xml.find(dettaglio), dettaglio.size(), R"(<banda tipo="dettaglio" altezza="5">)");
        test::ScriviFile(cartella / "Lista.rpf", xml);
        motore.File = cartella / "Lista.rpf";
        motore.dbArchivio = db;
        motore.Carica();
    }
    test::CartellaTemporanea cartella;
    store::DatabasePtr db;
    ui::report::Motore motore;
};

Lista& lista() {
    static Lista l;
    return l;
}

void BM_ListaInPdf(benchmark::State& state) {
    Lista& l = lista();
    for (auto _ : state) l.motore.EsportaPdf(l.cartella / "lista.pdf");
    state.counters["pagine"] = static_cast<double>(l.motore.Prepara().pagine.size());
    state.counters["KB"] = static_cast<double>(std::filesystem::file_size(l.cartella / "lista.pdf")) / 1024;
}
BENCHMARK(BM_ListaInPdf)->Unit(benchmark::kMillisecond)->Iterations(3);

// Statement, layout of every page (the count is on each), and the first page drawn at 100%.
void BM_PrimaPaginaAnteprima(benchmark::State& state) {
    Lista& l = lista();
    for (auto _ : state) {
        const ui::report::Documento doc = l.motore.Prepara();
        const ui::report::Pittore pittore(doc, "Lista.rpf");
        QImage img = pittore.immagine(0, 1.0);
        benchmark::DoNotOptimize(img.constBits());
    }
}
BENCHMARK(BM_PrimaPaginaAnteprima)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
