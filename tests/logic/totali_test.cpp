// Document and expense arithmetic, without a database: every expected figure is worked by hand.
#include <gtest/gtest.h>

#include "expenses/totali_spesa.h"
#include "sales/totali.h"

namespace {

using sales::CalcolaRiga;
using sales::ComponiTotali;
using sales::DatiTestata;
using sales::SommeRighe;
using sales::Sconti;

struct CasoRiga {
    const char* nome;
    double importo;
    Sconti sconti;
    std::optional<double> aliquota;
    double netto;
    std::optional<double> imposta;
};

TEST(TotaliRiga, CascataDiScontiEArrotondamentoPariPerRiga) {
    const CasoRiga casi[] = {
        // 100 -10% = 90, -10% of 90 = 81: the discounts cascade, never 80.
        {"due sconti in cascata", 100, {10, 10, 0, 0}, 22, 81.00, 17.82},
        // 1000 -> 900 -> 855 -> 837.9 -> 829.521; VAT 829.521 * 0.22 = 182.49462.
        {"quattro sconti", 1000, {10, 5, 2, 1}, 22, 829.52, 182.49},
        // Exact halves at the third decimal go to the even cent.
        {"0,125 al pari in basso", 0.125, {}, std::nullopt, 0.12, std::nullopt},
        {"0,375 al pari in alto", 0.375, {}, std::nullopt, 0.38, std::nullopt},
        {"2,625 al pari in basso", 2.625, {}, std::nullopt, 2.62, std::nullopt},
        {"2,875 al pari in alto", 2.875, {}, std::nullopt, 2.88, std::nullopt},
        // 0.25 less 50% is exactly 0.125: the tie appears after the discount.
        {"pari dopo lo sconto", 0.25, {50, 0, 0, 0}, std::nullopt, 0.12, std::nullopt},
        // VAT from the unrounded net: 11.3449 * 0.22 = 2.495878 -> 2.50, where 11.34 * 0.22 = 2.4948 -> 2.49.
        {"iva dal netto non arrotondato", 11.3449, {}, 22, 11.34, 2.50},
        {"codice iva sconosciuto", 50, {}, std::nullopt, 50, std::nullopt},
        // A credit note line: -200 less 10% = -180, VAT -39.6.
        {"riga negativa", -200, {10, 0, 0, 0}, 22, -180, -39.60},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        const auto riga = CalcolaRiga(c.importo, c.sconti, c.aliquota);
        EXPECT_DOUBLE_EQ(riga.netto, c.netto);
        ASSERT_EQ(riga.imposta.has_value(), c.imposta.has_value());
        if (c.imposta) EXPECT_DOUBLE_EQ(*riga.imposta, *c.imposta);
    }
}

TEST(TotaliRiga, NettoScontatoRestaNonArrotondato) {
    EXPECT_DOUBLE_EQ(sales::NettoScontato(1000, {10, 5, 2, 1}), 829.521);
    EXPECT_DOUBLE_EQ(sales::NettoScontato(80, {}), 80);
}

struct CasoTotali {
    const char* nome;
    SommeRighe righe;
    double spese;
    DatiTestata testata;
    sales::TotaliDocumento atteso;  // imponibile, iva, netto, spese, ritenuta, totale
};

TEST(TotaliDocumento, MaggiorazioneRitenutaESpese) {
    const SommeRighe cento{true, 100, 22, 100};
    const CasoTotali casi[] = {
        {"documento vuoto: una riga di Null", {true, {}, {}, {}}, 0, {20, 10}, {0, 0, 0, 0, 0, 0}},
        {"nessuna riga affatto", {}, 60, {20, 10}, {0, 0, 0, 60, 0, 60}},
        {"solo righe", cento, 0, {}, {100, 22, 100, 0, 0, 122}},
        // Surcharge 10 on 100: +10 taxable and net, +2 VAT at the flat 20 percent.
        {"maggiorazione", cento, 0, {0, 10}, {110, 24, 110, 0, 0, 134}},
        // Withholding 20 of the net before the surcharge: 20, not 22.
        {"ritenuta senza la maggiorazione", cento, 0, {20, 10}, {110, 24, 110, 0, 20, 114}},
        // A charge of 50 at 20 percent: 60 in TotSpese only.
        {"spese fuori da iva e netto", cento, 60, {}, {100, 22, 100, 60, 0, 182}},
        // Discounts leave Imponibile (before them) apart from TotNetto (after them).
        {"imponibile prima degli sconti", {true, 81, 17.82, 100}, 0, {}, {100, 17.82, 81, 0, 0, 98.82}},
        {"nota di credito", {true, -180, -39.6, -200}, 0, {}, {-200, -39.6, -180, 0, 0, -219.6}},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        const auto t = ComponiTotali(c.righe, c.spese, c.testata);
        EXPECT_DOUBLE_EQ(t.imponibile, c.atteso.imponibile);
        EXPECT_DOUBLE_EQ(t.totIva, c.atteso.totIva);
        EXPECT_DOUBLE_EQ(t.totNetto, c.atteso.totNetto);
        EXPECT_DOUBLE_EQ(t.totSpese, c.atteso.totSpese);
        EXPECT_DOUBLE_EQ(t.totRitenutaAcconto, c.atteso.totRitenutaAcconto);
        EXPECT_DOUBLE_EQ(t.importoTotale, c.atteso.importoTotale);
    }
}

TEST(TotaliDocumento, SommeArrotondateMaRitenutaNo) {
    // Sums of cents carry binary noise (0.1 + 0.2); the stored net is rounded to 0.30.
    const auto t = ComponiTotali({true, 0.1 + 0.2, 0, 0.1 + 0.2}, 0, {});
    EXPECT_EQ(t.totNetto, 0.3);
    // A third of a cent of withholding stays as it is, in the total as well.
    const auto r = ComponiTotali({true, 1, 0, 1}, 0, {1.0 / 3, 0});
    EXPECT_DOUBLE_EQ(r.totRitenutaAcconto, 1.0 / 300);
    EXPECT_DOUBLE_EQ(r.importoTotale, 1 - 1.0 / 300);
}

TEST(TotaliSpesa, RitenutaDallImponibile) {
    struct Caso {
        const char* nome;
        std::optional<double> imponibile, imposta;
        double ritenuta;
        expenses::TotaliSpesa atteso;
    } const casi[] = {
        {"senza righe", std::nullopt, std::nullopt, 20, {0, 0, 0}},
        {"ritenuta 20 su 1000 con iva 220", 1000, 220, 20, {1000, 220, 1020}},
        {"senza ritenuta", 150, 33, 0, {150, 33, 183}},
        // 0.1 of withholding on 10.01 is 0.01001: kept unrounded.
        {"ritenuta non arrotondata", 10.01, 0, 0.1, {10.01, 0, 10.01 - 0.01001}},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        const auto t = expenses::ComponiTotaliSpesa(c.imponibile, c.imposta, c.ritenuta);
        EXPECT_DOUBLE_EQ(t.imponibile, c.atteso.imponibile);
        EXPECT_DOUBLE_EQ(t.totIva, c.atteso.totIva);
        EXPECT_DOUBLE_EQ(t.importoSpesa, c.atteso.importoSpesa);
    }
}

}  // namespace
