#include "payments/pagamenti.h"

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/esercizio.h"
#include "core/impostazioni.h"
#include "core/record.h"
#include "core/session.h"
#include "core/varie.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "store/convert.h"
#include "store/errors.h"

namespace payments {

namespace {

std::string Id(long id) { return std::to_string(id); }

const char* VistaDocumenti(int modo) { return modo == ModoIncasso ? "qrDocumentiIncassi" : "qrDocumentiPagamenti"; }

long IdDi(const store::Value& v) { return v.isNull() ? 0 : store::CLng(v); }

std::optional<Dovuto> Leggi(const std::string& vista, long id, bool scadenza) {
    if (id <= 0) return std::nullopt;
    auto rs = core::Apri("Select * from " + vista + " Where ID=" + Id(id));
    if (rs->Eof()) return std::nullopt;
    Dovuto d;
    d.id = id;
    d.cliente = vista == "qrSpesePagamenti" ? 0 : IdDi(rs->get("Cliente"));
    d.fornitore = IdDi(rs->get("Fornitore"));
    if (scadenza) {
        d.documento = IdDi(rs->get("Documento"));
        d.spesa = IdDi(rs->get("Spesa"));
    } else if (vista == "qrSpesePagamenti") {
        d.spesa = id;
    } else {
        d.documento = id;
    }
    d.pagato = store::Round(core::NumeroOZero(rs->get("ImportoPagato")), 2);
    d.daPagare = store::Round(core::NumeroOZero(rs->get("DaPagare")), 2);
    d.descrizione = store::ConcatText(rs->get("DescDocumento"));
    return d;
}

std::string Testo(const std::string& chiave) { return core::Testo(chiave); }

}  // namespace

std::string ListaDocumentiPagabili(bool nuovo, int modo) {
    return std::string("Select * from ") + VistaDocumenti(modo) + " where " + (nuovo ? "DaPagare<>0 and " : "") +
           "(Fornitore<>0 OR Cliente<>0)";
}

// The list of a new payment on the suppliers' side lacks its last "and": the engine refuses it and
// the pick stays empty, as it always has.
std::string ListaScadenzePagabili(bool nuovo, int modo, Contro contro) {
    if (contro == Contro::Spesa)
        return nuovo ? "SELECT * from qrScadenzePagamenti where Spesa>0 and DaPagare<>0"
                     : "SELECT * from qrScadenzePagamenti Spesa>0";
    if (!nuovo) return "SELECT * from qrScadenzePagamenti where (Fornitore<>0 OR Cliente<>0) and Documento<>0";
    if (modo == ModoIncasso)
        return "SELECT * from qrScadenzePagamenti where Documento<>0 and DaPagare<>0 and ((Cliente<>0 and Tipo=5) OR "
               "(Fornitore<>0 and Tipo=9))";
    return "SELECT * from qrScadenzePagamenti where Documento<>0 and DaPagare<>0 and Cliente<>0 Tipo=6";
}

std::string ListaSpesePagabili(bool nuovo) {
    return nuovo ? "Select * from qrSpesePagamenti where DaPagare<>0" : "Select * from qrSpesePagamenti";
}

std::string DocumentiDelCliente(long cliente, int modo) {
    const std::string base = std::string("Select * from ") + VistaDocumenti(modo) + " where DaPagare<>0";
    return cliente > 0 ? base + " and Cliente=" + Id(cliente) : base;
}

std::string ScadenzeDelCliente(long cliente) {
    const std::string base = "Select * from qrScadenzePagamenti where DaPagare<>0";
    return cliente > 0 ? base + " and Cliente=" + Id(cliente) : base;
}

std::string SpeseDelFornitore(long fornitore) {
    const std::string base = "Select * from qrSpesePagamenti where DaPagare<>0";
    return fornitore > 0 ? base + " and Fornitore=" + Id(fornitore) : base;
}

std::string ScadenzeSpeseDelFornitore(long fornitore) {
    const std::string base = "Select * from qrScadenzePagamenti where Spesa>0 and DaPagare<>0";
    return fornitore > 0 ? base + " and Fornitore=" + Id(fornitore) : base;
}

std::string ScadenzeDi(Contro contro, long id) {
    const char* campo = contro == Contro::Spesa ? "Spesa" : "Documento";
    if (id > 0) return std::string("Select * from qrScadenzePagamenti where ") + campo + "=" + Id(id) + " and DaPagare<>0";
    return std::string("Select * from qrScadenzePagamenti where ") + campo + ">0 and DaPagare<>0";
}

std::optional<Dovuto> LeggiDocumento(long documento, int modo) { return Leggi(VistaDocumenti(modo), documento, false); }
std::optional<Dovuto> LeggiSpesa(long spesa) { return Leggi("qrSpesePagamenti", spesa, false); }
std::optional<Dovuto> LeggiScadenza(long scadenza) { return Leggi("qrScadenzePagamenti", scadenza, true); }

int ModoDelDocumento(long documento) {
    return core::TipoAttivo(core::TipoDocumento(documento)) ? ModoIncasso : ModoPagamento;
}

std::string DescrizioneProposta(double importo, double dovuto, double giaPagato, bool nuovo,
                                const std::string& descDocumento) {
    const bool saldo = nuovo ? dovuto <= importo : dovuto < importo - giaPagato;
    return Testo(saldo ? "s170" : "s226") + " " + descDocumento;
}

std::string ControllaPagamento(const PagamentoDaControllare& p) {
    const bool spesa = p.contro == Contro::Spesa;
    if (p.dataVuota) return "s219";
    if (!p.dataValida) return "s220";
    if (core::DataFuoriEsercizio(p.data)) return "La data del pagamento non rientra nel periodo dell'esercizio corrente!";
    if (spesa ? p.fornitore == 0 : p.cliente == 0 && p.fornitore == 0) return spesa ? "s229" : "s221";
    if (p.documento == 0) return spesa ? "s230" : "s222";
    if (!p.importoLeggibile) return "L'importo non è un numero valido!";
    if (p.importo <= 0) return "L'importo deve essere maggiore di zero!";
    const Risposta aperte = spesa ? SpesaConScadenzeAperte(p.documento) : DocumentoConScadenzeAperte(p.documento);
    if (aperte == Vero && p.scadenza == 0) return spesa ? "s231" : "s223";
    const double confrontato = p.nuovo ? p.importo : p.importo - p.giaPagato;
    if (p.scelto && confrontato > p.scelto->daPagare) return spesa ? "s232" : "s224";
    if (p.scadenza != 0 && p.sceltaScadenza && confrontato > p.sceltaScadenza->daPagare) return "s225";
    return {};
}

std::string MotivoNonRegistrabile(const Pagamento& p) {
    if (p.contro == Contro::Spesa) {
        if (!core::HaRighe("Select ID from Spese where ID=" + Id(p.spesa))) return MsgSpesaSparita;
    } else if (!core::HaRighe("Select ID from Documenti where ID=" + Id(p.documento))) {
        return MsgDocumentoSparito;
    }
    if (p.scadenza > 0 && !core::HaRighe("Select ID from Scadenze where ID=" + Id(p.scadenza))) return MsgScadenzaSparita;
    return {};
}

long RegistraPagamento(const Pagamento& p) {
    store::Database& db = core::Archivio();
    // One commit for the row, its journal twin and the flags: another user sees all of it or none.
    store::WriteBatch lotto(db);
    if (std::string motivo = MotivoNonRegistrabile(p); !motivo.empty()) store::raise(3021, motivo);
    const bool nuovo = p.id == 0;
    auto rs = core::Apri("Select * from Pagamenti where ID=" + Id(nuovo ? 0 : p.id));
    if (nuovo) {
        rs->AddNew();
    } else {
        if (rs->Eof()) store::raise(3021, "Il pagamento non esiste più.");
        rs->Edit();
    }
    auto lungo = [](long v) { return store::Value::Long(static_cast<std::int32_t>(v)); };
    rs->set("DataPagamento", store::Value::Date(p.data));
    rs->set("DescPagamento", store::Value::Text(p.descrizione));
    rs->set("ImportoPagamento", store::Value::Double(p.importo));
    rs->set("TipoPagamento", store::Value::Text(p.tipoPagamento));
    rs->set("CC", store::Value::Text(p.cc));
    rs->set("NumeroAssegno", store::Value::Text(p.numeroAssegno));
    rs->set("Cliente", lungo(p.cliente));
    rs->set("Fornitore", lungo(p.fornitore));
    rs->set("Documento", lungo(p.contro == Contro::Documento ? p.documento : 0));
    rs->set("Spesa", lungo(p.contro == Contro::Spesa ? p.spesa : 0));
    rs->set("Scadenza", lungo(p.scadenza));
    if (nuovo) core::NuovoID(*rs);
    rs->Update();
    const long id = store::CLng(rs->get("ID"));
    rs->Close();
    core::session().IDRecordEdit = id;

    VocePrimaNota voce;
    voce.data = p.data;
    voce.descrizione = p.descrizione;
    voce.importo = p.importo;
    voce.tipo = p.contro == Contro::Spesa ? store::Value() : store::Value::Long(p.modo);
    voce.destinazione = store::Value::Long(p.destinazione);
    voce.pagamento = lungo(id);
    voce.tipoPagamento = store::Value::Text(p.tipoPagamento);
    voce.cc = p.cc;
    ScriviPrimaNota(nuovo, voce);

    if (p.contro == Contro::Spesa) AggiornaPagataSpesa(p.spesa);
    else AggiornaPagatoDocumento(p.documento);
    if (p.scadenza > 0) AggiornaPagataScadenza(p.scadenza);
    lotto.End();
    return id;
}

void EliminaPagamento(long pagamento) {
    auto rs = core::Apri("Select Documento, Spesa, Scadenza from Pagamenti where ID=" + Id(pagamento));
    if (rs->Eof()) return;
    const long documento = IdDi(rs->get("Documento"));
    const long spesa = IdDi(rs->get("Spesa"));
    const long scadenza = IdDi(rs->get("Scadenza"));
    rs->Close();
    store::Database& db = core::Archivio();
    store::WriteBatch lotto(db);
    db.Execute("Delete from Pagamenti where ID=" + Id(pagamento));
    EliminaPrimaNotaDelPagamento(pagamento);
    if (documento > 0) AggiornaPagatoDocumento(documento);
    if (spesa > 0) AggiornaPagataSpesa(spesa);
    if (scadenza > 0) AggiornaPagataScadenza(scadenza);
    lotto.End();
}

std::vector<std::string> ValoriUsati(const std::string& campo) {
    std::vector<std::string> valori;
    auto rs = core::Apri("Select Distinct " + campo + " from Pagamenti where " + campo + "<>'' Order By " + campo);
    for (; !rs->Eof(); rs->MoveNext()) valori.push_back(store::ConcatText(rs->get(campo)));
    return valori;
}

}  // namespace payments
