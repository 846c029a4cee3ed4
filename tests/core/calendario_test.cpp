#include <gtest/gtest.h>

#include "core/calendario.h"
#include "store/convert.h"

namespace {

using store::DateSerial;

TEST(Calendario, AnniBisestiliEGiorniDelMese) {
    struct Caso {
        int mese, anno, giorni;
    };
    const Caso casi[] = {
        {2, 2024, 29}, {2, 1900, 28}, {2, 2000, 29}, {11, 2023, 30}, {7, 2023, 31}, {8, 2023, 31},
    };
    for (const auto& c : casi) EXPECT_EQ(core::GiorniMese(c.mese, c.anno), c.giorni) << c.mese << "/" << c.anno;
}

TEST(Calendario, PasquaConLeEccezioniDiGauss) {
    struct Caso {
        int anno, mese, giorno;
    };
    const Caso casi[] = {
        {2024, 3, 31}, {2008, 3, 23}, {2011, 4, 24},
        {1981, 4, 19},  // the rule gives 26 April, which becomes 19
        {1954, 4, 18},  // 25 April with d = 28 becomes 18
    };
    for (const auto& c : casi)
        EXPECT_EQ(core::Pasqua(c.anno), DateSerial(c.anno, c.mese, c.giorno)) << c.anno;
}

// Easter Monday, which counts only in today's year, is walked by the instalments' due dates.
TEST(GiornoFestivo, FestivitaFisseDomenicheESabati) {
    struct Caso {
        int giorno, mese, anno;
        bool festivo;
    };
    const Caso casi[] = {
        {1, 1, 2024, true},   {25, 4, 2023, true},  {2, 6, 2023, true},   {26, 12, 2023, true},
        {5, 3, 2023, true},    // a Sunday
        {4, 3, 2023, false},   // a Saturday is a working day
        {6, 3, 2023, false},   // Monday
        {27, 12, 2023, false},
    };
    for (const auto& c : casi)
        EXPECT_EQ(core::GiornoFestivo(DateSerial(c.anno, c.mese, c.giorno)), c.festivo)
            << c.giorno << "/" << c.mese << "/" << c.anno;
}

}  // namespace
