// Whether documents, expenses and instalments are settled. What is due is derived from Pagamenti by
// the saved queries; the stored flags Documenti.Pagato, Spese.Pagata and Scadenze.Pagata are caches
// that only the refreshers here write from those queries.
#pragma once

#include <string>

#include "store/value.h"

namespace payments {

// The questions answer as the platform's Booleans do: -1 for true, 0 for false. A caller that tests
// an answer for being greater than zero therefore never sees it true, and the generation guards of
// the registers rely on exactly that.
using Risposta = int;
inline constexpr Risposta Vero = -1;
inline constexpr Risposta Falso = 0;

Risposta ScadenzaSenzaPagamenti(long scadenza);
Risposta DocumentoConScadenzeAperte(long documento);
Risposta DocumentoConPagamenti(long documento);
Risposta SpesaConPagamenti(long spesa);
Risposta SpesaConScadenzeAperte(long spesa);
// Neither an instalment still to pay nor a payment stands on the expense.
Risposta SpesaLibera(long spesa);

// Why a change of the document deserves a warning: the text of s322 when an instalment is still
// open, else of s323 when it has any payment, else "".
std::string MotivoBloccoDocumento(long documento);

// The flag a refresh writes, from the settlement query's row: no row means not settled; a
// remainder above 0 means not settled; 0 or less (an overpayment too) means settled.
bool Saldato(bool rigaPresente, const store::Value& daPagare);

void AggiornaPagatoDocumento(long documento);
void AggiornaPagataSpesa(long spesa);
void AggiornaPagataScadenza(long scadenza);

// What a payment settles; each 0 when none.
struct LegamiPagamento {
    long documento = 0;
    long spesa = 0;
    long scadenza = 0;
};

// Before the payments register deletes a payment: the instalment, and the document (read from the
// collections' query in the register of collections) or else the expense, lose their flag when
// something is still due on them. The state is read while the payment still exists, so deleting
// the payment that closed a record leaves its flag set until the next refresh.
void RiapriPrimaDellEliminazione(const LegamiPagamento& pagamento, bool registroIncassi);
// After that delete: the payment's own journal row goes with it.
void EliminaPrimaNotaDelPagamento(long pagamento);

}  // namespace payments
