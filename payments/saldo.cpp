#include "payments/saldo.h"

#include "core/services.h"
#include "sales/archivio_sql.h"
#include "sales/numerazione.h"
#include "store/convert.h"

namespace payments {

namespace {

Risposta ComeRisposta(bool vero) { return vero ? Vero : Falso; }

Risposta CiSonoRighe(const std::string& sql, long id, const std::string& coda = {}) {
    return ComeRisposta(sales::HaRighe(sql + std::to_string(id) + coda));
}

// Reads the settlement row of one record and writes the flag it gives.
void AggiornaFlag(const std::string& query, const std::string& tabella, const std::string& campo, long id) {
    const std::string chiave = std::to_string(id);
    auto rs = sales::Apri("Select * from " + query + " Where ID=" + chiave);
    const bool presente = !rs->Eof();
    const bool saldato = Saldato(presente, presente ? rs->get("DaPagare") : store::Value());
    rs->Close();
    sales::Archivio().Execute("Update " + tabella + " set " + campo + "=" + (saldato ? "True" : "False") +
                              " where ID=" + chiave);
}

}  // namespace

Risposta ScadenzaSenzaPagamenti(long scadenza) {
    auto rs = sales::Apri("Select * from Pagamenti where Scadenza=" + std::to_string(scadenza));
    return ComeRisposta(rs->Eof());
}

Risposta DocumentoConScadenzeAperte(long documento) {
    return CiSonoRighe("Select * from qrScadenzePagamenti where Documento=", documento, " and DaPagare<>0");
}

Risposta DocumentoConPagamenti(long documento) {
    return CiSonoRighe("Select * from Pagamenti where Documento=", documento);
}

Risposta SpesaConPagamenti(long spesa) { return CiSonoRighe("Select * from Pagamenti where Spesa=", spesa); }

Risposta SpesaConScadenzeAperte(long spesa) {
    return CiSonoRighe("Select * from qrScadenzePagamenti where Spesa=", spesa, " and DaPagare<>0");
}

Risposta SpesaLibera(long spesa) {
    return ComeRisposta(!SpesaConScadenzeAperte(spesa) && !SpesaConPagamenti(spesa));
}

std::string MotivoBloccoDocumento(long documento) {
    if (DocumentoConScadenzeAperte(documento)) return core::Testo("s322");
    if (DocumentoConPagamenti(documento)) return core::Testo("s323");
    return {};
}

bool Saldato(bool rigaPresente, const store::Value& daPagare) {
    if (!rigaPresente) return false;
    // A Null remainder fails the "above 0" test as the platform's If does, and so counts as settled.
    return daPagare.isNull() || store::CDbl(daPagare) <= 0;
}

void AggiornaPagatoDocumento(long documento) {
    const bool incassi = sales::TipoAttivo(sales::TipoDocumento(documento));
    AggiornaFlag(incassi ? "qrDocumentiIncassi" : "qrDocumentiPagamenti", "Documenti", "Pagato", documento);
}

void AggiornaPagataSpesa(long spesa) { AggiornaFlag("qrSpesePagamenti", "Spese", "Pagata", spesa); }

void AggiornaPagataScadenza(long scadenza) { AggiornaFlag("qrScadenzePagamenti", "Scadenze", "Pagata", scadenza); }

}  // namespace payments
