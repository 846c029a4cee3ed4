// The cash journal on an archive of 1,000,000 journal rows (one per payment, over three
// destinations): the real frmPrimaNota offscreen, beside SQLite's own C interface running the very
// text the engine runs, on the same file.
//   PrimaSchermata  the register made and shown on the month of "today" (fixed in the middle of the
//                   data), its first screen of rows read and its five figures worked out; SQLite:
//                   the grid's statement prepared and its first 40 rows read.
//   Cifre           the four figures and the running balance at the current row alone (what each
//                   reload costs); SQLite: the sum of the destination before the month.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "books/prima_nota.h"
#include "books/screens/frmPrimaNota.h"
#include "core/session.h"
#include "store/clock.h"
#include "support/registro_misure.h"

namespace {

using bench::Clock;
using bench::ms;

bench::Dimensioni dimensioni() {
    return {.clienti = 2000, .fornitori = 300, .righe = 1, .scadenze = 60000, .pagamenti = 1000000, .spese = 1000};
}

struct Ambiente : bench::Sessione {
    long righe = 0;
    Ambiente() : Sessione(bench::ArchivioProva(dimensioni()), "brevano-prima-nota-bench", "01/01/2024") {
        righe = store::CLng(db->OpenRecordset("Select Count(*) as N from PrimaNota")->get("N"));
        // "Today" in the middle of the journal's days, so that the month shown is a full one; the
        // period starts with the journal's first year.
        const double primo = store::CDate(db->OpenRecordset("Select Min(Data) as D from PrimaNota")->get("D"));
        const double ultimo = store::CDate(db->OpenRecordset("Select Max(Data) as D from PrimaNota")->get("D"));
        store::fissaOrologio((primo + ultimo) / 2);
        core::session().dbAziende->Execute("Update Esercizi set Dal=#01/01/" +
                                           std::to_string(store::SplitDate(primo).year) + "# where ID=1");
    }
};

void BM_PrimaSchermata(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    bench::Misure m;
    bench::PrimaSchermata(state, a, grezzo, m, [](Clock::time_point&) { return bench::Apri<frmPrimaNota>(); });
    state.counters["righe_archivio"] = static_cast<double>(a.righe);
}
BENCHMARK(BM_PrimaSchermata)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_Cifre(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    bench::Misure m;
    auto f = bench::Apri<frmPrimaNota>();
    const books::PeriodoPrimaNota periodo = f->periodo();
    const std::string precedente = "Select Sum(Entrate) as TotEntrate, Sum(Uscite) as TotUscite from qrPrimaNota "
                                   "where Destinazione=0 and Data<#" + store::ShortDate(periodo.dataDal) + "#";
    m.inTurno(state, [&] { f->RefResoconto(); }, [&] { return a.senzaMessaggi(state); },
              [&] { benchmark::DoNotOptimize(grezzo.leggi(precedente)); });
    state.counters["righe_archivio"] = static_cast<double>(a.righe);
}
BENCHMARK(BM_Cifre)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
