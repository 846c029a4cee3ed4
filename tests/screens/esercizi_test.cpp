// Closing a period and changing its end: the end date reaches every period of every company.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>

#include "support/avvio_prova.h"
#include "core/archivio_sql.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "core/login.h"
#include "app/screens/frmSelPeriodo.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/VText.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

// Two companies, each with one open period; company 1 is current and the panel is open.
void PreparaPannello(ProgrammaDiProva& p) {
    core::ScegliCartellaDati(p.dati.string());
    auto& db = *core::session().dbAziende;
    db.Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
    db.Execute("Insert Into Aziende (ID,Denominazione) VALUES (2,'Beta')");
    core::CreaEsercizioVuoto(2, "Beta 2026", store::DateSerial(2026, 3, 1));
    const long es = core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
    ASSERT_TRUE(core::ConfermaConfigurazione(p.dati.string(), 1, es));
    core::session().dbAziende.reset();
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    p.script->dimentica();
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

}  // namespace

TEST(Esercizi, ChiusuraRaggiungeOgniPeriodoDiOgniAzienda) {
    ProgrammaDiProva p;
    store::fissaOrologio(store::DateSerial(2026, 11, 22));
    PreparaPannello(p);
    frmMain* pannello = frmMain::istanza();
    QAction* chiusura = pannello->azione("mChiusuraEsercizio");
    // An open period (no end) ends on 31/12 of its start year as far as the rule knows: the
    // command starts off, and the handler is what the test drives.
    EXPECT_FALSE(chiusura->isEnabled());

    ScriviFine(p, "");
    pannello->ChiusuraEsercizio();
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"Null", "Null"}));
    EXPECT_EQ(pannello->lblAl->text().toStdString(), "aperto");

    ScriviFine(p, "01/01/2026");
    pannello->ChiusuraEsercizio();
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"La data di chiusura deve essere successiva alla data di inizio dell'esercizio!"});
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"Null", "Null"}));

    // A good date closes both companies' periods; the start field could not be changed.
    bool dalAbilitato = true;
    ScriviFine(p, "30/06/2026", &dalAbilitato);
    pannello->ChiusuraEsercizio();
    EXPECT_FALSE(dalAbilitato);
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"30/06/2026", "30/06/2026"}));
    EXPECT_FALSE(chiusura->isEnabled());

    // Changing the end works the same way and reaches every row again.
    ScriviFine(p, "31/12/2026", &dalAbilitato);
    pannello->ModificaPeriodo();
    EXPECT_TRUE(dalAbilitato);
    EXPECT_EQ(FiniDeiPeriodi(), (std::vector<std::string>{"31/12/2026", "31/12/2026"}));
    store::fissaOrologio(std::nullopt);
    EXPECT_EQ((pannello->lblDal->text() + " " + pannello->lblAl->text()).toStdString(), "01/01/2026 31/12/2026");
}

TEST(Esercizi, ControlliDelPeriodo) {
    struct Caso {
        std::string dal, al;
        std::optional<std::string> chiave;
        int campo;
    };
    const std::vector<Caso> casi = {
        {"", "31/12/2026", "s243", 0},
        {"32/01/2026", "31/12/2026", "s81", 0},
        {"01/01/2026", "", "s244", 1},
        {"01/01/2026", "abc", "s81", 1},
        {"01/01/2026", "31/12/2026", std::nullopt, 0},
    };
    for (const Caso& c : casi) {
        const auto e = core::ControllaPeriodo(c.dal, c.al);
        EXPECT_EQ(e ? std::optional(e->chiave + " " + std::to_string(e->campo)) : std::nullopt,
                  c.chiave ? std::optional(*c.chiave + " " + std::to_string(c.campo)) : std::nullopt) << c.dal << "|" << c.al;
    }
}

TEST(Esercizi, CambioDiAziendaSenzaEsercizio) {
    ProgrammaDiProva p;
    PreparaPannello(p);
    frmMain* pannello = frmMain::istanza();
    core::session().dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (3,'Gamma')");
    pannello->CaricaAziende();
    p.script->rispondiNo();
    pannello->cbAzienda->setCurrentIndex(pannello->cbAzienda->findText("Gamma"));
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"L'azienda selezionata non ha alcun esercizio. Crearne uno nuovo?"});
    EXPECT_FALSE(core::session().dbArchivio);
    EXPECT_FALSE(pannello->mContabilita->menuAction()->isEnabled());
    EXPECT_EQ(core::LeggiIni("Archivio", "ID") + core::LeggiIni("Azienda", "ID"), "03");

    // Back to a company with a period: the login is asked and the archive opened again.
    p.script->schermo("frmLogin", [](QWidget*) {
        core::ApriLogin();
        return core::ConfermaLogin("", "");
    });
    pannello->cbAzienda->setCurrentIndex(pannello->cbAzienda->findText("Beta"));
    EXPECT_TRUE(core::session().dbArchivio);
    EXPECT_EQ(pannello->cbEsercizio->currentText().toStdString(), "Beta 2026");
    EXPECT_TRUE(pannello->mContabilita->menuAction()->isEnabled());
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "1");
}

namespace {

long Conta(store::Database& db, const std::string& sql) {
    return store::CLng(db.OpenRecordset("Select Count(*) As N from " + sql)->get("N"));
}

// The 2026 archive of company 1: three fatture (paid on the new start, paid the day after, unpaid),
// each with a line and a due date, and the journal of the year on the bank and the cash.
void RiempiArchivio2026() {
    auto& db = *core::session().dbArchivio;
    struct Fattura {
        int id;
        const char* data;
        bool pagato;
    };
    for (const Fattura& f : {Fattura{1, "#01/01/2027#", true}, Fattura{2, "#01/02/2027#", true}, Fattura{3, "#06/10/2026#", false}}) {
        const std::string id = std::to_string(f.id);
        db.Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,Pagato) VALUES (" + id + ",5," + id + "," + f.data +
                   ",1," + (f.pagato ? "True" : "False") + ")");
        db.Execute("Insert Into Movimenti (ID,Documento) VALUES (" + id + "," + id + ")");
        db.Execute("Insert Into Scadenze (ID,Documento) VALUES (" + id + "," + id + ")");
    }
    struct Riga {
        const char* data;
        double importo;
        int tipo, destinazione;
    };
    const Riga righe[] = {
        {"#03/10/2026#", 1000, 0, 0},   // bank in
        {"#05/15/2026#", 250.5, 1, 0},  // bank out
        {"#12/31/2026#", 40, 0, 0},     // the day before the new start: left out of the balance
        {"#02/01/2026#", 100, 1, 1},    // cash out: the cash opens at -100
    };
    int id = 0;
    for (const Riga& r : righe)
        db.Execute("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento) VALUES (" +
                   std::to_string(++id) + "," + r.data + ",'x'," + core::NumeroSql(r.importo) + "," +
                   std::to_string(r.tipo) + "," + std::to_string(r.destinazione) + ",0)");
}

}  // namespace

TEST(Esercizi, NuovoEsercizioRiportaISaldiEGliAperti) {
    ProgrammaDiProva p;
    PreparaPannello(p);
    core::session().NomeUtente = "admin";
    RiempiArchivio2026();
    frmMain* pannello = frmMain::istanza();

    // The open period is closed first (with the question), then the new one is described.
    p.script->rispondiSi();
    ScriviFine(p, "31/12/2026");
    const auto nuovo = [&](const std::string& nome) {
        p.script->schermo("frmArchiviEdita", [nome](QWidget* s) {
            figlio<ui::VText>(s, "VText1")->setTesto(nome);
            figlio<ui::VetraPicker>(s, "pkData")->setTesto("01/01/2027");
            clic(s, "btnConferma");
            if (s->isVisible()) clic(s, "btnAnnulla");
            return true;
        });
    };
    nuovo("Alfa 2027");
    p.script->schermo("frmLogin", [](QWidget*) {
        core::ApriLogin();
        return core::ConfermaLogin("", "");
    });
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
        EXPECT_EQ(Conta(db, std::string(tabella) + " where ID=1"), 0);
        EXPECT_EQ(Conta(db, tabella), 2);
    }
    // Bank 1000 - 250.50 = 749.50 in; cash 100 out.
    std::vector<std::string> saldi;
    for (auto rs = db.OpenRecordset("Select * from PrimaNota order by ID"); !rs->Eof(); rs->MoveNext())
        saldi.push_back(store::CStr(rs->get("Descrizione")) + " " + store::ShortDate(store::CDate(rs->get("Data"))) + " " +
                        store::CStr(rs->get("Importo")) + " " + store::CStr(rs->get("Tipo")) + store::CStr(rs->get("Destinazione")));
    EXPECT_EQ(saldi, (std::vector<std::string>{"Saldo esercizio precedente 01/01/2027 749,5 00",
                                               "Saldo esercizio precedente 01/01/2027 100 11"}));
    for (const auto& voce : fs::directory_iterator(p.dati)) EXPECT_NE(voce.path().filename().string()[0], '.');

    // A name already taken is refused and nothing is made.
    p.script->rispondiSi();
    ScriviFine(p, "31/12/2027");
    nuovo("Alfa 2027");
    p.script->dimentica();
    EXPECT_FALSE(pannello->NuovoEsercizio());
    EXPECT_EQ(testiMostrati(*p.script).back(), core::Testo("s80") + " 'Alfa 2027'");
    EXPECT_EQ(FiniDeiPeriodi().size(), 3u);
}
