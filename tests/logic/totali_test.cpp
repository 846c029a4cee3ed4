// Document arithmetic without a database: every expected figure is worked by hand.
#include <gtest/gtest.h>

#include "sales/totali.h"

namespace {

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
