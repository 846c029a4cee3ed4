// The rebuild of the journal from the payments of an archive that predates it.
#include "support/archivio_logica.h"
#include "books/prima_nota_ricostruzione.h"

namespace {

class RicostruzionePrimaNota : public prova::ArchivioProva {};

TEST_F(RicostruzionePrimaNota, UnaRigaPerPagamentoSullaBanca) {
    // A row typed by hand stays: nothing is deleted first, and the new rows follow its ID.
    Esegui("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento,TipoPagamento,CC) "
           "VALUES (1,'02/01/2026','Versamento',500,0,1,0,'Contanti','')");
    Esegui("Insert Into Pagamenti (ID,Documento,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento,"
           "TipoPagamento,CC) VALUES (4,1,3,0,'Incasso fattura n. 1',#03/20/2026#,1234.5,'Bonifico','IT01')");
    Esegui("Insert Into Pagamenti (ID,Spesa,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
           "VALUES (7,2,0,5,'Pagamento dell''affitto',#04/02/2026#,80.25)");
    // A refund to a customer still counts as money in: only Cliente decides.
    Esegui("Insert Into Pagamenti (ID,Documento,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
           "VALUES (9,6,3,0,'Rimborso nota di credito',#05/11/2026#,40)");

    std::vector<std::pair<long, long>> passi;
    const long scritte = books::RicostruisciPrimaNota([&](long pos, long tot) { passi.emplace_back(pos, tot); });
    EXPECT_EQ(scritte, 3);
    EXPECT_EQ(passi, (std::vector<std::pair<long, long>>{{1, 3}, {2, 3}, {3, 3}}));

    // ID, date, description, amount, type and payment; the new rows on the bank (0), without the
    // payment's means or account: those are to be set by hand.
    std::vector<std::string> righe;
    for (auto rs = db().OpenRecordset("Select * from PrimaNota order by ID"); !rs->Eof(); rs->MoveNext()) {
        std::string riga = store::ShortDate(store::CDate(rs->get("Data")));
        for (const char* campo : {"ID", "Descrizione", "Importo", "Tipo", "Pagamento", "Destinazione", "TipoPagamento", "CC"})
            riga += "|" + store::ConcatText(rs->get(campo));
        righe.push_back(riga);
    }
    EXPECT_EQ(righe, (std::vector<std::string>{"02/01/2026|1|Versamento|500|0|0|1|Contanti|",
                                               "20/03/2026|2|Incasso fattura n. 1|1234,5|0|4|0||",
                                               "02/04/2026|3|Pagamento dell'affitto|80,25|1|7|0||",
                                               "11/05/2026|4|Rimborso nota di credito|40|0|9|0||"}));

    // In the journal's query a collection stands under Entrate, a payment under Uscite.
    EXPECT_DOUBLE_EQ(Numero("Select Sum(Entrate) as E from qrPrimaNota where Pagamento>0", "E"), 1274.5);
    EXPECT_DOUBLE_EQ(Numero("Select Sum(Uscite) as U from qrPrimaNota where Pagamento>0", "U"), 80.25);
}

}  // namespace
