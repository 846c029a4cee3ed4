// The register of instalments to collect on an archive of 1,000,000 instalments (over 1,000,000
// documents and the expenses): the real frmScadenze offscreen, beside SQLite's own C interface
// running the very text the engine runs, on the same file.
//   PrimaSchermata  the register opened in its active mode until its first screen of rows is
//                   shown; SQLite: the statement prepared and its first 40 rows read.
//   Avvisi          the same opened from the day's reminders (the unpaid instalments reminded
//                   today); SQLite likewise.
//   UltimaRiga      Ctrl+End on the list until its last row is current; SQLite: the statement in
//                   the opposite order, a block of rows read.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/pannello.h"
#include "payments/registri.h"
#include "payments/screens/frmScadenze.h"
#include "store/clock.h"
#include "support/registro_misure.h"

namespace {

using bench::Clock;
using bench::ms;
using bench::Misure;

bench::Dimensioni dimensioni() {
    return {.clienti = 5000, .fornitori = 500, .documenti = 1000000, .righe = 1, .scadenze = 1000000, .pagamenti = 300000};
}

// The session on the generated archive; today is a day the generated reminders fall on.
struct Ambiente : bench::Sessione {
    Ambiente() : bench::Sessione(bench::ArchivioProva(dimensioni()), "brevano-scadenze-bench", "01/01/2024") {
        const store::Value giorno = db->OpenRecordset("Select Max(DataAvviso) as M from Scadenze")->get("M");
        store::fissaOrologio(giorno.isNull() ? store::Oggi() : store::CDate(giorno));
    }
};

std::unique_ptr<frmScadenze> apriRegistro(int modo) {
    core::ImpostaModoSchermo(frmScadenze::Nome, modo);
    return bench::Apri<frmScadenze>();
}

// range(0): the register's mode (0 active, 2 active from the day's reminders).
void BM_PrimaSchermata(benchmark::State& state) {
    const int modo = static_cast<int>(state.range(0));
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    bench::PrimaSchermata(state, a, grezzo, m, [modo](Clock::time_point&) { return apriRegistro(modo); },
                          modo == payments::ScadenzeAttive);
}
BENCHMARK(BM_PrimaSchermata)->ArgName("modo")->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_UltimaRiga(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    bench::UltimaRiga(state, a, grezzo, m, [] { return apriRegistro(payments::ScadenzeAttive); },
                      [](ui::VetraGrid&) { return [] {}; });
}
BENCHMARK(BM_UltimaRiga)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
