// Every register the program registers, walked through the same contract as a user would: it opens
// and lists its source, searches within its own filter, refuses each guarded command with the
// standard message and changes nothing, adds, changes and deletes a record through its editor, and
// shows the result when the editor returns.
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

#include "app/screens/Registra.h"
#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/documenti.h"
#include "store/convert.h"
#include "support/acquisti_prova.h"
#include "sales/totali.h"
#include "ui/Dettaglio.h"
#include "ui/RegistroBase.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

class Contratto : public Acquisti {
protected:
    void SetUp() override {
        Acquisti::SetUp();
        core::session().dbAziende->Execute("Insert Into Aziende (ID,Denominazione,Citta) VALUES (2,'Beta','Milano')");
        auto& s = core::session();
        s.dbArchivio->Execute("Insert Into CondizioniPagamento (ID,DescPagamento,Rate) VALUES (1,'Rimessa diretta',0)");
        s.dbArchivio->Execute("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi Srl')");
        s.dbArchivio->Execute("Insert Into [Note] (ID,Descrizione,Predefinita) VALUES (1,'Contatti',True)");
        s.dbArchivio->Execute("Insert Into NoteCampi (ID,[Note],NomeCampo,Dimensione) VALUES (1,1,'Nome',40)");
        s.dbArchivio->Execute("Insert Into NoteCampi (ID,[Note],NomeCampo,Dimensione) VALUES (2,1,'Telefono',0)");
        s.dbArchivio->Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) VALUES (1,1,1,'Bianchi',1)");
        // The scratch file and the towns' file, as start-up opens them beside the archive.
        s.dbTemp = store::Workspace::Default().OpenDatabase((p.programma / "temp.mdb").string());
        s.dbUtilita = store::Workspace::Default().OpenDatabase((p.programma / "Utilità.mdb").string());
        s.dbUtilita->Execute("Delete from Comuni where Provincia<>'PD'");   // a list short enough to show whole
    }

    // The editor's script: every empty text box gets a value of its kind, the first one the text
    // given, then confirm.
    void compila(const std::string& editor, const QString& testo) {
        p.script->schermo(editor, [this, testo](QWidget* e) {
            if (!e) return false;
            bool primo = true;
            for (auto* box : e->findChildren<ui::VText*>()) {
                if (box->dataField().empty() || !box->isEnabled()) continue;
                if (primo) {
                    // A number when the first box takes only numbers (a document's): each change its own.
                    box->setText(box->numerico() ? QString::number(++cambi_) : testo);
                    campoCambiato_ = box->dataField();
                    testoCambiato_ = box->text().toStdString();
                } else if (box->text().isEmpty()) box->setText(box->numerico() ? "1" : "Prova");
                primo = false;
            }
            // A bound date left empty (an instalment's due date) gets a day of the period.
            for (auto* pk : e->findChildren<ui::VetraPicker*>())
                if (!pk->dataField().empty() && pk->isEnabled() && pk->vuoto()) pk->setTesto("16/03/2026");
            // A linked record that must be chosen (a document's customer) gets the first of its list.
            for (auto* cb : e->findChildren<ui::VetraCombo*>())
                if (!cb->aperta() && cb->isEnabled() && cb->currentIndex() < 0 && cb->count() > 0) cb->setCurrentIndex(0);
            clic(e, "btnConferma");
            return true;
        });
    }

    int cambi_ = 0;
    std::string campoCambiato_, testoCambiato_;
};

TEST_F(Contratto, OgniRegistroRegistrato) {
    const std::vector<std::string> attesi = {
        "frmAziende",   "frmCertificazioniAcconto", "frmClassificazioniSpese", "frmClienti",   "frmCodiciIva",
        "frmComuni",    "frmCondizioniPagamento",   "frmDocumenti",            "frmFornitori", "frmNote",
        "frmPagamenti", "frmPrimaNota",             "frmScadenze",             "frmServizi",   "frmSpese",
        "frmTipiSpesa", "frmUtenti"};
    std::vector<std::string> registrati;
    for (const auto& [nome, fabbrica] : RegistriNoti()) registrati.push_back(nome);
    EXPECT_EQ(registrati, attesi);

    for (const auto& [nome, fabbrica] : RegistriNoti()) {
        SCOPED_TRACE(nome);
        core::session().Privilegi = std::string(14, '1');
        // A new instalment needs a fattura with something left to schedule.
        if (nome == "frmScadenze")
            core::ArchivioAperto()->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,Fornitore,ImportoTotale) "
                                            "VALUES (900,5,900,#3/2/2026#,1,1,100)");
        std::unique_ptr<RegistroBase> r = fabbrica();
        const RegistroBase::Definizione& d = r->definizione();
        const store::DatabasePtr db = d.database ? d.database : core::ArchivioAperto();
        ui::VetraGrid* grid = r->griglia();

        EXPECT_EQ(grid->righeMostrate(), contaRighe(*db, d.sorgente));

        // The search goes into the source's own filter, on the field chosen by its caption.
        ASSERT_FALSE(d.ricerca.empty());
        figlio<QComboBox>(r.get(), "cbCerca")->setCurrentIndex(0);
        figlio<QLineEdit>(r.get(), "txtCerca")->setText("a'");
        clic(r.get(), "btnCerca");
        EXPECT_EQ(grid->sorgente(), core::AggiungiCondizione(d.sorgente, d.ricerca[0] + " Like '*a''*'"));
        EXPECT_EQ(grid->righeMostrate(), 0);
        figlio<QLineEdit>(r.get(), "txtCerca")->clear();
        clic(r.get(), "btnCerca");
        // A register of rows that belong to another's editor (the certificates' documents) ends here,
        // and so does the payments' one: its editor needs a counterpart with something left to pay,
        // which its own tests give it.
        if (!d.editor || nome == "frmPagamenti") continue;
        // An editor that another screen set brings, not in this build: the register is walked once it is.
        std::unique_ptr<EditorBase> editor;
        try {
            editor = d.editor(nullptr);
        } catch (const store::JetError&) {
            continue;
        }
        const std::string editore = editor->objectName().toStdString();
        const std::string tabella = editor->tabella();
        const long prima = contaRighe(*db, "Select * from " + tabella);

        // New through the editor: the row is written with the next id and shown current.
        p.script->dimentica();
        compila(editore, "Voce di prova");
        clic(r.get(), "btnNuovo");
        ASSERT_EQ(contaRighe(*db, "Select * from " + tabella), prima + 1);
        const long nuovo = grid->idCorrente();
        EXPECT_EQ(contaRighe(*db, "Select * from " + tabella + " where ID=" + std::to_string(nuovo)), 1);

        // Change through the editor, on the current row; the list shows the change on return.
        compila(editore, "Voce cambiata");
        QTest::keyClick(grid, Qt::Key_Return);
        EXPECT_EQ(grid->idCorrente(), nuovo);
        // The field may join more than the box wrote, as a name on two lines does: it begins with it.
        EXPECT_EQ(store::ConcatText(grid->valore(campoCambiato_)).rfind(testoCambiato_, 0), 0u);

        // Each guarded command, without its right: the standard refusal, nothing shown, nothing changed.
        const std::pair<const char*, int> guardati[] = {
            {"btnNuovo", d.diritti.nuovo}, {"btnModifica", d.diritti.modifica}, {"btnElimina", d.diritti.elimina}};
        for (const auto& [pulsante, posizione] : guardati) {
            if (posizione == 0) continue;
            SCOPED_TRACE(pulsante);
            senzaDiritto(posizione);
            p.script->dimentica();
            p.script->rispondiSi();
            clic(r.get(), pulsante);
            EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{kNegato});
            EXPECT_TRUE(p.script->schermiMostrati().empty());
            EXPECT_EQ(contaRighe(*db, "Select * from " + tabella), prima + 1);
        }
        core::session().Privilegi = std::string(14, '1');

        // Delete, every question answered Yes: the row goes, from the file and from the list.
        grid->vaiAId(nuovo);
        for (int i = 0; i < 3; ++i) p.script->rispondiSi();
        clic(r.get(), "btnElimina");
        EXPECT_EQ(contaRighe(*db, "Select * from " + tabella), prima);
        EXPECT_NE(grid->idCorrente(), nuovo);
    }
}

// A register's own right to be seen: opened from the registry without it, nothing opens.
TEST_F(Contratto, RegistroSenzaDirittoDiVedereNonSiApre) {
    core::session().Privilegi = "0" + std::string(13, '1');
    core::MostraPannello("frmUtenti");
    for (QWidget* w : QApplication::topLevelWidgets()) EXPECT_FALSE(w->objectName() == "frmUtenti" && w->isVisible());
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{kNegato});
}

// A master record with its lines, as the document editor is made: the lines in their own list with
// their own commands and rights, a new master saved before its first line, and the master's totals
// brought up to date after each saved or deleted line.
const core::TabellaCampi& CampiRighe() {
    static const core::TabellaCampi t{{"DescMovimento", "s77", 3000},
                                      {"Importo", "Importo", 1200, "#,0.00", core::Allineamento::Destra}};
    return t;
}

class EditorRiga : public EditorBase {
public:
    explicit EditorRiga(QWidget* parent) : EditorBase("frmProvaRiga", "Movimenti", "Riga", parent) {
        for (const char* campo : {"DescMovimento", "Importo"}) {
            auto* box = new ui::VText(this);
            box->setObjectName(campo);
            box->setNumerico(std::string(campo) == "Importo");
            aggiungiCampo(CampiRighe()[campo], box);
        }
    }
    bool Valida() override { return true; }
    void PrimaDiAggiornare(store::Recordset& rs) override { rs.set("Iva", store::Value::Long(1)); }
};

class EditorDocumento : public EditorBase {
public:
    EditorDocumento() : EditorBase("frmProvaDocumento", "Documenti", "Documento") {
        txtNum = new ui::VText(this);
        txtNum->setObjectName("txtNum");
        txtNum->setDataField("Numero");
        txtNum->setNumerico(true);
        aggiungiCampo("Numero", txtNum);
        ui::DefinizioneDettaglio d;
        d.nome = "GridMov";
        d.righe = [](long id) { return "Select * from Movimenti where Documento=" + std::to_string(id); };
        d.vuota = "Select * from Movimenti where ID<0";
        d.campoPadre = "Documento";
        d.ordinamento = "ID";
        d.campi = &CampiRighe();
        d.colonne = {"DescMovimento", "Importo"};
        d.diritti = {core::DocumentiVedere, core::DocumentiModificare, core::DocumentiModificare,
                     core::DocumentiModificare};
        d.editor = [](QWidget* parent) { return std::make_unique<EditorRiga>(parent); };
        d.domandaElimina = [](store::Recordset& rs) { return "Eliminare " + store::ConcatText(rs.get("DescMovimento")) + "?"; };
        righe = aggiungiDettaglio(d);
        campi()->addRow(righe);
    }
    bool Valida() override { return true; }
    void PrimaDiAggiornare(store::Recordset& rs) override { rs.set("Tipo", store::Value::Long(core::TipoFatturaEmessa)); }
    void DopoRigheCambiate() override {
        sales::CalcolaTotaliDocumento(id());
        ++ricalcoli;
    }

    ui::VText* txtNum;
    ui::Dettaglio* righe;
    int ricalcoli = 0;
};

TEST_F(Contratto, RigheDiUnDocumentoAggiornanoISuoiTotali) {
    auto db = core::ArchivioAperto();
    auto totale = [&](long id) {
        return store::CDbl(db->OpenRecordset("Select ImportoTotale from Documenti where ID=" + std::to_string(id))->get("ImportoTotale"));
    };
    auto riga = [&](const QString& desc, const QString& importo) {
        confermaCon<QWidget>(*p.script, [=](QWidget* e) {
            figlio<ui::VText>(e, "DescMovimento")->setText(desc);
            figlio<ui::VText>(e, "Importo")->setText(importo);
        }, "frmProvaRiga");
    };
    EditorDocumento e;
    e.Prepara({Modalita::Nuovo});
    e.txtNum->setText("7");
    EXPECT_EQ(e.righe->griglia()->righeMostrate(), 0);

    // The first line of a new document: the document is saved first, then the line belongs to it.
    riga("Consulenza", "100");
    clic(&e, "btnNuovoDettaglio");
    ASSERT_EQ(e.id(), 1);
    EXPECT_EQ(contaRighe(*db, "Select * from Documenti where ID=1 and Numero=7 and Tipo=5"), 1);
    EXPECT_EQ(contaRighe(*db, "Select * from Movimenti where Documento=1 and DescMovimento='Consulenza'"), 1);
    EXPECT_EQ(e.righe->griglia()->righeMostrate(), 1);
    EXPECT_DOUBLE_EQ(totale(1), 122);   // 100 plus VAT at 22%
    EXPECT_EQ(e.windowTitle().toStdString(), "Documento - Modifica");

    riga("Trasferta", "50,5");
    clic(&e, "btnNuovoDettaglio");
    EXPECT_EQ(e.righe->griglia()->righeMostrate(), 2);
    EXPECT_DOUBLE_EQ(totale(1), 183.61);   // 150.50 plus 33.11 VAT

    // A line changed, then deleted: each time the totals follow.
    riga("Trasferta", "10");
    QTest::keyClick(e.righe->griglia(), Qt::Key_Return);
    EXPECT_DOUBLE_EQ(totale(1), 134.2);
    p.script->rispondiSi();
    QTest::keyClick(e.righe->griglia(), Qt::Key_Delete);
    EXPECT_EQ(contaRighe(*db, "Select * from Movimenti where Documento=1"), 1);
    EXPECT_DOUBLE_EQ(totale(1), 122);
    EXPECT_EQ(e.ricalcoli, 4);

    // Without the right to change documents the lines refuse, and nothing moves.
    core::session().Privilegi = "111" + std::string("0") + std::string(10, '1');
    p.script->dimentica();
    clic(&e, "btnNuovoDettaglio");
    clic(&e, "btnEliminaDettaglio");
    EXPECT_EQ(testiMostrati(*p.script), (std::vector<std::string>{kNegato, kNegato}));
    EXPECT_EQ(contaRighe(*db, "Select * from Movimenti"), 1);
    EXPECT_EQ(e.ricalcoli, 4);

    // Without the right to see them, the lines show nothing.
    core::session().Privilegi = "11" + std::string(12, '0');
    e.righe->Carica(1);
    EXPECT_EQ(e.righe->griglia()->righeMostrate(), 0);
}

// The user's search goes into the statement's own filter, before its grouping and order.
TEST(CondizioneAggiunta, NelFiltroDellaSorgente) {
    const std::pair<const char*, const char*> casi[] = {
        {"Select * from CodiciIva", "Select * from CodiciIva where X Like '*a*'"},
        {"Select * from qrDocumenti where Tipo=5", "Select * from qrDocumenti where (Tipo=5) and X Like '*a*'"},
        {"Select * from qrSpese WHERE Tipo=1 or Tipo=2 Order By Data",
         "Select * from qrSpese WHERE (Tipo=1 or Tipo=2) and X Like '*a*' Order By Data"},
        {"Select Cliente from Documenti Group By Cliente", "Select Cliente from Documenti where X Like '*a*' Group By Cliente"},
        // A "where" in a subquery or a text is not the statement's own.
        {"Select * from (Select * from T where A=1) as Q", "Select * from (Select * from T where A=1) as Q where X Like '*a*'"},
        {"Select * from T where N='x where y'", "Select * from T where (N='x where y') and X Like '*a*'"},
    };
    for (const auto& [sorgente, atteso] : casi)
        EXPECT_EQ(RegistroBase::IstruzioneRicerca(sorgente, "X", "a"), atteso) << sorgente;
}

}  // namespace
