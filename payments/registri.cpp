#include "payments/registri.h"

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "store/convert.h"

namespace payments {

namespace {

using core::Allineamento;

std::string Id(long id) { return std::to_string(id); }

// A date as typed, read back in the form the statements concatenate.
std::string DataDi(const std::string& testo) { return core::DataSql(store::DateValue(store::Value::Text(testo))); }

// A picker that holds nothing: blank, or the empty date of the old pickers.
bool DataVuota(const std::string& testo) { return testo.empty() || testo == "0.00.00"; }

std::string NomeDi(const std::string& sql, std::initializer_list<const char*> campi) {
    auto rs = core::Apri(sql);
    if (rs->Eof()) return "";
    std::string nome;
    for (const char* campo : campi) {
        const std::string parte = store::ConcatText(rs->get(campo));
        if (parte.empty()) continue;
        nome += (nome.empty() ? "" : " ") + parte;
    }
    return nome;
}

}  // namespace

const core::TabellaCampi& CampiScadenze() {
    static const core::TabellaCampi t{
        {"DataScadenza", "Scadenza", 1200, "dd/mm/yyyy"},
        {"DescScadenza", "s77", 2600},
        {"ImportoScadenza", "s171", 1200, "#,0.00", Allineamento::Destra},
        {"ImportoTotale", "s240", 1750, "#,0.00", Allineamento::Destra},
        {"Rata", "s198", 500, "", Allineamento::Destra},
        {"Rate", "s199", 500, "", Allineamento::Destra},
        {"Stato", "Stato", 1500},
        {"Destinatario", "Intestatario", 3600},
        {"DescDocumento", "Documento", 3400},
    };
    return t;
}

const core::TabellaCampi& CampiPagamenti() {
    static const core::TabellaCampi t{
        {"DescPagamento", "s77", 1800},
        {"DataPagamento", "Data", 1200, "dd/mm/yyyy"},
        {"ImportoPagamento", "s171", 1200, "#,0.00", Allineamento::Destra},
        {"NumeroAssegno", "Assegno", 1500},
        {"DescDocumento", "Documento", 3200},
        {"ImportoTotale", "Totale", 1200, "#,0.00", Allineamento::Destra},
        {"DescScadenza", "Scadenza", 1500},
        {"DataScadenza", "Scade il", 1200, "dd/mm/yyyy"},
        {"ImportoScadenza", "Importo rata", 1300, "#,0.00", Allineamento::Destra},
        {"Rata", "s198", 500, "", Allineamento::Destra},
        {"Rate", "s199", 500, "", Allineamento::Destra},
        {"Destinatario", "Intestatario", 3600},
    };
    return t;
}

std::string SorgenteScadenze(int modo) {
    return modo == ScadenzePassive ? "Select * from qrScadenzePassive" : "Select * from qrScadenzeAttive";
}

std::string TitoloScadenze(int modo) { return modo == ScadenzePassive ? "s35" : "s34"; }

std::string DidascaliaPaga(int modo) { return modo == ScadenzePassive ? "&Paga" : "&Incassa"; }

std::string IstruzioneScadenze(int modo, const FiltroScadenze& f) {
    std::string w;
    if (f.dataDal) w += " and DateValue(DataScadenza)>=DateValue('" + DataDi(f.dal) + "')";
    if (f.dataAl) w += " and DateValue(DataScadenza)<=DateValue('" + DataDi(f.al) + "')";
    if (f.destinatario) {
        if (f.cliente > 0 && f.fornitore > 0)
            w += " and (Cliente=" + Id(f.cliente) + " or Fornitore=" + Id(f.fornitore) + ")";
        else if (f.cliente > 0)
            w += " and Cliente=" + Id(f.cliente);
        else if (f.fornitore > 0)
            w += " and Fornitore=" + Id(f.fornitore);
        else
            w += " and Fornitore>0 and Cliente>0";
    }
    if (!f.avviso.empty()) w += " and DateValue(DataAvviso)=DateValue('" + DataDi(f.avviso) + "')";
    if (f.stato == 0) w += " and Pagata=False";
    else if (f.stato == 1) w += " and Pagata=True";
    const std::string base = SorgenteScadenze(modo) + " ";
    return w.empty() ? base : base + " where " + w.substr(5);
}

std::string CriterioScadenze(const FiltroScadenze& f) {
    static const char* const stati[] = {"Non Pagate", "Pagate", "Pagate & Non"};
    const std::string stato = stati[f.stato == 0 || f.stato == 1 ? f.stato : 2];
    auto limite = [](bool inUso, const std::string& data) { return inUso ? data : core::Testo("s238"); };
    auto nome = [&f](long id, const std::string& sql, std::initializer_list<const char*> campi) {
        return f.destinatario && id > 0 ? NomeDi(sql + Id(id), campi) : core::Testo("s239");
    };
    return core::Testo("s235") + " " + stato + "; " + core::Testo("s236") + "=" + limite(f.dataDal, f.dal) + "; " +
           core::Testo("s237") + "=" + limite(f.dataAl, f.al) + "; " + core::Testo("s40") + "=" +
           nome(f.cliente, "Select DescCliente, DescCliente2 from Clienti where ID=", {"DescCliente", "DescCliente2"}) +
           "; " + core::Testo("s41") + "=" +
           nome(f.fornitore, "Select DescFornitore from Fornitori where ID=", {"DescFornitore"});
}

std::optional<std::string> EditorScadenza(const RigaScadenza& r) {
    if (r.documento > 0) return std::string("frmScadenzeEdita");
    if (r.spesa > 0) return std::string("frmScadenzeSpeseEdita");
    return std::nullopt;
}

std::optional<AperturaPagamento> PagaScadenza(int modoRegistro, const RigaScadenza& r) {
    if (r.documento > 0) {
        const bool incasso = modoRegistro == ScadenzeAttive;
        return AperturaPagamento{"frmPagamentiEdita", incasso ? 1 : 0,
                                 incasso ? core::IncassiVedere : core::PagamentiModificare};
    }
    if (r.spesa > 0) return AperturaPagamento{"frmPagamentiSpeseEdita", 0, core::PagamentiModificare};
    return std::nullopt;
}

std::string SorgentePagamenti(int modo) {
    return modo == RegistroIncassi ? "Select * from qrIncassi" : "Select * from qrPagamenti";
}

std::string TitoloPagamenti(int modo) { return modo == RegistroIncassi ? "Incassi" : "Pagamenti"; }

int DirittoPagamenti(int modo) { return modo == RegistroIncassi ? core::IncassiModificare : core::PagamentiModificare; }

std::string IstruzionePagamenti(int modo, const std::string& campo, const std::string& testo, const std::string& dal,
                                const std::string& al) {
    std::string sql = SorgentePagamenti(modo) + " where " + campo + " Like '*" + core::Apici(testo) + "*'";
    if (!DataVuota(dal)) sql += " And DateValue(DataPagamento)>=DateValue('" + DataDi(dal) + "')";
    if (!DataVuota(al)) sql += " And DateValue(DataPagamento)<=DateValue('" + DataDi(al) + "')";
    return sql;
}

std::optional<AperturaPagamento> ModificaPagamento(int modo, long documento, long spesa) {
    if (documento > 0) return AperturaPagamento{"frmPagamentiEdita", modo, DirittoPagamenti(modo)};
    if (spesa > 0) return AperturaPagamento{"frmPagamentiSpeseEdita", 0, DirittoPagamenti(modo)};
    return std::nullopt;
}

std::string TitoloStampaPagamenti(int modo) { return modo == RegistroIncassi ? "s16" : "s23"; }

std::string CriterioPagamenti(const std::string& testo) {
    return testo.empty() ? "" : core::Testo("s261") + " \"" + testo + "\"";
}

}  // namespace payments
