// The main panel: the period chosen when the settings name none that is listed, the reminders of
// the day, a cancelled login at a change of period, a change of data folder that runs start-up
// again, and the deletion of a company from its register. Closing a period and changing its end:
// the end date reaches every period of every company; a new period with the balances carried over.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>

#include <map>

#include "app/screens/frmAziende.h"
#include "app/screens/frmSelPeriodo.h"
#include "core/archivio_sql.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "store/clock.h"
#include "store/convert.h"
#include "support/avvio_prova.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

class Pannello : public ::testing::Test {
protected:
    // Company 1 "Alfa" with periods 2025 and 2026, company 2 "Beta" with period 3; the settings name
    // company 1 and the given period.
    void PreparaDati(long esercizio = 2) {
        aziendeAlfaEBeta(p);
        core::CreaEsercizioVuoto(1, "Alfa 2025", store::DateSerial(2025, 1, 1));
        core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
        core::CreaEsercizioVuoto(2, "Beta 2026", store::DateSerial(2026, 1, 1));
        core::ScriviIni("Azienda", "ID", "1");
        core::ScriviIni("Archivio", "ID", std::to_string(esercizio));
        core::session().dbAziende.reset();
    }
    // Those data, and the program started on them.
    frmMain* Avvia(long esercizio = 2) {
        PreparaDati(esercizio);
        EXPECT_EQ(core::Main(), core::EsitoAvvio::Aperto);
        p.script->dimentica();
        return frmMain::istanza();
    }
    // The only reminder of the day.
    static QString Avviso() {
        QListWidget* avvisi = frmMain::istanza()->BarAvvisi;
        return avvisi->count() == 1 ? avvisi->item(0)->text() : QString("%1 avvisi").arg(avvisi->count());
    }

    ProgrammaDiProva p;
};

// The period named by the settings is not Alfa's: the last of the list is taken and written back.
// A login cancelled at a change of period then leaves no archive open; so does a company without
// periods.
TEST_F(Pannello, EsercizioNonInElencoLoginECambioDiAzienda) {
    frmMain* pannello = Avvia(3);   // Beta's period, which Alfa's list lacks
    ASSERT_EQ(pannello->cbEsercizio->count(), 2);
    EXPECT_EQ((pannello->cbAzienda->currentText() + " " + pannello->cbEsercizio->currentText()).toStdString(), "Alfa Alfa 2026");
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "2");
    EXPECT_EQ(core::session().IDEsercizio, 2);
    EXPECT_EQ(pannello->lblCartellaDati->text().toStdString(), p.dati.string());

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
    loginVuoto(*p.script);
    pannello->cbEsercizio->setCurrentIndex(0);
    ASSERT_TRUE(core::session().dbArchivio);
    EXPECT_EQ(fs::path(core::session().dbArchivio->Name()).filename(), "Alfa 2025.mdb");
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "1");
    EXPECT_TRUE(pannello->mAnagrafiche->menuAction()->isEnabled());
    EXPECT_EQ(pannello->txtUtente->text().toStdString(), "Amministratore");

    // A company without periods: no archive; back to one with a period, the login and its archive.
    p.script->dimentica();
    core::session().dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (3,'Gamma')");
    pannello->CaricaAziende();
    p.script->rispondiNo();
    pannello->cbAzienda->setCurrentIndex(pannello->cbAzienda->findText("Gamma"));
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"L'azienda selezionata non ha alcun esercizio. Crearne uno nuovo?"});
    EXPECT_FALSE(core::session().dbArchivio);
    EXPECT_FALSE(pannello->mContabilita->menuAction()->isEnabled());
    EXPECT_EQ(core::LeggiIni("Archivio", "ID") + core::LeggiIni("Azienda", "ID"), "03");

    loginVuoto(*p.script);
    pannello->cbAzienda->setCurrentIndex(pannello->cbAzienda->findText("Beta"));
    EXPECT_TRUE(core::session().dbArchivio);
    EXPECT_EQ(pannello->cbEsercizio->currentText().toStdString(), "Beta 2026");
    EXPECT_TRUE(pannello->mContabilita->menuAction()->isEnabled());
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "3");
}

TEST_F(Pannello, AvvisiSoloDiOggiENonPagati) {
    PreparaDati();
    store::fissaOrologio(store::DateSerial(2026, 5, 12) + 0.5);
    auto archivio = store::Workspace::Default().OpenDatabase((p.dati / "Alfa 2026.mdb").string());
    // Active (a customer, no document): today with a time part, paid today, yesterday.
    // Passive (no customer): today.
    for (const char* riga : {"1,0,0,7,0,#5/12/2026 18:30:00#,False", "2,0,0,7,0,#5/12/2026#,True", "3,0,0,7,0,#5/11/2026#,False"})
        archivio->Execute(std::string("Insert Into Scadenze (ID,Documento,Spesa,Cliente,Fornitore,DataAvviso,Pagata) VALUES (") +
                          riga + ")");
    archivio.reset();
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    EXPECT_EQ(Avviso(), "Scadenze attive da ricordare oggi");

    // Only the paid and yesterday's rows: nothing to remind.
    core::session().dbArchivio->Execute("Delete * from Scadenze where ID=1");
    core::session().dbArchivio->Execute("Insert Into Scadenze (ID,Documento,Spesa,Cliente,Fornitore,DataAvviso,"
                                         "Pagata) VALUES (4,0,0,0,3,#5/12/2026#,False)");
    frmMain::istanza()->AggiornaAvvisi();
    EXPECT_EQ(Avviso(), "Scadenze passive da ricordare oggi");
    store::fissaOrologio(std::nullopt);
}

TEST_F(Pannello, CambioCartellaDatiRiavviaNelloStessoProcesso) {
    frmMain* primo = Avvia();
    const fs::path altra = p.dati.parent_path() / "server";
    fs::create_directories(altra);
    scriviAzienda(*p.script, "Gamma");
    scriviEsercizio(*p.script, "Gamma 2026", "01/01/2026");
    configuraNuove(*p.script, altra);
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

TEST_F(Pannello, EliminazioneDiUnAzienda) {
    Avvia();
    fs::create_directories(p.dati / "Report" / "2");
    std::ofstream(p.dati / "Report" / "2" / "Fattura.rpf") << "x";
    core::session().dbAziende->Execute("Insert Into Utenti (ID,Azienda,Username,Password,Accessi) VALUES (1,2,'b','b','')");
    frmAziende registro;
    const std::string domanda1 = "Eliminare l'azienda Beta e tutti i suoi esercizi?";
    const std::string domanda2 =
        "ATTENZIONE: tutti gli archivi dell'azienda Beta verranno cancellati definitivamente. Continuare?";

    ASSERT_TRUE(registro.griglia()->vaiAId(1));
    clic(&registro, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"Impossibile eliminare l'azienda Alfa: è l'azienda attualmente in uso."});

    // Yes, then No to the warning: nothing goes. Yes twice: the archive, its period, the report
    // folder and the company go; its users stay.
    p.script->dimentica();
    ASSERT_TRUE(registro.griglia()->vaiAId(2));
    for (int risposta : {core::vbYes, core::vbNo, core::vbYes, core::vbYes}) p.script->rispondi(risposta);
    clic(&registro, "btnElimina");
    EXPECT_TRUE(fs::exists(p.dati / "Beta 2026.mdb"));
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

// Every command of the menus that is enabled opens its screen: a window of that name is on screen
// afterwards, or the scripted dialogs were asked to show it. A command present but doing nothing
// fails here. The overviews print straight away (the print screen), or ask their period first.
TEST_F(Pannello, OgniComandoAbilitatoApreIlSuoSchermo) {
    const std::map<std::string, std::string> primoSchermo = {
        {"mPrimaNotaC", "frmStampa"}, {"mPrimaNotaF", "frmStampa"}, {"mPrimaNota2", "frmSelPeriodo"}};
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

std::vector<std::string> FiniDeiPeriodi() {
    std::vector<std::string> fini;
    auto rs = core::session().dbAziende->OpenRecordset("Select * from Esercizi order by ID");
    for (; !rs->Eof(); rs->MoveNext()) {
        const store::Value al = rs->get("Al");
        fini.push_back(al.isNull() ? "Null" : store::ShortDate(store::CDate(al)));
    }
    return fini;
}

// Scripts frmSelPeriodo: the end typed, then confirm (or cancel when the text is empty).
void ScriviFine(ProgrammaDiProva& p, const std::string& al, bool* dalAbilitato = nullptr) {
    p.script->schermo("frmSelPeriodo", [al, dalAbilitato](QWidget* s) {
        if (dalAbilitato) *dalAbilitato = figlio<ui::VetraPicker>(s, "pkDataDal")->isEnabled();
        if (al.empty()) {
            clic(s, "btnAnnulla");
            return false;
        }
        figlio<ui::VetraPicker>(s, "pkDataAl")->setTesto(al);
        clic(s, "btnConferma");
        return true;
    });
}

// The 2026 archive of company 1: three fatture (paid on the new start, paid the day after, unpaid),
// each with a line and a due date, and the journal of the year on the bank and the cash.
void RiempiArchivio2026() {
    auto& db = *core::session().dbArchivio;
    for (auto [n, data, pagato] :
         {std::tuple{1, "#01/01/2027#", true}, {2, "#01/02/2027#", true}, {3, "#06/10/2026#", false}}) {
        const std::string id = std::to_string(n);
        db.Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,Pagato) VALUES (" + id + ",5," + id + "," +
                   data + ",1," + (pagato ? "True" : "False") + ")");
        db.Execute("Insert Into Movimenti (ID,Documento) VALUES (" + id + "," + id + ")");
        db.Execute("Insert Into Scadenze (ID,Documento) VALUES (" + id + "," + id + ")");
    }
    // Date, amount, kind (0 in, 1 out) and destination (0 bank, 1 cash).
    const std::tuple<const char*, double, int, int> righe[] = {
        {"#03/10/2026#", 1000, 0, 0},   // bank in
        {"#05/15/2026#", 250.5, 1, 0},  // bank out
        {"#12/31/2026#", 40, 0, 0},     // the day before the new start: left out of the balance
        {"#02/01/2026#", 100, 1, 1},    // cash out: the cash opens at -100
    };
    int id = 0;
    for (const auto& [data, importo, tipo, destinazione] : righe)
        db.Execute("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento) VALUES (" +
                   std::to_string(++id) + "," + data + ",'x'," + core::NumeroSql(importo) + "," + std::to_string(tipo) +
                   "," + std::to_string(destinazione) + ",0)");
}

}  // namespace

TEST_F(Pannello, ChiusuraRaggiungeOgniPeriodoDiOgniAzienda) {
    store::fissaOrologio(store::DateSerial(2026, 11, 22));
    frmMain* pannello = Avvia();
    QAction* chiusura = pannello->azione("mChiusuraEsercizio");
    // An open period (no end) ends on 31/12 of its start year as far as the rule knows: the
    // command starts off, and the handler is what the test drives.
    EXPECT_FALSE(chiusura->isEnabled());

    ScriviFine(p, "");
    pannello->ChiusuraEsercizio();
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"Null", "Null", "Null"}));

    ScriviFine(p, "01/01/2026");
    pannello->ChiusuraEsercizio();
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"La data di chiusura deve essere successiva alla data di inizio dell'esercizio!"});
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"Null", "Null", "Null"}));

    // A good date closes both companies' periods; the start field could not be changed.
    bool dalAbilitato = true;
    ScriviFine(p, "30/06/2026", &dalAbilitato);
    pannello->ChiusuraEsercizio();
    EXPECT_FALSE(dalAbilitato);
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>(3, "30/06/2026")));
    EXPECT_FALSE(chiusura->isEnabled());

    ScriviFine(p, "31/12/2026", &dalAbilitato);
    pannello->ModificaPeriodo();
    EXPECT_TRUE(dalAbilitato);
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>(3, "31/12/2026")));
    store::fissaOrologio(std::nullopt);
    EXPECT_EQ((pannello->lblDal->text() + " " + pannello->lblAl->text()).toStdString(), "01/01/2026 31/12/2026");
}

TEST(Periodo, ControlliDelPeriodo) {
    // Start, end, and the key and field of the refusal ("" when accepted).
    const std::tuple<std::string, std::string, std::string> casi[] = {
        {"", "31/12/2026", "s243 0"},
        {"32/01/2026", "31/12/2026", "s81 0"},
        {"01/01/2026", "", "s244 1"},
        {"01/01/2026", "abc", "s81 1"},
        {"01/01/2026", "31/12/2026", ""},
    };
    for (const auto& [dal, al, atteso] : casi) {
        const auto e = core::ControllaPeriodo(dal, al);
        EXPECT_EQ(e ? e->chiave + " " + std::to_string(e->campo) : "", atteso) << dal << "|" << al;
    }
}

TEST_F(Pannello, NuovoEsercizioRiportaISaldiEGliAperti) {
    // Two companies, each with one open period; Alfa's is current.
    aziendeAlfaEBeta(p);
    core::CreaEsercizioVuoto(2, "Beta 2026", store::DateSerial(2026, 3, 1));
    const long es = core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
    ASSERT_TRUE(core::ConfermaConfigurazione(p.dati.string(), 1, es));
    core::session().dbAziende.reset();
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    frmMain* pannello = frmMain::istanza();
    core::session().NomeUtente = "admin";
    RiempiArchivio2026();

    // The open period is closed first (with the question), then the new one is described.
    p.script->rispondiSi();
    ScriviFine(p, "31/12/2026");
    scriviEsercizio(*p.script, "Alfa 2027", "01/01/2027");
    loginVuoto(*p.script);
    ASSERT_TRUE(pannello->NuovoEsercizio());
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{core::Testo("s56") + "Alfa 2026" + core::Testo("s57") + "01/01/2026. " + core::Testo("s58")});
    EXPECT_EQ(pannello->cbEsercizio->currentText().toStdString(), "Alfa 2027");
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"31/12/2026", "31/12/2026", "Null"}));

    auto& db = *core::session().dbArchivio;
    EXPECT_EQ(db.Name(), (p.dati / "Alfa 2027.mdb").string());
    // The paid fattura of the start day goes with its line and due date; the others stay.
    for (const char* tabella : {"Documenti", "Movimenti", "Scadenze"}) {
        SCOPED_TRACE(tabella);
        EXPECT_EQ(contaRighe(db, std::string("Select * from ") + tabella + " where ID=1"), 0);
        EXPECT_EQ(contaRighe(db, std::string("Select * from ") + tabella), 2);
    }
    // Bank 1000 - 250.50 = 749.50 in; cash 100 out.
    std::vector<std::string> saldi;
    for (auto rs = db.OpenRecordset("Select * from PrimaNota order by ID"); !rs->Eof(); rs->MoveNext())
        saldi.push_back(store::CStr(rs->get("Descrizione")) + " " + store::ShortDate(store::CDate(rs->get("Data"))) + " " +
                        store::CStr(rs->get("Importo")) + " " + store::CStr(rs->get("Tipo")) + store::CStr(rs->get("Destinazione")));
    EXPECT_EQ(saldi, (std::vector<std::string>{"Saldo esercizio precedente 01/01/2027 749,5 00",
                                               "Saldo esercizio precedente 01/01/2027 100 11"}));
    for (const auto& voce : fs::directory_iterator(p.dati)) EXPECT_NE(voce.path().filename().string()[0], '.');
}
