// The program's one clock. Everything that asks for "today" or "now" (new documents, the SQL
// functions Now and Date, Easter of the current year) reads it, so that tests can fix the day.
#pragma once

#include <optional>

namespace store {

double Adesso();  // date and time as a serial
double Oggi();    // today at 00:00 as a serial
void fissaOrologio(std::optional<double> serial);  // fixes the clock; nullopt gives back the real time

}  // namespace store
