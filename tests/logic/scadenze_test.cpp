// The instalment rule: equal shares with the difference on the last, month ends, holidays with
// today's Easter, reminder dates (the clock fixed in every test that touches holidays); and a
// schedule written into Scadenze from a document and its payment term.
#include <gtest/gtest.h>

#include "payments/generazione_scadenze.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/convert_support.h"
#include "support/archivio_logica.h"

namespace {

using namespace payments;
using store::DateSerial;

class OrologioFisso : public ::testing::Test {
protected:
    void SetUp() override { store::fissaOrologio(DateSerial(2026, 6, 15)); }
    void TearDown() override { store::fissaOrologio(std::nullopt); }
};

struct CasoImporti {
    double totale;
    int rate;
    double quota, ultima;
};

TEST(ImportiRate, QuoteUgualiEDifferenzaSullUltima) {
    const CasoImporti casi[] = {
        // 16.67 * 6 = 100.02: the last one gives back the two cents and is the smallest.
        {100, 6, 16.67, 16.65},
        // No term: no share, the single instalment carries the total rounded.
        {123.456, 0, 0, 123.46},
        {-100, 3, -33.33, -33.34},
        // 0.125 is an exact half: its share rounds to the even cent.
        {0.25, 2, 0.12, 0.13},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(testing::Message() << c.totale << " in " << c.rate);
        EXPECT_DOUBLE_EQ(payments::ImportoRata(c.totale, c.rate), c.quota);
        EXPECT_DOUBLE_EQ(payments::ImportoUltimaRata(c.totale, c.rate), c.ultima);
    }
}

RegolaScadenze Regola(double dal, int rate, std::initializer_list<long> giorni, double totale = 100) {
    RegolaScadenze r;
    r.totale = totale;
    r.rate = rate;
    r.dataConteggio = dal;
    int i = 0;
    for (long g : giorni) r.giorni[i++] = g;
    return r;
}

TEST_F(OrologioFisso, FineMeseEFestivi) {
    struct Caso {
        const char* nome;
        double dal;
        long giorni;
        bool fineMese;
        double attesa;
    } const casi[] = {
        // 31 Jan 2025 + 30 = 2 March; to the month's end: 31 March.
        {"30 giorni fine mese", DateSerial(2025, 1, 31), 30, true, DateSerial(2025, 3, 31)},
        {"febbraio bisestile", DateSerial(2024, 2, 10), 0, true, DateSerial(2024, 2, 29)},
        // 31 May 2026 is a Sunday: the month end moves into June.
        {"fine mese di domenica", DateSerial(2026, 5, 3), 0, true, DateSerial(2026, 6, 1)},
        // 25 and 26 December, then Sunday 27: Monday 28 December 2026.
        {"natale e santo stefano e domenica", DateSerial(2026, 12, 24), 1, false, DateSerial(2026, 12, 28)},
        // Easter 2026 is 5 April: Easter Monday the 6th is skipped with the clock in 2026.
        {"pasquetta", DateSerial(2026, 4, 6), 0, false, DateSerial(2026, 4, 7)},
        // Easter 2025 is 20 April, but today is in 2026: the 21st is an ordinary Monday.
        {"pasquetta di un altro anno", DateSerial(2025, 4, 21), 0, false, DateSerial(2025, 4, 21)},
        {"sabato lavorativo", DateSerial(2026, 3, 7), 0, false, DateSerial(2026, 3, 7)},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        auto regola = Regola(c.dal, 1, {c.giorni});
        regola.fineMese = c.fineMese;
        EXPECT_EQ(store::ShortDate(PianoScadenze(regola, false)[0].dataScadenza), store::ShortDate(c.attesa));
    }
    // The day table has twelve entries.
    EXPECT_THROW(PianoScadenze(Regola(DateSerial(2026, 3, 2), 13, {}), false), store::JetError);
}

TEST_F(OrologioFisso, DateDiAvviso) {
    struct Caso {
        const char* nome;
        double scadenza;
        const char* giorni;
        VersoAvviso verso;
        double avviso;
    } const casi[] = {
        // Friday 10 July - 5 = Sunday 5: the reminder moves forward to Monday 6.
        {"indietro su una domenica va avanti", DateSerial(2026, 7, 10), "5", VersoAvviso::GiorniPrima,
         DateSerial(2026, 7, 6)},
        // Friday 10 April - 5 = Easter Sunday, then Easter Monday: Tuesday 7.
        {"indietro su pasqua", DateSerial(2026, 4, 10), "5", VersoAvviso::GiorniPrima, DateSerial(2026, 4, 7)},
        // Thursday 13 August + 3 = Sunday 16 -> Monday 17 (15 August is passed over).
        {"dopo su una domenica", DateSerial(2026, 8, 13), "3", VersoAvviso::GiorniDopo, DateSerial(2026, 8, 17)},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        auto regola = Regola(c.scadenza, 0, {});
        regola.giorniAvviso = c.giorni;
        regola.verso = c.verso;
        const auto rata = PianoScadenze(regola, false)[0];
        EXPECT_EQ(rata.dataScadenza, c.scadenza);
        EXPECT_EQ(store::ShortDate(rata.dataAvviso), store::ShortDate(c.avviso));
    }
}

TEST_F(OrologioFisso, GiorniDopoInScritturaLettiComeData) {
    auto regola = Regola(DateSerial(2026, 8, 10), 0, {});
    regola.verso = VersoAvviso::GiorniDopo;
    regola.giorniAvviso = "3";
    EXPECT_EQ(errorOf([&] { PianoScadenze(regola, true); }), 13);  // a bare number is no date
    // "Giorni Prima" reads a number in writing as well.
    regola.verso = VersoAvviso::GiorniPrima;
    EXPECT_EQ(PianoScadenze(regola, true)[0].dataAvviso, DateSerial(2026, 8, 7));
}

class ScadenzeArchivio : public prova::ArchivioProva {
protected:
    std::vector<std::string> Rate() {
        std::vector<std::string> out;
        auto rs = db().OpenRecordset("Select * from Scadenze where ID<>41 order by Rata");
        for (; !rs->Eof(); rs->MoveNext())
            out.push_back(store::ConcatText(rs->get("ID")) + "|" + store::ConcatText(rs->get("DescScadenza")) + "|" +
                          store::ShortDate(store::CDate(rs->get("DataScadenza"))) + "|" +
                          store::ShortDate(store::CDate(rs->get("DataAvviso"))) + "|" +
                          store::ConcatText(rs->get("ImportoScadenza")) + "|" + store::ConcatText(rs->get("Cliente")));
        return out;
    }
};

TEST_F(ScadenzeArchivio, TreRateDallaCondizione) {
    Esegui("Insert Into CondizioniPagamento (ID,DescPagamento,Rate,Rata1,Rata2,Rata3,FineMese) "
           "VALUES (1,'30-60-90 fm',3,30,60,90,1)");
    Esegui("Insert Into Scadenze (ID,DescScadenza) VALUES (41,'vecchia')");
    Documento(1, {.numero = 12, .data = "31/01/2026", .prefisso = "'A/'", .importoTotale = 100, .cliente = 3, .condizioni = 1});

    const auto documento = LeggiDocumentoDaScadenzare(1);
    ASSERT_TRUE(HaCondizionePagamento(documento));
    const auto condizione = LeggiCondizionePagamento(documento.condizioniPagamento);
    ScriviScadenze(documento, PianoScadenze(RegolaIniziale(documento, &condizione), true));

    // ID, description, due and reminder dates, amount and customer of each instalment:
    // 31/01 + 30 = 2 March -> 31 March (Tue); +60 = 1 April -> 30 April (Thu);
    // +90 = 1 May -> 31 May, a Sunday -> 1 June.
    EXPECT_EQ(Rate(), (std::vector<std::string>{
                          "42|Acconto FATTURA N.A/12 del 31/01/2026|31/03/2026|31/03/2026|33,33|3",
                          "43|Acconto FATTURA N.A/12 del 31/01/2026|30/04/2026|30/04/2026|33,33|3",
                          "44|Saldo FATTURA N.A/12 del 31/01/2026|01/06/2026|01/06/2026|33,34|3",
                      }));
}

TEST_F(ScadenzeArchivio, SenzaCondizioneUnaRataDaOggiESenzaDocumentoNessuna) {
    Documento(1, {.importoTotale = 250.5});
    const auto documento = LeggiDocumentoDaScadenzare(1);
    EXPECT_FALSE(HaCondizionePagamento(documento));
    ScriviScadenze(documento, PianoScadenze(RegolaIniziale(documento, nullptr), true));
    // Today is Monday 15 June 2026.
    EXPECT_EQ(Rate(), std::vector<std::string>{"1|Saldo FATTURA N.1 del 10/03/2026|15/06/2026|15/06/2026|250,5|1"});
    EXPECT_EQ(errorOf([] { LeggiDocumentoDaScadenzare(5); }), 3021);
}

}  // namespace
