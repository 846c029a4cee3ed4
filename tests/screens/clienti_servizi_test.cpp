// Customers, services and suppliers as the user meets them: the editors' checks and rows written,
// the services' print, the call link, and the commands of the supplier's tabs.
#include <QCheckBox>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QUrl>

#include "core/diritti.h"
#include "core/stampa.h"
#include "expenses/screens/frmFornitori.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmServizi.h"
#include "support/acquisti_prova.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"

using namespace prova;

namespace {

class Anagrafiche : public EsercizioAperto {
protected:
    std::string testo(const std::string& sql, const std::string& nome) { return store::ConcatText(campo(sql, nome)); }

    // Confirms the editor as shown; a refusal must show its message and leave the table empty.
    template <class Editor>
    std::optional<long> conferma(Editor& e, const char* messaggio, const char* tabella) {
        p.script->dimentica();
        confermaCon<Editor>(*p.script, [](Editor*) {});
        const std::optional<long> id = e.Mostra();
        if (*messaggio) {
            EXPECT_FALSE(id);
            EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{messaggio});
            EXPECT_EQ(conta(std::string("Select * from ") + tabella), 0);
        }
        return id;
    }
};

// The customer's editor: the one required field, blank or not; then saved, the name kept as typed and
// cut to the field's size, the discount read with a comma and a letter refused by the box.
TEST_F(Anagrafiche, ClienteEditorControlliERigheScritte) {
    frmClientiEdita e;
    e.EditaRecordset(0, true);
    scrivi(&e, "VText20", "1a2,5");
    for (const char* vuota : {"", "   "}) {
        e.VText1->setText(vuota);
        conferma(e, "La denominazione non è stata inserita!", "Clienti");
    }
    e.VText1->setText("Bar dell'Angolo \"Da Gino\"" + QString(10000, 'x'));
    const std::optional<long> id = conferma(e, "", "Clienti");
    ASSERT_TRUE(id);
    const std::string riga = "Select * from Clienti where ID=" + std::to_string(*id);
    EXPECT_EQ(testo(riga, "DescCliente"), "Bar dell'Angolo \"Da Gino\"" + std::string(75, 'x'));
    EXPECT_DOUBLE_EQ(store::CDbl(campo(riga, "Sconto1")), 12.5);
}

// The call menu hands "sip:" and the number to the desktop, blank number or not.
TEST_F(Anagrafiche, ClienteChiamataVoip) {
    db->Execute("INSERT INTO Clienti (ID, DescCliente, Cellulare) VALUES (1, 'A', '333 4')");
    db->Execute("INSERT INTO Clienti (ID, DescCliente) VALUES (2, 'B')");
    std::vector<std::string> aperti;
    frmClienti::apriLink = [&aperti](const QUrl& u) { aperti.push_back(u.toString().toStdString()); };
    frmClienti r;
    r.Chiama("Cellulare");
    r.griglia()->vaiAId(2);
    r.Chiama("Telefono");
    frmClienti::apriLink = nullptr;
    EXPECT_EQ(aperti, (std::vector<std::string>{"sip:333 4", "sip:"}));
}

// The service's editor: description and VAT code required; the price as typed; the print flag.
TEST_F(Anagrafiche, ServizioEditorControlliERigheScritte) {
    db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (1, 'Iva 22%', 22)");
    frmServiziEdita e;
    e.EditaRecordset(0, true);
    scrivi(&e, "txtPrezzoBase", "1.234,567");
    e.Check1->setChecked(true);
    e.VText1->setText(" ");
    conferma(e, "Inserire la descrizione!", "Servizi");
    e.VText1->setText("Sopralluogo \"urgente\"");
    conferma(e, "Selezionare il codice IVA!", "Servizi");
    e.cbIva->setValore(store::Value::Long(1));
    const std::optional<long> id = conferma(e, "", "Servizi");
    ASSERT_TRUE(id) << ::testing::PrintToString(testiMostrati(*p.script));
    EXPECT_EQ(conta("Select * from Servizi where ID=" + std::to_string(*id) + " and DescServizio='Sopralluogo "
                    "\"urgente\"' and CostoUnitario=1234.567 and CodiceIva=1 and NonStampare=True"), 1);
}

// The print of the services: the list as it stands, searched; the services marked out of print
// stay off the paper but not off the screen.
TEST_F(Anagrafiche, StampaDegliElenchi) {
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (1, 'Posa', False)");
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (2, 'Posa interna', True)");
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (3, 'Visita', False)");
    StampeRaccolte stampe;
    frmServizi servizi;
    scrivi(&servizi, "txtCerca", "Posa");
    EXPECT_EQ(servizi.griglia()->righeMostrate(), 2);
    clic(&servizi, "btnStampa");
    ASSERT_EQ(stampe.size(), 1u);
    const std::string elenco = stampe[0].subReports.Item("Elenco")->Query;
    std::vector<std::string> stampati;
    for (auto rs = db->OpenRecordset(elenco); !rs->Eof(); rs->MoveNext())
        stampati.push_back(store::ConcatText(rs->get("DescServizio")));
    EXPECT_EQ(stampati, std::vector<std::string>{"Posa"});
}

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

// The commands of the supplier's tabs: what each asks or says, and what stays in the archive.
TEST_F(Acquisti, FornitoriComandi) {
    struct Caso {
        const char* nome;
        std::vector<const char*> righe;   // rows using supplier 1
        int negato;                       // the right taken away, 0 none
        const char* comando;
        int scheda;                       // the tab in front
        std::vector<std::string> messaggi;
        long fornitori, pagamenti, primaNota;   // rows left afterwards
    };
    const char* scadenza = "Insert Into Scadenze (ID,Fornitore,DescScadenza,ImportoScadenza) VALUES (1,1,'Rata 1',100)";
    const char* pagamento = "Insert Into Pagamenti (ID,Fornitore,DescPagamento,ImportoPagamento) VALUES (1,1,'Bonifico',50)";
    const char* giornale = "Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (1,1,50)";
    const Caso casi[] = {
        {"paga senza diritto", {scadenza}, core::PrimaNotaVedere, "btnPagaScadenza", 1, {kNegato}, 1, 0, 0},
        {"elimina pagamento", {pagamento, giornale}, 0, "btnEliminaPagamento", 2, {"Eliminare il pagamento Bonifico?"}, 1,
         0, 0},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        for (const char* t : {"Pagamenti", "Scadenze", "PrimaNota"}) db->Execute(std::string("Delete from ") + t);
        for (const char* r : c.righe) db->Execute(r);
        senzaDiritto(c.negato);
        frmFornitori r;
        r.show();
        r.sTab->setCurrentIndex(c.scheda);
        p.script->dimentica();
        p.script->rispondiSi();
        clic(&r, c.comando);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ((std::vector<long>{conta("Select * from Fornitori"), conta("Select * from Pagamenti"),
                                     conta("Select * from PrimaNota")}),
                  (std::vector<long>{c.fornitori, c.pagamenti, c.primaNota}));
    }
}

}  // namespace
