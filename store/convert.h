// Conversions between values with the platform's rules under the program's fixed Italian locale:
// decimal comma, thousands point, short date dd/mm/yyyy, time separator '.'.
// The engine's SQL functions and the program's code call the same routines here.
// Errors are JetError: 13 type mismatch, 94 invalid use of Null, 6 overflow.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/value.h"

namespace store {

// ---- dates -------------------------------------------------------------------------------------
double DateSerial(int year, int month, int day);  // no range check; month/day may overflow as the platform allows
struct DateParts { int year, month, day, hour, minute, second; };
DateParts SplitDate(double serial);
int Weekday(double serial);  // 1 Sunday ... 7 Saturday
bool ValidDate(int year, int month, int day);

std::string DateToIso(double serial);                       // "YYYY-MM-DD" or "YYYY-MM-DD HH:MM:SS" with a time
std::optional<double> DateFromIso(std::string_view text);   // reads what DateToIso writes
std::string ShortDate(double serial);                       // "dd/mm/yyyy"
std::string DateText(double serial);                        // CStr of a date: "05/03/2024", "14.30.00", both

// Reads a date the way CDate does under the locale: "31/12/2024", "31-12-24", "31/12" (this year),
// "0.00.00", "14.30", "31/12/2024 14.30.00". nullopt when it is no date.
std::optional<double> ParseDateText(std::string_view text);
// A #...# literal body: month first, the other order when that is no valid date, year-first forms.
std::optional<double> ParseDateLiteral(std::string_view body);

// ---- numbers -----------------------------------------------------------------------------------
// Reads a number the way CDbl does under the locale: ',' decimal, '.' skipped, "&H10", "1e3",
// surrounding blanks. nullopt when it is no number.
std::optional<double> ParseNumberText(std::string_view text);
std::string NumberText(double d);   // CStr of a number: "2,5", "-3", up to 15 significant digits
double Round(double x, int digits = 0);  // half to even on x*10^n, then divided back
double Val(std::string_view text);       // '.' only, blanks skipped, stops at the first other character

// ---- value conversions (VB semantics) ----------------------------------------------------------
double CDbl(const Value& v);
std::int32_t CLng(const Value& v);
std::int16_t CInt(const Value& v);
bool CBool(const Value& v);
double CDate(const Value& v);
std::string CStr(const Value& v);  // Null -> error 94
bool IsNumeric(const Value& v);
bool IsDate(const Value& v);
double DateValue(const Value& v);  // drops the time; reads text as a short date

// Text of a value for '&': Null counts as "", Booleans "Vero"/"Falso".
std::string ConcatText(const Value& v);

// ---- text --------------------------------------------------------------------------------------
// Text compare as the engine's collation does: case ignored (also accented letters), accents kept,
// trailing blanks ignored. <0, 0, >0.
int CompareText(std::string_view a, std::string_view b);
// Names of tables, fields, functions and keywords compare without case in ASCII.
std::string AsciiLower(std::string_view text);
// The Like of the dialect: * ? # [abc] [a-z] [!abc]; case ignored; trailing blanks count.
bool LikeMatch(std::string_view text, std::string_view pattern);

// Windows-1252 <-> UTF-8 (program texts are UTF-8 in memory; INI, language and export files are 1252).
std::string Utf8ToCp1252(std::string_view utf8);
std::string Cp1252ToUtf8(std::string_view cp1252);

}  // namespace store
