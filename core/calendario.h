// The calendar that due dates are moved on: leap years, month lengths, Sundays, national holidays
// and Easter. Dates are the platform's serials (days since 30/12/1899).
#pragma once

namespace core {

bool Bisestile(int anno);
int GiorniMese(int mese, int anno);

// Sunday, a fixed national holiday, Easter Sunday or Easter Monday. Easter is the one of the year
// of today's date (store::Oggi), not of the date tested: a due date in another calendar year is
// never moved for its own Easter. Saturday is a working day.
bool GiornoFestivo(double data);

// Easter Sunday by Gauss's rule for 1900-2099 (constants 24 and 5), with the exceptions the
// stored due dates were computed with: April 26 becomes 19, and April 25 becomes 18 when d is 28.
double Pasqua(int anno);

}  // namespace core
