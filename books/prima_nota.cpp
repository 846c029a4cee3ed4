#include "books/prima_nota.h"

#include <algorithm>
#include <cstdio>

#include "core/archivio_sql.h"
#include "core/calendario.h"
#include "core/esercizio.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "core/session.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/format.h"

namespace books {

namespace {

bool Vuoto(const std::string& testo) { return testo.find_first_not_of(" \t") == std::string::npos; }

// A figure as its label shows it through "#,0.00", read back as a number.
double ComeMaschera(double x) {
    return store::CDbl(store::Value::Text(store::Format(store::Value::Double(x), "#,0.00")));
}

std::string DataValue(const std::string& campo, const char* confronto, double data) {
    return "DateValue(" + campo + ")" + confronto + "DateValue('" + core::DataSql(data) + "')";
}

// A date literal of the dialect, month first.
std::string Letterale(double data) {
    const store::DateParts d = store::SplitDate(data);
    char testo[16];
    std::snprintf(testo, sizeof testo, "#%02d/%02d/%04d#", d.month, d.day, d.year);
    return testo;
}

// The balance of the destination before a day, within the fiscal period: the rows of the period
// compared as DateValue compares them (a date with no time), as a range of Data that the index of
// the destination and date serves with the amounts in it.
double SaldoPrima(double giorno, long destinazione) {
    const double inizio = core::DataInizioEsercizio();
    const double oltre = std::min(giorno, core::DataFineEsercizio() + 1);
    auto rs = core::Apri("Select Sum(Entrate) as TotEntrate, Sum(Uscite) as TotUscite from qrPrimaNota where "
                         "Destinazione=" + std::to_string(destinazione) + " AND Data>=" + Letterale(inizio) +
                         " AND Data<" + Letterale(oltre));
    const double saldo = core::NumeroOZero(rs->get("TotEntrate")) - core::NumeroOZero(rs->get("TotUscite"));
    rs->Close();
    return ComeMaschera(saldo);
}

}  // namespace

const core::TabellaCampi& CampiPrimaNota() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"Data", "Data", 1200, "dd/mm/yyyy"},
        {"Descrizione", "Descrizione", 5000},
        {"TipoPagamento", "Tipo Pagamento", 2000},
        {"Entrate", "Entrate", 1200, "#,0.00", Allineamento::Destra},
        {"Uscite", "Uscite", 1200, "#,0.00", Allineamento::Destra},
        {"CC", "Conto Corrente", 2000},
        {"Importo", "Importo", 1200, "#,0.00", Allineamento::Destra},
    };
    return t;
}

const std::vector<std::string>& Destinazioni() {
    static const std::vector<std::string> d{"Banca", "Cassa", "Altro"};
    return d;
}

std::string NomeDestinazione(long destinazione) {
    return destinazione >= 0 && destinazione < 3 ? Destinazioni()[static_cast<size_t>(destinazione)] : std::string();
}

double PeriodoPrimaNota::inizio() const { return filtroDal ? dataDal : core::DataInizioEsercizio(); }
double PeriodoPrimaNota::fine() const { return filtroAl ? dataAl : core::DataFineEsercizio(); }

PeriodoPrimaNota PeriodoMese(double giorno) {
    const store::DateParts d = store::SplitDate(giorno);
    PeriodoPrimaNota p;
    p.filtroDal = p.filtroAl = true;
    p.dataDal = store::DateSerial(d.year, d.month, 1);
    p.dataAl = store::DateSerial(d.year, d.month, core::GiorniMese(d.month, d.year));
    return p;
}

std::string SorgenteMese(long destinazione, double giorno) {
    const store::DateParts d = store::SplitDate(giorno);
    return SorgenteDestinazione(destinazione) + " and Month(Data)=" + std::to_string(d.month) +
           " and Year(Data)=" + std::to_string(d.year) + " and Data>=" +
           Letterale(store::DateSerial(d.year, d.month, 1)) + " and Data<" +
           Letterale(store::DateSerial(d.year, d.month + 1, 1));
}

std::string SorgenteDestinazione(long destinazione) {
    return "Select * from qrPrimaNota where Destinazione=" + std::to_string(destinazione);
}

std::string IstruzioneRicerca(const CriteriPrimaNota& c, long destinazione) {
    std::string criteri;
    if (c.dataDal) criteri += " and DateValue(Data)>=DateValue('" + c.dal + "')";
    if (c.dataAl) criteri += " and DateValue(Data)<=DateValue('" + c.al + "')";
    if (c.tipo == 0) criteri += " and Tipo=0";
    else if (c.tipo == 1) criteri += " and Tipo=1";
    criteri += " and Destinazione=" + std::to_string(destinazione);
    if (c.cc) criteri += " and CC='" + core::Apici(c.testoCC) + "'";
    return "Select * from qrPrimaNota  where " + criteri.substr(5);
}

PeriodoPrimaNota PeriodoRicerca(const CriteriPrimaNota& c) {
    PeriodoPrimaNota p;
    if (auto dal = store::ParseDateText(c.dal); c.dataDal && dal) {
        p.filtroDal = true;
        p.dataDal = *dal;
    }
    if (auto al = store::ParseDateText(c.al); c.dataAl && al) {
        p.filtroAl = true;
        p.dataAl = *al;
    }
    return p;
}

Resoconto CalcolaResoconto(const std::string& istruzione, const PeriodoPrimaNota& periodo, long destinazione) {
    Resoconto r;
    r.saldoPrecedente = SaldoPrima(periodo.inizio(), destinazione);
    auto rs = core::Apri("Select Sum(Entrate) as TotEntrate, Sum(Uscite) as TotUscite from (" + core::SenzaOrdine(istruzione) +
                         ") where lcase(Descrizione)<>'saldo precedente'");
    r.totEntrate = ComeMaschera(core::NumeroOZero(rs->get("TotEntrate")));
    r.totUscite = ComeMaschera(core::NumeroOZero(rs->get("TotUscite")));
    rs->Close();
    r.saldoAttuale = ComeMaschera(r.saldoPrecedente + r.totEntrate - r.totUscite);
    return r;
}

std::string TestoStato(long destinazione, const PeriodoPrimaNota& periodo) {
    return "Prima nota " + NomeDestinazione(destinazione) + " dal " + store::ShortDate(periodo.inizio()) + " al " +
           store::ShortDate(periodo.fine());
}

double SaldoAllaRiga(const std::string& istruzione, double saldoPrecedente, double data, long id) {
    const std::string giorno = Letterale(data);
    auto rs = core::Apri("Select Sum(Entrate) as E, Sum(Uscite) as U from (" + core::SenzaOrdine(istruzione) +
                         ") where Data<" + giorno + " or (Data=" + giorno + " and ID<=" + std::to_string(id) + ")");
    const double movimenti = core::NumeroOZero(rs->get("E")) - core::NumeroOZero(rs->get("U"));
    rs->Close();
    return ComeMaschera(saldoPrecedente + movimenti);
}

std::string ElencoConSaldo(const std::string& istruzione, const std::vector<std::string>& campi,
                           double saldoPrecedente, double inizio) {
    // The balance in the statement's own text: a point for the decimals, no grouping.
    const auto numero = [](double x) { return core::NumeroSql(x); };
    std::string s = "Select ";
    for (const std::string& campo : campi) {
        const std::string nome = store::AsciiLower(campo);
        if (nome == "data") s += "#" + store::ShortDate(inizio - 1) + "# as Data, ";
        else if (nome == "descrizione") s += "'Saldo Precedente' as Descrizione, ";
        else if (nome == "entrate") s += saldoPrecedente >= 0 ? numero(saldoPrecedente) + " as Entrate, " : "0 as Entrate, ";
        else if (nome == "uscite") s += saldoPrecedente < 0 ? numero(-saldoPrecedente) + " as Uscite, " : "0 as Uscite, ";
        else s += "'' as [" + campo + "], ";
    }
    s.resize(s.size() - 2);
    // In date order, the previous balance first, as the list reads.
    return core::SenzaOrdine(istruzione) + " UNION " + s + " From PrimaNota Order By Data";
}

core::RichiestaStampa StampaRegistro(const std::string& istruzione, const std::vector<std::string>& campi,
                                     long destinazione, const PeriodoPrimaNota& periodo, const Resoconto& r) {
    core::RichiestaStampa s;
    s.sezione = "PrimaNota";
    s.subReports.Add("Elenco", ElencoConSaldo(istruzione, campi, r.saldoPrecedente, periodo.inizio()));
    std::string testoPeriodo;
    if (periodo.filtroDal) testoPeriodo += "Dal " + store::ShortDate(periodo.dataDal) + " ";
    if (periodo.filtroAl) testoPeriodo += "Al " + store::ShortDate(periodo.dataAl);
    s.parametri.Add("Destinazione", "Destinazione", NomeDestinazione(destinazione));
    s.parametri.Add("Periodo", "Periodo", testoPeriodo);
    s.parametri.Add("SaldoAttuale", "SaldoAttuale", store::NumberText(r.saldoAttuale));
    return s;
}

std::string IstruzioneExcel(const std::string& istruzione, long destinazione) {
    return "SELECT ID, Data, Descrizione, TipoPagamento, '" + NomeDestinazione(destinazione) +
           "' as Destinazione, CC, Entrate, Uscite from (" + istruzione + ")";
}

std::optional<std::string> MotivoNonEliminabile(long pagamento, long tipo) {
    if (pagamento <= 0) return std::nullopt;
    return std::string("Impossibile eliminare la voce in quanto collegata ad un ") +
           (tipo == 0 ? "incasso" : "pagamento") + "!";
}

std::optional<std::string> ControllaVoce(const std::string& descrizione, const std::string& importo,
                                         int destinazione, const std::string& data) {
    if (Vuoto(descrizione)) return core::Testo("s140");
    if (Vuoto(data)) return core::Testo("s82");
    if (!store::ParseDateText(data)) return core::Testo("s81");
    if (destinazione < 0 || destinazione > 2) return std::string("Scegliere la destinazione: Banca, Cassa o Altro.");
    // A blank box saves 0, as the bound walk writes it.
    const auto numero = Vuoto(importo) ? std::optional<double>(0) : store::ParseNumberText(importo);
    if (!numero) return std::string("L'importo deve essere un numero.");
    if (*numero == 0) return std::string("L'importo deve essere diverso da zero.");
    return std::nullopt;
}

std::string SqlAggiornaPagamento(long pagamento, const std::string& descrizione, const std::string& data,
                                 const std::string& tipoPagamento) {
    return "Update Pagamenti set DescPagamento='" + core::Apici(descrizione) + "',DataPagamento='" + data +
           "',TipoPagamento='" + core::Apici(tipoPagamento) + "' where ID=" + std::to_string(pagamento);
}

std::string SqlPrimaNotaClienti() {
    return "SELECT Clienti.ID AS Cliente, Sum([qrIncPN].[Totale]-[qrPagPN].[Totale]) AS Totale, "
           "Sum([qrIncPN].[TotalePagato]-[qrPagPN].[TotalePagato]) AS TotalePagato, "
           "Sum([qrIncPN].[TotaleDaPagare]-[qrPagPN].[TotaleDaPagare]) AS TotaleDaPagare, "
           "[DescCliente] & ' ' & [DescCliente2] AS Descrizione FROM (Clienti LEFT JOIN qrIncPN ON Clienti.ID = "
           "qrIncPN.Cliente) LEFT JOIN qrPagPN ON Clienti.ID = qrPagPN.Cliente GROUP BY Clienti.ID, [DescCliente] & "
           "' ' & [DescCliente2] HAVING (((Sum([qrIncPN].[Totale]-[qrPagPN].[Totale]))<>0)) OR "
           "(((Sum([qrIncPN].[TotalePagato]-[qrPagPN].[TotalePagato]))<>0)) OR "
           "(((Sum([qrIncPN].[TotaleDaPagare]-[qrPagPN].[TotaleDaPagare]))<>0)) ORDER BY [DescCliente] & ' ' & "
           "[DescCliente2]";
}

std::string SqlPrimaNotaFornitori() {
    return "SELECT [DescFornitore] & ' ' & [DescFornitore2] AS Descrizione, Sum(qrSpesePagamenti.ImportoSpesa) AS "
           "Totale, Sum(qrSpesePagamenti.ImportoPagato) AS TotalePagato, Sum(qrSpesePagamenti.DaPagare) AS "
           "TotaleDaPagare FROM qrSpesePagamenti GROUP BY qrSpesePagamenti.Fornitore, [DescFornitore] & ' ' & "
           "[DescFornitore2] ORDER BY [DescFornitore] & ' ' & [DescFornitore2]";
}

namespace {

core::RichiestaStampa StampaPrimaNota3(const std::string& elenco, const char* parametro) {
    core::RichiestaStampa s;
    s.sezione = "PrimaNota3";
    s.subReports.Add("Elenco", elenco);
    s.parametri.Add("Parametro", "Parametro", parametro);
    return s;
}

// One source of the double entry: its rows of the period with the seven columns of the union.
std::string Sorgente(const std::string& vista, const char* tipologia, const std::string& data,
                     const std::string& testo, const std::string& importo, const std::string& tipo,
                     const std::string& filtro, bool conCliente, double dal, double al, bool perDestinatario) {
    const std::string destinatario =
        "Fornitori.DescFornitore & ' ' & Fornitori.DescFornitore2" +
        std::string(conCliente ? " & Clienti.DescCliente & ' ' & Clienti.DescCliente2" : "");
    std::string descrizione = vista + "." + testo;
    if (!perDestinatario) descrizione += " & ' - ' & " + destinatario;
    std::string from = "(" + vista + " LEFT JOIN Fornitori ON " + vista + ".Fornitore=Fornitori.ID)";
    if (conCliente) from = "(" + from + " LEFT JOIN Clienti ON " + vista + ".Cliente=Clienti.ID)";
    std::string where = DataValue(vista + "." + data, ">=", dal) + " AND " + DataValue(vista + "." + data, "<=", al);
    if (!filtro.empty()) where = filtro + " AND " + where;
    return "SELECT " + vista + ".ID, " + destinatario + " AS Destinatario, " + vista + "." + data + " AS Data, " +
           descrizione + " AS Descrizione, " + vista + "." + importo + " AS Importo, '" + tipologia +
           "' AS Tipologia, " + tipo + " AS Tipo FROM " + from + " WHERE " + where;
}

}  // namespace

core::RichiestaStampa StampaPrimaNotaClienti() { return StampaPrimaNota3(SqlPrimaNotaClienti(), "Clienti"); }
core::RichiestaStampa StampaPrimaNotaFornitori() { return StampaPrimaNota3(SqlPrimaNotaFornitori(), "Fornitori"); }

std::string SqlPartitaDoppia(double dal, double al, bool perDestinatario) {
    const std::string doc = "qrDocumentiDesc";
    const std::string parti[] = {
        Sorgente(doc, "DOC", "Data", "DescDocumento", "ImportoTotale", doc + ".Tipo",
                 "(" + doc + ".Tipo=5 OR " + doc + ".Tipo=9)", true, dal, al, perDestinatario),
        Sorgente(doc, "ACQ", "Data", "DescDocumento", "ImportoTotale", doc + ".Tipo", doc + ".Tipo=6", true, dal, al,
                 perDestinatario),
        Sorgente("qrPagamenti", "PAG", "DataPagamento", "DescPagamento", "ImportoPagamento", "0", "", true, dal, al,
                 perDestinatario),
        Sorgente("qrIncassi", "INC", "DataPagamento", "DescPagamento", "ImportoPagamento", "0", "", true, dal, al,
                 perDestinatario),
        Sorgente("qrSpese", "SPE", "Data", "DescSpesa", "ImportoSpesa", "0", "", false, dal, al, perDestinatario),
    };
    std::string sql;
    for (const std::string& p : parti) sql += (sql.empty() ? "" : " UNION ") + p;
    return sql + (perDestinatario ? " ORDER by Destinatario,DATA" : " ORDER by DATA");
}

long CostruisciPartitaDoppia(double dal, double al, bool perDestinatario, const std::function<void(long, long)>& avanza) {
    core::CursoreOccupato cursore;
    auto sorgente = core::Apri(SqlPartitaDoppia(dal, al, perDestinatario));
    long totale = 0;
    if (!sorgente->Eof()) {
        sorgente->MoveLast();
        totale = sorgente->RecordCount();
        sorgente->MoveFirst();
    }
    const store::DatabasePtr temp = core::session().dbTemp;
    temp->Execute("Delete from PrimaNota");
    auto rs = temp->OpenRecordset("Select * from PrimaNota");
    double fuoriCassa = 0, inCassa = 0;
    long scritte = 0;
    for (; !sorgente->Eof(); sorgente->MoveNext()) {
        if (avanza) avanza(scritte + 1, totale);
        const std::string tipologia = store::ConcatText(sorgente->get("Tipologia"));
        const double importo = core::NumeroOZero(sorgente->get("Importo"));
        rs->AddNew();
        rs->set("ID", store::Value::Long(static_cast<std::int32_t>(scritte + 1)));   // the table was emptied
        rs->set("Descrizione", sorgente->get("Descrizione"));
        rs->set("Destinatario", sorgente->get("Destinatario"));
        rs->set("Data", sorgente->get("Data"));
        const char* colonna = nullptr;
        if (tipologia == "DOC") {
            colonna = "EntrateFuoriCassa";
            fuoriCassa += importo;
        } else if (tipologia == "ACQ" || tipologia == "SPE") {
            colonna = "UsciteFuoriCassa";
            fuoriCassa -= importo;
        } else if (tipologia == "INC") {
            colonna = "EntrateInCassa";
            inCassa += importo;
        } else {
            colonna = "UsciteInCassa";
            inCassa -= importo;
        }
        rs->set(colonna, store::Value::Double(importo));
        rs->set("SaldoFuoriCassa", store::Value::Double(fuoriCassa));
        rs->set("SaldoInCassa", store::Value::Double(inCassa));
        rs->Update();
        ++scritte;
    }
    return scritte;
}

core::RichiestaStampa StampaPartitaDoppia(double dal, double al) {
    core::RichiestaStampa s;
    s.sezione = "PrimaNota2";
    s.parametri.Add("Periodo", "Periodo",
                    core::Testo("s53") + " " + store::ShortDate(dal) + " " + core::Testo("s54") + " " +
                        store::ShortDate(al));
    return s;
}

}  // namespace books
