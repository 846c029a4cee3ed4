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

TEST_F(Tabelle, GuardieEDomandeDiEliminazione) {
    struct Caso {
        std::function<std::unique_ptr<RegistroBase>()> registro;
        long usato;
        long libero;
        std::string guardia;
        std::string domanda;
        const char* tabella;
    };
    const Caso casi[] = {
        {[] { return std::make_unique<frmTipiSpesa>(); }, 2, 1, "1) Spese\r\n",
         "Eliminare il tipo di spesa Consulenza?", "TipiSpesa"},
        {[] { return std::make_unique<frmClassificazioniSpese>(); }, 2, 1, "1) Spese\r\n",
         "Eliminare la classificazione Generali?", "ClassificazioniSpese"},
    };
    for (const auto& c : casi) {
        script->dimentica();
        auto r = c.registro();
        auto* grid = trova<ui::VetraGrid>(r.get(), "Grid");
        grid->vaiAId(c.usato);
        clicca(r.get(), "btnElimina");
        EXPECT_EQ(ultimoMessaggio().testo, kMovimentato + c.guardia);
        EXPECT_EQ(ultimoMessaggio().stile, core::vbExclamation);
        grid->vaiAId(c.libero);
        script->rispondiSi();
        clicca(r.get(), "btnElimina");
        EXPECT_EQ(ultimoMessaggio().testo, c.domanda);
        EXPECT_EQ(conta(c.tabella, "ID=" + std::to_string(c.libero)), 0) << c.tabella;
        EXPECT_EQ(conta(c.tabella, "ID=" + std::to_string(c.usato)), 1) << c.tabella;
    }
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
