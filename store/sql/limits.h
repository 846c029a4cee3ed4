// Bounds on what one statement may ask of the engine, and the checks that keep numbers and dates
// in their range: hostile or mistaken input gets a clear error instead of unbounded work or a
// value the program cannot read back.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct sqlite3;

namespace store::sql {

inline constexpr std::size_t kMaxStatementLength = 1 << 20;  // characters of one statement
inline constexpr std::size_t kMaxInListTerms = 100000;       // values of one In (...) list
inline constexpr std::size_t kMaxSelectTerms = 2000;         // columns of one select list (SQLite's own bound)
// From this many values an In list writes its literals into the text rather than as parameters.
inline constexpr std::size_t kInlineInList = 64;

// Error 3360 ("Query troppo complessa.") naming the bound that was passed.
void checkStatementLength(std::string_view text);
void checkInListLength(std::size_t terms);
void checkSelectListLength(std::size_t terms);

// Error 3360 for an expression nested deeper than `levels`, or a chain of And, Or or & longer than
// `terms`: SQLite's parser and its expression depth take no more.
[[noreturn]] void raiseNestingLimit(int levels);
[[noreturn]] void raiseChainLimit(int terms);

// Error 3360 when SQLite's parser cannot take a text the translator wrote: its stack holds about
// a hundred levels, and a function call nested in an argument takes several of them.
void checkSqliteDepth(const std::string& sql);

// The range of a date: 1/1/100 to 31/12/9999 as serial numbers.
bool dateInRange(double serial);

// jet_finite(x): x, or error 6 when a Double computed by SQLite overflowed to infinity.
void registerLimitFunctions(sqlite3* db);

}  // namespace store::sql
