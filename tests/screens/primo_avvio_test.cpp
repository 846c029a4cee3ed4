// The first run, from an empty program folder to the main panel, through the configuration; and
// start-up on an archive of an older structure: the update runs before the archive is opened, the
// journal rebuild follows on an archive with payments and no journal, and cancelling ends the program.
#include <QComboBox>
#include <QMenu>
#include <QTimer>

#include "app/screens/frmArchiviEdita.h"
#include "app/screens/frmConfigurazione.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "core/impostazioni.h"
#include "store/convert.h"
#include "support/avvio_prova.h"

using namespace prova;

TEST(PrimoAvvio, DallaCartellaVuotaAlPannello) {
    ProgrammaDiProva p;
    // A report layout of the installation, to be copied into each new company's folder.
    std::ofstream(p.programma / "Fattura.rpf") << "layout";
    scriviAzienda(*p.script, "Studio Rossi");
    scriviEsercizio(*p.script, "Esercizio 2026", "01/01/2026");
    configuraNuove(*p.script, p.dati);

    EXPECT_EQ(core::Main(), core::EsitoAvvio::Aperto);

    frmMain* pannello = frmMain::istanza();
    ASSERT_NE(pannello, nullptr);
    EXPECT_EQ(pannello->cbAzienda->currentText().toStdString(), "Studio Rossi");
    EXPECT_EQ(pannello->cbEsercizio->currentText().toStdString(), "Esercizio 2026");
    // The master came from the installation's empty one; the archive was made beside it.
    for (const char* f : {"Aziende.mdb", "Esercizio 2026.mdb", "Report/1/Fattura.rpf"})
        EXPECT_TRUE(fs::exists(p.dati / f)) << f;
    core::Session& s = core::session();
    ASSERT_TRUE(s.dbArchivio);
    EXPECT_EQ(core::LeggiIni("Azienda", "PATH"), p.dati.string());
    EXPECT_EQ(core::LeggiIni("Azienda", "ID") + core::LeggiIni("Archivio", "ID"), "11");
    // Nobody to log in: every right, and the panel's menus on.
    EXPECT_EQ(s.Privilegi, "111111111111111");
    EXPECT_TRUE(pannello->mContabilita->menuAction()->isEnabled());
    // One FormReport row per template row, under the new company.
    const long modelli = contaRighe(*s.dbAziende, "Select * from FormReport where Azienda=0");
    EXPECT_GT(modelli, 0);
    EXPECT_EQ(contaRighe(*s.dbAziende, "Select * from FormReport where Azienda=1"), modelli);
    EXPECT_EQ(contaRighe(*s.dbAziende,
                         "Select * from FormReport as a, FormReport as b where a.Azienda=0 and b.Azienda=1 and "
                         "a.Sezione=b.Sezione and a.Report=b.Report"),
              modelli);
    EXPECT_TRUE(p.script->messaggi().empty()) << p.script->messaggi().front().testo;
}

// A company and no period: the confirm is refused and the screen stays; cancelled, the program ends.
TEST(PrimoAvvio, ConfermaSenzaEsercizioPoiAnnullata) {
    ProgrammaDiProva p;
    scriviAzienda(*p.script, "Alfa");
    p.script->percorso(p.dati.string());
    p.script->schermo("frmConfigurazione", [&p](QWidget*) {
        frmConfigurazione conf;
        clic(&conf, "btnSfoglia");
        clic(&conf, "imgNew3");
        clic(&conf, "btnConferma");
        EXPECT_NE(conf.result(), QDialog::Accepted);
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Selezionare un esercizio!"});
        clic(&conf, "btnAnnulla");
        return false;
    });
    EXPECT_EQ(core::Main(), core::EsitoAvvio::Termina);
    EXPECT_EQ(frmMain::istanza(), nullptr);
    EXPECT_FALSE(core::session().dbAziende);
    EXPECT_EQ(testiMostrati(*p.script).size(), 1u);
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
    // Name, start, and the refusal.
    const std::tuple<std::string, std::string, std::string> casi[] = {
        {"  ", "01/01/2026", "Inserire la descrizione o la denominazione!"},
        {"Nuovo", "31/02/2026", "La data non è valida!"},
        {"Esiste", "01/01/2026", "Esiste già un archivio con il nome 'Esiste'"},
        {"Nuovo", "31/12/2025", "La data indicata ricade nel periodo di un altro esercizio!"},
    };
    for (const auto& [nome, data, atteso] : casi) {
        p.script->dimentica();
        frmArchiviEdita s;
        s.Edita(0, true, 1, 0, false);
        s.VText1->setTesto(nome);
        s.pkData->setTesto(data);
        clic(&s, "btnConferma");
        EXPECT_NE(s.result(), QDialog::Accepted) << nome << " " << data;
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{atteso}) << nome << " " << data;
    }
    EXPECT_EQ(contaRighe(*core::session().dbAziende, "Select * from Esercizi"), 1);
}

namespace {

// Clicks a button of a screen as soon as the screen is on view (the screen runs its own modal loop).
void ClicQuandoVisibile(const QString& schermo, const char* pulsante) {
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, schermo, pulsante] {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (!w->isVisible() || w->objectName() != schermo) continue;
            timer->stop();
            timer->deleteLater();
            if (auto* b = w->findChild<QPushButton*>(pulsante)) b->click();
            return;
        }
    });
    timer->start();
}

// One company with one period whose archive an older version left: Documenti lacks Colli, there is
// one payment and no journal, and DataAggiornamento is empty. Returns the archive's path.
std::string PreparaArchivioVecchio(ProgrammaDiProva& p) {
    aziendeAlfaEBeta(p);
    auto& master = *core::session().dbAziende;
    const long es = core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
    EXPECT_TRUE(core::ConfermaConfigurazione(p.dati.string(), 1, es));
    master.Execute("Update Esercizi set DataAggiornamento=Null");
    auto rs = master.OpenRecordset("Select File from Esercizi where ID=" + std::to_string(es));
    const std::string file = store::ConcatText(rs->get("File"));
    rs->Close();
    {
        auto archivio = store::Workspace::Default().OpenDatabase(file);
        archivio->DeleteField("Documenti", "Colli");
        archivio->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente) VALUES (1,5,1,#03/10/2026#,1)");
        archivio->Execute("Insert Into Pagamenti (ID,Documento,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
                          "VALUES (1,1,1,'Saldo fattura 1',#03/20/2026#,61)");
        archivio->Close();
    }
    core::session().dbArchivio.reset();
    core::session().dbAziende.reset();
    return file;
}

}  // namespace

TEST(AggiornamentoAvvio, ArchivioVecchioAggiornatoPrimaDelPannello) {
    ProgrammaDiProva p;
    const std::string file = PreparaArchivioVecchio(p);
    p.script->lasciaAprire("frmAggiorna");  // the real screens, driven by their buttons
    // The registry's factory, then the screen it builds, shown modally in its turn.
    p.script->lasciaAprire("frmAggiornaPrimaNota");
    p.script->lasciaAprire("frmAggiornaPrimaNota");
    ClicQuandoVisibile("frmAggiorna", "btnAggiorna");
    ClicQuandoVisibile("frmAggiornaPrimaNota", "btnAggiorna");

    ASSERT_EQ(core::Main(), core::EsitoAvvio::Aperto);
    EXPECT_NE(frmMain::istanza(), nullptr);
    EXPECT_EQ(p.script->schermiMostrati(),
              (std::vector<std::string>{"frmAggiorna", "frmAggiornaPrimaNota", "frmAggiornaPrimaNota"}));
    EXPECT_TRUE(testiMostrati(*p.script).empty()) << ::testing::PrintToString(testiMostrati(*p.script));

    // The archive the session opened has the model's structure, and the next start needs no update.
    auto& archivio = *core::session().dbArchivio;
    EXPECT_NO_THROW(archivio.OpenRecordset("Select Colli from Documenti"));
    EXPECT_TRUE(core::ArchivioAggiornato(file));
    EXPECT_EQ(contaRighe(archivio, "Select * from PrimaNota"), 1);
    EXPECT_EQ(contaRighe(archivio, "Select * from PrimaNota where Descrizione='Saldo fattura 1' and Importo=61 and Tipo=0"), 1);
}

// Start-up ends without the panel when the update is cancelled, the archive left as it was; or when
// a second period's file has gone: the run goes through both, brings the readable one up to date,
// then warns.
TEST(AggiornamentoAvvio, AnnullatoOArchivioIllegibileChiude) {
    for (const bool annullato : {true, false}) {
        SCOPED_TRACE(annullato);
        ProgrammaDiProva p;
        const std::string file = PreparaArchivioVecchio(p);
        const std::string assente = (p.dati / "Perso.mdb").string();
        if (!annullato) {
            auto master = store::Workspace::Default().OpenDatabase((p.dati / "Aziende.mdb").string());
            master->Execute("Insert Into Esercizi (ID,Azienda,Nome,File) VALUES (99,1,'Perso','" + assente + "')");
            master->Close();
        }
        p.script->lasciaAprire("frmAggiorna");
        ClicQuandoVisibile("frmAggiorna", annullato ? "btnAnnulla" : "btnAggiorna");

        EXPECT_EQ(core::Main(), core::EsitoAvvio::Termina);
        EXPECT_EQ(frmMain::istanza(), nullptr);
        EXPECT_EQ(core::session().dbArchivio, nullptr);
        EXPECT_EQ(core::ArchivioAggiornato(file), !annullato);
        if (annullato) {
            EXPECT_TRUE(testiMostrati(*p.script).empty());
            auto vecchio = store::Workspace::Default().OpenDatabase(file);
            EXPECT_ANY_THROW(vecchio->OpenRecordset("Select Colli from Documenti"));
        } else {
            EXPECT_EQ(testiMostrati(*p.script),
                      std::vector<std::string>{"Impossibile aggiornare l'archivio " + assente +
                                               ". Il programma verrà chiuso: verificare l'archivio e riavviare."});
        }
    }
}
