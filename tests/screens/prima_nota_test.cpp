// The cash journal as the user meets it: the month of a destination with its four figures worked out
// by hand, the running balance, the search, rows typed, changed and deleted, the refusals of a bad
// row and of a row tied to a payment, the prints with their statements and the spreadsheet read back.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <cstdio>
#include <filesystem>
#include <regex>

#include "books/screens/frmPrimaNota.h"
#include "books/screens/frmPrimaNotaCerca.h"
#include "books/screens/frmPrimaNotaEdita.h"
#include "core/archivio_sql.h"
#include "core/esportazione.h"
#include "core/pannello.h"
#include "core/stampa.h"
#include "store/clock.h"
#include "store/convert.h"
#include "support/avvio_prova.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

namespace fs = std::filesystem;

class PrimaNota : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        store::fissaOrologio(store::DateSerial(2026, 3, 15));
        auto& s = core::session();
        s.dbTemp = store::Workspace::Default().OpenDatabase((p.programma / "temp.mdb").string());
        // Banca: 1000 in and 250,50 out before March; in March 300 in, 49,50 out for payment 7, and
        // a row written "saldo precedente" that the totals leave out. Cassa: 80 in March.
        Riga(1, "10/01/2026", "Saldo esercizio precedente", 1000, 0, 0, 0);
        Riga(2, "20/02/2026", "Affitto febbraio", 250.5, 1, 0, 0);
        Riga(3, "05/03/2026", "Versamento contanti", 300, 0, 0, 0);
        Riga(4, "10/03/2026", "Pagamento fattura Bianchi", 49.5, 1, 0, 7);
        Riga(5, "12/03/2026", "Incasso al banco", 80, 0, 1, 0);
        Riga(6, "14/03/2026", "SALDO PRECEDENTE", 999, 0, 0, 0);
        s.dbArchivio->Execute("Insert Into Pagamenti (ID,Fornitore,DescPagamento,DataPagamento,ImportoPagamento,"
                              "TipoPagamento) VALUES (7,1,'Pagamento fattura Bianchi','10/03/2026',49.5,'Bonifico')");
    }
    void TearDown() override { store::fissaOrologio(std::nullopt); }

    static void Riga(long id, const char* data, const char* testo, double importo, int tipo, int dest, long pag) {
        core::Archivio().Execute("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento,"
                                 "TipoPagamento,CC) VALUES (" + std::to_string(id) + ",'" + data + "','" + testo +
                                 "'," + core::NumeroSql(importo) + "," + std::to_string(tipo) + "," +
                                 std::to_string(dest) + "," + std::to_string(pag) + ",'Bonifico','IT60X')");
    }
    static std::string testo(QLabel* l) { return l->text().toStdString(); }
    static std::vector<std::string> cifre(frmPrimaNota& r) {
        return {testo(r.lblSaldoPrecedente), testo(r.lblTotEntrate), testo(r.lblTotUscite), testo(r.lblSaldoAttuale)};
    }

    // The editor's next showing: its boxes filled as given, then confirmed; false when it stayed open.
    void compila(const QString& descrizione, const QString& importo, int destinazione, const QString& data,
                 int tipo = 0) {
        p.script->schermo(frmPrimaNotaEdita::Nome, [=, this](QWidget* w) {
            auto* e = static_cast<frmPrimaNotaEdita*>(w);
            e->txtDescrizione->setText(descrizione);
            if (!e->VText1->isReadOnly()) e->VText1->setText(importo);
            e->cbDest->setCurrentIndex(destinazione);
            e->cbTipo->setCurrentIndex(tipo);
            e->pkData->setTesto(data.toStdString());
            tipoNascosto = e->cbTipo->isHidden();
            clic(e, "btnConferma");
            return e->isVisible() ? (clic(e, "btnAnnulla"), false) : true;
        });
    }

    StampeRaccolte stampe;
    bool tipoNascosto = false;
};

// The figures of each view and of a search, worked out by hand from the rows above.
TEST_F(PrimaNota, VisteRicercaESaldi) {
    frmPrimaNota r;
    struct Vista {
        const char* nome;
        std::function<void()> azione;
        int righe;
        std::vector<std::string> cifre;   // precedente, entrate, uscite, attuale
        const char* stato;
    } viste[] = {
        // March of the bank: 749,50 before; "SALDO PRECEDENTE" shown but out of the totals.
        {"mese Banca", [] {}, 3, {"749,50", "300,00", "49,50", "1.000,00"}, "Prima nota Banca dal 01/03/2026 al 31/03/2026"},
        {"mese Cassa", [&r] { r.cbDest->setCurrentIndex(1); }, 1, {"0,00", "80,00", "0,00", "80,00"},
         "Prima nota Cassa dal 01/03/2026 al 31/03/2026"},
        {"tutto Banca", [&r] { r.cbDest->setCurrentIndex(0); clic(&r, "Command1"); }, 5,
         {"0,00", "1.300,00", "300,00", "1.000,00"}, "Prima nota Banca dal 01/01/2026 al 31/12/2026"},
    };
    for (const Vista& v : viste) {
        SCOPED_TRACE(v.nome);
        v.azione();
        EXPECT_EQ(r.griglia()->righeMostrate(), v.righe);
        EXPECT_EQ(cifre(r), v.cifre);
        EXPECT_EQ(testo(r.lblStatus), v.stato);
    }
    // The running balance at each row of the bank's March: 749,50 carried, then row by row.
    r.cbDest->setCurrentIndex(2);
    r.cbDest->setCurrentIndex(0);
    const std::pair<long, const char*> saldi[] = {{3, "1.049,50"}, {4, "1.000,00"}, {6, "1.999,00"}};
    for (const auto& [id, saldo] : saldi) {
        ASSERT_TRUE(r.griglia()->vaiAId(id));
        EXPECT_EQ(testo(r.lblSaldoRiga), saldo) << id;
    }

    // The search, its statement and figures.
    struct Caso {
        const char* nome;
        std::function<void(frmPrimaNotaCerca*)> compila;
        std::string sql;
        int righe;
        std::vector<std::string> cifre;
    } casi[] = {
        {"febbraio dal mese",
         [](frmPrimaNotaCerca* c) {
             c->cbMese->setCurrentIndex(2);
             c->ScegliMese(2);
         },
         "Select * from qrPrimaNota  where DateValue(Data)>=DateValue('01/02/2026') and "
         "DateValue(Data)<=DateValue('28/02/2026') and Destinazione=0",
         1, {"1.000,00", "0,00", "250,50", "749,50"}},
        {"solo entrate del conto",
         [](frmPrimaNotaCerca* c) {
             c->chkDataDal->setChecked(false);
             c->chkDataAl->setChecked(false);
             c->OpPagate->setCurrentIndex(0);
             c->chkCC->setChecked(true);
             c->txtCC->setText("IT60X");
         },
         "Select * from qrPrimaNota  where Tipo=0 and Destinazione=0 and CC='IT60X'", 3,
         {"0,00", "1.300,00", "0,00", "1.300,00"}},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        cercaCon<frmPrimaNotaCerca>(*p.script, c.compila, "Command1");
        clic(&r, "imgCerca");
        EXPECT_EQ(r.griglia()->sorgente(), c.sql);
        EXPECT_EQ(r.griglia()->righeMostrate(), c.righe);
        EXPECT_EQ(cifre(r), c.cifre);
    }
}

// A bad row: its message, the editor stays open, nothing written. A good one typed, changed and
// deleted, the figures following; one of a payment kept.
TEST_F(PrimaNota, Voci) {
    frmPrimaNota r;
    struct Caso {
        QString descrizione, importo;
        int destinazione;
        QString data;
        std::string messaggio;
    } casi[] = {
        {"", "10", 0, "13/03/2026", core::Testo("s140")},
        {"Cancelleria", "10", -1, "13/03/2026", "Scegliere la destinazione: Banca, Cassa o Altro."},
        {"Cancelleria", "0", 0, "13/03/2026", "L'importo deve essere diverso da zero."},
        {"Cancelleria", "dieci", 0, "13/03/2026", "L'importo deve essere un numero."},
        {"Cancelleria", "10", 0, "", core::Testo("s82")},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.messaggio);
        p.script->dimentica();
        compila(c.descrizione, c.importo, c.destinazione, c.data);
        clic(&r, "btnNuovo");
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{c.messaggio});
        EXPECT_EQ(conta("Select * from PrimaNota"), 6);
    }

    r.cbDest->setCurrentIndex(1);
    compila("Spese postali", "12,40", 1, "13/03/2026", 1);
    clic(&r, "btnNuovo");
    EXPECT_EQ(r.griglia()->idCorrente(), 7);
    EXPECT_EQ(conta("Select * from PrimaNota where ID=7 and Tipo=1 and Destinazione=1 and Pagamento=0 and "
                    "Importo=12.4"), 1);
    EXPECT_EQ(cifre(r), (std::vector<std::string>{"0,00", "80,00", "12,40", "67,60"}));

    // Changed to an entrata moved to the bank: gone from the till's list, figures again.
    compila("Spese postali rimborsate", "20", 0, "13/03/2026", 0);
    QTest::keyClick(r.griglia(), Qt::Key_Return);
    EXPECT_EQ(conta("Select * from PrimaNota where ID=7 and Tipo=0 and Destinazione=0 and Importo=20"), 1);
    EXPECT_EQ(cifre(r), (std::vector<std::string>{"0,00", "80,00", "0,00", "80,00"}));

    r.cbDest->setCurrentIndex(0);
    ASSERT_TRUE(r.griglia()->vaiAId(7));
    p.script->rispondiSi();
    p.script->dimentica();
    QTest::keyClick(r.griglia(), Qt::Key_Delete);
    EXPECT_EQ(p.script->messaggi().at(0).testo, "Eliminare la voce di prima nota selezionata?");
    EXPECT_EQ(conta("Select * from PrimaNota where ID=7"), 0);
    EXPECT_EQ(cifre(r), (std::vector<std::string>{"749,50", "300,00", "49,50", "1.000,00"}));

    // A row mirroring a payment: never deleted here; its amount and type stay, its text and date go
    // back to the payment.
    p.script->dimentica();
    ASSERT_TRUE(r.griglia()->vaiAId(4));
    p.script->rispondiSi();
    clic(&r, "btnElimina");
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"Impossibile eliminare la voce in quanto collegata ad un pagamento!"});
    EXPECT_EQ(conta("Select * from PrimaNota where ID=4"), 1);

    compila("Pagamento fattura Bianchi n. 12", "999", 2, "11/03/2026", 0);
    clic(&r, "btnModifica");
    EXPECT_TRUE(tipoNascosto);
    EXPECT_EQ(conta("Select * from PrimaNota where ID=4 and Importo=49.5 and Tipo=1 and Destinazione=2"), 1);
    EXPECT_EQ(conta("Select * from Pagamenti where ID=7 and DescPagamento='Pagamento fattura Bianchi n. 12' and "
                    "DataPagamento=#03/11/2026# and ImportoPagamento=49.5"), 1);
}

// The register's print: the previous balance as a row dated the day before the period, under
// uscite when negative; the rows "saldo precedente" out of the printed totals.
TEST_F(PrimaNota, StampaDelRegistro) {
    Riga(8, "28/02/2026", "Prelievo", 30, 1, 1, 0);   // the till goes 30 below zero before March
    frmPrimaNota r;
    r.cbDest->setCurrentIndex(1);
    clic(&r, "btnStampa");
    ASSERT_EQ(stampe.size(), 1u);
    const core::RichiestaStampa& s = stampe[0];
    EXPECT_EQ(s.parametri.Item("Destinazione")->Valore + " " + s.parametri.Item("Periodo")->Valore + " " +
                  s.parametri.Item("SaldoAttuale")->Valore,
              "Cassa Dal 01/03/2026 Al 31/03/2026 50");
    const std::string elenco = s.subReports.Item("Elenco")->Query;
    EXPECT_EQ(conta(elenco), 2);
    auto rs = core::Apri(elenco);   // the previous balance first
    EXPECT_EQ(store::CStr(rs->get("Descrizione")) + " " + store::CStr(rs->get("Data")) + " " + store::CStr(rs->get("Entrate")) +
                  " " + store::CStr(rs->get("Uscite")),
              "Saldo Precedente 28/02/2026 0 30");
}

// The double entry over a period chosen in frmSelPeriodo.
TEST_F(PrimaNota, PartitaDoppiaDelPeriodo) {
    auto& a = core::Archivio();
    a.Execute("Insert Into Clienti (ID,DescCliente,DescCliente2) VALUES (1,'Rossi','Srl')");
    a.Execute("Insert Into Fornitori (ID,DescFornitore) VALUES (1,'Bianchi')");
    a.Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale) VALUES (1,5,1,'02/03/2026',1,610)");
    a.Execute("Insert Into Pagamenti (ID,Cliente,Documento,DescPagamento,DataPagamento,ImportoPagamento) VALUES "
              "(8,1,1,'Incasso fattura 1','09/03/2026',200)");
    a.Execute("Insert Into Spese (ID,Fornitore,Data,ImportoSpesa) VALUES (1,1,'03/03/2026',122)");
    // A period that ends before it starts is refused; the one chosen then builds the scratch table.
    p.script->lasciaAprire("frmSelPeriodo");
    p.script->schermo("frmSelPeriodo", [](QWidget* w) {
        figlio<ui::VetraPicker>(w, "pkDataDal")->setTesto("31/03/2026");
        figlio<ui::VetraPicker>(w, "pkDataAl")->setTesto("01/03/2026");
        clic(w, "btnConferma");
        const bool rifiutato = w->isVisible();
        figlio<ui::VetraPicker>(w, "pkDataDal")->setTesto("01/03/2026");
        figlio<ui::VetraPicker>(w, "pkDataAl")->setTesto("31/03/2026");
        clic(w, "btnConferma");
        return rifiutato;
    });
    p.script->dimentica();
    core::EseguiComando(*core::CercaComando("mPrimaNota2"));
    EXPECT_EQ(testiMostrati(*p.script),
              std::vector<std::string>{"La data di fine del periodo non può precedere quella di inizio!"});
    ASSERT_EQ(stampe.size(), 1u);
    EXPECT_EQ(stampe[0].parametri.Item("Periodo")->Valore,
              core::Testo("s53") + " 01/03/2026 " + core::Testo("s54") + " 31/03/2026");
    // By name, the customer's (its name comes after the empty supplier's and a space) first: Rossi's
    // fattura and collection, then Bianchi's expense and payment; the balances run on across names.
    struct Atteso {
        const char* destinatario;
        double fuori, in;
    } attesi[] = {{"Rossi Srl", 610, 0}, {"Rossi Srl", 610, 200}, {"Bianchi", 488, 200}, {"Bianchi", 488, 150.5}};
    auto rs = core::session().dbTemp->OpenRecordset("Select * from PrimaNota order by ID");
    for (const Atteso& x : attesi) {
        ASSERT_FALSE(rs->Eof());
        EXPECT_NE(store::ConcatText(rs->get("Destinatario")).find(x.destinatario), std::string::npos);
        EXPECT_DOUBLE_EQ(store::CDbl(rs->get("SaldoFuoriCassa")), x.fuori);
        EXPECT_DOUBLE_EQ(store::CDbl(rs->get("SaldoInCassa")), x.in);
        rs->MoveNext();
    }
    EXPECT_TRUE(rs->Eof());
}

std::string Foglio(const std::string& xlsx) {
    std::string out;
    if (FILE* f = ::popen(("unzip -p '" + xlsx + "' xl/worksheets/sheet1.xml").c_str(), "r")) {
        char buf[4096];
        for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;) out.append(buf, n);
        ::pclose(f);
    }
    return out;
}

// What a cell holds: the number, or the inline text.
std::string Cella(const std::string& xml, const std::string& ref) {
    std::smatch m;
    const std::regex cella("<c r=\"" + ref + "\"[^>]*>(?:<is>)?<[vt][^>]*>([^<]*)<");
    return std::regex_search(xml, m, cella) ? m[1].str() : std::string("(vuota)");
}

TEST_F(PrimaNota, FoglioExcel) {
    std::vector<std::string> aperti;
    core::installaApriFile([&aperti](const std::string& f) { aperti.push_back(f); });
    const fs::path file = p.programma / "prima nota";
    frmPrimaNota r;
    p.script->percorso(file.string());
    clic(&r, "btnExcel");
    core::installaApriFile(nullptr);
    ASSERT_EQ(aperti, std::vector<std::string>{file.string() + ".xlsx"});
    const std::string xml = Foglio(aperti[0]);
    const std::pair<const char*, const char*> celle[] = {
        {"A1", "ID"}, {"C2", "Versamento contanti"}, {"E2", "Banca"}, {"G2", "300"}, {"H3", "49.5"},
        {"A5", "Saldo precedente: 749,50"}, {"A8", "Saldo attuale: 1.000,00"}, {"A9", "(vuota)"}};
    for (const auto& [ref, valore] : celle) EXPECT_EQ(Cella(xml, ref), valore) << ref;
}

}  // namespace
