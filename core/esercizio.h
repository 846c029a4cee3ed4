// The dates of the current Esercizio, read from the master file at each call.
#pragma once

#include <string>

namespace core {

// Esercizi.Dal of the current Esercizio; the "0.00.00" date (serial 0) when it is Null or the row
// is missing.
double DataInizioEsercizio();

// Esercizi.Al; while the period is open (Null) or the row is missing, 31/12 of the year the
// period starts in.
double DataFineEsercizio();

// True unless the text is a date within the period, both ends included. Blank or no date: true.
bool DataFuoriEsercizio(const std::string& testo);

}  // namespace core
