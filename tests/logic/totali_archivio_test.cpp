// Document totals worked by hand: a line's discounts, rounding and VAT and a document's withholding
// and surcharge; the same through the engine, the per-line cascade and rounding in SQL, the rest in
// the program.
#include <gtest/gtest.h>

#include <map>

#include "sales/totali.h"
#include "support/archivio_logica.h"

namespace {

using sales::CalcolaTotaliDocumento;

class TotaliArchivio : public prova::ArchivioProva {
protected:
    void SetUp() override {
        ArchivioProva::SetUp();
        CodiceIva(1, 22);
        CodiceIva(2, 4);
        CodiceIva(3, 20);
        CodiceIva(4, 0);
    }

    // Imponibile, TotIva, TotNetto, TotSpese, TotRitenutaAcconto and ImportoTotale, to the cent.
    std::vector<double> Totali(long id) {
        std::vector<double> out;
        for (const char* campo : {"Imponibile", "TotIva", "TotNetto", "TotSpese", "TotRitenutaAcconto", "ImportoTotale"})
            out.push_back(store::Round(Numero("Select * from Documenti where ID=" + std::to_string(id), campo), 2));
        return out;
    }
};

// The cascade and the rounding of each line are checked against the program in the test at the end.
TEST_F(TotaliArchivio, DocumentiCalcolatiDalleRighe) {
    Documento(2, {.ritenuta = 20, .maggiorazione = 10});
    Riga(2, 2, 60, 1);
    Riga(3, 2, 40, 2);
    Onere(1, 2, 50, 3);
    Documento(4, {});  // no lines, no charges
    CalcolaTotaliDocumento(2);
    CalcolaTotaliDocumento(4);
    // Lines 60 @22 (13.20) and 40 @4 (1.60); surcharge 10 with 2 of VAT; withholding 20 of 100;
    // charge 50 @20 = 60.  16.8 + 110 + 60 - 20 = 166.8.
    EXPECT_EQ(Totali(2), (std::vector<double>{110, 16.8, 110, 60, 20, 166.8}));
    EXPECT_EQ(Totali(4), std::vector<double>(6, 0));
    // A zero total is settled at the first refresh.
    EXPECT_EQ(store::CDbl(Valore("Select Pagato from Documenti where ID=4", "Pagato")), -1);
    EXPECT_EQ(store::CDbl(Valore("Select Pagato from Documenti where ID=2", "Pagato")), 0);
    EXPECT_NO_THROW(CalcolaTotaliDocumento(42));   // a document no longer there
}

TEST_F(TotaliArchivio, RiepilogoIvaUnisceLeRigheUguali) {
    Documento(1, {});
    Riga(1, 1, 60, 1);
    Riga(2, 1, 40, 2);
    Riga(3, 1, 50, 3);
    Onere(1, 1, 50, 3);  // same figures as the line at 20: the Union keeps one of the two
    Onere(2, 1, 30, 1);
    // Code 22: line 60 (13.20) and charge 30 (6.60) are two different rows and add up.
    std::map<long, std::vector<double>> avute;
    for (auto rs = db().OpenRecordset(sales::SqlRiepilogoIvaDocumento(1)); !rs->Eof(); rs->MoveNext()) {
        for (const char* campo : {"Netto", "Imposta", "Imponibile"})
            avute[store::CLng(rs->get("ID"))].push_back(store::Round(store::CDbl(rs->get(campo)), 2));
    }
    EXPECT_EQ(avute, (std::map<long, std::vector<double>>{{1, {90, 19.8, 90}}, {2, {40, 1.6, 40}}, {3, {50, 10, 50}}}));
}

TEST_F(TotaliArchivio, IvaDelPeriodo) {
    Documento(1, {});
    Riga(1, 1, 100, 1);
    Onere(1, 1, 100, 1);  // lines and charges give the same row: folded into one
    Documento(2, {.data = "10/04/2026"});
    Riga(2, 2, 10, 1);
    Documento(3, {.tipo = 6});
    Riga(3, 3, 1000, 1);
    // Periods and kinds as the bilancio uses them are worked out with its figures.
    const double dal = store::DateSerial(2026, 3, 1), al = store::DateSerial(2026, 3, 31);
    auto rs = db().OpenRecordset(sales::SqlIvaPeriodo(5, dal, al));
    EXPECT_DOUBLE_EQ(store::CDbl(rs->get("Imponibile")), 100);
    EXPECT_DOUBLE_EQ(store::CDbl(rs->get("Imposta")), 22);
}

// The engine and the program must agree to the last digit on every line: the same cascade, the
// same order of operations, the same rounding of exact halves, no VAT for an unknown code.
TEST_F(TotaliArchivio, IlMotoreCalcolaLeRigheComeIlProgramma) {
    const double scontiPossibili[] = {0, 2.5, 5, 10, 33.3, 50};
    const long codici[] = {1, 2, 3, 4, 99};
    const double aliquote[] = {22, 4, 20, 0};
    unsigned seme = 12345;
    auto prossimo = [&seme](unsigned n) {
        seme = seme * 1103515245u + 12345u;
        return (seme >> 16) % n;
    };
    long riga = 0;
    for (long doc = 1; doc <= 60; ++doc) {
        const sales::Sconti sconti{scontiPossibili[prossimo(6)], scontiPossibili[prossimo(6)],
                                   scontiPossibili[prossimo(6)], scontiPossibili[prossimo(6)]};
        Documento(doc, {.s1 = sconti.s1, .s2 = sconti.s2, .s3 = sconti.s3, .s4 = sconti.s4});
        double netto = 0, imposta = 0;
        for (unsigned n = 1 + prossimo(5); n > 0; --n) {
            const double importo = static_cast<double>(prossimo(2000000)) / 1000;  // up to 2,000 with 3 decimals
            const unsigned c = prossimo(5);
            Riga(++riga, doc, importo, codici[c]);
            const auto calcolata =
                sales::CalcolaRiga(importo, sconti, c < 4 ? std::optional<double>(aliquote[c]) : std::nullopt);
            netto += calcolata.netto;
            imposta += calcolata.imposta.value_or(0);
        }
        CalcolaTotaliDocumento(doc);
        SCOPED_TRACE(doc);
        const std::string sql = "Select * from Documenti where ID=" + std::to_string(doc);
        EXPECT_EQ(Numero(sql, "TotNetto"), store::Round(netto, 2));
        EXPECT_EQ(Numero(sql, "TotIva"), store::Round(imposta, 2));
    }
}

TEST(TotaliRiga, CascataDiScontiEArrotondamentoPariPerRiga) {
    struct Caso {
        const char* nome;
        double importo;
        sales::Sconti sconti;
        std::optional<double> aliquota;
        double netto;
        std::optional<double> imposta;
    } const casi[] = {
        // 100 -10% = 90, -10% of 90 = 81: the discounts cascade, never 80.
        {"due sconti in cascata", 100, {10, 10, 0, 0}, 22, 81.00, 17.82},
        // 1000 -> 900 -> 855 -> 837.9 -> 829.521; VAT 829.521 * 0.22 = 182.49462.
        {"quattro sconti", 1000, {10, 5, 2, 1}, 22, 829.52, 182.49},
        // Exact halves at the third decimal go to the even cent.
        {"0,125 al pari in basso", 0.125, {}, std::nullopt, 0.12, std::nullopt},
        {"2,875 al pari in alto", 2.875, {}, std::nullopt, 2.88, std::nullopt},
        {"pari dopo lo sconto: 0,25 - 50%", 0.25, {50, 0, 0, 0}, std::nullopt, 0.12, std::nullopt},
        // VAT from the unrounded net: 11.3449 * 0.22 = 2.495878 -> 2.50, where 11.34 * 0.22 = 2.4948 -> 2.49.
        {"iva dal netto non arrotondato", 11.3449, {}, 22, 11.34, 2.50},
        {"riga negativa", -200, {10, 0, 0, 0}, 22, -180, -39.60},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        const auto riga = sales::CalcolaRiga(c.importo, c.sconti, c.aliquota);
        EXPECT_DOUBLE_EQ(riga.netto, c.netto);
        ASSERT_EQ(riga.imposta.has_value(), c.imposta.has_value());
        if (c.imposta) {
            EXPECT_DOUBLE_EQ(*riga.imposta, *c.imposta);
        }
    }
}

TEST(TotaliDocumento, RitenutaSulNettoPrimaDellaMaggiorazioneENonArrotondata) {
    // Surcharge 10 on 100: +10 taxable, +2 VAT at the flat 20 percent; withholding 20 of 100, not 22.
    auto t = sales::ComponiTotali({true, 100, 22, 100}, 0, {20, 10});
    EXPECT_DOUBLE_EQ(t.totIva, 24);
    EXPECT_DOUBLE_EQ(t.totRitenutaAcconto, 20);
    EXPECT_DOUBLE_EQ(t.importoTotale, 114);
    // A third of a cent of withholding stays as it is, in the total as well.
    t = sales::ComponiTotali({true, 1, 0, 1}, 0, {1.0 / 3, 0});
    EXPECT_DOUBLE_EQ(t.totRitenutaAcconto, 1.0 / 300);
    EXPECT_DOUBLE_EQ(t.importoTotale, 1 - 1.0 / 300);
    // With no aggregate row at all only the charges count, whatever the header says.
    t = sales::ComponiTotali({}, 60, {20, 10});
    EXPECT_DOUBLE_EQ(t.importoTotale, 60);
    EXPECT_DOUBLE_EQ(t.totIva, 0);
}

}  // namespace
