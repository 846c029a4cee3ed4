// The link between Pagamenti and the cash journal PrimaNota: a payment owns at most one journal row,
// the one whose Pagamento holds its ID. The two tables are never written in one transaction; the
// sweep removes journal rows whose payment has gone.
#pragma once

#include <string>

#include "store/value.h"

namespace payments {

// What the payment editor hands over for its journal row. tipo, destinazione, pagamento and
// tipoPagamento come untyped, as the editor's controls give them.
struct VocePrimaNota {
    double data = 0;
    std::string descrizione;
    double importo = 0;
    store::Value tipo;           // the editor's mode: 1 incasso gives an entrata, anything else an uscita
    store::Value destinazione;   // 0 Banca, 1 Cassa, 2 Altro
    store::Value pagamento;      // the payment's ID
    store::Value tipoPagamento;  // means of payment, free text
    std::string cc;
};

// The journal code of the editor's mode: 0 entrata for mode 1, 1 uscita otherwise (an absent mode too).
int CodiceTipoPrimaNota(const store::Value& modo);

// The insert of a new journal row with the given ID.
std::string SqlInserisciPrimaNota(long id, const VocePrimaNota& voce);
// The update of the row of voce.pagamento. Its CC goes in as typed: an apostrophe there fails here
// while the insert takes it. Tipo and Destinazione are left as they were.
std::string SqlAggiornaPrimaNota(const VocePrimaNota& voce);

// Adds the journal row of a new payment, or brings the existing one in line after a change. A
// payment older than the journal has no row, and a change then writes nothing.
void ScriviPrimaNota(bool nuovo, const VocePrimaNota& voce);

// Removes the journal rows whose payment no longer exists; rows typed by hand (Pagamento 0) stay.
void PulisciPrimaNota();

// The balance of the journal for a destination before a date, counting only rows of the current
// Esercizio, cut to cents as the "#,0.00" mask shows it.
double SaldoPrecedente(double data, long destinazione);

}  // namespace payments
