// Payment terms: the number of instalments and the twelve day boxes, the save, the delete guard.
#include <QCheckBox>

#include "core/impostazioni.h"
#include "support/registro_prova.h"
#include "payments/condizioni.h"
#include "payments/screens/frmCondizioniPagamento.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

using pattern::clicca;
using pattern::scrivi;
using pattern::trova;

class Condizioni : public pattern::Archivio {
protected:
    std::vector<std::string> testi(frmCondizioniPagamentoEdita& e) {
        std::vector<std::string> t;
        for (auto* b : e.txtRata) t.push_back(b->testo());
        return t;
    }
    std::vector<bool> abilitate(frmCondizioniPagamentoEdita& e) {
        std::vector<bool> a;
        for (auto* b : e.txtRata) a.push_back(b->isEnabled());
        return a;
    }
    static std::vector<bool> prime(int n) {
        std::vector<bool> a(12, false);
        for (int i = 0; i < n; ++i) a[static_cast<size_t>(i)] = true;
        return a;
    }
};

TEST_F(Condizioni, LeCaselleDeiGiorniSeguonoLeRate) {
    frmCondizioniPagamentoEdita e;
    e.EditaRecordset(0, true);
    EXPECT_EQ(e.txtRate->testo(), "0");
    EXPECT_EQ(testi(e), std::vector<std::string>(12, "0"));
    EXPECT_EQ(abilitate(e), prime(0));

    scrivi(&e, "txtRate", "15");
    EXPECT_EQ(e.txtRate->testo(), "12");
    EXPECT_EQ(abilitate(e), prime(12));

    scrivi(&e, "txtRate", "3");
    scrivi(&e, "txtRata2", "90");
    scrivi(&e, "txtRate", "2");
    EXPECT_EQ(e.txtRata[2]->testo(), "0");
    EXPECT_EQ(abilitate(e), prime(2));
    scrivi(&e, "txtRate", "3");
    EXPECT_EQ(abilitate(e), prime(3));
    // An empty box counts as no instalments.
    e.txtRate->clear();
    EXPECT_EQ(abilitate(e), prime(0));
}

TEST_F(Condizioni, SalvaECaricaUnaCondizione) {
    frmCondizioniPagamento registro;
    script->schermo("frmCondizioniPagamentoEdita", [](QWidget* e) {
        scrivi(e, "VText1", "60-30 fm");
        scrivi(e, "txtRate", "2");
        scrivi(e, "txtRata0", "60");
        scrivi(e, "txtRata1", "30");
        trova<QCheckBox>(e, "Check1")->setChecked(true);
        clicca(e, "btnConferma");
        return true;
    });
    clicca(&registro, "btnNuovo");
    EXPECT_EQ(conta("CondizioniPagamento", "ID=1 and DescPagamento='60-30 fm' and Rate=2 and Rata1=60 and Rata2=30 and "
                                           "Rata3=0 and FineMese=True"), 1);
    auto* pannello = registro.pannello();
    EXPECT_EQ(pannello->testo("DescPagamento") + " " + pannello->testo("Rata1"), "60-30 fm 60");
    EXPECT_TRUE(trova<QCheckBox>(&registro, "Check1")->isChecked());

    // Opened again, its boxes follow its instalments.
    frmCondizioniPagamentoEdita riaperta;
    riaperta.EditaRecordset(1, false);
    EXPECT_EQ(riaperta.txtRate->testo(), "2");
    EXPECT_EQ(testi(riaperta)[0], "60");
    EXPECT_EQ(abilitate(riaperta), prime(2));
    EXPECT_TRUE(riaperta.Check1->isChecked());
}

TEST_F(Condizioni, EliminaRifiutataSeUsataDaUnaSpesa) {
    db->Execute("INSERT INTO CondizioniPagamento (ID, DescPagamento, Rate) VALUES (4, '30 gg', 1)");
    db->Execute("INSERT INTO Spese (ID, CondizioniPagamento) VALUES (1, 4)");
    frmCondizioniPagamento registro;
    clicca(&registro, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo,
              "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n3) Spese\r\n");
    db->Execute("DELETE FROM Spese");
    script->rispondiSi();
    clicca(&registro, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, "Eliminare la condizione di pagamento 30 gg?");
    EXPECT_EQ(conta("CondizioniPagamento"), 0);
    EXPECT_EQ(trova<ui::VetraGrid>(&registro, "Grid")->righeMostrate(), 0);
}

}  // namespace
