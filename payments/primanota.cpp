#include "payments/primanota.h"

#include "core/services.h"
#include "core/archivio_sql.h"
#include "store/convert.h"
#include "store/format.h"

namespace payments {

namespace {

std::string TestoQuotato(const std::string& testo) { return "'" + core::Apici(testo) + "'"; }

// The balance goes through the "#,0.00" mask and is read back, so it keeps what the mask shows.
double ComeMascheraCentesimi(double saldo) {
    return store::CDbl(store::Value::Text(store::Format(store::Value::Double(saldo), "#,0.00")));
}

}  // namespace

int CodiceTipoPrimaNota(const store::Value& modo) {
    if (modo.isNull()) return 1;
    if (modo.kind() == store::Value::Kind::Text) {
        const auto numero = store::ParseNumberText(modo.text());
        return numero && *numero == 1 ? 0 : 1;
    }
    return modo.number() == 1 ? 0 : 1;
}

std::string SqlInserisciPrimaNota(long id, const VocePrimaNota& voce) {
    return "Insert Into PrimaNota (ID,Data,Descrizione,CC,Importo,Tipo,Destinazione,Pagamento,TipoPagamento) VALUES (" +
           std::to_string(id) + ",'" + store::ShortDate(voce.data) + "'," + TestoQuotato(voce.descrizione) + "," +
           TestoQuotato(voce.cc) + "," + core::NumeroSql(voce.importo) + "," +
           std::to_string(CodiceTipoPrimaNota(voce.tipo)) + "," + store::ConcatText(voce.destinazione) + "," +
           store::ConcatText(voce.pagamento) + "," + TestoQuotato(store::ConcatText(voce.tipoPagamento)) + ")";
}

std::string SqlAggiornaPrimaNota(const VocePrimaNota& voce) {
    return "Update PrimaNota set CC='" + voce.cc + "', TipoPagamento=" +
           TestoQuotato(store::ConcatText(voce.tipoPagamento)) + ", Data='" + core::DataSql(voce.data) +
           "', Descrizione=" + TestoQuotato(voce.descrizione) + ", Importo=" + core::NumeroSql(voce.importo) +
           " where Pagamento=" + store::ConcatText(voce.pagamento);
}

void ScriviPrimaNota(bool nuovo, const VocePrimaNota& voce) {
    const std::string sql = nuovo ? SqlInserisciPrimaNota(core::ProssimoID("PrimaNota"), voce)
                                  : SqlAggiornaPrimaNota(voce);
    core::Archivio().Execute(sql);
}

void PulisciPrimaNota() {
    core::CursoreOccupato cursore;
    core::Archivio().Execute(
        "Delete PrimaNota.* from PrimaNota LEFT JOIN Pagamenti ON PrimaNota.Pagamento = Pagamenti.ID "
        "WHERE IsNull(Pagamenti.ID) AND PrimaNota.Pagamento<>0");
}

double SaldoPrecedente(double data, long destinazione) {
    auto rs = core::Apri(
        "Select Sum(Entrate) as TotEntrate, Sum(Uscite) as TotUscite from qrPrimaNota where DateValue(Data)<DateValue('" +
        core::DataSql(data) + "') AND DateValue(Data)>=DateValue('" + core::DataSql(core::DataInizioEsercizio()) +
        "') AND DateValue(Data)<=DateValue('" + core::DataSql(core::DataFineEsercizio()) +
        "') AND Destinazione=" + std::to_string(destinazione));
    const double entrate = core::NumeroOZero(rs->get("TotEntrate"));
    const double uscite = core::NumeroOZero(rs->get("TotUscite"));
    rs->Close();
    return ComeMascheraCentesimi(entrate - uscite);
}

}  // namespace payments
