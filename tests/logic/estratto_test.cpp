// The books worked out by hand: every Dare, Avere and Saldo of a customer's and of the suppliers'
// statements, the period and open-items filters and the "Saldo Precedente" fold; the ten figures of
// the bilancio on a small archive, and the months of its chart computed by the same routines.
#include <sstream>

#include "books/bilancio.h"
#include "books/estratto.h"
#include "support/archivio_logica.h"

namespace {

using books::GeneraEstratto;

using Righe = std::vector<std::string>;

class Estratto : public prova::ArchivioProva {
protected:
    void SetUp() override {
        ArchivioProva::SetUp();
        temp_ = store::Workspace::Default().CreateDatabase(cartella_ / "temp.mdb");
        store::model::CreaTemp(*temp_);
        core::session().dbTemp = temp_;
        Esegui("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi')");
        Esegui("Insert Into Clienti (ID,DescCliente) VALUES (2,'Verdi')");
    }
    void TearDown() override {
        temp_->Close();
        ArchivioProva::TearDown();
    }

    void Doc(long id, long tipo, const std::string& data, double totale, long cliente, long fornitore = 0,
             bool escluso = false) {
        Esegui("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,Fornitore,ImportoTotale,EscludiEstrattoConto) "
               "VALUES (" + std::to_string(id) + "," + std::to_string(tipo) + "," + std::to_string(id) + ",'" + data +
               "'," + std::to_string(cliente) + "," + std::to_string(fornitore) + "," + Sql(totale) + "," +
               (escluso ? "True" : "False") + ")");
    }
    void Pag(long id, const std::string& legame, long verso, const std::string& data, double importo,
             const std::string& desc, long cliente = 0, long fornitore = 0) {
        Esegui("Insert Into Pagamenti (ID," + legame + ",Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
               "VALUES (" + std::to_string(id) + "," + std::to_string(verso) + "," + std::to_string(cliente) + "," +
               std::to_string(fornitore) + ",'" + desc + "','" + data + "'," + Sql(importo) + ")");
    }

    // Each row as "Descrizione|Dare|Avere|Saldo", with "|Fornitore" on the suppliers' rows; Null as 0.
    Righe Leggi(long tipo, const std::string& ordine = "ID") {
        Righe r;
        auto rs = temp_->OpenRecordset("Select * from Estratto where Tipo=" + std::to_string(tipo) + " order by " + ordine);
        for (; !rs->Eof(); rs->MoveNext()) {
            std::ostringstream riga;
            riga << store::ConcatText(rs->get("Descrizione"));
            for (const char* campo : {"Dare", "Avere", "Saldo"})
                riga << "|" << store::Round(core::NumeroOZero(rs->get(campo)), 2);
            if (tipo == 1) riga << "|" << core::NumeroOZero(rs->get("Fornitore"));
            r.push_back(riga.str());
        }
        return r;
    }

    static double D(int g, int m, int a) { return store::DateSerial(a, m, g); }

    // Customer 1: a fattura of January half paid (the balance carried into March), a credit note of
    // March refunded in full, a fattura of March paid in two, out of date order; plus what must not
    // show: another customer's fattura, a preventivo, a document kept out of statements.
    void ArchivioCliente() {
        Doc(1, 5, "10/01/2026", 500, 1);
        Pag(1, "Documento", 1, "20/01/2026", 200, "Acconto gennaio", 1);
        Doc(2, 6, "03/03/2026", 122, 1);
        Pag(2, "Documento", 2, "25/03/2026", 122, "Rimborso nota", 1);
        Doc(3, 5, "05/03/2026", 1220, 1);
        Pag(3, "Documento", 3, "20/03/2026", 700.5, "Bonifico saldo", 1);
        Pag(4, "Documento", 3, "08/03/2026 10.30.00", 100, "Contanti", 1);
        Doc(4, 5, "06/03/2026", 999, 2);
        Doc(5, 7, "07/03/2026", 888, 1);
        Doc(6, 5, "09/03/2026", 777, 1, 0, true);
        Pag(5, "Documento", 6, "10/03/2026", 777, "Escluso", 1);
    }

    test::CartellaTemporanea cartella_;
    store::DatabasePtr temp_;
};

TEST_F(Estratto, ClienteRigaPerRiga) {
    ArchivioCliente();
    const std::string f1 = "Fattura N.1 del 10/01/2026|500|0|500", acconto = "Acconto gennaio|0|200|300",
                      nota = "Nota di credito N.2 del 03/03/2026|0|122|178", f3 = "Fattura N.3 del 05/03/2026|1220|0|";
    struct Caso {
        const char* nome;
        bool soloAperte;
        double dal, al;
        Righe righe;
    } const casi[] = {
        // The credit note lowers the balance and its money raises it; the payments by their own date.
        {"tutto l'archivio", false, 0, 0,
         {f1, acconto, nota, "Rimborso nota|122|0|300", f3 + "1520", "Contanti|0|100|1420", "Bonifico saldo|0|700.5|719.5"}},
        {"fino al 10 marzo: i pagamenti dopo restano fuori", false, 0, D(10, 3, 2026),
         {f1, acconto, nota, f3 + "1398", "Contanti|0|100|1298"}},
        {"solo aperte: la nota rimborsata sparisce con il suo rimborso", true, 0, 0,
         {f1, acconto, f3 + "1520", "Contanti|0|100|1420", "Bonifico saldo|0|700.5|719.5"}},
        {"solo aperte prima del rimborso: la nota resta", true, 0, D(24, 3, 2026),
         {f1, acconto, nota, f3 + "1398", "Contanti|0|100|1298", "Bonifico saldo|0|700.5|597.5"}},
    };
    for (const auto& c : casi) {
        GeneraEstratto(1, books::EstrattoCliente, c.soloAperte, c.dal, c.al, false);
        EXPECT_EQ(Leggi(0), c.righe) << c.nome;
    }
}

// A statement with nothing left to list leaves no row over: the customer's tab walks it.
TEST_F(Estratto, OgniTipoRifattoDaCapoSenzaToccareLAltro) {
    ArchivioCliente();
    Esegui("Insert Into Fornitori (ID,DescFornitore) VALUES (1,'Beta')");
    Esegui("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa) VALUES (1,'7','10/02/2026',1,300)");
    GeneraEstratto(1, books::EstrattoCliente, false, 0, 0, false);
    GeneraEstratto(1, books::EstrattoFornitore, false, 0, 0, false);
    GeneraEstratto(1, books::EstrattoCliente, false, 0, 0, false);
    EXPECT_EQ(Leggi(0).size(), 7u);
    EXPECT_EQ(Leggi(1).size(), 1u);
}

// Two suppliers: "Beta" with an expense paid in part and a received credit note collected; "Alfa"
// with an unpaid expense. A received credit note goes under Dare as an expense does.
TEST_F(Estratto, FornitoriPerGruppoConSaldoCheRiparte) {
    Esegui("Insert Into Fornitori (ID,DescFornitore) VALUES (1,'Beta')");
    Esegui("Insert Into Fornitori (ID,DescFornitore) VALUES (2,'Alfa')");
    Esegui("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa) VALUES (1,'7','10/02/2026',1,300)");
    Esegui("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa) VALUES (2,'8','05/02/2026',2,200)");
    Esegui("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa,EscludiEstrattoConto) VALUES (3,'9','06/02/2026',2,50,True)");
    Pag(1, "Spesa", 1, "15/02/2026", 100, "Acconto spesa", 0, 1);
    Doc(1, 9, "20/02/2026", 50, 0, 1);
    Pag(2, "Documento", 1, "25/02/2026", 50, "Incasso nota", 0, 1);
    const std::string spesa7 = "Spesa N.7 del 10/02/2026|300|0|300|1";
    struct Caso {
        const char* nome;
        long fornitore;
        bool gruppi;
        bool soloAperte;
        Righe righe;
    } const casi[] = {
        {"tutti, per gruppo", 0, true, false,
         {"Spesa N.8 del 05/02/2026|200|0|200|2", spesa7, "Acconto spesa|0|100|200|1",
          "Note di Credito N.1 del 20/02/2026|50|0|250|1", "Incasso nota|0|50|200|1"}},
        {"solo aperte: la nota incassata sparisce", 1, false, true, {spesa7, "Acconto spesa|0|100|200|1"}},
    };
    for (const auto& c : casi) {
        GeneraEstratto(c.fornitore, books::EstrattoFornitore, c.soloAperte, 0, 0, c.gruppi);
        EXPECT_EQ(Leggi(1, c.gruppi ? "DescFornitore, Fornitore, Data, ID" : "ID"), c.righe) << c.nome;
    }
}

// Rows dated outside the period are folded into one row per supplier, dated the day before the
// period, with a negative ID below any other.
TEST_F(Estratto, SaldoPrecedenteRaccoglieIlPrimaETogliIlDopo) {
    const char* righe[] = {"(1,1,#01/10/2026#,'a',100,Null,100,1)", "(2,1,#01/20/2026#,'b',Null,30,70,1)",
                           "(3,1,#02/05/2026#,'c',40,Null,110,1)", "(4,1,#04/01/2026#,'d',5,Null,115,1)",
                           "(5,1,#01/15/2026#,'e',10,Null,10,2)", "(6,1,#01/16/2026#,'f',Null,10,0,2)"};
    for (const char* r : righe)
        temp_->Execute(std::string("Insert Into Estratto (ID,Tipo,Data,Descrizione,Dare,Avere,Saldo,Fornitore) VALUES ") + r);
    books::SaldoPrecedenteEstratto(1, "Beta", 1, D(1, 2, 2026), D(28, 2, 2026));
    books::SaldoPrecedenteEstratto(2, "Alfa", 1, D(1, 2, 2026), D(28, 2, 2026));  // nets to 0: no row
    temp_->Execute("Insert Into Estratto (ID,Tipo,Data,Dare,Fornitore) VALUES (7,1,#01/02/2026#,8,3)");
    books::SaldoPrecedenteEstratto(3, "Gamma", 1, D(1, 2, 2026), 0);
    EXPECT_EQ(Leggi(1), (Righe{"Saldo Precedente|8|0|8|3", "Saldo Precedente|100|30|70|1", "c|40|0|110|1"}));
    auto rs = temp_->OpenRecordset("Select * from Estratto where ID=-1");
    EXPECT_DOUBLE_EQ(store::DateValue(rs->get("Data")), D(31, 1, 2026));
    EXPECT_EQ(store::ConcatText(rs->get("DescFornitore")), "Beta");
}

class Bilancio : public prova::ArchivioProva {
protected:
    // March 2026, by hand (VAT 22% and 10%):
    //  fattura 5 of 5/3: lines 1000 at 22 and 200 at 10, a charge of 50 at 22 -> 1250 + 251
    //  fattura 5 of 28/2 (400 at 22) collected on 2/3 for 488: only the collection is March's
    //  nota 6 of 10/3: 100 at 22 -> with the expenses, 100 + 22
    //  nota 9 of 12/3: 30 at 22 -> with the sales, 30 + 6.60
    //  preventivo of 15/3: counts nowhere
    //  expense of 20/3: 300 at 22 and 50 with no VAT code -> 350 + 66
    //  collected 500 on 25/3 on the fattura of 5/3; paid 366 on 31/3 (evening) on the expense;
    //  paid 122 in April on the nota 6, and 10 in February on the expense: outside
    void SetUp() override {
        ArchivioProva::SetUp();
        CodiceIva(1, 22);
        CodiceIva(2, 10);
        Documento(1, {.data = "05/03/2026"});
        Riga(1, 1, 1000, 1);
        Riga(2, 1, 200, 2);
        Onere(1, 1, 50, 1);
        Documento(2, {.data = "28/02/2026"});
        Riga(3, 2, 400, 1);
        Documento(3, {.tipo = 6, .data = "10/03/2026"});
        Riga(4, 3, 100, 1);
        Documento(4, {.tipo = 9, .data = "12/03/2026", .cliente = 0, .fornitore = 1});
        Riga(5, 4, 30, 1);
        Documento(5, {.tipo = 7, .data = "15/03/2026"});
        Riga(6, 5, 999, 1);
        Esegui("Insert Into Spese (ID,Numero,Data,Fornitore) VALUES (1,'1','20/03/2026',1)");
        Esegui("Insert Into MovimentiSpese (ID,Spesa,Importo,Iva) VALUES (1,1,300,1)");
        Esegui("Insert Into MovimentiSpese (ID,Spesa,Importo,Iva) VALUES (2,1,50,0)");
        Pag(1, "Documento", 2, "02/03/2026", 488, 1);
        Pag(2, "Documento", 1, "25/03/2026", 500, 1);
        Pag(3, "Spesa", 1, "31/03/2026 21.15.00", 366, 0);
        Pag(4, "Documento", 3, "02/04/2026", 122, 1);
        Pag(5, "Spesa", 1, "27/02/2026", 10, 0);
    }
    void Pag(long id, const char* legame, long verso, const std::string& data, double importo, long cliente) {
        Esegui("Insert Into Pagamenti (ID," + std::string(legame) + ",Cliente,Fornitore,DataPagamento,ImportoPagamento) "
               "VALUES (" + std::to_string(id) + "," + std::to_string(verso) + "," + std::to_string(cliente) + "," +
               std::to_string(cliente ? 0 : 1) + ",'" + data + "'," + Sql(importo) + ")");
    }
    static double D(int g, int m) { return store::DateSerial(2026, m, g); }
};

TEST_F(Bilancio, DieciCifreDiMarzo) {
    struct Caso {
        const char* nome;
        double dal, al;
        books::FigureBilancio attese;
    } const casi[] = {
        {"marzo", D(1, 3), D(31, 3), {450, 88, 1280, 257.6, 366, 988, 830, 169.6, 999.6, 622}},
        {"febbraio: la fattura non ancora incassata", D(1, 2), D(28, 2), {0, 0, 400, 88, 10, 0, 400, 88, 488, -10}},
        {"un periodo senza dati", D(1, 7), D(31, 7), {}},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        const books::FigureBilancio f = books::CalcolaBilancio(c.dal, c.al);
        const double avute[] = {f.spese, f.ivaSpese, f.vendite, f.ivaVendite, f.pagamenti,
                                f.incassi, f.imponibile, f.iva, f.saldoFuoriCassa, f.saldoInCassa};
        const books::FigureBilancio& a = c.attese;
        const double attese[] = {a.spese, a.ivaSpese, a.vendite, a.ivaVendite, a.pagamenti,
                                 a.incassi, a.imponibile, a.iva, a.saldoFuoriCassa, a.saldoInCassa};
        for (int i = 0; i < 10; ++i) EXPECT_NEAR(avute[i], attese[i], 1e-9) << "cifra " << i + 1;
    }
}

// Each month of the chart is the bilancio of that month: the bars and the figures cannot disagree.
TEST_F(Bilancio, MesiDelGraficoComeLeCifre) {
    const auto mesi = books::MesiBilancio(D(15, 2));
    ASSERT_EQ(mesi.size(), 12u);
    EXPECT_EQ(mesi.front().mese, 2);
    EXPECT_EQ(mesi.back().mese, 1);
    EXPECT_EQ(mesi.back().anno, 2027);
    EXPECT_DOUBLE_EQ(mesi[1].al, D(31, 3));
    EXPECT_DOUBLE_EQ(mesi[1].figure.entrateRegistrate(), 1280 + 257.6);
    EXPECT_DOUBLE_EQ(mesi[2].figure.pagamenti, 122);  // the credit note refunded in April
}

}  // namespace
