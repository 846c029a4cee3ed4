#include <gtest/gtest.h>

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

}  // namespace
