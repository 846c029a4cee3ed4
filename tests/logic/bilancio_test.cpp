// The ten figures of the bilancio on a small archive worked out by hand, and the months of the chart
// computed by the same routines.
#include "books/bilancio.h"
#include "support/archivio_logica.h"

namespace {

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
