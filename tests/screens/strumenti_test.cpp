// The tools of a working day on the real screens: user notes with their categories and fields,
// the towns of the shipped Utilità.mdb offered in the address boxes, the towns' editor, and the
// calculator's keyboard.
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "app/screens/frmAziendeEdita.h"
#include "core/comuni.h"
#include "sales/screens/frmClienti.h"
#include "store/convert.h"
#include "support/avvio_prova.h"
#include "tools/note.h"
#include "tools/screens/frmCalcolatrice.h"
#include "tools/screens/frmComuni.h"
#include "tools/screens/frmNote.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

using namespace prova;

namespace {

class Strumenti : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        auto& s = core::session();
        s.dbTemp = store::Workspace::Default().OpenDatabase((p.programma / "temp.mdb").string());
        s.dbUtilita = store::Workspace::Default().OpenDatabase((p.programma / "Utilità.mdb").string());
    }

    std::string valore(store::Database& db, const std::string& sql) {
        auto rs = db.OpenRecordset(sql);
        return rs->Eof() ? "(nessuna riga)" : store::ConcatText(rs->Fields(0).value());
    }

    // A category "Contatti" with a short field and one with no limit, and two records.
    void categoriaContatti() {
        auto& a = *core::session().dbArchivio;
        a.Execute("Insert Into [Note] (ID,Descrizione,Predefinita) Values (1,'Fornitori storici',False)");
        a.Execute("Insert Into [Note] (ID,Descrizione,Predefinita) Values (2,'Contatti',True)");
        a.Execute("Insert Into NoteCampi (ID,[Note],NomeCampo,Dimensione) Values (1,2,'Nome',20)");
        a.Execute("Insert Into NoteCampi (ID,[Note],NomeCampo,Dimensione) Values (2,2,'Annotazioni',0)");
        a.Execute("Insert Into NoteCampi (ID,[Note],NomeCampo,Dimensione) Values (3,1,'Ditta',40)");
        a.Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) Values (1,2,1,'Bianchi',4)");
        a.Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) Values (2,2,2,'Chiamare il lunedì',4)");
        a.Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) Values (3,2,1,'D''Amico',5)");
        a.Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) Values (4,1,3,'Ferramenta Neri',9)");
    }
};

// ---- notes ----------------------------------------------------------------------------------------

TEST_F(Strumenti, NoteSenzaCategorieNonApronoSchede) {
    frmNote f;
    clic(&f, "btnNuovo");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Creare o selezionare una categoria!"});
    EXPECT_TRUE(p.script->schermiMostrati().empty());
}

TEST_F(Strumenti, Schede) {
    categoriaContatti();
    auto& a = *core::session().dbArchivio;
    frmNote f;
    ui::VetraGrid* g = f.griglia();

    // New: the record takes the next number across all categories (9 is another category's).
    confermaCon<frmNoteDettagliEdita>(*p.script, [](frmNoteDettagliEdita* e) {
        figlio<ui::VText>(e, "txtCampo1")->setText("Verdi");
        figlio<QPlainTextEdit>(e, "txtCampoMemo2")->setPlainText("Fornitore d'ufficio");
    });
    clic(&f, "btnNuovo");
    EXPECT_EQ(conta("Select * from NoteDettagli where Record=10 and [Note]=2"), 2);
    EXPECT_EQ(valore(a, "Select Valore from NoteDettagli where Record=10 and Campo=2"), "Fornitore d'ufficio");
    EXPECT_EQ(g->righeMostrate(), 3);
    EXPECT_EQ(store::ConcatText(g->valore("Nome")), "Verdi");   // shown current

    // Changed: a record made before its second field gets that value added, the other changed.
    g->vaiAId(5);
    confermaCon<frmNoteDettagliEdita>(*p.script, [](frmNoteDettagliEdita* e) {
        EXPECT_EQ(figlio<ui::VText>(e, "txtCampo1")->text().toStdString(), "D'Amico");
        EXPECT_EQ(figlio<ui::VText>(e, "txtCampo1")->maxLength(), 20);
        figlio<ui::VText>(e, "txtCampo1")->setText("D'Amico Srl");
        figlio<QPlainTextEdit>(e, "txtCampoMemo2")->setPlainText("Nuovo");
    });
    clic(&f, "btnModifica");
    EXPECT_EQ(conta("Select * from NoteDettagli where Record=5 and ((Campo=1 and Valore='D''Amico Srl') or "
                            "(Campo=2 and Valore='Nuovo'))"), 2);
    EXPECT_EQ(g->idCorrente(), 5);

    p.script->dimentica();
    p.script->rispondiSi();
    clic(&f, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Eliminare la scheda selezionata?"});
    EXPECT_EQ(conta("Select * from NoteDettagli where Record=5"), 0);
    EXPECT_EQ(g->righeMostrate(), 2);
    EXPECT_EQ(conta("Select * from NoteDettagli"), 5);

    // Values are written only for the category's own fields and within their size; a refusal
    // writes nothing at all.
    const struct {
        tools::ValoriScheda valori;
        const char* messaggio;
    } casi[] = {
        {{{1, "Rossi"}, {3, "Ferramenta"}}, "Il campo 3 non appartiene alla categoria: la scheda non è stata salvata."},
        {{{1, "Un nome ben più lungo di venti"}}, "Il campo Nome ammette al massimo 20 caratteri."},
        {{{1, "Ventì caratteri giùù"}, {2, std::string(5000, 'x')}}, ""},
    };
    for (const auto& c : casi) {
        EXPECT_EQ(tools::ControllaScheda(a, 2, c.valori), c.messaggio);
        if (*c.messaggio == 0) continue;
        const long prima = conta("Select * from NoteDettagli");
        EXPECT_THROW(tools::SalvaScheda(a, 2, 4, c.valori), store::JetError);
        EXPECT_EQ(conta("Select * from NoteDettagli"), prima);
        EXPECT_EQ(valore(a, "Select Valore from NoteDettagli where Record=4 and Campo=1"), "Bianchi");
    }
}

TEST_F(Strumenti, CategoriaConISuoiCampi) {
    categoriaContatti();
    auto& a = *core::session().dbArchivio;
    frmNote f;

    // A new category, made default, with a field: the category is saved before its first field.
    p.script->schermo("frmNoteEdita", [this](QWidget* e) {
        figlio<ui::VText>(e, "VText1")->setText("Auto aziendali");
        figlio<QCheckBox>(e, "chkPredefinita")->setChecked(true);
        confermaCon<frmCampiEdita>(*p.script, [](frmCampiEdita* c) {
            c->VText1->setText("Targa");
            c->VText2->setText("10");
        });
        clic(e, "btnNuovoDettaglio");
        clic(e, "btnConferma");
        return true;
    });
    clic(&f, "imgNew");
    EXPECT_EQ(valore(a, "Select Descrizione from [Note] where Predefinita=True"), "Auto aziendali");
    EXPECT_EQ(conta("Select * from [Note] where Predefinita=True"), 1);
    EXPECT_EQ(conta("Select * from NoteCampi where [Note]=3 and NomeCampo='Targa' and Dimensione=10"), 1);
    EXPECT_EQ(f.cbCat->currentText().toStdString(), "Auto aziendali");
    EXPECT_EQ(f.cbCat->itemText(0).toStdString(), "Auto aziendali");

    // Field 1 of Contatti changed: each check of the field editor, then a size grown.
    const struct {
        const char* nome;
        const char* dimensione;
        std::vector<std::string> messaggi;
    } campi[] = {
        {"", "20", {"Inserire il nome del campo!"}},
        {"id", "20", {"Il nome ID è riservato: sceglierne un altro."}},
        {"annotazioni", "20", {"Esiste già un campo annotazioni in questa categoria!"}},
        {"Nome", "10", {"Impossibile inserire una dimensione inferiore a quella precedente !"}},
        {"Nome", "0", {}},
    };
    for (const auto& c : campi) {
        p.script->dimentica();
        frmCampiEdita x;
        x.Prepara({Modalita::Modifica, 1});
        x.VText1->setText(c.nome);
        x.VText2->setText(c.dimensione);
        x.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi) << c.nome << " " << c.dimensione;
    }
    EXPECT_EQ(valore(a, "Select Dimensione from NoteCampi where ID=1"), "0");
    // Once with no limit, any size is smaller.
    EXPECT_EQ(tools::ControllaCampo(a, 2, 1, "Nome", 500),
              "Impossibile inserire una dimensione inferiore a quella precedente !");

    // Contatti goes after both questions, with its fields and records.
    f.cbCat->setCurrentIndex(f.cbCat->findText("Contatti"));
    f.MostraCategoria();
    p.script->dimentica();
    p.script->rispondiSi();
    p.script->rispondiNo();
    clic(&f, "Image1");
    EXPECT_EQ(conta("Select * from [Note] where ID=2"), 1);
    p.script->rispondiSi();
    p.script->rispondiSi();
    clic(&f, "Image1");
    EXPECT_EQ(conta("Select * from [Note] where ID=2"), 0);
    EXPECT_EQ(conta("Select * from NoteCampi where [Note]=2"), 0);
    EXPECT_EQ(conta("Select * from NoteDettagli"), 1);   // the other category's
    EXPECT_EQ(f.cbCat->count(), 2);
}

// ---- towns --------------------------------------------------------------------------------------

TEST_F(Strumenti, ComuniDellInstallazione) {
    const struct {
        const char* testo;
        std::size_t quanti;
        const char* primo;   // "Comune Cap Provincia" of the first offered
    } casi[] = {
        {"Castro", 14, "Castro 24063 BG"},   // Castro of Bergamo, then of Lecce
        {"Borgo d'A", 3, "Borgo d'Ale 13040 VC"},
        {"Milano*", 0, ""},
    };
    for (const auto& c : casi) {
        const auto comuni = core::ComuniCheIniziano(c.testo);
        EXPECT_EQ(comuni.size(), c.quanti) << c.testo;
        if (comuni.empty()) continue;
        EXPECT_EQ(comuni[0].comune + " " + comuni[0].cap + " " + comuni[0].provincia, c.primo) << c.testo;
    }
}

// The address boxes: in the customer editor typing a town offers each CAP, and choosing fills the
// three boxes; in the company editor a town typed whole with one CAP fills an empty CAP and province
// as the box is left.
TEST_F(Strumenti, CittaDegliIndirizzi) {
    frmClientiEdita clienti;
    clienti.show();
    auto* citta = figlio<QLineEdit>(&clienti, "VText5");
    ASSERT_TRUE(citta);
    auto* suggeriti = citta->findChild<QCompleter*>("ComuniSuggeriti");
    ASSERT_NE(suggeriti, nullptr);
    citta->setFocus();
    QTest::keyClicks(citta, "Milano");
    ASSERT_EQ(suggeriti->model()->rowCount(), 42);   // every CAP of Milano
    // Chosen from the keyboard: down to the fourth, Enter.
    ASSERT_TRUE(suggeriti->popup()->isVisible());
    for (int i = 0; i < 4; ++i) QTest::keyClick(suggeriti->popup(), Qt::Key_Down);
    QTest::keyClick(suggeriti->popup(), Qt::Key_Return);
    EXPECT_EQ(QStringList({citta->text(), figlio<QLineEdit>(&clienti, "VText4")->text(),
                           figlio<QLineEdit>(&clienti, "txtProvincia")->text()}),
              QStringList({"Milano", "20124", "MI"}));
    clienti.hide();

    frmAziendeEdita aziende;
    aziende.show();
    citta = figlio<QLineEdit>(&aziende, "VText4");
    ASSERT_TRUE(citta);
    citta->setFocus();
    QTest::keyClicks(citta, "abano terme");
    citta->findChild<QCompleter*>("ComuniSuggeriti")->popup()->hide();
    emit citta->editingFinished();
    EXPECT_EQ(QStringList({citta->text(), figlio<QLineEdit>(&aziende, "VText3")->text(),
                           figlio<QLineEdit>(&aziende, "VText5")->text()}),
              QStringList({"Abano Terme", "35031", "PD"}));
}

// The towns' editor refuses a town without its CAP or its province and writes nothing.
TEST_F(Strumenti, ComuneRifiutato) {
    auto& u = *core::session().dbUtilita;
    const long prima = contaRighe(u, "Select * from Comuni");
    const struct {
        const char *cap, *provincia, *messaggio;
    } casi[] = {
        {"", "TO", "Inserire CAP e comune!"},
        {"10100", "", "Inserire la provincia!"},
    };
    for (const auto& c : casi) {
        p.script->dimentica();
        frmComuniEdita e;
        e.Prepara({Modalita::Nuovo});
        e.txtComune->setText("Borgo Nuovo");
        e.txtCap->setText(c.cap);
        e.txtProvincia->setText(c.provincia);
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{c.messaggio});
        EXPECT_EQ(contaRighe(u, "Select * from Comuni"), prima);
    }
}

// ---- calculator -----------------------------------------------------------------------------------

TEST_F(Strumenti, CalcolatriceDaTastiera) {
    struct Tasto {
        int tasto;
        Qt::KeyboardModifiers mod = Qt::NoModifier;
    };
    const struct {
        std::vector<Tasto> tasti;
        const char* display;
    } casi[] = {
        {{{Qt::Key_7, Qt::KeypadModifier}, {Qt::Key_Asterisk, Qt::KeypadModifier}, {Qt::Key_6, Qt::KeypadModifier},
          {Qt::Key_Enter, Qt::KeypadModifier}},
         "42"},
        {{{Qt::Key_1}, {Qt::Key_Period}, {Qt::Key_5}, {Qt::Key_Minus}, {Qt::Key_0}, {Qt::Key_Comma}, {Qt::Key_2},
          {Qt::Key_Return}},
         "1,3"},
        {{{Qt::Key_1}, {Qt::Key_2}, {Qt::Key_3}, {Qt::Key_Backspace}}, "12"},
        {{{Qt::Key_5}, {Qt::Key_Plus}, {Qt::Key_5}, {Qt::Key_Escape}, {Qt::Key_2}, {Qt::Key_Return}}, "2"},
        {{{Qt::Key_3}, {Qt::Key_0, Qt::ShiftModifier}}, "300"},
    };
    for (const auto& c : casi) {
        frmCalcolatrice f;
        for (const Tasto& t : c.tasti) QTest::keyClick(&f, static_cast<Qt::Key>(t.tasto), t.mod);
        EXPECT_EQ(f.lblDisplay->text().toStdString(), c.display);
    }

    // A decimals box that is no number goes back to 0.
    frmCalcolatrice f;
    f.txtDecimals->clear();
    QTest::keyClicks(f.txtDecimals, "a");
    EXPECT_EQ(f.txtDecimals->text().toStdString(), "0");
}

}  // namespace
