// Expenses as the user meets them: the head's checks in their order, an expense from entry to its
// totals, the commands of the register with their rights and questions, the delete that takes the
// expense's rows along, the VAT back-calculation of a line and the search with its sums.
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTest>
#include <QUrl>
#include <fstream>
#include <functional>

#include "core/diritti.h"
#include "core/varie.h"
#include "expenses/screens/frmSpese.h"
#include "expenses/screens/frmSpeseCerca.h"
#include "expenses/screens/frmSpeseEdita.h"
#include "payments/screens/frmScadenzeEdita.h"
#include "support/acquisti_prova.h"
#include "ui/VBars.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

TEST_F(Acquisti, SpesaEditorControlliDellaTestata) {
    spesa(1, "7", "03/20/2026");   // 20 March
    struct Caso {
        const char* nome;
        QString data;
        long fornitore;
        QString numero;
        QString ritenuta;   // typed
        std::vector<std::string> messaggi;
        std::string numeroScritto;   // "" when nothing is written
        double ritenutaScritta;
    };
    const Caso casi[] = {
        {"senza data", "", 1, "8", "0", {"Inserire la data!"}, "", 0},
        {"fuori esercizio", "15/01/2025", 1, "8", "0",
         {"La data della spesa non rientra nel periodo dell'esercizio corrente!"}, "", 0},
        {"senza fornitore", "20/03/2026", 0, "8", "0", {"Selezionare il fornitore!"}, "", 0},
        {"duplicata", "20/03/2026", 1, "7", "0", {"Esiste già un documento con stesso numero, data e fornitore!"}, "", 0},
        {"stesso numero il giorno dopo", "21/03/2026", 1, "7", "20", {}, "7", 20},
        {"lettere nella ritenuta", "20/03/2026", 1, "9", "1a5,5", {}, "9", 15.5},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        db->Execute("Delete from Spese where ID<>1");
        p.script->dimentica();
        frmSpeseEdita e;
        e.Prepara({Modalita::Nuovo});
        e.pkData->setTesto(c.data.toStdString());
        if (c.fornitore) e.cbFornitore->setValore(store::Value::Long(c.fornitore));
        e.txtNum->setText(c.numero);
        digita(e.VText1, c.ritenuta);
        e.Text1->setPlainText("Fattura \"urgente\" dell'ufficio " + QString(10000, 'n'));
        e.Conferma();
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(conta("Select * from Spese"), c.numeroScritto.empty() ? 1 : 2);
        if (c.numeroScritto.empty()) continue;
        // The note kept whole, and the totals ran.
        EXPECT_EQ(conta("Select * from Spese where ID=2 and Numero='" + c.numeroScritto + "' and RitenutaAcconto=" +
                        core::NumeroSql(c.ritenutaScritta) + " and ImportoSpesa Is Not Null"), 1);
        EXPECT_EQ(store::ConcatText(campo("Select * from Spese where ID=2", "Note")).size(), 10031u);
    }
    // A changed expense is not checked for a duplicate.
    spesa(3, "7", "03/21/2026");
    frmSpeseEdita m;
    m.Prepara({Modalita::Modifica, 3});
    m.pkData->setTesto("20/03/2026");
    p.script->dimentica();
    m.Conferma();
    EXPECT_TRUE(testiMostrati(*p.script).empty());
}

// One expense from the register: the head, four lines at two rates (one negative, amounts typed with
// a comma, a point and a stray letter), a withholding of 20%. Each line saved brings the stored
// totals, the row on screen and the sums of the list up to date at once. Then its instalments.
TEST_F(Acquisti, SpesaDallInserimentoAlleScadenze) {
    frmSpese r;
    r.show();
    confermaCon<frmSpeseEdita>(*p.script, [](frmSpeseEdita* e) {
        e->pkData->setTesto("10/04/2026");
        e->txtNum->setText("15/A");
        e->cbFornitore->setValore(store::Value::Long(1));
        e->cbTipoSpesa->setValore(store::Value::Long(1));
        e->cbClassificazione->setValore(store::Value::Long(1));
        digita(e->VText1, "20");
    });
    clic(&r, "btnNuovo");
    ASSERT_EQ(conta("Select * from Spese"), 1);
    EXPECT_EQ(r.griglia()->idCorrente(), 1);

    struct Riga {
        const char* desc;
        const char* importo;   // typed
        long iva;
    };
    const Riga righe[] = {{"Carta A4 risma da 500 fogli", "100,00", 1},
                          {"Toner", "50.5", 1},
                          {"Buste", "12a,34", 2},
                          {"Reso carta", "-10,00", 1}};
    for (const Riga& riga : righe) {
        confermaCon<frmSpeseMovEdita>(*p.script, [riga](frmSpeseMovEdita* e) {
            e->txtDesc->setText(riga.desc);
            digita(e->txtImporto, riga.importo);
            e->cbIva->setValore(store::Value::Long(riga.iva));
        });
        clic(&r, "btnNuovoMov");
    }
    EXPECT_EQ(conta("Select * from MovimentiSpese where Spesa=1"), 4);
    // Taxable 100 + 50.50 + 12.34 - 10 = 152.84; VAT per line 22.00 + 11.11 + 1.23 - 2.20 = 32.14;
    // withholding 30.568, unrounded; total 152.84 - 30.568 + 32.14 = 154.412.
    const std::string spesa = "Select * from Spese where ID=1";
    EXPECT_DOUBLE_EQ(store::CDbl(campo(spesa, "Imponibile")), 152.84);
    EXPECT_DOUBLE_EQ(store::CDbl(campo(spesa, "TotIva")), 32.14);
    EXPECT_NEAR(store::CDbl(campo(spesa, "ImportoSpesa")), 154.412, 1e-9);
    EXPECT_NEAR(store::CDbl(r.griglia()->valore("ImportoSpesa")), 154.412, 1e-9);
    QApplication::processEvents();  // the sums follow once the row is shown
    EXPECT_EQ(r.BarTotali->testo("ImportoSpesa"), "154,41");
    EXPECT_EQ(r.BarTotali->testo("TotRitenutaAcconto"), "30,57");

    r.sTab->setCurrentIndex(1);
    ui::VetraGrid* iva = r.GridIva->griglia();
    ASSERT_EQ(iva->righeMostrate(), 2);
    iva->vaiAId(1);
    EXPECT_DOUBLE_EQ(store::CDbl(iva->valore("Imponibile")), 140.5);
    EXPECT_DOUBLE_EQ(store::CDbl(iva->valore("Imposta")), 30.91);

    // The negative line goes: its question, then the totals follow.
    r.sTab->setCurrentIndex(0);
    ui::VetraGrid* mov = r.GridMov->griglia();
    ASSERT_TRUE(mov->vaiAId(4));
    p.script->dimentica();
    p.script->rispondiSi();
    clic(&r, "btnEliminaMov");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Eliminare il movimento 'Reso carta' ?"});
    EXPECT_DOUBLE_EQ(store::CDbl(campo(spesa, "Imponibile")), 162.84);
    EXPECT_NEAR(store::CDbl(r.griglia()->valore("ImportoSpesa")), 162.84 - 32.568 + 34.34, 1e-9);
    EXPECT_FALSE(store::CBool(campo(spesa, "Pagata")));

    // The plan is read among the documents by the expense's id: with no document 1 the archive's
    // missing record stops it, and nothing is written.
    r.sTab->setCurrentIndex(2);
    p.script->dimentica();
    p.script->lasciaAprire("frmGeneraScadenze");
    clic(&r, "btnGeneraScadenze");
    ASSERT_EQ(testiMostrati(*p.script).size(), 1u);
    EXPECT_EQ(testiMostrati(*p.script)[0].rfind("Errore 3021", 0), 0u);
    EXPECT_EQ(conta("Select * from Scadenze"), 0);
    // By hand: the first instalment proposes what is left of the expense, 164.61; 100 is a part
    // payment, then the rest, which a cent more would pass.
    const std::string descSpesa = store::ConcatText(campo("Select * from qrSpeseScadenze where ID=1", "DescDocumento"));
    struct Rata {
        const char* proposto;
        std::vector<const char*> importi;   // typed and confirmed in turn
        std::vector<std::string> messaggi;
        std::string descrizione;
    };
    const Rata rate[] = {
        {"164,61", {"100"}, {}, "Acconto " + descSpesa},
        {"64,61", {"64,62", "64,61"}, {"L'importo supera quanto resta da scadenzare sulla spesa!"}, "Saldo " + descSpesa},
    };
    for (const Rata& rata : rate) {
        SCOPED_TRACE(rata.proposto);
        p.script->dimentica();
        p.script->schermo("frmScadenzeSpeseEdita", [&rata](QWidget* w) {
            auto* e = static_cast<frmScadenzeSpeseEdita*>(w);
            EXPECT_EQ(e->txtImporto->text().toStdString(), rata.proposto);
            EXPECT_EQ(e->lblDaPagare->text().toStdString(), rata.proposto);
            EXPECT_EQ(store::CLng(e->cbFornitore->valore()), 1);
            e->pkData->setTesto("30/04/2026");
            for (const char* importo : rata.importi) {
                digita(e->txtImporto, importo);
                e->Conferma();
            }
            return true;
        });
        clic(&r, "btnNuovaScadenza");
        EXPECT_EQ(testiMostrati(*p.script), rata.messaggi);
        EXPECT_EQ(conta("Select * from Scadenze where Spesa=1 and Documento=0 and DescScadenza='" +
                        core::Apici(rata.descrizione) + "'"),
                  1);
    }
    EXPECT_EQ(r.GridScadenze->griglia()->righeMostrate(), 2);
    EXPECT_NEAR(store::CDbl(campo("Select Sum(ImportoScadenza) as S from Scadenze where Spesa=1", "S")), 164.61, 1e-9);
}

// Each command of the register on an expense with an open instalment and one line.
TEST_F(Acquisti, SpeseComandi) {
    spesa(1, "7", "03/20/2026");
    db->Execute("Insert Into MovimentiSpese (ID,Spesa,DescMovimento,Importo,Iva) VALUES (1,1,'Carta',100,1)");
    db->Execute("Insert Into Scadenze (ID,Spesa,DescScadenza,ImportoScadenza,Pagata) VALUES (1,1,'Rata 1',122,False)");
    const std::string domanda = "Attenzione! La spesa contiene scadenze o pagamenti, se si apportano modifiche, potrebbe "
                                "essere necessario modificarli. Proseguire?";
    struct Caso {
        const char* comando;
        int negato;      // the right taken away, 0 none
        int risposta;    // to a question, 0 none
        std::vector<std::string> messaggi;
    };
    const Caso casi[] = {
        // The question about the instalment comes before the right.
        {"btnModifica", core::SpeseModificare, core::vbYes, {domanda, kNegato}},
        {"btnModifica", 0, core::vbNo, {domanda}},
        {"btnModificaMov", 0, core::vbNo, {domanda}},
        {"btnPaga", core::PagamentiModificare, 0, {kNegato}},
        {"btnFile", 0, 0, {}},   // no linked file: nothing
    };
    frmSpese r;
    r.show();
    r.sTab->setCurrentIndex(2);
    for (const Caso& c : casi) {
        SCOPED_TRACE(std::string(c.comando) + " " + std::to_string(c.negato) + " " + std::to_string(c.risposta));
        senzaDiritto(c.negato);
        if (std::string(c.comando) == "btnFile") r.sTab->setCurrentIndex(3);
        p.script->dimentica();
        if (c.risposta) p.script->rispondi(c.risposta);
        clic(&r, c.comando);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_TRUE(p.script->schermiMostrati().empty());
        EXPECT_EQ(conta("Select * from Spese"), 1);
        EXPECT_EQ(conta("Select * from MovimentiSpese"), 1);
        EXPECT_EQ(conta("Select * from Scadenze"), 1);
    }
    // A linked file that exists goes to the desktop; with no program for it, the message.
    const std::string file = (p.dati / "fattura dell'idraulico.pdf").string();
    std::ofstream(file) << "%PDF";
    db->Execute("Update Spese set File='" + core::Apici(file) + "' where ID=1");
    r.Aggiorna();
    std::vector<std::string> aperti;
    frmSpese::apriFile = [&aperti](const QUrl& u) {
        aperti.push_back(u.toLocalFile().toStdString());
        return false;
    };
    p.script->dimentica();
    clic(&r, "btnFile");
    frmSpese::apriFile = nullptr;
    EXPECT_EQ(aperti, std::vector<std::string>{file});
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Il file non risulta associato ad alcun programma!"});

    // The sums of tab 2 for the expense and for the whole list.
    senzaDiritto(0);
    db->Execute("Update Spese set ImportoSpesa=122 where ID=1");
    db->Execute("Insert Into Pagamenti (ID,Spesa,ImportoPagamento) VALUES (1,1,22.005)");
    r.Aggiorna();
    r.sTab->setCurrentIndex(2);
    EXPECT_EQ(QStringList({r.lblIncassato->text(), r.lblDaIncassare->text(), r.lblImportoTutti->text(),
                           r.lblDaIncassareTutti->text()}),
              QStringList({"22,01", "100,00", "122,00", "100,00"}));
}

// Deleting an expense takes its lines, instalments and payments, and the payments' journal rows.
TEST_F(Acquisti, EliminaSpesaACascata) {
    spesa(1, "7", "03/20/2026");
    spesa(2, "8", "03/21/2026");
    for (long s : {1, 2}) {
        const std::string id = std::to_string(s);
        for (const char* t : {"MovimentiSpese", "Scadenze", "Pagamenti"})
            db->Execute(std::string("Insert Into ") + t + " (ID,Spesa) VALUES (" + id + "," + id + ")");
        db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (" + id + "," + id + ",10)");
    }
    db->Execute("Insert Into PrimaNota (ID,Pagamento,Importo) VALUES (3,0,5)");
    frmSpese r;
    ASSERT_TRUE(r.griglia()->vaiAId(1));
    const std::vector<std::string> domanda{"Eliminare la spesa 7 e tutti i movimenti ad esso associato?"};
    p.script->rispondiNo();
    p.script->rispondiSi();
    clic(&r, "btnElimina");
    clic(&r, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>(2, domanda[0]));
    for (const char* t : {"MovimentiSpese", "Scadenze", "Pagamenti"}) {
        SCOPED_TRACE(t);
        EXPECT_EQ(conta(std::string("Select * from ") + t + " where Spesa=1"), 0);
        EXPECT_EQ(conta(std::string("Select * from ") + t + " where Spesa=2"), 1);
    }
    EXPECT_EQ(conta("Select * from Spese"), 1);
    EXPECT_EQ(conta("Select * from PrimaNota where Pagamento=1"), 0);
    EXPECT_EQ(conta("Select * from PrimaNota"), 2);
}

// The amount without its VAT, from the code chosen; twice divides twice; no code, no command.
TEST_F(Acquisti, ScorporoDellIvaDiUnaRiga) {
    frmSpeseMovEdita e;
    e.Prepara({Modalita::Nuovo, 0, nullptr, "Spesa", 1});
    EXPECT_FALSE(e.btnScorpora->isEnabled());
    const std::tuple<const char*, long, int, double> casi[] = {
        {"122,00", 1, 1, 100}, {"122.00", 1, 2, 100 / 1.22}, {"110", 2, 1, 100}, {"-12,20", 1, 1, -10}};
    for (const auto& [importo, iva, volte, atteso] : casi) {
        SCOPED_TRACE(importo);
        digita(e.txtImporto, importo);
        e.cbIva->setValore(store::Value::Long(iva));
        ASSERT_TRUE(e.btnScorpora->isEnabled());
        for (int i = 0; i < volte; ++i) clic(&e, "btnScorpora");
        EXPECT_NEAR(e.txtImporto->numero(), atteso, 1e-9);
    }
}

// The search: each criterion narrows the list and the sums of all expenses follow it; cancelling
// changes nothing; everything again with Seleziona tutto.
TEST_F(Acquisti, RicercaDelleSpese) {
    db->Execute("Insert Into Fornitori (ID,DescFornitore) VALUES (2,'Rossi')");
    spesa(1, "1", "03/10/2026");
    spesa(2, "2", "04/10/2026", 2);
    db->Execute("Update Spese set ImportoSpesa=100 where ID=1");
    db->Execute("Update Spese set ImportoSpesa=50, Pagata=True, TipoSpesa=0 where ID=2");
    db->Execute("Insert Into Pagamenti (ID,Spesa,ImportoPagamento) VALUES (1,2,50)");
    frmSpese r;
    r.show();
    r.sTab->setCurrentIndex(2);
    struct Caso {
        const char* nome;
        std::function<void(frmSpeseCerca*)> compila;
        const char* comando;
        std::string sorgente;
        long spese;          // expense rows listed
        const char* importo; // the sum of all expenses shown
    };
    const std::string tutte = frmSpese::SorgenteBase;
    const Caso casi[] = {
        {"annullata", [](frmSpeseCerca* c) { c->chkDest->setChecked(true); }, "Command2", tutte, 2, "150,00"},
        {"non pagate", [](frmSpeseCerca* c) { c->OpPagate->setCurrentIndex(2); }, "Command1",
         "Select * from qrSpese  where Pagata=False", 1, "100,00"},
        {"fornitore e periodo", [](frmSpeseCerca* c) {
             c->OpPagate->setCurrentIndex(0);
             c->chkDest->setChecked(true);
             c->cbDest->setValore(store::Value::Long(2));
             c->chkDataDal->setChecked(true);
             c->pkDataDal->setTesto("01/04/2026");
         }, "Command1",
         "Select * from qrSpese  where DateValue(Data)>=DateValue('01/04/2026') and Fornitore=2", 1, "50,00"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        p.script->dimentica();
        cercaCon<frmSpeseCerca>(*p.script, c.compila, c.comando);
        clic(&r, "btnRicerca");
        EXPECT_TRUE(testiMostrati(*p.script).empty());
        EXPECT_EQ(r.griglia()->sorgente(), c.sorgente);
        EXPECT_EQ(conta(r.griglia()->sorgente()), c.spese);
        EXPECT_EQ(r.lblImportoTutti->text().toStdString(), c.importo);
    }
    clic(&r, "btnSelezionaTutto");
    EXPECT_EQ(r.griglia()->sorgente(), tutte);
    EXPECT_EQ(QStringList({r.lblImportoTutti->text(), r.lblIncassatoTutti->text(), r.lblDaIncassareTutti->text()}),
              QStringList({"150,00", "50,00", "100,00"}));
}

// An instalment typed by hand on an expense of 100.00 proposes all of it, shows no customer and
// asks for the expense it belongs to before writing anything.
TEST_F(Acquisti, ScadenzaDiUnaSpesaSenzaSpesa) {
    spesa(1, "7", "03/20/2026");
    db->Execute("Update Spese set ImportoSpesa=100 where ID=1");
    frmScadenzeSpeseEdita e;
    e.Prepara({Modalita::Nuovo, 0, nullptr, "Spesa", 1});
    EXPECT_EQ(e.txtImporto->text(), "100,00");
    EXPECT_FALSE(e.cbCliente->isVisible());
    e.pkData->setTesto("30/04/2026");
    e.cbDocumenti->setValore(store::Value::Long(0));
    e.Conferma();
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Selezionare la spesa!"});
    EXPECT_EQ(conta("Select * from Scadenze"), 0);
}

}  // namespace
