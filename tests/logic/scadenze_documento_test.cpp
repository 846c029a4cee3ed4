// The statements over a search of documents: the register's own, and the sums of its instalments tab,
// worked out by hand on a small archive.
#include <functional>

#include "sales/documenti.h"
#include "sales/scadenze_documento.h"
#include "support/archivio_logica.h"

namespace {

using sales::CriteriDocumenti;

CriteriDocumenti Fatture() {
    CriteriDocumenti c;
    c.tipo = 5;
    return c;
}

// Every criterion at once, an apostrophe in the suffix; the kind alone is run by the archive test, a
// criterion at a time by the register's search.
TEST(RicercaDocumenti, IstruzioniConOgniCriterio) {
    CriteriDocumenti tutto = Fatture();
    tutto.dataDal = tutto.dataAl = tutto.dest = tutto.numDal = tutto.numAl = true;
    tutto.dal = "01/01/2026";
    tutto.al = "31/03/2026";
    tutto.cliente = 4;
    tutto.pagate = 0;
    tutto.prefissoDal = "A";
    tutto.suffissoAl = "B'x";
    tutto.numeroDal = 3;
    tutto.numeroAl = 9;
    EXPECT_EQ(sales::IstruzioneRicercaDocumenti(tutto),
              "Select * from qrDocumenti  where DateValue(Data)>=DateValue('01/01/2026') and "
              "DateValue(Data)<=DateValue('31/03/2026') and Cliente=4 and Pagato=False and Prefisso>='A' and "
              "Suffisso>='' and Numero>=3 and Prefisso<='' and Suffisso<='B''x' and Numero<=9 and Tipo=5");
    const std::string filtro =
        "Where (Documenti.Tipo = 5 and DateValue(Data)>=DateValue('01/01/2026') and "
        "DateValue(Data)<=DateValue('31/03/2026') and Documenti.Cliente=4 and Pagato=False and (Prefisso='A') and "
        "(Suffisso='' or IsNull(Suffisso)) and Numero>=3 and (Prefisso='' or IsNull(Prefisso)) and "
        "(Suffisso='B''x') and Numero<=9)";
    EXPECT_EQ(sales::SqlImportoDocumenti(tutto), "SELECT Sum([ImportoTotale]) AS ImportoDocumenti From Documenti " + filtro);
    EXPECT_EQ(sales::SqlImportoPagatoDocumenti(tutto),
              "SELECT Sum(IIf(IsNull([ImportoPagamento]),0,[ImportoPagamento])) AS ImportoPagato FROM Documenti "
              "LEFT JOIN Pagamenti ON Documenti.ID = Pagamenti.Documento " + filtro);
}

class ResocontoArchivio : public prova::ArchivioProva {
protected:
    void SetUp() override {
        ArchivioProva::SetUp();
        // 1: A/1 of 100, paid 60 + 40; 2: 2 with no prefix (Null) of 250.50, paid 50.25 by customer 2;
        // 3: 3 with the empty prefix of 80, nothing paid; 4: a nota di credito, another kind.
        Documento(1, {.prefisso = "'A'", .importoTotale = 100});
        Documento(2, {.numero = 2, .prefisso = "Null", .importoTotale = 250.50, .cliente = 2});
        Documento(3, {.numero = 3, .importoTotale = 80});
        Documento(4, {.tipo = 6, .importoTotale = 999});
        Pagamento(1, "Documento", 1, 60);
        Pagamento(2, "Documento", 1, 40);
        Pagamento(3, "Documento", 2, 50.25, 2);
        Pagamento(4, "Documento", 4, 999);
    }
};

TEST_F(ResocontoArchivio, TuttiIDocumentiDellaRicerca) {
    struct Caso {
        const char* nome;
        std::function<void(CriteriDocumenti&)> criteri;
        double importo, pagato, daPagare;
    };
    const Caso casi[] = {
        {"tutte le fatture", [](CriteriDocumenti&) {}, 430.50, 150.25, 280.25},
        {"senza prefisso, Null compreso, dal 2", [](CriteriDocumenti& c) {
             c.numDal = true;
             c.numeroDal = 2;
         }, 330.50, 50.25, 280.25},
        // The customer of the document, not the one of its payments.
        {"cliente 2", [](CriteriDocumenti& c) {
             c.dest = true;
             c.cliente = 2;
         }, 250.50, 50.25, 200.25},
        {"nessun documento", [](CriteriDocumenti& c) {
             c.dataDal = true;
             c.dal = "01/12/2026";
         }, 0, 0, 0},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        CriteriDocumenti criteri = Fatture();
        c.criteri(criteri);
        const sales::ResocontoDocumenti r = sales::CalcolaResocontoDocumenti(criteri);
        EXPECT_NEAR(r.importo, c.importo, 1e-9);
        EXPECT_NEAR(r.pagato, c.pagato, 1e-9);
        EXPECT_NEAR(r.daPagare, c.daPagare, 1e-9);
    }
}

}  // namespace
