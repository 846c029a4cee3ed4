// Start-up from Main to the shown main panel, on a data folder whose archive holds 50,000
// documents with their lines, instalments and payments: the settings read, the master and the
// archive opened, temp.mdb compacted, the login, the panel's combos and the reminders of the day.
#include <benchmark/benchmark.h>

#include <QApplication>

#include <filesystem>

#include "core/utenti.h"
#include "core/varie.h"
#include "support/archive_gen.h"
#include "support/avvio_prova.h"

namespace fs = std::filesystem;

namespace {

// The test program folder with a data folder of one company, one period on the generated archive
// and one user, all in the settings.
struct Installazione : prova::ProgrammaDiProva {
    Installazione() {
        const fs::path archivio = dati / "Esercizio 2024.mdb";
        fs::copy_file(bench::ArchivioProva(), archivio);
        core::ScegliCartellaDati(dati.string());
        auto& db = *core::session().dbAziende;
        db.Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Studio Rossi')");
        db.Execute("Insert Into Esercizi (ID,Azienda,Nome,Dal,File,DataAggiornamento) VALUES (1,1,'Esercizio 2024',"
                   "'01/01/2024','" + archivio.string() + "','" + store::DateText(core::DataEseguibile()) + "')");
        db.Execute("Insert Into Utenti (ID,Azienda,Username,Password,Accessi) VALUES (1,1,'mario','pw','" +
                   core::Apici(core::AccessiCifrati(std::vector<bool>(core::NumeroPrivilegi, true), "mario")) + "')");
        core::ConfermaConfigurazione(dati.string(), 1, 1);
        core::session().dbAziende.reset();
    }
};

void BM_AvvioFinoAlPannello(benchmark::State& state) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Installazione inst;
    for (auto _ : state) {
        inst.script->schermo("frmLogin", [](QWidget*) {
            core::ApriLogin();
            return core::ConfermaLogin("mario", "pw");
        });
        if (core::Main() != core::EsitoAvvio::Aperto || !frmMain::istanza() || !frmMain::istanza()->isVisible()) {
            state.SkipWithError("the main panel did not open");
            break;
        }
        QApplication::processEvents();
        state.PauseTiming();
        prova::ProgrammaDiProva::chiudiFinestre();
        core::Session& s = core::session();
        for (auto* db : {&s.dbAziende, &s.dbArchivio, &s.dbTemp, &s.dbUtilita}) db->reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_AvvioFinoAlPannello)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
