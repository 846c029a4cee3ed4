// Start-up from Main to the shown main panel, on a data folder whose archive holds 50,000
// documents with their lines, instalments and payments: the settings read, the master and the
// archive opened, temp.mdb compacted, the login, the panel's combos and the reminders of the day.
#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/avvio.h"
#include "core/aziende.h"
#include "core/impostazioni.h"
#include "core/login.h"
#include "core/registro_schermi.h"
#include "app/screens/Registra.h"
#include "app/screens/frmMain.h"
#include "core/session.h"
#include "core/utenti.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "support/archive_gen.h"
#include "support/DialoghiScript.h"

namespace fs = std::filesystem;

namespace {

// A program folder with the installation files and a data folder with one company, one period on
// the generated archive and one user, all in the settings.
struct Installazione {
    fs::path radice = fs::temp_directory_path() / "brevano-avvio-bench";
    fs::path programma = radice / "programma";
    fs::path dati = radice / "dati";

    Installazione() {
        fs::remove_all(radice);
        fs::create_directories(programma);
        fs::create_directories(dati);
        store::model::ScriviFileInstallazione(programma.string(), store::model::CartellaDatiSorgente());
        fs::copy_file(fs::path(store::model::CartellaDatiSorgente()) / "Italiano.lng", programma / "Italiano.lng");
        std::ofstream(programma / "brevano") << "x";
        core::fissaEseguibile((programma / "brevano").string());
        core::session().CartellaProgramma = programma.string();
        core::RipristinaLingua();

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
    ~Installazione() {
        std::error_code ec;
        fs::remove_all(radice, ec);
    }
};

void ChiudiPannello() {
    if (frmMain* p = frmMain::istanza()) {
        p->setAttribute(Qt::WA_DeleteOnClose, false);
        p->hide();
        delete p;
    }
    core::Session& s = core::session();
    for (auto* db : {&s.dbAziende, &s.dbArchivio, &s.dbTemp, &s.dbUtilita}) db->reset();
}

void BM_AvvioFinoAlPannello(benchmark::State& state) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    prova::applicazioneDiProva();
    Installazione inst;
    RegistraSchermi();
    auto script = prova::installaScript();
    for (auto _ : state) {
        script->schermo("frmLogin", [](QWidget*) {
            core::ApriLogin();
            return core::ConfermaLogin("mario", "pw");
        });
        if (core::Main() != core::EsitoAvvio::Aperto || !frmMain::istanza() || !frmMain::istanza()->isVisible()) {
            state.SkipWithError("the main panel did not open");
            break;
        }
        QApplication::processEvents();
        state.PauseTiming();
        ChiudiPannello();
        state.ResumeTiming();
    }
    core::svuotaRegistroSchermi();
    core::installDialogs(nullptr);
}
BENCHMARK(BM_AvvioFinoAlPannello)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
