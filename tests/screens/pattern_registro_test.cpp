// The register and editor pattern, driven on the VAT codes as a user would: search, new, change,
// delete with its guard, the two editor entries.
#include <QComboBox>

#include "core/record.h"
#include "support/registro_prova.h"
#include "tools/screens/frmCodiciIva.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

using pattern::clicca;
using pattern::scrivi;
using pattern::trova;

const char* const kMovimentato = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n";

class Registro : public pattern::Archivio {
protected:
    void SetUp() override {
        Archivio::SetUp();
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (1, 'Ordinaria 22%', 22)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (2, 'Esente art. 10', 0)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (3, 'Fuori campo l''iva', 0)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (5, 'Ridotta 10%', 10)");
        registro = std::make_unique<frmCodiciIva>();
        grid = trova<ui::VetraGrid>(registro.get(), "Grid");
    }
    void TearDown() override {
        registro.reset();
        Archivio::TearDown();
    }
    QString cella(int riga, int colonna = 0) const {
        return grid->modello()->data(grid->modello()->index(riga, colonna), Qt::DisplayRole).toString();
    }
    // The editor's script: fills the boxes and confirms, or cancels.
    void editorCompila(const QString& desc, const QString& aliquota, const char* comando = "btnConferma") {
        script->schermo("frmCodiciIvaEdita", [=](QWidget* e) {
            if (!e) return false;
            if (!desc.isNull()) scrivi(e, "VText1", desc);
            if (!aliquota.isNull()) scrivi(e, "VText2", aliquota);
            clicca(e, comando);
            return true;
        });
    }

    std::unique_ptr<frmCodiciIva> registro;
    ui::VetraGrid* grid = nullptr;
};

TEST_F(Registro, Ricerca) {
    struct Caso {
        int campo;
        const char* testo;
        const char* istruzione;
        std::vector<QString> righe;
    };
    const Caso casi[] = {
        // A '*' typed stays a wildcard: an r with an a somewhere after it.
        {0, "r*a", "Select * from CodiciIva where DescIva Like '*r*a*'",
         {"Fuori campo l'iva", "Ordinaria 22%", "Ridotta 10%"}},
        {0, "", "Select * from CodiciIva where DescIva Like '**'",
         {"Esente art. 10", "Fuori campo l'iva", "Ordinaria 22%", "Ridotta 10%"}},
        {1, "10", "Select * from CodiciIva where AliquotaIva Like '*10*'", {"Ridotta 10%"}},
    };
    auto* cb = trova<QComboBox>(registro.get(), "cbCerca");
    for (const auto& c : casi) {
        cb->setCurrentIndex(c.campo);
        scrivi(registro.get(), "txtCerca", c.testo);
        QTest::keyClick(trova<QLineEdit>(registro.get(), "txtCerca"), Qt::Key_Return);
        EXPECT_EQ(grid->sorgente(), c.istruzione);
        std::vector<QString> righe;
        for (int r = 0; r < grid->righeMostrate(); ++r) righe.push_back(cella(r));
        EXPECT_EQ(righe, c.righe) << c.testo;
    }
    EXPECT_TRUE(script->messaggi().empty());
}

TEST_F(Registro, EliminaRifiutataElencaLeTabelleNumerate) {
    // Used by a document line and an expense line: the first and third tables of the guard.
    db->Execute("INSERT INTO Movimenti (ID, Documento, Iva) VALUES (1, 1, 2)");
    db->Execute("INSERT INTO MovimentiSpese (ID, Spesa, Iva) VALUES (1, 1, 2)");
    grid->vaiAId(2);
    QTest::keyClick(grid, Qt::Key_Delete);
    ASSERT_EQ(script->messaggi().size(), 1u);
    EXPECT_EQ(ultimoMessaggio().testo, std::string(kMovimentato) + "1) Righe dei documenti\r\n3) Righe delle spese\r\n");
    EXPECT_EQ(conta("CodiciIva"), 4);

    // Used only by a service: not looked at, so it can go.
    db->Execute("INSERT INTO Servizi (ID, DescServizio, CodiceIva) VALUES (1, 'Visita', 5)");
    grid->vaiAId(5);
    script->rispondiNo();
    clicca(registro.get(), "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, "Eliminare l'iva Ridotta 10%?");
    EXPECT_EQ(conta("CodiciIva"), 4);
    script->rispondiSi();
    clicca(registro.get(), "btnElimina");
    EXPECT_EQ(conta("CodiciIva", "ID=5"), 0);
    EXPECT_EQ(grid->righeMostrate(), 3);
}

TEST_F(Registro, NuovoAnnullatoNonLasciaRighe) {
    editorCompila("Da non salvare", "4", "btnAnnulla");
    clicca(registro.get(), "btnNuovo");
    EXPECT_EQ(script->schermiMostrati(), std::vector<std::string>{"frmCodiciIvaEdita"});
    EXPECT_EQ(conta("CodiciIva"), 4);
    EXPECT_EQ(grid->righeMostrate(), 4);
    // The grid's recordset is back out of AddNew: a later change still works.
    editorCompila("Ordinaria", QString());
    grid->vaiAId(1);
    clicca(registro.get(), "btnModifica");
    EXPECT_EQ(store::ConcatText(campo("Select DescIva from CodiciIva where ID=1", "DescIva")), "Ordinaria");

    // On its own, cancelled: nothing written, nothing answered.
    frmCodiciIvaEdita editor;
    editorCompila("Neppure questa", "4", "btnAnnulla");
    EXPECT_EQ(editor.Edita({Modalita::Nuovo}), std::nullopt);
    EXPECT_EQ(conta("CodiciIva"), 4);
}

TEST_F(Registro, ModificaSalvataAttraversoIControlliLegati) {
    grid->vaiAId(1);
    script->schermo("frmCodiciIvaEdita", [](QWidget* e) {
        // The load put the row into the bound boxes, and the text box took the field's size.
        auto* desc = trova<ui::VText>(e, "VText1");
        EXPECT_EQ(desc->testo(), "Ordinaria 22%");
        EXPECT_EQ(desc->maxLength(), 30);
        EXPECT_EQ(trova<ui::VText>(e, "VText2")->testo(), "22");
        scrivi(e, "VText1", "Ordinaria ventidue per cento, aliquota piena di legge");
        scrivi(e, "VText2", "22,5");
        clicca(e, "btnConferma");
        return true;
    });
    QTest::keyClick(grid, Qt::Key_Return);
    // The text cut to the field's size.
    EXPECT_EQ(conta("CodiciIva", "ID=1 and DescIva='Ordinaria ventidue per cento, ' and AliquotaIva=22.5"), 1);
    EXPECT_EQ(grid->idCorrente(), 1);
    EXPECT_EQ(cella(grid->currentIndex().row(), 1), "22,5");

    frmCodiciIvaEdita editor;
    editor.EditaRecordset(2, false);
    EXPECT_EQ(trova<ui::VText>(&editor, "VText1")->testo(), "Esente art. 10");
    editorCompila("Esente", QString());
    EXPECT_EQ(editor.Mostra(), 2);
    EXPECT_EQ(store::ConcatText(campo("Select * from CodiciIva where ID=2", "DescIva")), "Esente");
}

TEST_F(Registro, F3CercaEscChiude) {
    registro->show();
    QApplication::setActiveWindow(registro.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(registro.get()));
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_F3);
    EXPECT_TRUE(trova<QLineEdit>(registro.get(), "txtCerca")->hasFocus());
    QTest::keyClick(registro.get(), Qt::Key_Escape);
    EXPECT_FALSE(registro->isVisible());
}

}  // namespace
