// The one-time rebuild of the cash journal of an archive that predates it: every payment gets the
// journal row that the payment editor would have written, all of them on the bank.
#pragma once

#include <functional>

namespace books {

// Called before each payment with its place (1-based) and the count of payments.
using AvanzamentoRicostruzione = std::function<void(long posizione, long totale)>;

// Writes one journal row per row of Pagamenti: the payment's date, description and amount, an
// entrata for a collection (Cliente above 0) and an uscita otherwise, Destinazione 0 (Banca), and
// no means of payment or account. Nothing is deleted first. Returns the count of rows written.
long RicostruisciPrimaNota(const AvanzamentoRicostruzione& avanza = {});

}  // namespace books
