// The documents a user issues: the register of each kind opened from its menu, the header editor
// with its ladder of checks and what choosing a customer pulls in, and the delete that takes a
// document's rows along.
#include <QCheckBox>
#include <QTableWidget>
#include <functional>

#include <sqlite3.h>

#include "core/documenti.h"
#include "sales/screens/SchedaScadenze.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiCerca.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "payments/screens/frmGeneraScadenze.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "core/stampa.h"
#include "store/clock.h"
#include "store/convert.h"
#include "support/acquisti_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

class Documenti : public Acquisti {
protected:
    void SetUp() override {
        Acquisti::SetUp();
        db->Execute("Insert Into CondizioniPagamento (ID,DescPagamento,Rate) VALUES (2,'Bonifico 30 gg',1)");
        db->Execute("Insert Into Clienti (ID,DescCliente,CondizioniPagamento,Sconto1,Sconto2) "
                    "VALUES (1,'Rossi Impianti Srl',2,5,3)");
        db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (2,'Bianchi Mario')");
        db->Execute("Insert Into Servizi (ID,DescServizio,CodiceInterno,CodiceIva,CostoUnitario,Sconto1) "
                    "VALUES (1,'Manutenzione caldaia','MC01',2,80,2)");
    }
};

// The ladder of checks, each rung with its message, and what is written.
TEST_F(Documenti, ControlliDellaTestata) {
    documento(1, 1, "03/10/2026");   // 10 March
    struct Caso {
        const char* nome;
        QString data;
        long cliente;
        QString numero;
        int risposta;   // to the duplicate question, 0 when none is expected
        std::vector<std::string> messaggi;
        long scritti;   // documents after the confirm
        long numeroScritto;
    };
    const Caso casi[] = {
        {"senza data", "", 1, "5", 0, {"Inserire la data del documento!"}, 1, 0},
        {"data non valida", "3x/03/2026", 1, "5", 0, {"La data non è valida!"}, 1, 0},
        {"fuori esercizio", "15/01/2025", 1, "5", 0,
         {"La data del documento non rientra nel periodo dell'esercizio corrente!"}, 1, 0},
        {"senza cliente", "20/03/2026", 0, "5", 0, {"Selezionare il cliente o il fornitore!"}, 1, 0},
        {"duplicato non sostituito", "20/03/2026", 1, "1", core::vbNo,
         {"Il numero del documento è già presente. Assegnare il primo numero libero?"}, 1, 0},
        // Renumbered to 2, which then must fit the dates: 2 dated before 1 does not.
        {"duplicato sostituito fuori ordine", "01/03/2026", 1, "1", core::vbYes,
         {"Il numero del documento è già presente. Assegnare il primo numero libero?",
          "Il numero del documento non rispetta l'ordine cronologico delle date!"}, 1, 0},
        {"duplicato sostituito", "20/03/2026", 1, "1", core::vbYes,
         {"Il numero del documento è già presente. Assegnare il primo numero libero?"}, 2, 2},
        {"valido", "20/03/2026", 1, "7", 0, {}, 2, 7},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        db->Execute("Delete from Documenti where ID<>1");
        p.script->dimentica();
        if (c.risposta) p.script->rispondi(c.risposta);
        frmDocumentiEdita e(nullptr, core::TipoFatturaEmessa);
        e.Prepara({Modalita::Nuovo});
        EXPECT_EQ(e.txtNum->text(), "2");
        e.pkData->setTesto(c.data.toStdString());
        if (c.cliente) e.cbClienti->setValore(store::Value::Long(c.cliente));
        e.txtNum->setText(c.numero);
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(conta("Select * from Documenti"), c.scritti);
        // Written with the customer's terms, and the totals ran.
        if (c.numeroScritto) {
            EXPECT_EQ(conta("Select * from Documenti where ID<>1 and Tipo=5 and CondizioniPagamento=2 and "
                            "ImportoTotale Is Not Null and Numero=" + std::to_string(c.numeroScritto)), 1);
        }
    }
}

// A new customer from imgNew, through the screen registered under the customer editor's name.
TEST_F(Documenti, NuovoClienteDalCombo) {
    frmDocumentiEdita e(nullptr, core::TipoFatturaEmessa);
    e.Prepara({Modalita::Nuovo});
    // The real customer editor, opened by name from the sales area's registry of editors.
    confermaCon<QWidget>(*p.script, [](QWidget* c) {
        for (auto* box : c->findChildren<ui::VText*>())
            if (box->dataField() == "DescCliente") box->setText("Zeta Spa");
    }, "frmClientiEdita");
    clic(&e, "imgNew");
    EXPECT_EQ(conta("Select * from Clienti where DescCliente='Zeta Spa' and ID=" +
                    std::to_string(store::CLng(e.cbClienti->valore()))), 1);
    p.script->dimentica();
    e.cbClienti->setValore(store::Value::Null());
    clic(&e, "imgEdit");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Nessun elemento selezionato da modificare!"});
}

// Changing a document with open instalments, or its lines, asks first; No opens nothing. The delete takes
// the lines, charges, instalments and payments along, then the journal rows of those payments;
// another document's rows and the journal rows typed by hand stay.
TEST_F(Documenti, ModificaEdEliminazioneACascata) {
    documento(1, 1, "03/10/2026");
    documento(2, 2, "03/11/2026");
    for (long d : {1, 2}) {
        const std::string s = std::to_string(d);
        db->Execute("Insert Into Movimenti (ID,Documento,DescMovimento,Iva) VALUES (" + s + "," + s + ",'Riga',1)");
        db->Execute("Insert Into SpeseDocumenti (ID,Documento,DescSpesa,Iva) VALUES (" + s + "," + s + ",'Bolli',1)");
        db->Execute("Insert Into Scadenze (ID,Documento,ImportoScadenza) VALUES (" + s + "," + s + ",10)");
        db->Execute("Insert Into Pagamenti (ID,Documento,ImportoPagamento) VALUES (" + s + "," + s + ",10)");
        db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (" + s + "," + s + ",10)");
    }
    db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (3,0,5)");
    core::ImpostaModoSchermo("frmDocumenti", 5);
    frmDocumenti r;
    r.show();
    ASSERT_TRUE(r.griglia()->vaiAId(1));
    for (const char* b : {"btnModifica", "btnEliminaMov"}) {
        SCOPED_TRACE(b);
        p.script->dimentica();
        p.script->rispondiNo();
        clic(&r, b);
        EXPECT_EQ(testiMostrati(*p.script),
                  std::vector<std::string>{"Il documento ha delle scadenze non ancora saldate. Continuare comunque?"});
        EXPECT_TRUE(p.script->schermiMostrati().empty());
    }
    EXPECT_EQ(conta("Select * from Movimenti"), 2);

    p.script->dimentica();
    p.script->rispondiNo();
    clic(&r, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"Eliminare il documento numero 1 con tutte le righe, le spese, le scadenze e "
                                       "i pagamenti collegati?"});
    EXPECT_EQ(conta("Select * from Documenti"), 2);
    p.script->rispondiSi();
    clic(&r, "btnElimina");
    for (const char* t : {"Movimenti", "SpeseDocumenti", "Scadenze", "Pagamenti"}) {
        SCOPED_TRACE(t);
        EXPECT_EQ(conta(std::string("Select * from ") + t + " where Documento=1"), 0);
        EXPECT_EQ(conta(std::string("Select * from ") + t + " where Documento=2"), 1);
    }
    EXPECT_EQ(conta("Select * from Documenti"), 1);
    EXPECT_EQ(conta("Select * from PrimaNota"), 2);
    EXPECT_EQ(conta("Select * from PrimaNota where Pagamento=1"), 0);
    EXPECT_EQ(r.griglia()->righeMostrate(), 2);   // the customer's caption and the other document
}

// A quote becomes the next fattura of the sequence with no prefix, dated today, and leaves the list.
TEST_F(Documenti, ConversioneDiUnPreventivo) {
    core::ImpostaModoSchermo("frmDocumenti", core::TipoPreventivo);
    frmDocumenti r;
    clic(&r, "btnConverti");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Selezionara un preventivo!"});
    documento(1, 4, "03/10/2026", 1, 5);
    documento(2, 7, "03/11/2026", 1, 7);
    db->Execute("Update Documenti set Prefisso='A', ImportoTotale=50 where ID=2");
    r.Aggiorna();
    ASSERT_TRUE(r.griglia()->vaiAId(2));
    p.script->dimentica();
    clic(&r, "btnConverti");
    const std::string oggi = store::DateText(store::Oggi());
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Generata la fattura n.5 del " + oggi});
    EXPECT_EQ(conta("Select * from Documenti where ID=2 and Tipo=5 and Numero=5 and Prefisso='A' and ImportoTotale=50"), 1);
    EXPECT_EQ(store::DateText(store::CDbl(campo("Select * from Documenti where ID=2", "Data"))), oggi);
    EXPECT_EQ(r.griglia()->righeMostrate(), 0);
}

// The search dialog: a ticked date box needs a date; its statement becomes the list's source and
// its criteria the register's.
TEST_F(Documenti, RicercaDeiDocumenti) {
    documento(1, 1, "03/10/2026", 1);
    documento(2, 2, "03/11/2026", 2);
    db->Execute("Update Documenti set Pagato=True where ID=2");
    core::ImpostaModoSchermo("frmDocumenti", 5);
    frmDocumenti r;
    r.chkRaggruppa->setChecked(false);
    struct Caso {
        const char* nome;
        std::function<void(frmDocumentiCerca*)> compila;
        const char* comando;
        std::vector<std::string> messaggi;
        std::string sorgente;
        long righe;
    };
    const std::string tutte = "Select * from qrDocumenti where Tipo=5";
    const Caso casi[] = {
        {"data mancante", [](frmDocumentiCerca* c) { c->chkDataDal->setChecked(true); }, "Command1",
         {"Inserire la data!"}, tutte, 2},
        {"pagate", [](frmDocumentiCerca* c) { c->OpPagate->setCurrentIndex(1); }, "Command1", {},
         "Select * from qrDocumenti  where Pagato=True and Tipo=5", 1},
        {"dal 5 marzo", [](frmDocumentiCerca* c) {
             c->OpPagate->setCurrentIndex(2);
             c->chkDataDal->setChecked(true);
             c->pkDataDal->setTesto("05/03/2026");
         }, "Command1", {}, "Select * from qrDocumenti  where DateValue(Data)>=DateValue('05/03/2026') and Tipo=5", 2},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        p.script->dimentica();
        cercaCon<frmDocumentiCerca>(*p.script, c.compila, c.comando);
        clic(&r, "btnRicerca");
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(r.griglia()->sorgente(), c.sorgente);
        EXPECT_EQ(r.griglia()->righeMostrate(), c.righe);
    }
    EXPECT_TRUE(r.Criteri.dataDal);
}

// The typical fattura: from the menu, a new document numbered by its sequence, written with its
// totals and shown current.
TEST_F(Documenti, FatturaTipica) {
    core::ImpostaModoSchermo("frmDocumenti", core::TipoFatturaEmessa);
    frmDocumenti r;
    confermaCon<frmDocumentiEdita>(*p.script, [](frmDocumentiEdita* e) {
        EXPECT_EQ(e->txtNum->text(), "1");
        e->pkData->setTesto("20/03/2026");
        e->cbClienti->setValore(store::Value::Long(1));
        e->txtSconto2->setText("10");
    });
    clic(&r, "btnNuovo");
    ASSERT_EQ(conta("Select * from Documenti where Tipo=5 and Numero=1 and Cliente=1 and Sconto1=3 and Sconto2=10"), 1);
    EXPECT_EQ(r.griglia()->righeMostrate(), 2);   // grouped under its customer
    EXPECT_EQ(r.griglia()->idCorrente(), 1);
    EXPECT_DOUBLE_EQ(store::CDbl(r.griglia()->valore("ImportoTotale")), 0);

    // Its lines: a service picked brings price, VAT and the customer's discount; the document's
    // own discounts (3 and 10) apply on top when the totals are made.
    r.show();
    confermaCon<frmMovimentiEdita>(*p.script, [](frmMovimentiEdita* e) {
        e->txtQuantita->setText("1");
        e->cbServizi->setValore(store::Value::Long(1));
    });
    clic(&r, "btnNuovoMov");
    // 80 less 5% less 2% = 74.48; less 3% and 10% = 65.02 net, 10% VAT 6.50.
    EXPECT_EQ(conta("Select * from Movimenti where Documento=1 and Importo=74.48 and Iva=2"), 1);
    EXPECT_NEAR(store::CDbl(r.griglia()->valore("ImportoTotale")), 71.52, 0.005);

    // Its instalments: the customer's term in one instalment at 30 days; what is written is what
    // the preview showed.
    db->Execute("Update CondizioniPagamento set Rata1=30 where ID=2");
    std::vector<std::string> anteprima;
    p.script->lasciaAprire("frmGeneraScadenze");
    confermaCon<frmGeneraScadenze>(*p.script, [&anteprima](frmGeneraScadenze* g) {
        for (int i = 0; i < g->Grid->rowCount(); ++i)
            anteprima.push_back(g->Grid->item(i, 1)->text().toStdString() + " " + g->Grid->item(i, 4)->text().toStdString());
    });
    p.script->dimentica();
    clic(&r, "btnGeneraScadenze");
    EXPECT_EQ(anteprima, std::vector<std::string>{"20/04/2026 71,52"});
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Le scadenze sono state generate."});
    EXPECT_EQ(conta("Select * from Scadenze where Documento=1 and Cliente=1 and DataScadenza=#04/20/2026# and "
                    "ImportoScadenza>71.515 and ImportoScadenza<71.525"), 1);
    r.sTab->setCurrentIndex(3);
    EXPECT_EQ(r.Scadenze->fmScadenze->griglia()->righeMostrate(), 1);
}

// The amount of a line follows quantity, price and its two discounts as they are typed; the checks
// of a line and of a charge, and what each confirm writes.
TEST_F(Documenti, RigheESpese) {
    struct Caso {
        const char *quantita, *prezzo, *sc1, *sc2, *importo;
    };
    const Caso casi[] = {
        {"2", "10,00", "10", "10", "16,20"},
        {"1", "0,125", "0", "0", "0,12"},     // an exact half goes to the even cent
        {"2", "abc", "0", "0", "0,00"},       // no number, nothing changes
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.prezzo);
        frmMovimentiEdita e;
        e.Prepara({Modalita::Nuovo, 0, nullptr, "Documento", 1});
        e.txtSc1->setText(c.sc1);
        e.txtSc2->setText(c.sc2);
        e.txtQuantita->setText(c.quantita);
        e.txtPrezzo->setText(c.prezzo);
        EXPECT_EQ(e.txtImporto->text().toStdString(), c.importo);
    }

    documento(1, 1, "03/10/2026");
    const std::tuple<const char*, long, std::vector<std::string>, long> movimenti[] = {
        {"0", 1, {"La quantità è uguale a zero!"}, 0},
        {"1", 0, {"Inserire il codice iva !"}, 0},
        {"2", 1, {}, 1},
    };
    for (const auto& [quantita, iva, messaggi, scritte] : movimenti) {
        SCOPED_TRACE(quantita);
        p.script->dimentica();
        frmMovimentiEdita e;
        e.Prepara({Modalita::Nuovo, 0, nullptr, "Documento", 1});
        e.txtDesc->setText("Consulenza");
        e.txtQuantita->setText(quantita);
        e.txtPrezzo->setText("50");
        if (iva) e.cbIva->setValore(store::Value::Long(iva));
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), messaggi);
        EXPECT_EQ(conta("Select * from Movimenti where Documento=1"), scritte);
    }
    // Opened alone, the line brings the totals up to date itself: 2 x 50 plus 22%.
    EXPECT_DOUBLE_EQ(store::CDbl(campo("Select * from Documenti where ID=1", "ImportoTotale")), 122);

    const std::tuple<const char*, long, std::vector<std::string>, long> spese[] = {
        {"  ", 1, {"Inserire la descrizione!"}, 0},
        {"Trasporto", 0, {"Selezionare il codice IVA!"}, 0},
        {"Trasporto", 1, {}, 1},
    };
    for (const auto& [desc, iva, messaggi, righe] : spese) {
        SCOPED_TRACE(desc);
        p.script->dimentica();
        frmSpeseDocumentiEdita e;
        e.Prepara({Modalita::Nuovo, 0, nullptr, "Documento", 1});
        e.VText1->setText(desc);
        e.VText2->setText("10");
        if (iva) e.cbIva->setValore(store::Value::Long(iva));
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), messaggi);
        EXPECT_EQ(conta("Select * from SpeseDocumenti where Documento=1"), righe);
    }
    EXPECT_DOUBLE_EQ(store::CDbl(campo("Select * from Documenti where ID=1", "TotSpese")), 12.2);
    EXPECT_DOUBLE_EQ(store::CDbl(campo("Select * from Documenti where ID=1", "ImportoTotale")), 134.2);
}

}  // namespace

// What the register hands to the print screen: the kind's section, the current document, its lines,
// the list's own statement and the selection in words; the supplier notes print nothing.
TEST_F(Documenti, StampaDelRegistro) {
    documento(1, 7, "03/10/2026");
    core::ImpostaModoSchermo("frmDocumenti", 5);
    frmDocumenti r;
    StampeRaccolte stampe;
    const sales::CriteriDocumenti scelti{.tipo = 5, .dataDal = true, .dataAl = true, .dest = true, .numDal = true,
                                         .numAl = true, .dal = "01/01/2026", .al = "31/03/2026", .cliente = 1,
                                         .pagate = 0, .prefissoDal = "", .suffissoDal = "", .prefissoAl = "",
                                         .suffissoAl = "", .numeroDal = 3, .numeroAl = 9};
    r.Criteri = scelti;
    clic(&r, "btnStampa");
    clic(&r, "btnStampaRitenuta");
    ASSERT_EQ(stampe.size(), 2u);
    const core::RichiestaStampa& s = stampe[0];
    EXPECT_EQ(s.subReports.Item("Documento")->Query, "Select * from qrDocumenti where ID=1");
    EXPECT_EQ(s.subReports.Item("Elenco")->Query, r.griglia()->istruzione());
    EXPECT_EQ(s.parametri.Item("Criterio")->Valore, "Selezione: Non Pagate; Dal 01/01/2026 Al 31/03/2026; Dal numero "
                                                     "3 Al numero 9; Cliente Rossi Impianti Srl");
    EXPECT_EQ(stampe[1].subReports.Item("Elenco")->Query, "Select * from qrCertificazioniAcconto where ID=1");

    frmDocumenti fornitore(nullptr, core::TipoNotaCreditoRicevuta);
    EXPECT_FALSE(fornitore.findChild<QPushButton*>("btnStampa"));
}

// Another program holding the archive: the save says why it failed and writes nothing; once the
// lock is given back, the same confirm saves.
TEST_F(Documenti, ArchivioBloccatoDaUnAltroProgramma) {
    frmDocumentiEdita e(nullptr, core::TipoFatturaEmessa);
    e.Prepara({Modalita::Nuovo});
    e.pkData->setTesto("20/03/2026");
    e.cbClienti->setValore(store::Value::Long(1));
    sqlite3* altro = nullptr;
    ASSERT_EQ(sqlite3_open(db->Name().c_str(), &altro), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(altro, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    e.Conferma();
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"Errore 3218: Impossibile aggiornare. Attualmente bloccato."});
    sqlite3_exec(altro, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(altro);
    EXPECT_EQ(conta("Select * from Documenti"), 0);
    p.script->dimentica();
    e.Conferma();
    EXPECT_TRUE(testiMostrati(*p.script).empty());
    EXPECT_EQ(conta("Select * from Documenti where Numero=1 and Cliente=1"), 1);
}
