// Writing a schedule into Scadenze from a document and its payment term.
#include "support/archivio_logica.h"
#include "payments/generazione_scadenze.h"

namespace {

using namespace payments;

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
    EXPECT_EQ(condizione.descPagamento, "30-60-90 fm");
    auto regola = RegolaIniziale(documento, &condizione);
    EXPECT_EQ(regola.dataConteggio, store::DateSerial(2026, 1, 31));
    ScriviScadenze(documento, PianoScadenze(regola, true));

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
    const auto regola = RegolaIniziale(documento, nullptr);
    ScriviScadenze(documento, PianoScadenze(regola, true));
    // Today is Monday 15 June 2026.
    EXPECT_EQ(Rate(), std::vector<std::string>{"1|Saldo FATTURA N.1 del 10/03/2026|15/06/2026|15/06/2026|250,5|1"});
    try {
        LeggiDocumentoDaScadenzare(5);
        FAIL();
    } catch (const store::JetError& e) {
        EXPECT_EQ(e.number(), 3021);
    }
}

}  // namespace
