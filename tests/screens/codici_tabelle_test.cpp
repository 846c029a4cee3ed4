// Expense kinds and classes: their guards and questions, the leftover search field, and the typing
// aid on the description.
#include <QComboBox>

#include "core/impostazioni.h"
#include "support/registro_prova.h"
#include "tools/screens/frmTipiSpesa.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

using pattern::clicca;
using pattern::trova;

const char* const kMovimentato = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n";

class Tabelle : public pattern::Archivio {
protected:
    void SetUp() override {
        Archivio::SetUp();
        for (const char* sql : {"INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (1, 'Consulenza')",
                                "INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (2, 'Consumi')",
                                "INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (3, 'L''affitto')",
                                "INSERT INTO ClassificazioniSpese (ID, DescClassificazione) VALUES (1, 'Generali')",
                                "INSERT INTO ClassificazioniSpese (ID, DescClassificazione) VALUES (2, 'Ufficio')",
                                "INSERT INTO Spese (ID, TipoSpesa, Classificazione) VALUES (1, 2, 2)"})
            db->Execute(sql);
    }
};

// A kind in use is guarded; a free one goes after its question.
TEST_F(Tabelle, GuardieEDomandeDiEliminazione) {
    frmTipiSpesa r;
    auto* grid = trova<ui::VetraGrid>(&r, "Grid");
    grid->vaiAId(2);
    clicca(&r, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, kMovimentato + std::string("1) Spese\r\n"));
    grid->vaiAId(1);
    script->rispondiSi();
    clicca(&r, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, "Eliminare il tipo di spesa Consulenza?");
    EXPECT_EQ((std::vector<long>{conta("TipiSpesa", "ID=1"), conta("TipiSpesa", "ID=2")}), (std::vector<long>{0, 1}));
}

TEST_F(Tabelle, IlCampoDiRicercaSenzaTabellaDaUnErroreMostrato) {
    frmClassificazioniSpese r;
    auto* cb = trova<QComboBox>(&r, "cbCerca");
    ASSERT_EQ(cb->count(), 2);
    cb->setCurrentIndex(1);
    clicca(&r, "btnCerca");
    ASSERT_EQ(script->messaggi().size(), 1u);
    EXPECT_EQ(ultimoMessaggio().stile, core::vbCritical);
    cb->setCurrentIndex(0);
    pattern::scrivi(&r, "txtCerca", "uff");
    clicca(&r, "btnCerca");
    EXPECT_EQ(trova<ui::VetraGrid>(&r, "Grid")->righeMostrate(), 1);
}

TEST_F(Tabelle, CompletamentoNellEditor) {
    frmTipiSpesaEdita e;
    e.EditaRecordset(0, true);
    auto* box = trova<ui::VText>(&e, "VText1");
    QTest::keyClicks(box, "Consul");
    EXPECT_EQ(box->text(), "Consulenza");
    EXPECT_EQ(box->selectedText(), "enza");
    // Typing on replaces the completed tail; a backspace does not complete again.
    QTest::keyClicks(box, "t");
    EXPECT_EQ(box->text(), "Consult");
    QTest::keyClick(box, Qt::Key_Backspace);
    EXPECT_EQ(box->text(), "Consul");
    EXPECT_EQ(box->selectedText(), "");
    // An apostrophe in the text does not break the statement.
    box->clear();
    QTest::keyClicks(box, "L'a");
    EXPECT_EQ(box->text(), "L'affitto");
    EXPECT_TRUE(script->messaggi().empty());
}

}  // namespace
