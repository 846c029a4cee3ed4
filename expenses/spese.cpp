#include "expenses/spese.h"

#include <vector>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/esercizio.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "store/convert.h"

namespace expenses {

namespace {

EsitoSpesa Avvisa(const std::string& testo, EsitoSpesa esito) {
    core::MsgBox(testo, core::vbExclamation);
    return esito;
}

std::string DataDi(const std::string& testo) { return core::DataSql(store::DateValue(store::Value::Text(testo))); }

// The conditions of the sums, joined with " and " in one "Where (...)"; nothing when none is in use.
std::string Filtro(const CriteriSpese& c) {
    std::vector<std::string> condizioni;
    if (c.dataDal) condizioni.push_back("DateValue(Data)>=DateValue('" + DataDi(c.dal) + "')");
    if (c.dataAl) condizioni.push_back("DateValue(Data)<=DateValue('" + DataDi(c.al) + "')");
    if (c.fornitore) condizioni.push_back("Spese.Fornitore=" + std::to_string(c.idFornitore));
    if (c.pagate == 0) condizioni.push_back("Pagata=False");
    else if (c.pagate == 1) condizioni.push_back("Pagata=True");
    if (c.tipoSpesa) condizioni.push_back("Spese.TipoSpesa=" + std::to_string(c.idTipoSpesa));
    if (c.classificazione) condizioni.push_back("Spese.Classificazione=" + std::to_string(c.idClassificazione));
    if (condizioni.empty()) return "";
    std::string w = "Where (";
    for (std::size_t i = 0; i < condizioni.size(); ++i) w += (i ? " and " : "") + condizioni[i];
    return w + ")";
}

}  // namespace

EsitoSpesa ControllaTestataSpesa(const TestataSpesa& t) {
    if (core::Trim(t.data).empty()) return Avvisa(core::Testo("s82"), EsitoSpesa::DataMancante);
    if (!store::IsDate(store::Value::Text(t.data))) return Avvisa(core::Testo("s81"), EsitoSpesa::DataNonValida);
    if (core::DataFuoriEsercizio(t.data))
        return Avvisa("La data della spesa non rientra nel periodo dell'esercizio corrente!", EsitoSpesa::FuoriEsercizio);
    if (t.fornitore == 0) return Avvisa(core::Testo("s293"), EsitoSpesa::SenzaFornitore);
    if (t.nuova && core::HaRighe(SqlSpesaDuplicata(t.numero, t.fornitore, t.data)))
        return Avvisa("Esiste già un documento con stesso numero, data e fornitore!", EsitoSpesa::Duplicata);
    return EsitoSpesa::Valida;
}

// The number is a text, compared as typed; its apostrophes are doubled so that any text can be asked.
std::string SqlSpesaDuplicata(const std::string& numero, long fornitore, const std::string& data) {
    return "Select id from spese where Numero='" + core::Apici(numero) + "' And Fornitore=" + std::to_string(fornitore) +
           " And DateValue(Data)=DateValue('" + DataDi(data) + "')";
}

double Scorpora(double importo, double aliquota) { return importo / (aliquota / 100 + 1); }

void EliminaRigheSpesa(long spesa) {
    store::Database& db = core::Archivio();
    const std::string id = std::to_string(spesa);
    for (const char* tabella : {"MovimentiSpese", "Scadenze", "Pagamenti"})
        db.Execute(std::string("Delete from ") + tabella + " where Spesa=" + id);
}

namespace {

// The name of a record picked in the search, from its own table.
std::string Nome(bool inUso, const std::string& sql, long id) {
    if (!inUso) return core::Testo("s239");
    auto rs = core::Apri(sql + std::to_string(id));
    return rs->Eof() ? std::string() : store::ConcatText(rs->Fields(0).value());
}

}  // namespace

std::string CriterioSpese(const CriteriSpese& c) {
    static const char* const stati[] = {"Non Pagate", "Pagate", "Pagate & Non"};
    const std::string stato = stati[c.pagate == 0 || c.pagate == 1 ? c.pagate : 2];
    const std::string dal = c.dataDal ? c.dal : core::Testo("s238");
    const std::string al = c.dataAl ? c.al : core::Testo("s238");
    return core::Testo("s235") + " " + stato + "; " + core::Testo("s236") + "=" + dal + "; " + core::Testo("s237") +
           "=" + al + core::Testo("s41") + "=" +
           Nome(c.fornitore, "Select DescFornitore from Fornitori where ID=", c.idFornitore) + "; Classificazione=" +
           Nome(c.classificazione, "Select DescClassificazione from ClassificazioniSpese where ID=", c.idClassificazione) +
           "; Tipo Spesa=" + Nome(c.tipoSpesa, "Select DescTipoSpesa from TipiSpesa where ID=", c.idTipoSpesa);
}

core::RichiestaStampa StampaSpese(const CriteriSpese& c, const std::string& elenco) {
    core::RichiestaStampa r;
    r.sezione = "Spese";
    r.subReports.Add("Elenco", elenco);
    r.parametri.Add("Criterio", "Criterio", CriterioSpese(c));
    return r;
}

std::string IstruzioneRicercaSpese(const CriteriSpese& c) {
    std::string w;
    if (c.dataDal) w += " and DateValue(Data)>=DateValue('" + DataDi(c.dal) + "')";
    if (c.dataAl) w += " and DateValue(Data)<=DateValue('" + DataDi(c.al) + "')";
    if (c.fornitore) w += " and Fornitore=" + std::to_string(c.idFornitore);
    if (c.tipoSpesa) w += " and TipoSpesa=" + std::to_string(c.idTipoSpesa);
    if (c.classificazione) w += " and Classificazione=" + std::to_string(c.idClassificazione);
    if (c.pagate == 0) w += " and Pagata=False";
    else if (c.pagate == 1) w += " and Pagata=True";
    const std::string base = "Select * from qrSpese ";
    return w.empty() ? base : base + " where " + w.substr(5);
}

std::string SqlImportoSpese(const CriteriSpese& c) {
    return "SELECT Sum([ImportoSpesa]) AS ImportoSpese From Spese " + Filtro(c);
}

std::string SqlPagatoSpese(const CriteriSpese& c) {
    return "SELECT Sum(IIf(IsNull([ImportoPagamento]),0,[ImportoPagamento])) AS ImportoPagato FROM Spese LEFT JOIN "
           "Pagamenti ON Spese.ID = Pagamenti.Spesa " +
           Filtro(c);
}

// One aggregate over the list's statement: SQLite scans the rows, none is read into the program.
SommeElenco SommaColonneSpese(const std::string& sorgente) {
    auto rs = core::Apri("Select Sum(Imponibile) As S1, Sum(TotIva) As S2, Sum(TotRitenutaAcconto) As S3, "
                         "Sum(ImportoSpesa) As S4 from (" + core::SenzaOrdine(sorgente) + ")");
    return {core::NumeroOZero(rs->get("S1")), core::NumeroOZero(rs->get("S2")), core::NumeroOZero(rs->get("S3")),
            core::NumeroOZero(rs->get("S4"))};
}

ResocontoSpese CalcolaResocontoSpese(const CriteriSpese& c) {
    ResocontoSpese r;
    r.importo = core::NumeroOZero(core::Apri(SqlImportoSpese(c))->get("ImportoSpese"));
    r.pagato = store::Round(core::NumeroOZero(core::Apri(SqlPagatoSpese(c))->get("ImportoPagato")), 2);
    r.daPagare = store::Round(r.importo - r.pagato, 2);
    return r;
}

}  // namespace expenses
