// The stored totals of an expense. There is no discount cascade on this side: each line's taxable
// amount and VAT are rounded to the cent, summed, and the withholding comes off the taxable total.
#pragma once

#include <optional>
#include <string>

#include "store/dao.h"

namespace expenses {

struct TotaliSpesa {
    double imponibile = 0;
    double totIva = 0;
    double importoSpesa = 0;
};

// From the sums over the lines (none when there are no lines) and the withholding rate in percent.
// The withholding stays unrounded.
TotaliSpesa ComponiTotaliSpesa(std::optional<double> imponibile, std::optional<double> imposta,
                               double ritenutaAcconto);

// Taxable and VAT of an expense per VAT code.
std::string SqlRiepilogoIvaSpesa(long spesa);
// One row: taxable and VAT of the expense; no row when it has no lines.
std::string SqlTotaliSpesa(long spesa);

// Recomputes and stores Imponibile, TotIva and ImportoSpesa. A caller working on its own recordset
// of the expenses passes it, positioned on that expense, and the values go through it. An expense
// that is not there is left alone.
void CalcolaTotaliSpesa(long spesa, store::Recordset* recordset = nullptr);

}  // namespace expenses
