// Users and rights: the first user must hold every right, a restart asks for a login, a wrong
// password is refused, a missing right refuses the command.
#include <QAction>
#include <QLineEdit>
#include <QListWidget>

#include "support/avvio_prova.h"
#include "core/aziende.h"
#include "core/diritti.h"
#include "core/esercizi.h"
#include "core/ini.h"
#include "core/login.h"
#include "core/pannello.h"
#include "app/screens/frmLogin.h"
#include "app/screens/frmUtentiEdita.h"
#include "store/convert.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"

using namespace prova;

namespace {

// A data folder with company 1 "Alfa" (current) and its period, company 2 "Beta", in the settings.
void PreparaDati(ProgrammaDiProva& p) {
    aziendeAlfaEBeta(p);
    const long es = core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
    ASSERT_TRUE(core::ConfermaConfigurazione(p.dati.string(), 1, es));
}

// Adds a user through the editor, as the register's New does, with the first rights ticked; the
// messages it showed.
std::vector<std::string> NuovoUtente(ProgrammaDiProva& p, long azienda, const std::string& nome,
                                     const std::string& password, int spunte) {
    p.script->dimentica();
    frmUtentiEdita e;
    e.EditaRecordset(0, true);
    e.cbAzienda->setValore(store::Value::Long(azienda));
    e.VText1->setTesto(nome);
    e.VText2->setTesto(password);
    for (int i = 0; i < e.ListPrivilegi->count(); ++i)
        e.ListPrivilegi->item(i)->setCheckState(i < spunte ? Qt::Checked : Qt::Unchecked);
    clic(&e, "btnConferma");
    return testiMostrati(*p.script);
}

// Scripts the login screen: each pair is tried in turn until the screen closes.
void ScriviLogin(ProgrammaDiProva& p, std::vector<std::pair<std::string, std::string>> tentativi) {
    p.script->schermo("frmLogin", [tentativi](QWidget*) {
        frmLogin l;
        for (const auto& [nome, password] : tentativi) {
            l.txtUser->setText(QString::fromStdString(nome));
            l.txtPass->setText(QString::fromStdString(password));
            clic(&l, "btnConferma");
            if (l.result() == QDialog::Accepted) return true;
        }
        clic(&l, "btnAnnulla");
        return false;
    });
}

}  // namespace

TEST(Utenti, ControlliDellEditorPoiRiavvioConLoginEDirittoNegato) {
    ProgrammaDiProva p;
    PreparaDati(p);
    struct Caso {
        long azienda;
        std::string nome, password;
        int spunte;
        std::string atteso;
    };
    const std::vector<Caso> casi = {
        {0, "mario", "pw", 14, "Selezionare l'azienda!"},
        {1, "  ", "pw", 14, "Inserire il nome utente!"},
        {1, "mario", "pw", 13, "Il primo utente dell'azienda deve avere tutti i privilegi!"},
        {1, "mario", "pw'1", 14, ""},
        {1, "MARIO", "altro", 3, "Esiste già un utente con questo nome per l'azienda selezionata!"},
        {1, "anna", "segreta", 1, ""},       // not the first user: any rights will do
        {2, "anna", "diversa", 14, ""},      // the same name in another company
    };
    for (const Caso& c : casi) {
        const auto mostrati = NuovoUtente(p, c.azienda, c.nome, c.password, c.spunte);
        EXPECT_EQ(mostrati, c.atteso.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.atteso})
            << c.nome << " " << c.spunte;
    }

    // Restart: the company has users, so the login is asked; a wrong password stays on the screen.
    ProgrammaDiProva::chiudiFinestre();
    ProgrammaDiProva::pulisciSessione();
    p.script->dimentica();
    ScriviLogin(p, {{"mario", "sbagliata"}, {"  ", "  "}, {"Mario", "pw'1"}});
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    EXPECT_EQ(testiMostrati(*p.script),
              (std::vector<std::string>{"Nome utente o Password non corretti!", "Nome utente o Password non corretti!"}));
    core::Session& s = core::session();
    EXPECT_EQ(s.NomeUtente, "mario");   // the stored name, whatever case was typed
    EXPECT_EQ(s.Privilegi, "11111111111111");
    EXPECT_EQ(core::LeggiIni("Login", "Username"), "Mario");
    ASSERT_NE(frmMain::istanza(), nullptr);
    EXPECT_EQ(frmMain::istanza()->txtUtente->text().toStdString(), "mario");

    // Another restart as anna: only the login of this company counts, and she may see the users.
    ProgrammaDiProva::chiudiFinestre();
    ProgrammaDiProva::pulisciSessione();
    p.script->dimentica();
    ScriviLogin(p, {{"anna", "diversa"}, {"anna", "segreta"}});
    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Nome utente o Password non corretti!"});
    EXPECT_EQ(s.Privilegi, "10000000000000");
    frmMain::istanza()->azione("mUtenti")->trigger();
    int registri = 0;
    for (QWidget* w : QApplication::topLevelWidgets()) registri += w->isVisible() && w->objectName() == "frmUtenti";
    EXPECT_EQ(registri, 1);

    int aperti = 0;
    core::registraSchermo("frmDocumenti", [&aperti] { ++aperti; return true; });
    p.script->dimentica();
    EXPECT_FALSE(core::EseguiComando(*core::CercaComando("mFatture")));
    EXPECT_EQ(aperti, 0);
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{s.MsgNegato});
}

TEST(Utenti, LinguaSceltaDalLogin) {
    ProgrammaDiProva p;
    PreparaDati(p);
    // A second language file whose s67 (the confirm caption) differs.
    fs::copy_file(p.programma / "Italiano.lng", p.programma / "Prova.lng");
    core::ScriviValoreIni((p.programma / "Prova.lng").string(), "Stringhe", "s67", "Entra");
    p.script->percorso((p.programma / "Prova.lng").string());
    frmLogin l;
    clic(&l, "btnLingua");
    EXPECT_EQ(l.btnConferma->text().toStdString(), "Entra");
    EXPECT_EQ(core::LeggiLingua("Parametri", "File"), (p.programma / "Prova.lng").string());
}
