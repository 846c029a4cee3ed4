// The instalments tab of the document register, driven on the real screen: each command with its
// right and its refusals, the rows it writes or deletes, the flags a payment delete refreshes, and
// the figures of both summaries worked out by hand. Then the instalment editor's checks.
#include <QLabel>
#include <QTabWidget>

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/documenti.h"
#include "core/pannello.h"
#include "payments/screens/frmScadenzeEdita.h"
#include "sales/screens/SchedaScadenze.h"
#include "sales/screens/frmDocumenti.h"
#include "store/convert.h"
#include "support/acquisti_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

// Fattura 1 of 300.00 in three instalments of 100.00, the first paid (payment 1, with its journal
// row); fattura 2 of 50.00 with nothing on it; a journal row typed by hand.
class TabScadenze : public Acquisti {
protected:
    void SetUp() override {
        Acquisti::SetUp();
        db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi Impianti Srl')");
        documento(1, 1, "03/10/2026", 1, 5, 300);
        documento(2, 2, "03/11/2026", 1, 5, 50);
        for (long s : {1, 2, 3})
            db->Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza,Rata,Rate,"
                        "Pagata) VALUES (" + std::to_string(s) + ",1,1,'Rata " + std::to_string(s) + "',#0" +
                        std::to_string(s + 3) + "/10/2026#,100," + std::to_string(s) + ",3," +
                        (s == 1 ? "True" : "False") + ")");
        pagamento(1, 1, 100);
        db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (9,0,5)");
    }

    void pagamento(long id, long scadenza, double importo) {
        const std::string s = std::to_string(id);
        db->Execute("Insert Into Pagamenti (ID,Documento,Scadenza,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
                    "VALUES (" + s + ",1," + std::to_string(scadenza) + ",1,'Bonifico',#04/10/2026#," +
                    core::NumeroSql(importo) + ")");
        db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (" + s + "," + s + "," + core::NumeroSql(importo) + ")");
    }

    // The register of fatture, shown, on tab 3, with the document in front.
    std::unique_ptr<frmDocumenti> registro(long documento, long tipo = core::TipoFatturaEmessa) {
        core::ImpostaModoSchermo("frmDocumenti", tipo);
        auto r = std::make_unique<frmDocumenti>();
        r->show();
        r->sTab->setCurrentIndex(3);
        EXPECT_TRUE(r->griglia()->vaiAId(documento));
        return r;
    }
    // The figures of the summaries: collected and due on the document, issued, collected and due in all.
    std::vector<std::string> cifre(frmDocumenti& r) {
        std::vector<std::string> v;
        for (const char* l : {"lblIncassato", "lblDaIncassare", "lblImportoTutti", "lblIncassatoTutti", "lblDaIncassareTutti"})
            v.push_back(figlio<QLabel>(r.Scadenze, l)->text().toStdString());
        return v;
    }
};

// Each part of the tab shows with its right to see it.
TEST_F(TabScadenze, PartiVisibiliConIDiritti) {
    for (const char* parte : {"fmScadenze", "fmPagamenti", "fmResoconto"}) {
        SCOPED_TRACE(parte);
        const int vedere = parte[2] == 'S' ? core::ScadenzeVedere : parte[2] == 'P' ? core::PagamentiVedere
                                                                                   : core::PrimaNotaVedere;
        senzaDiritto(vedere);
        auto s = registro(1);
        for (const char* altra : {"fmScadenze", "fmPagamenti", "fmResoconto"})
            EXPECT_EQ(figlio<QWidget>(s->Scadenze, altra)->isVisible(), std::string(altra) != parte) << altra;
    }
}

// Each command on fattura 1: its own right first, then the refusals of a paid document and
// instalment; allowed, the editor opens (the script does not confirm it) or the row goes.
TEST_F(TabScadenze, ComandiDelleScadenze) {
    struct Caso {
        const char* nome;
        long scadenza;
        const char* comando;
        int negato;   // the right taken away, 0 none
        int risposta;
        std::vector<std::string> messaggi;
        std::vector<std::string> schermi;
        long scadenzeDopo;
    };
    const std::string movimentata =
        "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n1) Pagamenti\r\n";
    const Caso casi[] = {
        {"nuova senza diritto", 0, "btnNuovaScadenza", core::ScadenzeModificare, 0, {kNegato}, {}, 3},
        {"generazione senza diritto", 0, "btnGeneraScadenze", core::ScadenzeModificare, 0, {kNegato}, {}, 3},
        {"incasso senza diritto", 2, "btnIncassa", core::IncassiModificare, 0, {kNegato}, {}, 3},
        {"eliminazione di un pagamento senza diritto", 0, "btnEliminaPagamento", core::IncassiModificare, 0,
         {kNegato}, {}, 3},
        {"incasso", 2, "btnIncassa", 0, 0, {}, {"frmPagamentiEdita"}, 3},
        {"nuova su un documento pagato", 0, "btnNuovaScadenza", 0, 0,
         {"Impossibile generare scadenze se sono già stati emessi dei pagamenti!"}, {}, 3},
        {"modifica di una scadenza pagata", 1, "btnModificaScadenza", 0, 0,
         {"Impossibile modificare la scadenza: risultano dei pagamenti registrati!"}, {}, 3},
        {"modifica di una scadenza aperta", 2, "btnModificaScadenza", 0, 0, {}, {"frmScadenzeEdita"}, 3},
        {"eliminazione di una scadenza pagata", 1, "btnEliminaScadenza", 0, 0, {movimentata}, {}, 3},
        {"eliminazione confermata", 2, "btnEliminaScadenza", 0, core::vbYes,
         {"Eliminare la scadenza selezionata?"}, {}, 2},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        senzaDiritto(c.negato);
        auto r = registro(1);
        if (c.scadenza) {
            ASSERT_TRUE(r->Scadenze->fmScadenze->griglia()->vaiAId(c.scadenza));
        }
        p.script->dimentica();
        if (c.risposta) p.script->rispondi(c.risposta);
        clic(r.get(), c.comando);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(p.script->schermiMostrati(), c.schermi);
        EXPECT_EQ(conta("Select * from Scadenze where Documento=1"), c.scadenzeDopo);
        EXPECT_EQ(conta("Select * from Pagamenti"), 1);
    }

    // A new one on the free fattura 2: the document comes picked with all of it left, and the row
    // is written with its counterpart; the tab lists it at once.
    auto r = registro(2);
    confermaCon<frmScadenzeEdita>(*p.script, [](frmScadenzeEdita* e) { e->pkData->setTesto("30/04/2026"); });
    clic(r.get(), "btnNuovaScadenza");
    EXPECT_EQ(conta("Select * from Scadenze where Documento=2 and Cliente=1 and ImportoScadenza=50 and "
                    "DescScadenza Like 'Saldo Fattura*'"), 1);
    EXPECT_EQ(r->Scadenze->fmScadenze->griglia()->righeMostrate(), 1);
}

// A payment deleted from the tab: the document and that instalment lose their flag, its journal
// row goes, the figures follow.
TEST_F(TabScadenze, EliminazioneDiUnPagamento) {
    pagamento(2, 2, 100);
    pagamento(3, 3, 100);
    db->Execute("Update Scadenze set Pagata=True");
    db->Execute("Update Documenti set Pagato=True where ID=1");
    auto r = registro(1);
    // 300 collected on fattura 1; 350 issued in all, 50 still due on fattura 2.
    using V = std::vector<std::string>;
    EXPECT_EQ(cifre(*r), (V{"300,00", "0,00", "350,00", "300,00", "50,00"}));

    ui::VetraGrid* pagamenti = r->Scadenze->fmPagamenti->griglia();
    ASSERT_TRUE(pagamenti->vaiAId(3));
    p.script->rispondiSi();
    clic(r.get(), "btnEliminaPagamento");
    EXPECT_EQ(conta("Select * from Pagamenti"), 2);
    EXPECT_FALSE(store::CBool(campo("Select * from Documenti where ID=1", "Pagato")));
    EXPECT_FALSE(store::CBool(campo("Select * from Scadenze where ID=3", "Pagata")));
    EXPECT_TRUE(store::CBool(campo("Select * from Scadenze where ID=2", "Pagata")));
    EXPECT_EQ(conta("Select * from PrimaNota where Pagamento=3"), 0);
    EXPECT_EQ(conta("Select * from PrimaNota"), 3);   // the other two payments' and the one typed by hand
    EXPECT_EQ(pagamenti->righeMostrate(), 2);
    EXPECT_FALSE(store::CBool(r->griglia()->valore("Pagato")));   // the register's row read again
    EXPECT_EQ(cifre(*r), (V{"200,00", "100,00", "350,00", "200,00", "150,00"}));
    r->griglia()->vaiAId(2);   // nothing collected, all of it due
    EXPECT_EQ(cifre(*r), (V{"0,00", "50,00", "350,00", "200,00", "150,00"}));
}

// The instalment editor's confirm: each check with its text, on a document of 100.00 with 60.00
// already scheduled (40.00 left).
TEST_F(TabScadenze, ControlliDellaScadenza) {
    documento(3, 3, "03/12/2026", 1, 5, 100);
    db->Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza) "
                "VALUES (10,3,1,'Acconto',#04/12/2026#,60)");
    struct Caso {
        const char* nome;
        Modalita modalita;
        bool documento;
        const char* importo;
        std::string messaggio;
    };
    const Caso casi[] = {
        {"senza documento", Modalita::Nuovo, false, "40", "Selezionare il documento!"},
        {"oltre il rimanente", Modalita::Nuovo, true, "40,01",
         "L'importo supera quanto resta da scadenzare sul documento!"},
        // On a change the 60.00 already scheduled counts as this instalment's own.
        {"modificata a 100", Modalita::Modifica, true, "100", ""},
        {"modificata oltre", Modalita::Modifica, true, "100,01",
         "L'importo supera quanto resta da scadenzare sul documento!"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        db->Execute("Delete from Scadenze where Documento=3 and ID<>10");
        db->Execute("Update Scadenze set ImportoScadenza=60 where ID=10");
        p.script->dimentica();
        frmScadenzeEdita e;
        e.Prepara({c.modalita, c.modalita == Modalita::Modifica ? 10 : 0, nullptr, "Documento", c.documento ? 3 : 0});
        if (c.modalita == Modalita::Nuovo && c.documento) {
            EXPECT_EQ(e.txtImporto->text().toStdString(), "40,00");
        }
        e.pkData->setTesto("30/04/2026");
        if (!c.documento) e.cbCliente->setValore(store::Value::Long(1));
        e.txtImporto->setText(c.importo);
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), c.messaggio.empty() ? std::vector<std::string>{} : std::vector{c.messaggio});
        EXPECT_EQ(conta("Select * from Scadenze where Documento=3"),
                  c.messaggio.empty() && c.modalita == Modalita::Nuovo ? 2 : 1);
    }
}

}  // namespace
