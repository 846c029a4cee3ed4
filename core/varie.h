// Small helpers of the spreadsheet export and of the screens.
#pragma once

#include <string>
#include <vector>

namespace core {

// Column letters of a spreadsheet column: the first letter of colonna (A=1 ... Z=26) moved on by
// scarto. Above 26 two letters, where a remainder of 0 is Z with one less in the first letter.
// Only the first letter of colonna is read. Error 5 when there is no letter or it leads nowhere.
std::string ColonnaFoglio(const std::string& colonna, int scarto);

double MassimoDi(double a, double b);
double MinimoDi(double a, double b);

// The text without the blanks at both ends, as the platform's Trim.
std::string Trim(const std::string& testo);
// The parts one after the other, `tra` between each two.
std::string Unisci(const std::vector<std::string>& parti, const std::string& tra);
// A user text ready to stand between apostrophes in SQL: each ' doubled.
std::string Apici(const std::string& testo);

}  // namespace core
