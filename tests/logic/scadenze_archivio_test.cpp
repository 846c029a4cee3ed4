// Writing a schedule into Scadenze from a document and its payment term.
#include "support/archivio_logica.h"
#include "payments/generazione_scadenze.h"

namespace {

using namespace payments;

class ScadenzeArchivio : public prova::ArchivioProva {};

TEST_F(ScadenzeArchivio, TreRateDallaCondizione) {
    Esegui("Insert Into CondizioniPagamento (ID,DescPagamento,Rate,Rata1,Rata2,Rata3,FineMese) "
           "VALUES (1,'30-60-90 fm',3,30,60,90,1)");
    Esegui("Insert Into Scadenze (ID,DescScadenza) VALUES (41,'vecchia')");
    Documento(1, {.numero = 12, .data = "31/01/2026", .prefisso = "'A/'", .importoTotale = 100, .cliente = 3, .condizioni = 1});

    const auto documento = LeggiDocumentoDaScadenzare(1);
    ASSERT_TRUE(HaCondizionePagamento(documento));
    const auto condizione = LeggiCondizionePagamento(documento.condizioniPagamento);
    EXPECT_EQ(condizione.descPagamento, "30-60-90 fm");
    auto regola = RegolaIniziale(documento, &condizione);
    EXPECT_EQ(regola.dataConteggio, store::DateSerial(2026, 1, 31));
    ScriviScadenze(documento, PianoScadenze(regola, true));

    auto rs = db().OpenRecordset("Select * from Scadenze where Documento=1 order by Rata");
    struct Attesa {
        long id;
        const char* descrizione;
        const char* scadenza;
        double importo;
    } const attese[] = {
        // 31/01 + 30 = 2 March -> 31 March (Tue); +60 = 1 April -> 30 April (Thu);
        // +90 = 1 May -> 31 May, a Sunday -> 1 June.
        {42, "Acconto FATTURA N.A/12 del 31/01/2026", "31/03/2026", 33.33},
        {43, "Acconto FATTURA N.A/12 del 31/01/2026", "30/04/2026", 33.33},
        {44, "Saldo FATTURA N.A/12 del 31/01/2026", "01/06/2026", 33.34},
    };
    for (const auto& a : attese) {
        ASSERT_FALSE(rs->Eof());
        SCOPED_TRACE(a.scadenza);
        EXPECT_EQ(store::CLng(rs->get("ID")), a.id);
        EXPECT_EQ(rs->get("DescScadenza").text(), a.descrizione);
        EXPECT_EQ(store::ShortDate(store::CDate(rs->get("DataScadenza"))), a.scadenza);
        EXPECT_EQ(store::ShortDate(store::CDate(rs->get("DataAvviso"))), a.scadenza);
        EXPECT_DOUBLE_EQ(store::CDbl(rs->get("ImportoScadenza")), a.importo);
        EXPECT_EQ(store::CLng(rs->get("Cliente")), 3);
        rs->MoveNext();
    }
    EXPECT_TRUE(rs->Eof());
}

TEST_F(ScadenzeArchivio, SenzaCondizioneUnaRataDaOggi) {
    Documento(1, {.importoTotale = 250.5});
    const auto documento = LeggiDocumentoDaScadenzare(1);
    EXPECT_FALSE(HaCondizionePagamento(documento));
    const auto regola = RegolaIniziale(documento, nullptr);
    ScriviScadenze(documento, PianoScadenze(regola, true));
    auto rs = db().OpenRecordset("Select * from Scadenze");
    ASSERT_FALSE(rs->Eof());
    // Today is Monday 15 June 2026.
    EXPECT_EQ(store::ShortDate(store::CDate(rs->get("DataScadenza"))), "15/06/2026");
    EXPECT_EQ(rs->get("DescScadenza").text(), "Saldo FATTURA N.1 del 10/03/2026");
    EXPECT_DOUBLE_EQ(store::CDbl(rs->get("ImportoScadenza")), 250.5);
}

TEST_F(ScadenzeArchivio, DocumentoAssente) {
    try {
        LeggiDocumentoDaScadenzare(5);
        FAIL();
    } catch (const store::JetError& e) {
        EXPECT_EQ(e.number(), 3021);
    }
}

}  // namespace
