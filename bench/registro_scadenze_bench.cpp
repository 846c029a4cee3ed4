// The register of instalments to collect on an archive of 1,000,000 instalments (over 1,000,000
// documents and the expenses): the real frmScadenze offscreen, beside SQLite's own C interface
// running the very text the engine runs, on the same file.
//   PrimaSchermata  the register opened in its active mode until its first screen of rows is
//                   shown; SQLite: the statement prepared and its first 40 rows read.
//   Avvisi          the same opened from the day's reminders (the unpaid instalments reminded
//                   today); SQLite likewise.
//   UltimaRiga      Ctrl+End on the list until its last row is current; SQLite: the statement in
//                   the opposite order, a block of rows read.
// Each iteration runs the two sides in turn, so whatever else loads the machine weighs on both;
// the counters give each side's mean in milliseconds and their ratio.
// The archive is generated once into the system's temporary folder (several minutes the first time);
// the model's indexes are added to it when missing, as the structure update does to an old archive.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QTest>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/session.h"
#include "payments/registri.h"
#include "payments/screens/frmScadenze.h"
#include "store/catalog_database.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "support/DialoghiScript.h"
#include "support/archive_gen.h"
#include "support/registro_misure.h"
#include "ui/VetraGrid.h"

namespace fs = std::filesystem;

namespace {


bench::Dimensioni dimensioni() {
    return {.clienti = 5000, .fornitori = 500, .documenti = 1000000, .righe = 1, .scadenze = 1000000, .pagamenti = 300000};
}

using bench::Clock;
using bench::ms;
using bench::Misure;

// The session on the generated archive; today is a day the generated reminders fall on.
struct Ambiente : bench::Sessione {
    Ambiente() : bench::Sessione(bench::ArchivioProva(dimensioni()), "brevano-scadenze-bench", "01/01/2024") {
        const store::Value giorno = db->OpenRecordset("Select Max(DataAvviso) as M from Scadenze")->get("M");
        store::fissaOrologio(giorno.isNull() ? store::Oggi() : store::CDate(giorno));
    }
};

Ambiente& ambiente() {
    static Ambiente a;
    return a;
}

bool senzaMessaggi(benchmark::State& state) { return ambiente().senzaMessaggi(state); }

struct Grezzo : bench::Grezzo {
    Grezzo() : bench::Grezzo(ambiente()) {}
};

std::unique_ptr<frmScadenze> apriRegistro(int modo) {
    core::ImpostaModoSchermo(frmScadenze::Nome, modo);
    auto f = std::make_unique<frmScadenze>();
    f->show();
    QApplication::processEvents();
    return f;
}

// range(0): the register's mode (0 active, 2 active from the day's reminders).
void BM_PrimaSchermata(benchmark::State& state) {
    const int modo = static_cast<int>(state.range(0));
    Grezzo grezzo;
    Misure m;
    bench::PrimaSchermata(state, ambiente(), grezzo, m, [modo](Clock::time_point&) { return apriRegistro(modo); },
                          modo == payments::ScadenzeAttive);
}
BENCHMARK(BM_PrimaSchermata)->ArgName("modo")->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_UltimaRiga(benchmark::State& state) {
    ambiente();
    Grezzo grezzo;
    Misure m;
    for (auto _ : state) {
        state.PauseTiming();
        auto f = apriRegistro(payments::ScadenzeAttive);
        ui::VetraGrid* g = f->griglia();
        state.ResumeTiming();
        auto t = Clock::now();
        QTest::keyClick(g, Qt::Key_End, Qt::ControlModifier);
        QApplication::processEvents();
        m.motore += ms(t);
        if (!senzaMessaggi(state)) break;
        const std::string inversa = g->istruzioneInversa();
        state.PauseTiming();
        f.reset();
        state.ResumeTiming();
        m.sqlite(grezzo, inversa, ui::VetraGridModel::RighePerBlocco);
    }
    m.riporta(state);
}
BENCHMARK(BM_UltimaRiga)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
