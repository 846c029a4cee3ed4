// The payment editors on the real screens, opened by the commands that call them: partial payments
// completed and undone, an expense paid, the cascade of picks and the refusals, each leaving the
// archive as it was.
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "payments/screens/frmPagamentiEdita.h"
#include "sales/screens/SchedaScadenze.h"
#include "sales/screens/frmDocumenti.h"
#include "store/clock.h"
#include "store/convert.h"
#include "support/avvio_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

class PagamentiEdita : public EsercizioAperto {
protected:
    void SetUp() override {
        store::fissaOrologio(store::DateSerial(2026, 6, 15));   // a new payment is dated today
        EsercizioAperto::SetUp();
        db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi Impianti Srl')");
        db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (2,'Bianchi Mario')");
        // Fattura 1 of 100.00 to customer 1 with instalments 1 (60.00) and 2 (40.00); fattura 2 of
        // 100.00 with none.
        db->Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,ImportoTotale,Pagato) "
                    "VALUES (1,5,1,'','',#03/10/2026#,1,100,False)");
        db->Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,ImportoTotale,Pagato) "
                    "VALUES (2,5,2,'','',#03/12/2026#,1,100,False)");
        db->Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza,Rata,Rate,"
                    "Pagata) VALUES (1,1,1,'Rata 1',#04/10/2026#,60,1,2,False)");
        db->Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza,Rata,Rate,"
                    "Pagata) VALUES (2,1,1,'Rata 2',#05/10/2026#,40,2,2,False)");
    }

    void TearDown() override { store::fissaOrologio(std::nullopt); }

    static std::string testo(QWidget* w) {
        if (auto* l = qobject_cast<QLineEdit*>(w)) return l->text().toStdString();
        return static_cast<QLabel*>(w)->text().toStdString();
    }
};

// Instalment 1 collected in two goes from the fattura's tab: the proposal, the wording and the flags
// follow each step (the journal rows are the payment logic's).
TEST_F(PagamentiEdita, AccontoSaldoEdEliminazione) {
    core::ImpostaModoSchermo("frmDocumenti", core::TipoFatturaEmessa);
    frmDocumenti r;
    r.show();
    r.sTab->setCurrentIndex(3);
    ASSERT_TRUE(r.griglia()->vaiAId(1));
    struct Passo {
        const char* nome;
        const char* importo;   // typed over the proposal; null keeps it
        const char* proposto;
        // The description's first word, whatever was typed there: the wording looks at what is left
        // on the document, so an instalment paid in full with more due on the document is an advance.
        const char* parola;
        bool rata1, documento;
    } const passi[] = {
        {"acconto", "25", "60,00", "Acconto", false, false},
        {"saldo della rata", nullptr, "35,00", "Acconto", true, false},
    };
    for (const Passo& s : passi) {
        SCOPED_TRACE(s.nome);
        ASSERT_TRUE(r.Scadenze->fmScadenze->griglia()->vaiAId(1));
        std::string proposto, descrizione;
        confermaCon<frmPagamentiEdita>(*p.script, [&](frmPagamentiEdita* e) {
            proposto = testo(e->txtImporto);
            if (s.importo) {
                e->txtDescrizione->setText("scritta a mano");
                e->txtImporto->setText(s.importo);
            }
            descrizione = testo(e->txtDescrizione);
        });
        clic(&r, "btnIncassa");
        EXPECT_EQ(proposto, s.proposto);
        EXPECT_EQ(descrizione.substr(0, descrizione.find(' ')), s.parola) << descrizione;
        EXPECT_EQ(conta("Select * from Scadenze where ID=1 and Pagata=True"), s.rata1 ? 1 : 0);
        EXPECT_EQ(conta("Select * from Documenti where ID=1 and Pagato=True"), s.documento ? 1 : 0);
    }
    EXPECT_EQ(conta("Select * from Pagamenti where Scadenza=1"), 2);
}

// Each refusal shows its text and writes nothing.
TEST_F(PagamentiEdita, Rifiuti) {
    db->Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,ImportoScadenza,Pagata) VALUES (3,2,1,'Unica',33.33,False)");
    db->Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,ImportoTotale,Pagato) "
                "VALUES (3,5,3,'','',#03/14/2026#,2,100,False)");
    struct Caso {
        const char* nome;
        const char* campo;   // how the editor is opened
        long id;
        std::function<void(EditorPagamento&)> compila;
        std::string messaggio;
    } const casi[] = {
        {"un centesimo oltre il documento", "Documento", 3, [](EditorPagamento& e) { e.txtImporto->setText("100,01"); },
         "L'importo supera quanto resta da pagare sul documento!"},
        {"scadenze aperte", "Documento", 1, [](EditorPagamento& e) { e.txtImporto->setText("10"); },
         "Il documento ha delle scadenze aperte: selezionare la scadenza da pagare!"},
        {"oltre la rata", "Scadenza", 3, [](EditorPagamento& e) { e.txtImporto->setText("40"); },
         "L'importo supera quanto resta da pagare sulla scadenza!"},
        {"fuori esercizio", "Scadenza", 3, [](EditorPagamento& e) { e.pkData->setTesto("31/12/2025"); },
         "La data del pagamento non rientra nel periodo dell'esercizio corrente!"},
        {"nessun documento", "", 0, [](EditorPagamento& e) { e.txtImporto->setText("10"); }, "Selezionare il cliente o il fornitore!"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        auto e = std::make_unique<frmPagamentiEdita>();
        e->Prepara({Modalita::Nuovo, 0, nullptr, c.campo, c.id});
        c.compila(*e);
        p.script->dimentica();
        e->Conferma();
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{c.messaggio});
        EXPECT_EQ(conta("Select * from Pagamenti"), 0);
        EXPECT_EQ(conta("Select * from PrimaNota"), 0);
    }
}

// The picks agree both ways: an instalment brings its document and customer, a customer clears
// the document and narrows the lists, lowering the amount turns the wording into an advance.
TEST_F(PagamentiEdita, CascataDelleScelte) {
    frmPagamentiEdita e;
    e.Prepara({Modalita::Nuovo, 0, nullptr, "", 0});
    e.cbScadenze->setValore(store::Value::Long(2));
    EXPECT_EQ((std::vector<long>{store::CLng(e.cbDocumenti->valore()), store::CLng(e.cbCliente->valore())}),
              (std::vector<long>{1, 1}));
    EXPECT_EQ(testo(e.txtImporto) + " " + testo(e.lblDaPagare), "40,00 40,00");
    const std::string descrizione = testo(e.txtDescrizione);
    ASSERT_EQ(descrizione.rfind("Acconto ", 0), 0u) << descrizione;   // 60,00 more are due on the document
    const std::string fattura1 = descrizione.substr(8);

    e.cbCliente->setValore(store::Value::Long(2));
    EXPECT_TRUE(e.cbDocumenti->valore().isNull());
    EXPECT_TRUE(e.cbScadenze->valore().isNull());
    EXPECT_EQ(e.cbDocumenti->count(), 0);
    EXPECT_EQ(testo(e.txtDescrizione) + "|" + testo(e.lblPagato), "|0,00");

    // The document alone: its whole remainder settles it; less is an advance.
    e.cbCliente->setValore(store::Value::Long(1));
    e.cbDocumenti->setValore(store::Value::Long(2));
    EXPECT_EQ(testo(e.txtImporto), "100,00");
    EXPECT_EQ(e.cbScadenze->count(), 0);   // fattura 2 has no instalment
    const std::string saldo = testo(e.txtDescrizione);
    ASSERT_EQ(saldo.rfind("Saldo ", 0), 0u) << saldo;
    EXPECT_NE(saldo.substr(6), fattura1);
    e.txtImporto->setText("10");
    EXPECT_EQ(testo(e.txtDescrizione), "Acconto " + saldo.substr(6));
    // An amount of 0 cannot be confirmed at all.
    e.txtImporto->setText("0");
    EXPECT_FALSE(figlio<QPushButton>(&e, "btnConferma")->isEnabled());
    e.txtImporto->setText("5");
    EXPECT_TRUE(figlio<QPushButton>(&e, "btnConferma")->isEnabled());
}

}  // namespace
