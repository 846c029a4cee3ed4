// The register and editor pattern, driven on the VAT codes as a user would: search, new, change,
// the two editor entries; the delete with its guard and question on each register that has one.
// Payment terms: the number of instalments and the twelve day boxes, the save. Expense kinds and
// classes: the leftover search field, and the typing aid on the description.
#include <QCheckBox>
#include <QComboBox>

#include "core/impostazioni.h"
#include "core/record.h"
#include "expenses/screens/frmFornitori.h"
#include "payments/condizioni.h"
#include "payments/screens/frmCondizioniPagamento.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmServizi.h"
#include "support/avvio_prova.h"
#include "tools/screens/frmCodiciIva.h"
#include "tools/screens/frmTipiSpesa.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

using namespace prova;

namespace {

const std::string kMovimentato = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n";

class Registro : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (1, 'Ordinaria 22%', 22)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (2, 'Esente art. 10', 0)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (3, 'Fuori campo l''iva', 0)");
        db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (5, 'Ridotta 10%', 10)");
        registro = std::make_unique<frmCodiciIva>();
        grid = figlio<ui::VetraGrid>(registro.get(), "Grid");
    }
    QString cella(int riga, int colonna = 0) const {
        return grid->modello()->data(grid->modello()->index(riga, colonna), Qt::DisplayRole).toString();
    }
    void editorCompila(const QString& desc, const QString& aliquota, const char* comando = "btnConferma") {
        p.script->schermo("frmCodiciIvaEdita", [=](QWidget* e) {
            if (!e) return false;
            if (!desc.isNull()) scrivi(e, "VText1", desc);
            if (!aliquota.isNull()) scrivi(e, "VText2", aliquota);
            clic(e, comando);
            return true;
        });
    }

    std::unique_ptr<frmCodiciIva> registro;
    ui::VetraGrid* grid = nullptr;
};

TEST_F(Registro, Ricerca) {
    // The field searched, the text typed, the rows shown.
    const std::tuple<int, const char*, std::vector<QString>> casi[] = {
        // A '*' typed stays a wildcard: an r with an a somewhere after it.
        {0, "r*a", {"Fuori campo l'iva", "Ordinaria 22%", "Ridotta 10%"}},
        {1, "10", {"Ridotta 10%"}},
    };
    auto* cb = figlio<QComboBox>(registro.get(), "cbCerca");
    for (const auto& [campo, testo, attese] : casi) {
        cb->setCurrentIndex(campo);
        scrivi(registro.get(), "txtCerca", testo);
        QTest::keyClick(figlio<QLineEdit>(registro.get(), "txtCerca"), Qt::Key_Return);
        std::vector<QString> righe;
        for (int r = 0; r < grid->righeMostrate(); ++r) righe.push_back(cella(r));
        EXPECT_EQ(righe, attese) << testo;
    }
    EXPECT_TRUE(p.script->messaggi().empty());
}

// Each register's delete: a record in use is refused, the tables that use it numbered in the
// message; a free one is asked about, kept on No and deleted on Yes.
TEST_F(Registro, EliminazioneGuardataEDomandata) {
    struct Caso {
        FabbricaRegistro apri;
        std::vector<const char*> righe;   // the records, and the rows that use one of them
        const char* tabella;
        long usato, libero;
        std::string tabelleCheUsano, domanda;
    };
    const Caso casi[] = {
        // A VAT code on a document line and an expense line: the first and third tables of the guard;
        // one used only by a service is not looked at.
        {[] { return std::make_unique<frmCodiciIva>(); },
         {"INSERT INTO Movimenti (ID, Documento, Iva) VALUES (1, 1, 2)",
          "INSERT INTO MovimentiSpese (ID, Spesa, Iva) VALUES (1, 1, 2)",
          "INSERT INTO Servizi (ID, DescServizio, CodiceIva) VALUES (9, 'Visita', 5)"},
         "CodiciIva", 2, 5, "1) Righe dei documenti\r\n3) Righe delle spese\r\n", "Eliminare l'iva Ridotta 10%?"},
        {[] { return std::make_unique<frmClienti>(); },
         {"INSERT INTO Clienti (ID, DescCliente, DescCliente2) VALUES (1, 'Rossi Mario', 'srl')",
          "INSERT INTO Clienti (ID, DescCliente) VALUES (2, 'Bianchi')",
          "INSERT INTO Documenti (ID, Tipo, Cliente) VALUES (1, 5, 2)"},
         "Clienti", 2, 1, "1) Documenti\r\n", "Eliminare il cliente Rossi Mario?"},
        // A service on a document line stays; one only on a visit can go.
        {[] { return std::make_unique<frmServizi>(); },
         {"INSERT INTO Servizi (ID, DescServizio) VALUES (1, 'Posa d''opera')",
          "INSERT INTO Servizi (ID, DescServizio) VALUES (2, 'Sopralluogo')",
          "INSERT INTO Movimenti (ID, Servizio) VALUES (2, 1)", "INSERT INTO Assistenze (ID, Servizio) VALUES (1, 2)"},
         "Servizi", 1, 2, "1) Documenti\r\n", "Eliminare il servizio Sopralluogo?"},
        // A supplier on a document stays; one only on an expense can go, the expense left without it.
        {[] { return std::make_unique<frmFornitori>(); },
         {"INSERT INTO Fornitori (ID, DescFornitore) VALUES (1, 'Cartoleria dell''Olmo & C. S.a.s.')",
          "INSERT INTO Fornitori (ID, DescFornitore) VALUES (2, 'Beta')",
          "INSERT INTO Documenti (ID, Tipo, Fornitore) VALUES (2, 9, 2)",
          "INSERT INTO Spese (ID, Numero, Fornitore) VALUES (3, '7', 1)"},
         "Fornitori", 2, 1, "1) Documenti\r\n", "Eliminare il fornitore Cartoleria dell'Olmo & C. S.a.s.?"},
        {[] { return std::make_unique<frmCondizioniPagamento>(); },
         {"INSERT INTO CondizioniPagamento (ID, DescPagamento, Rate) VALUES (4, '30 gg', 1)",
          "INSERT INTO CondizioniPagamento (ID, DescPagamento, Rate) VALUES (5, '60 gg', 1)",
          "INSERT INTO Spese (ID, CondizioniPagamento) VALUES (1, 5)"},
         "CondizioniPagamento", 5, 4, "3) Spese\r\n", "Eliminare la condizione di pagamento 30 gg?"},
        {[] { return std::make_unique<frmTipiSpesa>(); },
         {"INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (1, 'Consulenza')",
          "INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (2, 'Consumi')",
          "INSERT INTO Spese (ID, TipoSpesa) VALUES (2, 2)"},
         "TipiSpesa", 2, 1, "1) Spese\r\n", "Eliminare il tipo di spesa Consulenza?"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.tabella);
        for (const char* sql : c.righe) db->Execute(sql);
        const std::string tutti = std::string("Select * from ") + c.tabella;
        const long prima = conta(tutti);
        auto r = c.apri();
        p.script->dimentica();
        ASSERT_TRUE(r->griglia()->vaiAId(c.usato));
        clic(r.get(), "btnElimina");
        ASSERT_TRUE(r->griglia()->vaiAId(c.libero));
        p.script->rispondiNo();
        clic(r.get(), "btnElimina");
        EXPECT_EQ(conta(tutti), prima);
        p.script->rispondiSi();
        clic(r.get(), "btnElimina");
        EXPECT_EQ(testiMostrati(*p.script),
                  (std::vector<std::string>{kMovimentato + c.tabelleCheUsano, c.domanda, c.domanda}));
        EXPECT_EQ(conta(tutti + " where ID=" + std::to_string(c.libero)), 0);
        EXPECT_EQ(r->griglia()->righeMostrate(), prima - 1);
    }
    EXPECT_EQ(conta("Select * from Spese"), 3);   // none went with the records it used
}

// A new record cancelled leaves no row, and the grid's recordset is back out of AddNew: the change
// that follows goes through the bound boxes, the text cut to the field's size. The editor on its
// own: cancelled it writes nothing, confirmed it saves the record it loaded.
TEST_F(Registro, NuovoAnnullatoPoiModificaAttraversoIControlliLegati) {
    editorCompila("Da non salvare", "4", "btnAnnulla");
    clic(registro.get(), "btnNuovo");
    EXPECT_EQ(p.script->schermiMostrati(), std::vector<std::string>{"frmCodiciIvaEdita"});
    EXPECT_EQ(conta("Select * from CodiciIva"), 4);
    EXPECT_EQ(grid->righeMostrate(), 4);

    grid->vaiAId(1);
    confermaCon<frmCodiciIvaEdita>(*p.script, [](frmCodiciIvaEdita* e) {
        EXPECT_EQ(figlio<ui::VText>(e, "VText1")->testo(), "Ordinaria 22%");
        EXPECT_EQ(figlio<ui::VText>(e, "VText2")->testo(), "22");
        scrivi(e, "VText1", "Ordinaria ventidue per cento, aliquota piena di legge");
        scrivi(e, "VText2", "22,5");
    });
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_EQ(conta("Select * from CodiciIva where ID=1 and DescIva='Ordinaria ventidue per cento, ' and "
                    "AliquotaIva=22.5"), 1);
    EXPECT_EQ(grid->idCorrente(), 1);
    EXPECT_EQ(cella(grid->currentIndex().row(), 1), "22,5");

    frmCodiciIvaEdita editor;
    editorCompila("Neppure questa", "4", "btnAnnulla");
    EXPECT_EQ(editor.Edita({Modalita::Nuovo}), std::nullopt);
    EXPECT_EQ(conta("Select * from CodiciIva"), 4);
    editor.EditaRecordset(2, false);
    EXPECT_EQ(figlio<ui::VText>(&editor, "VText1")->testo(), "Esente art. 10");
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
    EXPECT_TRUE(figlio<QLineEdit>(registro.get(), "txtCerca")->hasFocus());
    QTest::keyClick(registro.get(), Qt::Key_Escape);
    EXPECT_FALSE(registro->isVisible());
}

using Condizioni = EsercizioAperto;

std::vector<bool> abilitate(const frmCondizioniPagamentoEdita& e) {
    std::vector<bool> a;
    for (auto* b : e.txtRata) a.push_back(b->isEnabled());
    return a;
}

std::vector<bool> prime(int n) {
    std::vector<bool> a(12, false);
    for (int i = 0; i < n; ++i) a[static_cast<size_t>(i)] = true;
    return a;
}

// The days' boxes follow the number of instalments as it is typed: at most twelve, a box left out
// back to 0, an empty number none. The term saved is shown in the side panel and opens again so.
TEST_F(Condizioni, CaselleDeiGiorniSalvaECarica) {
    frmCondizioniPagamento registro;
    p.script->schermo("frmCondizioniPagamentoEdita", [](QWidget* w) {
        auto& e = *static_cast<frmCondizioniPagamentoEdita*>(w);
        EXPECT_EQ(e.txtRate->testo(), "0");
        EXPECT_EQ(abilitate(e), prime(0));
        scrivi(w, "txtRate", "15");
        EXPECT_EQ(e.txtRate->testo(), "12");
        EXPECT_EQ(abilitate(e), prime(12));
        scrivi(w, "txtRate", "3");
        scrivi(w, "txtRata2", "90");
        scrivi(w, "txtRate", "2");
        EXPECT_EQ(e.txtRata[2]->testo(), "0");
        EXPECT_EQ(abilitate(e), prime(2));
        e.txtRate->clear();
        EXPECT_EQ(abilitate(e), prime(0));

        scrivi(w, "VText1", "60-30 fm");
        scrivi(w, "txtRate", "2");
        scrivi(w, "txtRata0", "60");
        scrivi(w, "txtRata1", "30");
        e.Check1->setChecked(true);
        clic(w, "btnConferma");
        return true;
    });
    clic(&registro, "btnNuovo");
    EXPECT_EQ(conta("Select * from CondizioniPagamento where ID=1 and DescPagamento='60-30 fm' and Rate=2 and "
                    "Rata1=60 and Rata2=30 and Rata3=0 and FineMese=True"), 1);
    auto* pannello = registro.pannello();
    EXPECT_EQ(pannello->testo("DescPagamento") + " " + pannello->testo("Rata1"), "60-30 fm 60");
    EXPECT_TRUE(figlio<QCheckBox>(&registro, "Check1")->isChecked());

    frmCondizioniPagamentoEdita riaperta;
    riaperta.EditaRecordset(1, false);
    EXPECT_EQ(riaperta.txtRate->testo(), "2");
    EXPECT_EQ(riaperta.txtRata[0]->testo(), "60");
    EXPECT_EQ(abilitate(riaperta), prime(2));
    EXPECT_TRUE(riaperta.Check1->isChecked());
}

using Tabelle = EsercizioAperto;

TEST_F(Tabelle, IlCampoDiRicercaSenzaTabellaDaUnErroreMostrato) {
    db->Execute("INSERT INTO ClassificazioniSpese (ID, DescClassificazione) VALUES (1, 'Generali')");
    db->Execute("INSERT INTO ClassificazioniSpese (ID, DescClassificazione) VALUES (2, 'Ufficio')");
    frmClassificazioniSpese r;
    auto* cb = figlio<QComboBox>(&r, "cbCerca");
    ASSERT_EQ(cb->count(), 2);
    cb->setCurrentIndex(1);
    clic(&r, "btnCerca");
    ASSERT_EQ(p.script->messaggi().size(), 1u);
    EXPECT_EQ(p.script->messaggi()[0].stile, core::vbCritical);
    cb->setCurrentIndex(0);
    scrivi(&r, "txtCerca", "uff");
    clic(&r, "btnCerca");
    EXPECT_EQ(figlio<ui::VetraGrid>(&r, "Grid")->righeMostrate(), 1);
}

TEST_F(Tabelle, CompletamentoNellEditor) {
    for (const char* tipo : {"1, 'Consulenza'", "2, 'Consumi'", "3, 'L''affitto'"})
        db->Execute(std::string("INSERT INTO TipiSpesa (ID, DescTipoSpesa) VALUES (") + tipo + ")");
    frmTipiSpesaEdita e;
    e.EditaRecordset(0, true);
    auto* box = figlio<ui::VText>(&e, "VText1");
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
    EXPECT_TRUE(p.script->messaggi().empty());
}

}  // namespace
