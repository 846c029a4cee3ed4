// The first run, from an empty program folder to the main panel, through the configuration.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>

#include "support/avvio_prova.h"
#include "core/impostazioni.h"
#include "app/screens/frmArchiviEdita.h"
#include "app/screens/frmAziendeEdita.h"
#include "app/screens/frmConfigurazione.h"
#include "store/convert.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

long Conta(store::Database& db, const std::string& sql) { return contaRighe(db, sql); }

// Scripts the editors the configuration opens: a company, then its first period.
void ScriviAziendaEEsercizio(prova::ScriptedDialogs& script, const std::string& azienda, const std::string& esercizio,
                             const std::string& dal) {
    script.schermo("frmAziendeEdita", [azienda](QWidget* editor) {
        figlio<ui::VText>(editor, "VText1")->setTesto(azienda);
        clic(editor, "btnConferma");
        return true;
    });
    script.schermo("frmArchiviEdita", [esercizio, dal](QWidget* s) {
        figlio<ui::VText>(s, "VText1")->setTesto(esercizio);
        figlio<ui::VetraPicker>(s, "pkData")->setTesto(dal);
        clic(s, "btnConferma");
        return true;
    });
}

}  // namespace

TEST(PrimoAvvio, DallaCartellaVuotaAlPannello) {
    ProgrammaDiProva p;
    // A report layout of the installation, to be copied into each new company's folder.
    std::ofstream(p.programma / "Fattura.rpf") << "layout";
    ScriviAziendaEEsercizio(*p.script, "Studio Rossi", "Esercizio 2026", "01/01/2026");
    p.script->percorso(p.dati.string());
    p.script->schermo("frmConfigurazione", [&p](QWidget*) {
        frmConfigurazione conf;
        clic(&conf, "btnSfoglia");
        clic(&conf, "imgNew3");
        EXPECT_EQ(conf.cbAziendaClient->testo(), "Studio Rossi");
        clic(&conf, "imgNew2");
        EXPECT_EQ(conf.cbEsercizioClient->testo(), "Esercizio 2026");
        clic(&conf, "btnConferma");
        return conf.result() == QDialog::Accepted;
    });

    EXPECT_EQ(core::Main(), core::EsitoAvvio::Aperto);

    frmMain* pannello = frmMain::istanza();
    ASSERT_NE(pannello, nullptr);
    EXPECT_EQ(pannello->cbAzienda->currentText().toStdString(), "Studio Rossi");
    EXPECT_EQ(pannello->cbEsercizio->currentText().toStdString(), "Esercizio 2026");
    // The master came from the installation's empty one; the archive was made beside it.
    EXPECT_TRUE(fs::exists(p.dati / "Aziende.mdb"));
    EXPECT_TRUE(fs::exists(p.dati / "Esercizio 2026.mdb"));
    EXPECT_TRUE(fs::exists(p.dati / "Report" / "1" / "Fattura.rpf"));
    core::Session& s = core::session();
    ASSERT_TRUE(s.dbArchivio);
    EXPECT_EQ(core::LeggiIni("Azienda", "PATH"), p.dati.string());
    EXPECT_EQ(core::LeggiIni("Azienda", "ID"), "1");
    EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "1");
    // Nobody to log in: every right, and the panel's menus on.
    EXPECT_EQ(s.Privilegi, "111111111111111");
    EXPECT_TRUE(pannello->mContabilita->menuAction()->isEnabled());
    // One FormReport row per template row, under the new company.
    const long modelli = Conta(*s.dbAziende, "Select * from FormReport where Azienda=0");
    EXPECT_GT(modelli, 0);
    EXPECT_EQ(Conta(*s.dbAziende, "Select * from FormReport where Azienda=1"), modelli);
    EXPECT_EQ(Conta(*s.dbAziende,
                    "Select * from FormReport as a, FormReport as b where a.Azienda=0 and b.Azienda=1 and "
                    "a.Sezione=b.Sezione and a.Report=b.Report"),
              modelli);
    EXPECT_TRUE(p.script->messaggi().empty()) << p.script->messaggi().front().testo;
}

TEST(PrimoAvvio, ConfigurazioneAnnullataTerminaSenzaMessaggi) {
    ProgrammaDiProva p;
    p.script->schermo("frmConfigurazione", [](QWidget*) {
        frmConfigurazione conf;
        clic(&conf, "btnAnnulla");
        return false;
    });
    EXPECT_EQ(core::Main(), core::EsitoAvvio::Termina);
    EXPECT_EQ(frmMain::istanza(), nullptr);
    EXPECT_FALSE(core::session().dbAziende);
    EXPECT_TRUE(p.script->messaggi().empty());
}

TEST(PrimoAvvio, ConfermaSenzaEsercizioRestaSulloSchermo) {
    ProgrammaDiProva p;
    ScriviAziendaEEsercizio(*p.script, "Alfa", "", "");
    p.script->percorso(p.dati.string());
    frmConfigurazione conf;
    clic(&conf, "btnSfoglia");
    clic(&conf, "imgNew3");
    clic(&conf, "btnConferma");
    EXPECT_NE(conf.result(), QDialog::Accepted);
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Selezionare un esercizio!"});
}

TEST(PrimoAvvio, NuovoEsercizioRifiutaDatiErrati) {
    ProgrammaDiProva p;
    p.script->percorso(p.dati.string());
    frmConfigurazione conf;
    clic(&conf, "btnSfoglia");
    core::session().dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
    core::session().dbAziende->Execute(
        "Insert Into Esercizi (ID,Azienda,Nome,Dal,Al,File) VALUES (1,1,'Vecchio','01/01/2025','31/12/2025','x')");
    std::ofstream(p.dati / "Esiste.mdb") << "";
    struct Caso {
        std::string nome, data, atteso;
    };
    const std::vector<Caso> casi = {
        {"  ", "01/01/2026", "Inserire la descrizione o la denominazione!"},
        {"Nuovo", "31/02/2026", "La data non è valida!"},
        {"Esiste", "01/01/2026", "Esiste già un archivio con il nome 'Esiste'"},
        {"Nuovo", "31/12/2025", "La data indicata ricade nel periodo di un altro esercizio!"},
    };
    for (const Caso& c : casi) {
        p.script->dimentica();
        frmArchiviEdita s;
        s.Edita(0, true, 1, 0, false);
        s.VText1->setTesto(c.nome);
        s.pkData->setTesto(c.data);
        clic(&s, "btnConferma");
        EXPECT_NE(s.result(), QDialog::Accepted) << c.nome << " " << c.data;
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{c.atteso}) << c.nome << " " << c.data;
    }
    EXPECT_EQ(Conta(*core::session().dbAziende, "Select * from Esercizi"), 1);
}
