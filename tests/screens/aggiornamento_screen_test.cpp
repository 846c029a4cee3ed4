// Start-up on an archive of an older structure: the update runs before the archive is opened, the
// journal rebuild follows on an archive with payments and no journal, and cancelling ends the program.
#include <QTimer>

#include "support/avvio_prova.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "store/convert.h"

using namespace prova;

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
    core::ScegliCartellaDati(p.dati.string());
    auto& master = *core::session().dbAziende;
    master.Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
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

bool HaCampo(store::Database& db, const std::string& tabella, const std::string& campo) {
    const auto def = db.GetTableDef(tabella);
    for (const auto& f : def->Fields)
        if (f.Name == campo) return true;
    return false;
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
    EXPECT_TRUE(HaCampo(archivio, "Documenti", "Colli"));
    EXPECT_TRUE(core::ArchivioAggiornato(file));
    EXPECT_EQ(contaRighe(archivio, "Select * from PrimaNota"), 1);
    EXPECT_EQ(contaRighe(archivio, "Select * from PrimaNota where Descrizione='Saldo fattura 1' and Importo=61 and Tipo=0"), 1);
}

TEST(AggiornamentoAvvio, AnnullareChiudeIlProgramma) {
    ProgrammaDiProva p;
    const std::string file = PreparaArchivioVecchio(p);
    p.script->lasciaAprire("frmAggiorna");
    ClicQuandoVisibile("frmAggiorna", "btnAnnulla");

    EXPECT_EQ(core::Main(), core::EsitoAvvio::Termina);
    EXPECT_EQ(frmMain::istanza(), nullptr);
    EXPECT_EQ(core::session().dbArchivio, nullptr);
    EXPECT_FALSE(core::ArchivioAggiornato(file));
    auto archivio = store::Workspace::Default().OpenDatabase(file);
    EXPECT_FALSE(HaCampo(*archivio, "Documenti", "Colli"));
}

TEST(AggiornamentoAvvio, ArchivioIllegibileAvvisaEChiude) {
    ProgrammaDiProva p;
    const std::string file = PreparaArchivioVecchio(p);
    // A second period whose file has gone: the run goes through both, then warns and ends.
    const std::string assente = (p.dati / "Perso.mdb").string();
    auto master = store::Workspace::Default().OpenDatabase((p.dati / "Aziende.mdb").string());
    master->Execute("Insert Into Esercizi (ID,Azienda,Nome,File) VALUES (99,1,'Perso','" + assente + "')");
    master->Close();
    p.script->lasciaAprire("frmAggiorna");
    ClicQuandoVisibile("frmAggiorna", "btnAggiorna");

    EXPECT_EQ(core::Main(), core::EsitoAvvio::Termina);
    EXPECT_EQ(frmMain::istanza(), nullptr);
    ASSERT_EQ(p.script->messaggi().size(), 1u);
    EXPECT_EQ(p.script->messaggi()[0].testo, "Impossibile aggiornare l'archivio " + assente + ". Il programma verrà chiuso: verificare l'archivio e riavviare.");
    // The readable archive was brought up to date all the same.
    EXPECT_TRUE(core::ArchivioAggiornato(file));
}
