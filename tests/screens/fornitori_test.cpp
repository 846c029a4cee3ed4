// Suppliers as the user meets them: the editor's one check and the texts it keeps, the delete guard
// that leaves expenses out, and the payments deleted from their tab.
#include <QPlainTextEdit>
#include <QTabWidget>

#include "core/diritti.h"
#include "core/varie.h"
#include "expenses/screens/frmFornitori.h"
#include "support/acquisti_prova.h"
#include "ui/VText.h"

using namespace prova;

namespace {

const std::string kMovimentato = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n";

// The supplier's editor: the name required; then saved, its texts kept as typed, cut to the field's size.
TEST_F(Acquisti, FornitoreEditorControlliERigheScritte) {
    frmFornitoriEdita e;
    e.Prepara({Modalita::Nuovo});
    e.VText2->setText("Via dell'Olmo 3");
    e.Text1->setPlainText(QString("Consegna il martedì, chiedere di 'Gino'") + QString(10000, '.'));
    e.Conferma();
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Inserire la descrizione o la denominazione!"});
    EXPECT_EQ(conta("Select * from Fornitori"), 1);

    p.script->dimentica();
    e.VText1->setText("Bar dell'Angolo \"Da Gino\"" + QString(10000, 'x'));
    e.Conferma();
    EXPECT_TRUE(testiMostrati(*p.script).empty());
    const std::string riga = "Select * from Fornitori where ID=2";
    EXPECT_EQ(store::ConcatText(campo(riga, "DescFornitore")), "Bar dell'Angolo \"Da Gino\"" + std::string(75, 'x'));
    EXPECT_EQ(store::ConcatText(campo(riga, "Indirizzo")), "Via dell'Olmo 3");
    EXPECT_EQ(store::ConcatText(campo(riga, "Note")).rfind("Consegna il martedì, chiedere di 'Gino'", 0), 0u);
}

// Each command of the register: what it asks or says, and what stays in the archive.
TEST_F(Acquisti, FornitoriComandi) {
    struct Caso {
        const char* nome;
        std::vector<const char*> righe;   // rows using supplier 1
        int negato;                       // the right taken away, 0 none
        const char* comando;
        int scheda;                       // the tab in front
        std::vector<std::string> messaggi;
        long fornitori, spese, pagamenti, primaNota;   // rows left afterwards
    };
    const char* scadenza = "Insert Into Scadenze (ID,Fornitore,DescScadenza,ImportoScadenza) VALUES (1,1,'Rata 1',100)";
    const char* pagamento = "Insert Into Pagamenti (ID,Fornitore,DescPagamento,ImportoPagamento) VALUES (1,1,'Bonifico',50)";
    const char* giornale = "Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (1,1,50)";
    const std::string nome = "Cartoleria dell'Olmo di Verdi Giuseppe & C. S.a.s.";
    const Caso casi[] = {
        {"usato da un documento", {"Insert Into Documenti (ID,Tipo,Fornitore) VALUES (1,9,1)"}, 0, "btnElimina", 0,
         {kMovimentato + "1) Documenti\r\n"}, 1, 0, 0, 0},
        {"usato solo da una spesa", {"Insert Into Spese (ID,Numero,Fornitore) VALUES (1,'7',1)"}, 0, "btnElimina", 0,
         {"Eliminare il fornitore " + nome + "?"}, 0, 1, 0, 0},
        {"paga senza diritto", {scadenza}, core::PrimaNotaVedere, "btnPagaScadenza", 1, {kNegato}, 1, 0, 0, 0},
        {"elimina pagamento", {pagamento, giornale}, 0, "btnEliminaPagamento", 2, {"Eliminare il pagamento Bonifico?"}, 1,
         0, 0, 0},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        for (const char* t : {"Documenti", "Pagamenti", "Scadenze", "Spese", "PrimaNota"})
            db->Execute(std::string("Delete from ") + t);
        if (conta("Select * from Fornitori") == 0)
            db->Execute("Insert Into Fornitori (ID,DescFornitore) VALUES (1,'" + core::Apici(nome) + "')");
        for (const char* r : c.righe) db->Execute(r);
        senzaDiritto(c.negato);
        frmFornitori r;
        r.show();
        r.sTab->setCurrentIndex(c.scheda);
        p.script->dimentica();
        p.script->rispondiSi();
        clic(&r, c.comando);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ((std::vector<long>{conta("Select * from Fornitori"), conta("Select * from Spese"),
                                     conta("Select * from Pagamenti"), conta("Select * from PrimaNota")}),
                  (std::vector<long>{c.fornitori, c.spese, c.pagamenti, c.primaNota}));
    }
    // The expense of a deleted supplier shows no name.
    EXPECT_TRUE(campo("Select DescFornitore from qrSpese where ID=1", "DescFornitore").isNull());
}

}  // namespace
