// The statement of a search over documents: each ticked box its condition, the kind always last.
#include <gtest/gtest.h>

#include "sales/documenti.h"

namespace {

TEST(RicercaDocumenti, Istruzione) {
    const std::string base = "Select * from qrDocumenti  where ";
    struct Caso {
        const char* nome;
        sales::CriteriDocumenti c;
        std::string dove;
    };
    sales::CriteriDocumenti soloTipo;
    soloTipo.tipo = 7;
    sales::CriteriDocumenti tutto;
    tutto.tipo = 5;
    tutto.dataDal = tutto.dataAl = tutto.dest = tutto.numDal = tutto.numAl = true;
    tutto.dal = "01/01/2026";
    tutto.al = "31/03/2026";
    tutto.cliente = 4;
    tutto.pagate = 0;
    tutto.prefissoDal = "A";
    tutto.prefissoAl = "B'x";
    tutto.suffissoAl = "Z";
    tutto.numeroDal = 3;
    tutto.numeroAl = 9;
    const Caso casi[] = {
        {"nessun criterio", soloTipo, "Tipo=7"},
        {"tutto", tutto,
         "DateValue(Data)>=DateValue('01/01/2026') and DateValue(Data)<=DateValue('31/03/2026') and Cliente=4"
         " and Pagato=False and Prefisso>='A' and Suffisso>='' and Numero>=3 and Prefisso<='B''x'"
         " and Suffisso<='Z' and Numero<=9 and Tipo=5"},
    };
    for (const Caso& c : casi) EXPECT_EQ(sales::IstruzioneRicercaDocumenti(c.c), base + c.dove) << c.nome;
}

}  // namespace
