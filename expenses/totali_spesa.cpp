#include "expenses/totali_spesa.h"

#include "core/archivio_sql.h"
#include "store/convert.h"

namespace expenses {

namespace {

const char* const kSommeRighe =
    "Sum(Round([Importo],2)) AS Imponibile, Sum(Round([Importo]/100*[AliquotaIva],2)) AS Imposta";
const char* const kFromRighe =
    "FROM (MovimentiSpese LEFT JOIN Spese ON MovimentiSpese.Spesa = Spese.ID) "
    "LEFT JOIN CodiciIva ON MovimentiSpese.Iva = CodiciIva.ID ";

std::string HavingSpesa(long spesa) { return "HAVING (((Spese.ID)=" + std::to_string(spesa) + "))"; }

std::optional<double> Somma(store::Recordset& rs, const char* campo) {
    if (rs.Eof()) return std::nullopt;
    return core::NumeroOpzionale(rs.get(campo));
}

void ScriviTotali(store::Recordset& rs, const TotaliSpesa& t) {
    rs.Edit();
    rs.set("Imponibile", store::Value::Double(t.imponibile));
    rs.set("TotIva", store::Value::Double(t.totIva));
    rs.set("ImportoSpesa", store::Value::Double(t.importoSpesa));
    rs.Update();
}

}  // namespace

TotaliSpesa ComponiTotaliSpesa(std::optional<double> imponibile, std::optional<double> imposta,
                               double ritenutaAcconto) {
    TotaliSpesa t;
    t.imponibile = store::Round(imponibile.value_or(0), 2);
    t.totIva = store::Round(imposta.value_or(0), 2);
    const double ritenuta = t.imponibile / 100 * ritenutaAcconto;
    t.importoSpesa = t.imponibile - ritenuta + t.totIva;
    return t;
}

std::string SqlRiepilogoIvaSpesa(long spesa) {
    return std::string("SELECT Spese.ID AS Spesa, ") + kSommeRighe + ", MovimentiSpese.Iva AS ID, CodiciIva.DescIva " +
           kFromRighe + "GROUP BY Spese.ID, MovimentiSpese.Iva, CodiciIva.DescIva " + HavingSpesa(spesa);
}

std::string SqlTotaliSpesa(long spesa) {
    return std::string("SELECT Spese.ID, ") + kSommeRighe + " " + kFromRighe + "GROUP BY Spese.ID " + HavingSpesa(spesa);
}

void CalcolaTotaliSpesa(long spesa, store::Recordset* recordset) {
    core::CursoreOccupato cursore;
    auto rs = core::Apri("Select * from qrSpese where ID=" + std::to_string(spesa));
    if (rs->Eof()) return;
    auto somme = core::Apri(SqlTotaliSpesa(spesa));
    const TotaliSpesa totali = ComponiTotaliSpesa(Somma(*somme, "Imponibile"), Somma(*somme, "Imposta"),
                                                  core::NumeroOZero(rs->get("RitenutaAcconto")));
    ScriviTotali(recordset ? *recordset : *rs, totali);
}

}  // namespace expenses
