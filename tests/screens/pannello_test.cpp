// The main panel: the period chosen when the settings name none that is listed, the reminders of
// the day, a cancelled login at a change of period, a change of data folder that runs start-up
// again, and the deletion of a company from its register.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QListWidget>

#include <map>

#include "support/avvio_prova.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "core/impostazioni.h"
#include "core/login.h"
#include "core/pannello.h"
#include "app/screens/frmAziende.h"
#include "app/screens/frmConfigurazione.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

long Esercizio(long azienda, const std::string& nome, int anno) {
    return core::CreaEsercizioVuoto(azienda, nome, store::DateSerial(anno, 1, 1));
}

// Company 1 "Alfa" with periods 2025 and 2026, company 2 "Beta" with one period, in the data
// folder; the settings name company 1 and the given period.
void PreparaDati(ProgrammaDiProva& p, long esercizioNelleImpostazioni) {
    core::ScegliCartellaDati(p.dati.string());
    auto& db = *core::session().dbAziende;
    db.Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
    db.Execute("Insert Into Aziende (ID,Denominazione) VALUES (2,'Beta')");
    Esercizio(1, "Alfa 2025", 2025);
    Esercizio(1, "Alfa 2026", 2026);
    Esercizio(2, "Beta 2026", 2026);
    core::ScriviIni("Azienda", "ID", "1");
    core::ScriviIni("Archivio", "ID", std::to_string(esercizioNelleImpostazioni));
    core::session().dbAziende.reset();
}

void LoginVuoto(ProgrammaDiProva& p) {
    p.script->schermo("frmLogin", [](QWidget*) {
        core::ApriLogin();
        return core::ConfermaLogin("", "");
    });
}

std::vector<std::string> VociAvvisi(frmMain* pannello) {
    std::vector<std::string> v;
    for (int i = 0; i < pannello->BarAvvisi->count(); ++i) v.push_back(pannello->BarAvvisi->item(i)->text().toStdString());
    return v;
}

}  // namespace

TEST(Pannello, EsercizioNonInElencoPrendeLUltimoELoScrive) {
    ProgrammaDiProva p;
    PreparaDati(p, 3);   // period 3 exists, but belongs to Beta
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    frmMain* pannello = frmMain::istanza();
    ASSERT_EQ(pannello->cbEsercizio->count(), 2);
    EXPECT_EQ((pannello->cbAzienda->currentText() + " " + pannello->cbEsercizio->currentText()).toStdString(), "Alfa Alfa 2026");
    EXPECT_EQ(core::session().IDEsercizio, 2);
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "2");
    EXPECT_EQ(pannello->lblCartellaDati->text().toStdString(), p.dati.string());
}

TEST(Pannello, AvvisiSoloDiOggiENonPagati) {
    ProgrammaDiProva p;
    PreparaDati(p, 2);
    store::fissaOrologio(store::DateSerial(2026, 5, 12) + 0.5);
    auto archivio = store::Workspace::Default().OpenDatabase((p.dati / "Alfa 2026.mdb").string());
    // Active (a customer, no document): today with a time part, paid today, yesterday.
    // Passive (no customer): today.
    for (const char* riga : {"1,0,0,7,0,#5/12/2026 18:30:00#,False", "2,0,0,7,0,#5/12/2026#,True", "3,0,0,7,0,#5/11/2026#,False"})
        archivio->Execute(std::string("Insert Into Scadenze (ID,Documento,Spesa,Cliente,Fornitore,DataAvviso,Pagata) VALUES (") +
                          riga + ")");
    archivio.reset();
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    EXPECT_EQ(VociAvvisi(frmMain::istanza()), std::vector<std::string>{"Scadenze attive da ricordare oggi"});

    // Only the paid and yesterday's rows: nothing to remind.
    core::session().dbArchivio->Execute("Delete * from Scadenze where ID=1");
    core::session().dbArchivio->Execute("Insert Into Scadenze (ID,Documento,Spesa,Cliente,Fornitore,DataAvviso,"
                                         "Pagata) VALUES (4,0,0,0,3,#5/12/2026#,False)");
    frmMain::istanza()->AggiornaAvvisi();
    EXPECT_EQ(VociAvvisi(frmMain::istanza()), std::vector<std::string>{"Scadenze passive da ricordare oggi"});
    store::fissaOrologio(std::nullopt);
}

TEST(Pannello, LoginAnnullatoAlCambioDiEsercizioSpegneIMenu) {
    ProgrammaDiProva p;
    PreparaDati(p, 2);
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    frmMain* pannello = frmMain::istanza();
    p.script->schermo("frmLogin", [](QWidget*) {
        core::ApriLogin();
        return false;
    });
    pannello->cbEsercizio->setCurrentIndex(0);
    EXPECT_EQ(pannello->cbEsercizio->currentIndex(), -1);
    EXPECT_FALSE(core::session().dbArchivio);
    EXPECT_FALSE(pannello->mAnagrafiche->menuAction()->isEnabled());
    EXPECT_TRUE(pannello->mStrumenti->menuAction()->isEnabled());

    // Choosing again with a login opens that period's archive.
    LoginVuoto(p);
    pannello->cbEsercizio->setCurrentIndex(0);
    ASSERT_TRUE(core::session().dbArchivio);
    EXPECT_EQ(fs::path(core::session().dbArchivio->Name()).filename(), "Alfa 2025.mdb");
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "1");
    EXPECT_TRUE(pannello->mAnagrafiche->menuAction()->isEnabled());
    EXPECT_EQ(pannello->txtUtente->text().toStdString(), "Amministratore");
}

TEST(Pannello, CambioCartellaDatiRiavviaNelloStessoProcesso) {
    ProgrammaDiProva p;
    PreparaDati(p, 2);
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    frmMain* primo = frmMain::istanza();
    const fs::path altra = p.dati.parent_path() / "server";
    fs::create_directories(altra);
    p.script->percorso(altra.string());
    p.script->schermo("frmAziendeEdita", [](QWidget* e) {
        figlio<ui::VText>(e, "VText1")->setTesto("Gamma");
        clic(e, "btnConferma");
        return true;
    });
    p.script->schermo("frmArchiviEdita", [](QWidget* s) {
        figlio<ui::VText>(s, "VText1")->setTesto("Gamma 2026");
        figlio<ui::VetraPicker>(s, "pkData")->setTesto("01/01/2026");
        clic(s, "btnConferma");
        return true;
    });
    p.script->schermo("frmConfigurazione", [](QWidget*) {
        frmConfigurazione conf;
        clic(&conf, "btnSfoglia");
        clic(&conf, "imgNew3");
        clic(&conf, "imgNew2");
        clic(&conf, "btnConferma");
        return conf.result() == QDialog::Accepted;
    });
    clic(primo, "Command1");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    frmMain* secondo = frmMain::istanza();
    ASSERT_NE(secondo, nullptr);
    EXPECT_NE(secondo, primo);
    EXPECT_EQ((secondo->cbAzienda->currentText() + " " + secondo->cbEsercizio->currentText()).toStdString(), "Gamma Gamma 2026");
    EXPECT_EQ(secondo->lblCartellaDati->text().toStdString(), altra.string());
    EXPECT_EQ(fs::path(core::session().dbArchivio->Name()), altra / "Gamma 2026.mdb");
    EXPECT_TRUE(p.script->messaggi().empty());
}

TEST(Pannello, EliminazioneDiUnAzienda) {
    ProgrammaDiProva p;
    PreparaDati(p, 2);
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    fs::create_directories(p.dati / "Report" / "2");
    std::ofstream(p.dati / "Report" / "2" / "Fattura.rpf") << "x";
    core::session().dbAziende->Execute("Insert Into Utenti (ID,Azienda,Username,Password,Accessi) VALUES (1,2,'b','b','')");
    frmAziende registro;
    auto vaiA = [&registro](long id) { ASSERT_TRUE(registro.griglia()->vaiAId(id)); };
    const std::string domanda1 = "Eliminare l'azienda Beta e tutti i suoi esercizi?";
    const std::string domanda2 =
        "ATTENZIONE: tutti gli archivi dell'azienda Beta verranno cancellati definitivamente. Continuare?";

    vaiA(1);
    clic(&registro, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"Impossibile eliminare l'azienda Alfa: è l'azienda attualmente in uso."});

    p.script->dimentica();
    vaiA(2);
    p.script->rispondiSi();
    p.script->rispondiNo();
    clic(&registro, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script), (std::vector<std::string>{domanda1, domanda2}));
    EXPECT_TRUE(fs::exists(p.dati / "Beta 2026.mdb"));

    // Yes twice: the archive, its period, the report folder and the company go; its users stay.
    p.script->rispondiSi();
    p.script->rispondiSi();
    clic(&registro, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script), (std::vector<std::string>{domanda1, domanda2, domanda1, domanda2}));
    EXPECT_FALSE(fs::exists(p.dati / "Beta 2026.mdb"));
    EXPECT_FALSE(fs::exists(p.dati / "Report" / "2"));
    auto& db = *core::session().dbAziende;
    EXPECT_EQ(contaRighe(db, "Select * from Aziende where ID=2") + contaRighe(db, "Select * from Esercizi where Azienda=2"), 0);
    EXPECT_EQ(contaRighe(db, "Select * from Utenti where Azienda=2"), 1);
    EXPECT_TRUE(fs::exists(p.dati / "Alfa 2026.mdb"));
    EXPECT_EQ(frmMain::istanza()->cbAzienda->count(), 1);
}

namespace {

// Every command of the menus that is enabled opens its screen: a window of that name is on screen
// afterwards, or the scripted dialogs were asked to show it. A command present but doing nothing
// fails here. The overviews print straight away (the print screen), or ask their period first.
TEST(Pannello, OgniComandoAbilitatoApreIlSuoSchermo) {
    const std::map<std::string, std::string> primoSchermo = {
        {"mPrimaNotaC", "frmStampa"}, {"mPrimaNotaF", "frmStampa"}, {"mPrimaNota2", "frmSelPeriodo"}};
    ProgrammaDiProva p;
    apriEsercizioDiProva(p);
    int aperti = 0;
    for (const core::ComandoPannello& c : core::ComandiMenu()) {
        if (c.schermo.empty() || !core::ComandoDisponibile(c)) continue;
        SCOPED_TRACE(c.nome);
        p.script->dimentica();
        ASSERT_TRUE(core::EseguiComando(c));
        QApplication::processEvents();
        bool visto = false;
        const auto altro = primoSchermo.find(c.nome);
        const std::string atteso = altro == primoSchermo.end() ? c.schermo : altro->second;
        for (const std::string& s : p.script->schermiMostrati()) visto = visto || s == atteso;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            visto = visto || (w->isVisible() && w->objectName().toStdString() == c.schermo);
            if (w->objectName().toStdString() == c.schermo) w->close();
        }
        EXPECT_TRUE(visto);
        ++aperti;
    }
    EXPECT_GE(aperti, 15);
}

}  // namespace
