// The dates of the current period, and the calendar: month lengths, Easter and holidays.
#include <gtest/gtest.h>

#include "core/calendario.h"
#include "core/esercizio.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "support/sessione_prova.h"

namespace {

using store::DateSerial;

class Esercizio : public ::testing::Test {
protected:
    void SetUp() override {
        test::SessioneNuova(cartella.percorso());
        aziende = store::Workspace::Default().CreateDatabase(cartella / "Aziende.mdb");
        store::model::CreaAziende(*aziende);
        for (const char* sql : {
             "INSERT INTO Esercizi (ID, Azienda, Nome, Dal, Al) VALUES (1, 1, '2023', #01/01/2023#, #12/31/2023#)",
             "INSERT INTO Esercizi (ID, Azienda, Nome, Dal, Al) VALUES (2, 1, '2024', #03/15/2024#, Null)",
             "INSERT INTO Esercizi (ID, Azienda, Nome, Dal, Al) VALUES (3, 1, 'vuoto', Null, Null)"})
            aziende->Execute(sql);
        core::session().dbAziende = aziende;
    }
    static void Corrente(long id) { core::session().IDEsercizio = id; }
    test::CartellaTemporanea cartella;
    store::DatabasePtr aziende;
};

TEST_F(Esercizio, InizioEFineDelPeriodo) {
    struct Caso {
        long id;
        double inizio, fine;
    };
    const Caso casi[] = {
        {1, DateSerial(2023, 1, 1), DateSerial(2023, 12, 31)},
        {2, DateSerial(2024, 3, 15), DateSerial(2024, 12, 31)},  // open period: 31/12 of its year
        {3, 0, DateSerial(1899, 12, 31)},                         // no dates: the "0.00.00" date
        {99, 0, DateSerial(1899, 12, 31)},                        // no row
    };
    for (const auto& c : casi) {
        Corrente(c.id);
        EXPECT_EQ(core::DataInizioEsercizio(), c.inizio) << c.id;
        EXPECT_EQ(core::DataFineEsercizio(), c.fine) << c.id;
    }
}

TEST_F(Esercizio, DataFuoriEsercizio) {
    Corrente(1);
    struct Caso {
        const char* testo;
        bool fuori;
    };
    const Caso casi[] = {
        {"", true},           {"   ", true},        {"abc", true},          {"31/02/2023", true},
        {"31/12/2022", true}, {"01/01/2023", false}, {"15/06/2023", false}, {"31/12/2023", false},
        {"31/12/2023 18.30", false}, {"01/01/2024", true},
    };
    for (const auto& c : casi) EXPECT_EQ(core::DataFuoriEsercizio(c.testo), c.fuori) << '"' << c.testo << '"';
}

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

// Sundays, working Saturdays and Easter Monday (only in today's year) are walked by the instalments' due dates.
TEST(GiornoFestivo, FestivitaFisse) {
    struct Caso {
        int giorno, mese, anno;
        bool festivo;
    };
    const Caso casi[] = {
        {1, 1, 2024, true},   {25, 4, 2023, true},  {2, 6, 2023, true},   {26, 12, 2023, true},
        {6, 3, 2023, false},   // Monday
        {27, 12, 2023, false},
    };
    for (const auto& c : casi)
        EXPECT_EQ(core::GiornoFestivo(DateSerial(c.anno, c.mese, c.giorno)), c.festivo)
            << c.giorno << "/" << c.mese << "/" << c.anno;
}

}  // namespace
