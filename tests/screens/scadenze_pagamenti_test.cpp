// The registers of money as the user meets them: the instalments to collect and to pay with their
// search, reminders and print, the payments and collections recorded, the commands of each under
// their rights, the payment editors they open by name, and the flags and journal rows they leave.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include <functional>

#include "core/diritti.h"
#include "core/pannello.h"
#include "core/stampa.h"
#include "payments/screens/frmPagamenti.h"
#include "payments/screens/frmScadenze.h"
#include "payments/screens/frmScadenzeCerca.h"
#include "store/clock.h"
#include "support/acquisti_prova.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

// Active side: instalments 1 (60, reminder today) and 2 (40, collected by payment 1) of fattura 1
// of 100, and 5 linked to nothing. Passive side: 3 on expense 1 of 80, 4 on credit note 2 of 50.
// Payment 2 is an advance of 30 on the expense; payment 3 is linked to nothing.
class Registri : public Acquisti {
protected:
    void SetUp() override {
        Acquisti::SetUp();
        store::fissaOrologio(store::DateSerial(2026, 3, 20) + 0.4);
        dati();
    }
    void TearDown() override { store::fissaOrologio(std::nullopt); }

    void dati() {
        for (const char* t : {"Clienti", "Documenti", "Spese", "Scadenze", "Pagamenti", "PrimaNota"})
            db->Execute(std::string("Delete from ") + t);
        const std::string documento = "Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale,Pagato) VALUES ";
        const std::string scadenza = "Insert Into Scadenze (ID,Documento,Spesa,Cliente,Fornitore,DescScadenza,"
                                     "DataScadenza,ImportoScadenza,Rata,Rate,DataAvviso,Pagata) VALUES ";
        const std::string pagamento = "Insert Into Pagamenti (ID,Documento,Spesa,Scadenza,Cliente,Fornitore,"
                                      "DescPagamento,DataPagamento,ImportoPagamento) VALUES ";
        const std::string nota = "Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento) VALUES ";
        for (const std::string& sql : {
                 std::string("Insert Into Clienti (ID,DescCliente,DescCliente2) VALUES (1,'Rossi','Impianti Srl')"),
                 documento + "(1,5,1,#3/2/2026#,1,100,False)",
                 documento + "(2,6,1,#3/5/2026#,1,50,False)",
                 std::string("Insert Into Spese (ID,Numero,Data,Fornitore,TipoSpesa,Classificazione,ImportoSpesa,"
                             "Pagata) VALUES (1,'A7',#3/6/2026#,1,1,1,80,True)"),
                 scadenza + "(1,1,0,1,0,'Rata 1',#3/31/2026#,60,1,2,#3/20/2026#,False)",
                 scadenza + "(2,1,0,1,0,'Rata 2',#4/30/2026#,40,2,2,Null,True)",
                 scadenza + "(3,0,1,0,1,'Spesa A7',#4/15/2026#,80,1,1,#3/20/2026#,False)",
                 scadenza + "(4,2,0,1,0,'Nota',#5/31/2026#,50,1,1,Null,False)",
                 scadenza + "(5,0,0,1,0,'Promemoria',#6/30/2026#,10,0,0,Null,False)",
                 pagamento + "(1,1,0,2,1,0,'Saldo rata 2',#3/10/2026#,40)",
                 pagamento + "(2,0,1,0,0,1,'Acconto spesa A7',#3/12/2026#,30)",
                 pagamento + "(3,0,0,0,0,1,'Storno',#4/2/2026#,5)",
                 nota + "(1,#3/10/2026#,'Saldo rata 2',40,0,0,1)",
                 nota + "(2,#3/12/2026#,'Acconto spesa A7',30,1,0,2)",
             })
            db->Execute(sql);
    }

    static std::vector<long> idMostrati(ui::VetraGrid* grid) {
        ui::VetraGridModel* m = grid->modello();
        m->leggiFinoAllaFine();
        std::vector<long> ids;
        for (int r = 0; r < m->rowCount(); ++r) ids.push_back(store::CLng(m->valore(r, "ID")));
        return ids;
    }

    // What the payment editor would write: a payment against a document or an expense.
    void paga(long id, long documento, long spesa, long scadenza, double importo) {
        db->Execute("Insert Into Pagamenti (ID,Documento,Spesa,Scadenza,DescPagamento,DataPagamento,ImportoPagamento) "
                    "VALUES (" + std::to_string(id) + "," + std::to_string(documento) + "," + std::to_string(spesa) +
                    "," + std::to_string(scadenza) + ",'Incasso',#3/20/2026#," + core::NumeroSql(importo) + ")");
    }

    // One command of a register on one of its rows, on fresh data, then what it showed and left.
    template <class Registro>
    struct Comando {
        const char* nome;
        int modo;
        long riga;
        const char* comando;
        int senzaDiritto;                      // 0: every right
        std::vector<int> risposte;             // to the questions, in order
        const char* editor;                    // the screen shown, scripted; "" none
        std::function<void()> editorScrive;    // none: the editor is cancelled
        std::vector<std::string> messaggi;
        std::function<void(Registro&)> poi;
    };
    template <class Registro>
    void esegui(const Comando<Registro>& c) {
        SCOPED_TRACE(c.nome);
        dati();
        senzaDiritto(0);
        core::ImpostaModoSchermo(Registro::Nome, c.modo);
        core::ImpostaModoSchermo("frmPagamentiEdita", -1);
        Registro r;
        ASSERT_TRUE(r.griglia()->vaiAId(c.riga));
        senzaDiritto(c.senzaDiritto);
        p.script->dimentica();
        for (int risposta : c.risposte) p.script->rispondi(risposta);
        if (*c.editor) {
            p.script->schermo(c.editor, [&c](QWidget*) {
                if (c.editorScrive) c.editorScrive();
                return static_cast<bool>(c.editorScrive);
            });
        }
        clic(&r, c.comando);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(p.script->schermiMostrati(),
                  *c.editor ? std::vector<std::string>{c.editor} : std::vector<std::string>{});
        if (c.poi) c.poi(r);
    }
};

TEST_F(Registri, ScadenzeComandiEDiritti) {
    const Comando<frmScadenze> casi[] = {
        {"modifica di una scadenza pagata", 0, 2, "btnModifica", 0, {}, "", {},
         {"Impossibile modificare la scadenza: risultano dei pagamenti registrati!"}, {}},
        {"nuova passiva", 1, 3, "btnNuovo", 0, {}, "frmScadenzeEdita", {}, {},
         [](frmScadenze&) { EXPECT_EQ(core::ModoSchermo("frmScadenzeEdita"), 1); }},
        {"elimina, risposta si", 0, 5, "btnElimina", 0, {core::vbYes}, "", {}, {"Eliminare la scadenza selezionata?"},
         [this](frmScadenze& r) {
             EXPECT_EQ(conta("Select * from Scadenze where ID=5"), 0);
             EXPECT_EQ(idMostrati(r.griglia()), (std::vector<long>{1, 2}));
         }},
        // One with a payment stays: the guard names what holds it.
        {"elimina una scadenza pagata", 0, 2, "btnElimina", 0, {}, "", {},
         {"Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n1) Pagamenti\r\n"},
         [this](frmScadenze&) { EXPECT_EQ(conta("Select * from Scadenze where ID=2"), 1); }},
        // The rest of the fattura collected on instalment 1: the instalment and the document settle,
        // and the row shows it at once.
        {"incassa", 0, 1, "btnPaga", core::ScadenzeModificare, {}, "frmPagamentiEdita",
         [this] { paga(10, 1, 0, 1, 60); }, {},
         [this](frmScadenze& r) {
             EXPECT_EQ(core::ModoSchermo("frmPagamentiEdita"), 1);
             EXPECT_TRUE(store::CBool(campo("Select * from Scadenze where ID=1", "Pagata")));
             EXPECT_TRUE(store::CBool(campo("Select * from Documenti where ID=1", "Pagato")));
             EXPECT_EQ(r.griglia()->idCorrente(), 1);
             EXPECT_EQ(store::ConcatText(r.griglia()->valore("Stato")), "Incassata");
         }},
        {"incassa senza diritto", 0, 1, "btnPaga", core::IncassiVedere, {}, "", {}, {kNegato}, {}},
        // An expense's instalment: the payment editor of expenses under the right to pay; the
        // expense's own flag is not this register's to refresh.
        {"paga spesa", 1, 3, "btnPaga", core::IncassiVedere, {}, "frmPagamentiSpeseEdita",
         [this] {
             db->Execute("Update Spese set Pagata=False");
             paga(10, 0, 1, 3, 80);
         },
         {},
         [this](frmScadenze&) {
             EXPECT_TRUE(store::CBool(campo("Select * from Scadenze where ID=3", "Pagata")));
             EXPECT_FALSE(store::CBool(campo("Select * from Spese where ID=1", "Pagata")));
         }},
        {"paga documento passivo", 1, 4, "btnPaga", 0, {}, "frmPagamentiEdita", {}, {},
         [](frmScadenze&) { EXPECT_EQ(core::ModoSchermo("frmPagamentiEdita"), 0); }},
        {"paga senza legami", 0, 5, "btnPaga", 0, {}, "", {}, {}, {}},
    };
    for (const auto& c : casi) esegui(c);
}

TEST_F(Registri, ScadenzeRicerca) {
    struct Caso {
        const char* nome;
        const char *dal, *al;   // "" unticked
        long cliente, fornitore;
        bool intestatario;
        int stato;              // the position in OpPagate: both, paid, not paid
        std::string istruzione; // "" when the search is refused and the list stays as it was
        std::vector<long> righe;
        std::string messaggio;
    };
    const std::string base = "Select * from qrScadenzeAttive  where ";
    const Caso casi[] = {
        {"al, non pagate", "", "30/04/2026", 0, 0, false, 2,
         base + "DateValue(DataScadenza)<=DateValue('30/04/2026') and Pagata=False", {1}, ""},
        {"cliente o fornitore", "", "", 1, 1, true, 0, base + "(Cliente=1 or Fornitore=1)", {1, 2, 5}, ""},
        {"intestatario senza scelta", "", "", 0, 0, true, 0, base + "Fornitore>0 and Cliente>0", {}, ""},
        {"data non valida", "31/02/2026", "", 0, 0, false, 0, "", {1, 2, 5}, "La data non è valida!"},
    };
    core::ImpostaModoSchermo(frmScadenze::Nome, 0);
    frmScadenze r;
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        clic(&r, "Command1");
        p.script->dimentica();
        cercaCon<frmScadenzeCerca>(*p.script, [&c](frmScadenzeCerca* f) {
            f->chkDataDal->setChecked(*c.dal);
            f->pkDataDal->setTesto(c.dal);
            f->chkDataAl->setChecked(*c.al);
            f->pkDataAl->setTesto(c.al);
            f->chkDest->setChecked(c.intestatario);
            f->cbCliente->setValore(store::Value::Long(c.cliente));
            f->cbFornitore->setValore(store::Value::Long(c.fornitore));
            f->OpPagate->setCurrentIndex(c.stato);
        }, "Command1");
        clic(&r, "imgCerca");
        EXPECT_EQ(r.griglia()->sorgente(), c.istruzione.empty() ? payments::SorgenteScadenze(0) : c.istruzione);
        EXPECT_EQ(idMostrati(r.griglia()), c.righe);
        EXPECT_EQ(testiMostrati(*p.script), c.messaggio.empty() ? std::vector<std::string>{} : std::vector{c.messaggio});
    }
}

TEST_F(Registri, PagamentiComandiEDiritti) {
    // The editors answer through the script as if they were not built in: what the register does
    // with their answer is what is tested here, the editors themselves have their own tests.
    core::svuotaRegistroSchermi();
    const std::string domanda = "Eliminare il pagamento selezionato?";
    const auto scrive = [this] {
        paga(10, 1, 0, 0, 20);
        core::session().IDRecordEdit = 10;
    };
    const Comando<frmPagamenti> casi[] = {
        // A collection recorded: the list shows it, current.
        {"nuovo incasso", 1, 1, "btnNuovo", 0, {}, "frmPagamentiEdita", scrive, {},
         [this](frmPagamenti& r) {
             EXPECT_EQ(core::ModoSchermo("frmPagamentiEdita"), 1);
             EXPECT_EQ(r.griglia()->idCorrente(), 10);
             EXPECT_EQ(conta("Select * from Pagamenti"), 4);
         }},
        // A payment asks the right to collect too.
        {"nuovo pagamento senza diritto di incassare", 0, 2, "btnNuovo", core::IncassiModificare, {}, "", {},
         {kNegato}, {}},
        {"modifica su documento", 1, 1, "btnModifica", 0, {}, "frmPagamentiEdita", scrive, {},
         [](frmPagamenti&) { EXPECT_EQ(core::ModoSchermo("frmPagamentiEdita"), 1); }},
        // The payment that closed instalment 2 goes with its journal row; read while it still
        // stood, the instalment keeps its flag until the next refresh.
        {"elimina l'incasso che chiudeva la rata", 1, 1, "btnElimina", 0, {core::vbYes}, "", {}, {domanda},
         [this](frmPagamenti& r) {
             EXPECT_EQ(conta("Select * from Pagamenti where ID=1"), 0);
             EXPECT_EQ(conta("Select * from PrimaNota where Pagamento=1"), 0);
             EXPECT_EQ(conta("Select * from PrimaNota"), 1);
             EXPECT_TRUE(store::CBool(campo("Select * from Scadenze where ID=2", "Pagata")));
             EXPECT_TRUE(idMostrati(r.griglia()).empty());
         }},
        // An expense still partly open after the payment goes loses its stale flag.
        {"elimina l'acconto della spesa", 0, 2, "btnElimina", 0, {core::vbYes}, "", {}, {domanda},
         [this](frmPagamenti&) {
             EXPECT_EQ(conta("Select * from PrimaNota where Pagamento=2"), 0);
             EXPECT_FALSE(store::CBool(campo("Select * from Spese where ID=1", "Pagata")));
         }},
    };
    for (const auto& c : casi) esegui(c);
}

TEST_F(Registri, PagamentiModiRicercaEStampa) {
    StampeRaccolte stampe;
    // The description between two dates; an empty picker sets no limit.
    core::ImpostaModoSchermo(frmPagamenti::Nome, payments::RegistroPagamenti);
    frmPagamenti r;
    r.findChild<QLineEdit*>("txtCerca")->setText("o");
    r.pkDal->setTesto("01/04/2026");
    clic(&r, "btnCerca");
    EXPECT_EQ(r.griglia()->sorgente(), "Select * from qrPagamenti where DescPagamento Like '*o*' And "
                                       "DateValue(DataPagamento)>=DateValue('01/04/2026')");
    EXPECT_EQ(idMostrati(r.griglia()), std::vector<long>{3});
    r.pkDal->setTesto("");
    r.pkAl->setTesto("31/03/2026");
    clic(&r, "btnCerca");
    EXPECT_EQ(idMostrati(r.griglia()), std::vector<long>{2});
    stampe.clear();
    clic(&r, "btnStampa");
    ASSERT_EQ(stampe.size(), 1u);
    EXPECT_EQ(stampe[0].subReports.Item("Elenco")->Query, r.griglia()->istruzione());
    EXPECT_EQ(stampe[0].parametri.Item("Criterio")->Valore, "Descrizione contenente \"o\"");
}

}  // namespace
