#include "payments/saldo.h"

#include "core/services.h"
#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "store/convert.h"

namespace payments {

namespace {

Risposta ComeRisposta(bool vero) { return vero ? Vero : Falso; }

Risposta CiSonoRighe(const std::string& sql, long id, const std::string& coda = {}) {
    return ComeRisposta(core::HaRighe(sql + std::to_string(id) + coda));
}

// The settlement row of one record, as its query gives it.
struct RigaSaldo {
    bool presente = false;
    store::Value daPagare;
};

RigaSaldo LeggiSaldo(const std::string& query, long id) {
    auto rs = core::Apri("Select * from " + query + " Where ID=" + std::to_string(id));
    RigaSaldo riga;
    riga.presente = !rs->Eof();
    if (riga.presente) riga.daPagare = rs->get("DaPagare");
    return riga;
}

void ScriviFlag(const std::string& tabella, const std::string& campo, long id, bool valore) {
    core::Archivio().Execute("Update " + tabella + " set " + campo + "=" + (valore ? "True" : "False") +
                              " where ID=" + std::to_string(id));
}

// Reads the settlement row of one record and writes the flag it gives.
void AggiornaFlag(const std::string& query, const std::string& tabella, const std::string& campo, long id) {
    const RigaSaldo riga = LeggiSaldo(query, id);
    ScriviFlag(tabella, campo, id, Saldato(riga.presente, riga.daPagare));
}

// Clears the flag only while something is still due; a record the payment closed keeps it.
void RiapriSeDaPagare(const std::string& query, const std::string& tabella, const std::string& campo, long id) {
    const RigaSaldo riga = LeggiSaldo(query, id);
    if (riga.presente && !Saldato(riga.presente, riga.daPagare)) ScriviFlag(tabella, campo, id, false);
}

}  // namespace

Risposta ScadenzaSenzaPagamenti(long scadenza) {
    auto rs = core::Apri("Select * from Pagamenti where Scadenza=" + std::to_string(scadenza));
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
    const bool incassi = core::TipoAttivo(core::TipoDocumento(documento));
    AggiornaFlag(incassi ? "qrDocumentiIncassi" : "qrDocumentiPagamenti", "Documenti", "Pagato", documento);
}

void AggiornaPagataSpesa(long spesa) { AggiornaFlag("qrSpesePagamenti", "Spese", "Pagata", spesa); }

void AggiornaPagataScadenza(long scadenza) { AggiornaFlag("qrScadenzePagamenti", "Scadenze", "Pagata", scadenza); }

void RiapriPrimaDellEliminazione(const LegamiPagamento& pagamento, bool registroIncassi) {
    if (pagamento.scadenza > 0)
        RiapriSeDaPagare("qrScadenzePagamenti", "Scadenze", "Pagata", pagamento.scadenza);
    if (pagamento.documento > 0)
        RiapriSeDaPagare(registroIncassi ? "qrDocumentiIncassi" : "qrDocumentiPagamenti", "Documenti", "Pagato",
                         pagamento.documento);
    else if (pagamento.spesa > 0)
        RiapriSeDaPagare("qrSpesePagamenti", "Spese", "Pagata", pagamento.spesa);
}

void EliminaPrimaNotaDelPagamento(long pagamento) {
    core::Archivio().Execute("Delete from PrimaNota where Pagamento=" + std::to_string(pagamento));
}

}  // namespace payments
