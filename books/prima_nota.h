// The cash journal: the statements of its register (a month of a destination, the whole destination,
// a search), its four balances, the print of the register with the previous balance on top, the
// spreadsheet export, the checks of a row typed by hand, and the three printed overviews of the menu.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/campi.h"
#include "core/stampa.h"

namespace books {

// The three destinations in the order of the lists; the position is the value of Destinazione.
const std::vector<std::string>& Destinazioni();
// The destination's name; "" outside 0..2.
std::string NomeDestinazione(long destinazione);

// The journal's fields as its register and editor show them.
const core::TabellaCampi& CampiPrimaNota();

// The period the register shows: with filtroDal (filtroAl) off the period falls back on the fiscal
// period's own start (end).
struct PeriodoPrimaNota {
    double dataDal = 0, dataAl = 0;
    bool filtroDal = false, filtroAl = false;
    double inizio() const;   // dataDal, or the fiscal period's start
    double fine() const;     // dataAl, or the fiscal period's end
};

// The calendar month of the day given, both ends in use.
PeriodoPrimaNota PeriodoMese(double giorno);

// "Select * from qrPrimaNota where Destinazione=d and Month(Data)=m and Year(Data)=y", with the same
// month as a range of Data that the date index serves.
std::string SorgenteMese(long destinazione, double giorno);
// "Select * from qrPrimaNota where Destinazione=d": every row of the destination.
std::string SorgenteDestinazione(long destinazione);

// The search of the register. tipo: 0 entrate, 1 uscite, 2 both.
struct CriteriPrimaNota {
    bool dataDal = false, dataAl = false, cc = false;
    std::string dal, al, testoCC;   // as typed
    int tipo = 2;
};
// "Select * from qrPrimaNota  where " and the conditions in use; the destination always among them.
std::string IstruzioneRicerca(const CriteriPrimaNota& c, long destinazione);
// The period a search leaves to the register: its ticked dates, the others back to the fiscal period.
PeriodoPrimaNota PeriodoRicerca(const CriteriPrimaNota& c);

// The four figures under the register, each as the "#,0.00" mask shows it.
struct Resoconto {
    double saldoPrecedente = 0;   // the destination before the period's start, within the fiscal period
    double totEntrate = 0;        // over the statement shown, rows "saldo precedente" left out
    double totUscite = 0;
    double saldoAttuale = 0;
};
Resoconto CalcolaResoconto(const std::string& istruzione, const PeriodoPrimaNota& periodo, long destinazione);

// "Prima nota Banca dal 01/03/2026 al 31/03/2026": the period's ends, or the fiscal period's.
std::string TestoStato(long destinazione, const PeriodoPrimaNota& periodo);

// The running balance of the destination at the end of a row of the statement shown (in date then
// id order): the previous balance of the period plus the statement's rows up to that one. One sum
// over the statement's rows before it, whatever the size of the journal outside the period.
double SaldoAllaRiga(const std::string& istruzione, double saldoPrecedente, double data, long id);

// The print of the register: the grid's statement under "Elenco" joined to one row of the previous
// balance dated the day before the period's start, in date order; campi are the grid's fields in
// their order.
std::string ElencoConSaldo(const std::string& istruzione, const std::vector<std::string>& campi,
                           double saldoPrecedente, double inizio);
core::RichiestaStampa StampaRegistro(const std::string& istruzione, const std::vector<std::string>& campi,
                                     long destinazione, const PeriodoPrimaNota& periodo, const Resoconto& r);

// The statement handed to the spreadsheet export.
std::string IstruzioneExcel(const std::string& istruzione, long destinazione);

// Why a row cannot be deleted here: it mirrors a payment (pagamento above 0). Nothing otherwise.
std::optional<std::string> MotivoNonEliminabile(long pagamento, long tipo);

// The checks of a row typed by hand, in the order the editor shows them: the first failure's text.
std::optional<std::string> ControllaVoce(const std::string& descrizione, const std::string& importo,
                                         int destinazione, const std::string& data);

// A mirrored row's changes carried back to its payment (CC is not).
std::string SqlAggiornaPagamento(long pagamento, const std::string& descrizione, const std::string& data,
                                 const std::string& tipoPagamento);

// The overviews "Prima Nota (Clienti)" and "Prima Nota (Fornitori)": section PrimaNota3.
std::string SqlPrimaNotaClienti();
std::string SqlPrimaNotaFornitori();
core::RichiestaStampa StampaPrimaNotaClienti();
core::RichiestaStampa StampaPrimaNotaFornitori();

// "Partita doppia": documents, purchases, payments, collections and expenses of the period into the
// scratch table PrimaNota of temp.mdb, with the running balances in and out of the till. Returns the
// rows written; avanza is called with each row's place and the count.
std::string SqlPartitaDoppia(double dal, double al, bool perDestinatario);
long CostruisciPartitaDoppia(double dal, double al, bool perDestinatario,
                             const std::function<void(long, long)>& avanza = {});
core::RichiestaStampa StampaPartitaDoppia(double dal, double al);

}  // namespace books
