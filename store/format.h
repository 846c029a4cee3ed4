// Format and FormatNumber with the platform's masks under the program's fixed Italian locale.
// In a number mask '.' stands for the decimal comma and ',' for the thousands point, so "#,0.00"
// writes 1234.5 as "1.234,50". '0' pads, '#' does not, '%' multiplies by 100, ';' separates the
// sections for positive, negative, zero and Null values. An exact half rounds away from zero.
// Date masks: d dd ddd dddd, m mm mmm mmmm (Italian names), yy yyyy y, h hh, n nn, s ss, w ww, q;
// '/' is the date separator and ':' the time separator ('.'), an 'm' after an 'h' is minutes.
// Named formats ("Short Date", "Standard", "Percent", ...) are understood as the platform does.
#pragma once

#include <string>
#include <string_view>

#include "store/value.h"

namespace store {

// Null gives "" (or the fourth section of a number mask). An empty mask gives the value's own
// text: a date as "05/03/2024", "14.30.00" or both, a number as CStr writes it. A text that reads
// as a number (or as a date, for a date mask) is formatted as one; any other text comes back as it is.
std::string Format(const Value& value, std::string_view mask = {});

// Decimals fixed, a leading zero, the thousands point when grouping: FormatNumber(1234.5) = "1.234,50".
// decimals -1 takes the locale's two; below -1 or above 99 is error 5.
std::string FormatNumber(double value, int decimals = 2, bool grouping = true);

// "marzo", "mar"; month 1-12, otherwise error 5.
std::string MonthName(int month, bool abbreviated = false);
// "martedì", "mar"; weekday 1 (Sunday) to 7, otherwise error 5.
std::string WeekdayName(int weekday, bool abbreviated = false);

}  // namespace store
