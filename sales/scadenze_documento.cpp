#include "sales/scadenze_documento.h"

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "payments/saldo.h"

namespace sales {

namespace {

// Exact on the value, and Null counting as the empty text when the value is empty.
std::string Uguale(const char* campo, const std::string& valore) {
    const std::string c = campo;
    std::string s = " and (" + c + "='" + core::Apici(valore) + "'";
    return s + (valore.empty() ? " or IsNull(" + c + "))" : ")");
}

}  // namespace

const core::TabellaCampi& CampiPagamentiDocumento() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"DataPagamento", "s84", 1200, "dd/mm/yyyy"},
        {"DescPagamento", "s77", 3000},
        {"ImportoPagamento", "s180", 1400, "#,0.00", Allineamento::Destra},
    };
    return t;
}

std::string FiltroResocontoDocumenti(const CriteriDocumenti& c) {
    std::string w = "Where (Documenti.Tipo = " + std::to_string(c.tipo);
    if (c.dataDal) w += " and DateValue(Data)>=DateValue('" + c.dal + "')";
    if (c.dataAl) w += " and DateValue(Data)<=DateValue('" + c.al + "')";
    // Pagamenti has its own Cliente: the document's is named in full.
    if (c.dest) w += " and Documenti.Cliente=" + std::to_string(c.cliente);
    if (c.pagate == 0) w += " and Pagato=False";
    else if (c.pagate == 1) w += " and Pagato=True";
    if (c.numDal) w += Uguale("Prefisso", c.prefissoDal) + Uguale("Suffisso", c.suffissoDal) +
                       " and Numero>=" + std::to_string(c.numeroDal);
    if (c.numAl) w += Uguale("Prefisso", c.prefissoAl) + Uguale("Suffisso", c.suffissoAl) +
                      " and Numero<=" + std::to_string(c.numeroAl);
    return w + ")";
}

std::string SqlImportoDocumenti(const CriteriDocumenti& c) {
    return "SELECT Sum([ImportoTotale]) AS ImportoDocumenti From Documenti " + FiltroResocontoDocumenti(c);
}

std::string SqlImportoPagatoDocumenti(const CriteriDocumenti& c) {
    return "SELECT Sum(IIf(IsNull([ImportoPagamento]),0,[ImportoPagamento])) AS ImportoPagato FROM Documenti "
           "LEFT JOIN Pagamenti ON Documenti.ID = Pagamenti.Documento " +
           FiltroResocontoDocumenti(c);
}

ResocontoDocumenti CalcolaResocontoDocumenti(const CriteriDocumenti& c) {
    ResocontoDocumenti r;
    r.importo = core::NumeroOZero(core::Apri(SqlImportoDocumenti(c))->get("ImportoDocumenti"));
    r.pagato = core::NumeroOZero(core::Apri(SqlImportoPagatoDocumenti(c))->get("ImportoPagato"));
    r.daPagare = r.importo - r.pagato;
    return r;
}

std::optional<SaldoDocumento> SaldoDelDocumento(long tipo, long documento) {
    if (tipo != core::TipoFatturaEmessa) return std::nullopt;
    auto rs = core::Apri("Select * from qrDocumentiIncassi where ID=" + std::to_string(documento));
    if (rs->Eof()) return std::nullopt;
    return SaldoDocumento{core::NumeroOZero(rs->get("ImportoPagato")), core::NumeroOZero(rs->get("DaPagare"))};
}

std::string RifiutoNuovaScadenza(long documento) {
    return payments::DocumentoConPagamenti(documento) == payments::Vero ? core::Testo("s271") : "";
}

std::string RifiutoModificaScadenza(long scadenza) {
    return payments::ScadenzaSenzaPagamenti(scadenza) == payments::Vero ? "" : core::Testo("s234");
}

}  // namespace sales
