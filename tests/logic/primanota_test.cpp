// The journal's statements as text, and the settled flag's rule, without a database.
#include <gtest/gtest.h>

#include "payments/primanota.h"
#include "payments/saldo.h"
#include "store/convert.h"

namespace {

using store::Value;

payments::VocePrimaNota Voce() {
    payments::VocePrimaNota v;
    v.data = store::DateSerial(2024, 3, 5);
    v.descrizione = "Incasso dell'acconto";
    v.importo = 1234.5;
    v.tipo = Value::Long(1);
    v.destinazione = Value::Long(0);
    v.pagamento = Value::Long(12);
    v.tipoPagamento = Value::Text("Assegno d'oro");
    v.cc = "IT'01";
    return v;
}

TEST(PrimaNotaSql, InserimentoRaddoppiaOgniApice) {
    EXPECT_EQ(payments::SqlInserisciPrimaNota(7, Voce()),
              "Insert Into PrimaNota (ID,Data,Descrizione,CC,Importo,Tipo,Destinazione,Pagamento,TipoPagamento) "
              "VALUES (7,'05/03/2024','Incasso dell''acconto','IT''01',1234.5,0,0,12,'Assegno d''oro')");
}

TEST(PrimaNotaSql, AggiornamentoLasciaIlCCComeScritto) {
    EXPECT_EQ(payments::SqlAggiornaPrimaNota(Voce()),
              "Update PrimaNota set CC='IT'01', TipoPagamento='Assegno d''oro', Data='05/03/2024', "
              "Descrizione='Incasso dell''acconto', Importo=1234.5 where Pagamento=12");
}

TEST(PrimaNotaSql, TipoDalModoDellEditor) {
    struct Caso {
        const char* nome;
        Value modo;
        int codice;
    } const casi[] = {
        {"incasso", Value::Long(1), 0},       {"pagamento", Value::Long(2), 1},
        {"assente", Value(), 1},              {"zero", Value::Int(0), 1},
        {"testo uno", Value::Text("1"), 0},   {"testo non numerico", Value::Text("x"), 1},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        EXPECT_EQ(payments::CodiceTipoPrimaNota(c.modo), c.codice);
    }
}

TEST(Saldo, SovrapagatoEZeroContanoComePagati) {
    struct Caso {
        const char* nome;
        bool presente;
        Value daPagare;
        bool saldato;
    } const casi[] = {
        {"nessuna riga", false, Value(), false},
        {"parziale", true, Value::Double(40), false},
        {"un centesimo", true, Value::Double(0.01), false},
        {"saldato", true, Value::Double(0), true},
        {"sovrapagato", true, Value::Double(-10), true},
        {"resto nullo", true, Value(), true},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        EXPECT_EQ(payments::Saldato(c.presente, c.daPagare), c.saldato);
    }
}

}  // namespace
