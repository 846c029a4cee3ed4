#include "books/prima_nota_ricostruzione.h"

#include "core/archivio_sql.h"
#include "core/session.h"
#include "payments/primanota.h"
#include "store/convert.h"

namespace books {

namespace {

// The payment editor's modes as the journal reads them: 1 (incasso) writes an entrata, any other
// mode an uscita.
constexpr int kModoIncasso = 1;
constexpr int kModoPagamento = 2;
constexpr int kBanca = 0;

}  // namespace

long RicostruisciPrimaNota(const AvanzamentoRicostruzione& avanza) {
    auto rs = core::session().dbArchivio->OpenRecordset("Select * from Pagamenti");
    long totale = 0;
    if (!rs->Eof()) {
        rs->MoveLast();
        totale = rs->RecordCount();
        rs->MoveFirst();
    }
    long scritte = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        if (avanza) avanza(rs->AbsolutePosition() + 1, totale);
        const bool incasso = core::NumeroOZero(rs->get("Cliente")) > 0;
        payments::VocePrimaNota voce;
        const store::Value data = rs->get("DataPagamento");
        voce.data = data.isNull() ? 0.0 : store::CDate(data);
        voce.descrizione = store::ConcatText(rs->get("DescPagamento"));
        voce.importo = core::NumeroOZero(rs->get("ImportoPagamento"));
        voce.tipo = store::Value::Long(incasso ? kModoIncasso : kModoPagamento);
        voce.destinazione = store::Value::Long(kBanca);
        voce.pagamento = rs->get("ID");
        voce.tipoPagamento = store::Value::Text("");
        voce.cc = "";
        payments::ScriviPrimaNota(true, voce);
        ++scritte;
    }
    return scritte;
}

}  // namespace books
