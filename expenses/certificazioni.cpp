#include "expenses/certificazioni.h"

#include "sales/stampa_documenti.h"
#include "store/convert.h"
#include "store/dao.h"

namespace expenses {

using core::Allineamento;

const core::TabellaCampi& CampiCertificazioni() {
    static const core::TabellaCampi t{
        {"DataScadAcconto", "Scadenza", 1200, "dd/mm/yyyy"},
        {"Numero", "s287", 900, "", Allineamento::Destra},
        {"Data", "Data Fatt", 1200, "dd/mm/yyyy"},
        {"Denominazione", "Cliente", 3400},
        {"RitenutaAcconto", "Ritenuta", 900, "0\\%", Allineamento::Destra},
        {"TotRitenutaAcconto", "Tot Ritenuta", 1300, "#,0.00", Allineamento::Destra},
        {"ImportoTotale", "Importo Doc.", 1400, "#,0.00", Allineamento::Destra},
        {"DescCertAcconto", "Ricevuta", 1200},
    };
    return t;
}

std::string IstruzioneCertificazioni(const CriteriCertificazioni& c) {
    std::string w;
    if (c.dataDal) w += " and DateValue(DataScadAcconto)>=DateValue('" + c.dal + "')";
    if (c.dataAl) w += " and DateValue(DataScadAcconto)<=DateValue('" + c.al + "')";
    if (!c.data.empty() && c.data != "0.00.00") w += " and DateValue(DataScadAcconto)=DateValue('" + c.data + "')";
    if (c.cliente) w += c.idCliente ? " and Cliente=" + std::to_string(c.idCliente) : std::string(" and Cliente>0");
    if (c.stato == 0) w += " and CertAcconto=False";
    else if (c.stato == 1) w += " and CertAcconto=True";
    if (w.empty()) return SorgenteCertificazioni;
    return SorgenteCertificazioni + std::string("where ") + w.substr(5);
}

void InvertiRicevuta(store::Recordset& riga) {
    const store::Value v = riga.get("CertAcconto");
    const bool ricevuta = !v.isNull() && store::CBool(v);
    riga.Edit();
    riga.set("CertAcconto", store::Value::Bool(!ricevuta));
    riga.Update();
}

core::RichiestaStampa StampaCertificazione(long id) { return sales::StampaRitenutaDocumento(id); }

}  // namespace expenses
