// Payment terms: the number of instalments typed in the editor and the twelve day boxes it enables.
#pragma once

#include "core/campi.h"

#include <string>

namespace payments {

// The fields of CondizioniPagamento as registers and editors show them.
const core::TabellaCampi& CampiCondizioniPagamento();

inline constexpr int MassimoRate = 12;

struct RateDigitate {
    int rate = 0;            // 0..12
    bool corretto = false;   // the text asked for more than twelve: the box is to read "12"
};

// txtRate read as a whole number; blank or unreadable is 0. Thirteen or more is capped at twelve,
// silently: the box is corrected, no message is shown.
RateDigitate LeggiRate(const std::string& testo);

// Whether the day box of instalment n (1-based) is in use for that many instalments. A box out of use
// is disabled and reads "0", so shortening the count erases the days of the dropped instalments.
bool RataAttiva(int n, int rate);

}  // namespace payments
