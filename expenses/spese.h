// The head of an expense as its editor checks it, what goes with an expense when it is deleted,
// the register's search and the sums over the expenses it shows.
#pragma once

#include <string>

#include "core/stampa.h"

namespace expenses {

// What the editor holds when it is confirmed.
struct TestataSpesa {
    std::string data;     // as typed
    std::string numero;   // free text: "12", "12/A"
    long fornitore = 0;
    bool nuova = true;    // only a new expense is tested for a duplicate
};

enum class EsitoSpesa { Valida, DataMancante, DataNonValida, FuoriEsercizio, SenzaFornitore, Duplicata };

// The checks of a confirm in their order, each failure with its message (warning icon) shown.
EsitoSpesa ControllaTestataSpesa(const TestataSpesa& t);

// The statement that finds an expense with the same number, supplier and day.
std::string SqlSpesaDuplicata(const std::string& numero, long fornitore, const std::string& data);

// The amount without its VAT: the amount over (rate / 100 + 1), not rounded.
double Scorpora(double importo, double aliquota);

// The rows that hang on an expense, in this order and without a transaction: lines, instalments,
// payments. The expense's own row stays for the caller (the register deletes it through its grid).
void EliminaRigheSpesa(long spesa);

// The register's last search: what each ticked box asks.
struct CriteriSpese {
    bool dataDal = false, dataAl = false, fornitore = false, tipoSpesa = false, classificazione = false;
    std::string dal, al;   // the dates as typed
    long idFornitore = 0, idTipoSpesa = 0, idClassificazione = 0;
    int pagate = 2;        // 0 not paid, 1 paid, 2 both
};

// "Select * from qrSpese " with a where of the conditions in use, none when nothing is ticked.
std::string IstruzioneRicercaSpese(const CriteriSpese& c);

// The criterion line of the printed list: "Selezione: Pagate & Non; Dal=..." with each filter's
// value, or "nessun limite" / "Tutti" when it is not in use.
std::string CriterioSpese(const CriteriSpese& c);
// The list's print: section Spese, sub-report Elenco on the list's statement, parameter Criterio.
core::RichiestaStampa StampaSpese(const CriteriSpese& c, const std::string& elenco);

// What the payment commands say until payments are recorded from their own screens.
inline constexpr const char* MsgPagamentiNonDisponibili =
    "La registrazione dei pagamenti sarà disponibile con le schermate dei pagamenti.";

// The sums of the columns of a list of expenses: every row of the statement, not only those shown.
struct SommeElenco {
    double imponibile = 0;
    double totIva = 0;
    double ritenuta = 0;
    double importoSpesa = 0;
};
SommeElenco SommaColonneSpese(const std::string& sorgente);

// The sums over every expense the search lets through: amount, paid (to the cent) and the rest.
struct ResocontoSpese {
    double importo = 0;
    double pagato = 0;
    double daPagare = 0;
};
std::string SqlImportoSpese(const CriteriSpese& c);
std::string SqlPagatoSpese(const CriteriSpese& c);
ResocontoSpese CalcolaResocontoSpese(const CriteriSpese& c);

}  // namespace expenses
