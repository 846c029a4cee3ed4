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
    EXPECT_EQ(payments::CodiceTipoPrimaNota(Value::Long(1)), 0);      // incasso: entrata
    EXPECT_EQ(payments::CodiceTipoPrimaNota(Value::Text("1")), 0);
    EXPECT_EQ(payments::CodiceTipoPrimaNota(Value::Long(2)), 1);      // anything else: uscita
    EXPECT_EQ(payments::CodiceTipoPrimaNota(Value()), 1);             // an absent mode too
}

TEST(Saldo, RestoNulloContaComeSaldato) {
    // The "above 0" test fails on Null as the platform's If does; without a row nothing is settled.
    EXPECT_TRUE(payments::Saldato(true, Value()));
    EXPECT_FALSE(payments::Saldato(false, Value()));
}

}  // namespace
