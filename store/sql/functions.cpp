// The engine's SQL functions and collation, registered on each SQLite connection, and the mapping
// of SQLite failures to the platform's error numbers.
//
// Every value crosses SQLite in storage form (Yes/No -1/0, dates ISO-8601 text). The generator passes
// a function the kinds of its arguments ('b' Yes/No, 'n' number, 'd' date, 't' text, 'v' unknown) so
// that an ISO text is read back as a date and not as a text.
#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/clock.h"
#include "store/convert.h"
#include "store/errors.h"
#include "store/format.h"
#include "store/sql/functions.h"
#include "store/sql/calc.h"
#include "store/sql/limits.h"
#include "store/sql/translator.h"

namespace store::sql {

namespace {

using Args = std::vector<Value>;
using Impl = Value (*)(const Args&);

// ---- values in and out of SQLite ---------------------------------------------------------------
Value decode(sqlite3_value* v, char k) {
    switch (sqlite3_value_type(v)) {
        case SQLITE_NULL: return Value();
        case SQLITE_INTEGER: {
            sqlite3_int64 i = sqlite3_value_int64(v);
            if (k == 'b') return Value::Bool(i != 0);
            if (k == 'd') return Value::Date(static_cast<double>(i));
            if (i >= INT32_MIN && i <= INT32_MAX) return Value::Long(static_cast<std::int32_t>(i));
            return Value::Double(static_cast<double>(i));
        }
        case SQLITE_FLOAT: {
            double d = sqlite3_value_double(v);
            if (k == 'b') return Value::Bool(d != 0);
            if (k == 'd') return Value::Date(d);
            return Value::Double(d);
        }
        default: {
            const char* p = reinterpret_cast<const char*>(sqlite3_value_text(v));
            int n = sqlite3_value_bytes(v);
            std::string s(p ? p : "", p ? static_cast<std::size_t>(n) : 0);
            if (k == 'd') {
                if (auto d = DateFromIso(s)) return Value::Date(*d);
            }
            return Value::Text(std::move(s));
        }
    }
}

void encode(sqlite3_context* ctx, const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: sqlite3_result_null(ctx); return;
        case Value::Kind::Boolean: sqlite3_result_int(ctx, v.number() != 0 ? -1 : 0); return;
        case Value::Kind::Integer:
        case Value::Kind::Long: sqlite3_result_int64(ctx, static_cast<sqlite3_int64>(v.number())); return;
        case Value::Kind::Double:
            if (!std::isfinite(v.number())) raise(err::Overflow);
            sqlite3_result_double(ctx, v.number());
            return;
        case Value::Kind::Date: {
            if (!dateInRange(v.number())) raise(err::Overflow);
            std::string iso = DateToIso(v.number());
            sqlite3_result_text(ctx, iso.data(), static_cast<int>(iso.size()), SQLITE_TRANSIENT);
            return;
        }
        case Value::Kind::Text:
            sqlite3_result_text(ctx, v.text().data(), static_cast<int>(v.text().size()), SQLITE_TRANSIENT);
            return;
    }
}

template <typename F>
void guarded(sqlite3_context* ctx, F&& f) {
    try {
        f();
    } catch (const JetError& e) {
        resultJetError(ctx, e.number(), e.what());
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(ctx);
    } catch (const std::exception& e) {
        resultJetError(ctx, err::ChiamataNonValida);
    }
}

// ---- helpers -----------------------------------------------------------------------------------
bool anyNull(const Args& a, std::size_t n) {
    for (std::size_t i = 0; i < n && i < a.size(); ++i)
        if (a[i].isNull()) return true;
    return false;
}

Value numberValue(double d) {
    if (!std::isfinite(d)) raise(err::Overflow);
    return Value::Double(d);
}

// A number keeping an integer kind when the input had one.
Value sameKind(const Value& like, double d) {
    switch (like.kind()) {
        case Value::Kind::Boolean:
        case Value::Kind::Integer:
            if (d >= -32768 && d <= 32767) return Value::Int(static_cast<std::int16_t>(d));
            return Value::Long(static_cast<std::int32_t>(d));
        case Value::Kind::Long:
            if (d >= INT32_MIN && d <= INT32_MAX) return Value::Long(static_cast<std::int32_t>(d));
            return numberValue(d);
        default: return numberValue(d);
    }
}

double roundHalfEven(double x) {
    double f = std::floor(x);
    double diff = x - f;
    if (diff > 0.5) return f + 1;
    if (diff < 0.5) return f;
    return std::fmod(f, 2.0) == 0 ? f : f + 1;
}

std::int64_t toLong64(const Value& v) {
    double d = roundHalfEven(CDbl(v));
    if (d < -2147483648.0 || d > 2147483647.0) raise(err::Overflow);
    return static_cast<std::int64_t>(d);
}

// UTF-8 characters
std::size_t u8len(std::string_view s) {
    std::size_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}
// byte offset of character index i (clamped)
std::size_t u8off(std::string_view s, std::size_t i) {
    std::size_t n = 0;
    for (std::size_t b = 0; b < s.size(); ++b) {
        if ((static_cast<unsigned char>(s[b]) & 0xC0) != 0x80) {
            if (n == i) return b;
            ++n;
        }
    }
    return s.size();
}

std::string textOf(const Value& v) { return CStr(v); }

long longArg(const Value& v) {
    double d = roundHalfEven(CDbl(v));
    if (d < -2147483648.0 || d > 2147483647.0) raise(err::Overflow);
    return static_cast<long>(d);
}

// Case mapping for the letters the program meets: ASCII and Latin-1 (UTF-8 two-byte C3 xx).
std::string mapCase(std::string_view s, bool upper) {
    std::string r(s);
    for (std::size_t i = 0; i < r.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(r[i]);
        if (c < 0x80) {
            r[i] = static_cast<char>(upper ? std::toupper(c) : std::tolower(c));
        } else if (c == 0xC3 && i + 1 < r.size()) {
            unsigned char d = static_cast<unsigned char>(r[i + 1]);
            if (upper && d >= 0xA0 && d <= 0xBE && d != 0xB7) r[i + 1] = static_cast<char>(d - 0x20);
            else if (!upper && d >= 0x80 && d <= 0x9E && d != 0x97) r[i + 1] = static_cast<char>(d + 0x20);
            ++i;
        }
    }
    return r;
}

bool blank(char c) { return c == ' '; }

// ---- dates -------------------------------------------------------------------------------------
double dateArg(const Value& v) { return CDate(v); }

int dayOfYear(double serial) {
    DateParts p = SplitDate(serial);
    return static_cast<int>(std::floor(serial) - DateSerial(p.year, 1, 1)) + 1;
}

int weekOfYear(double serial, int firstDay) {
    DateParts p = SplitDate(serial);
    double jan1 = DateSerial(p.year, 1, 1);
    int wdJan1 = (Weekday(jan1) - firstDay + 7) % 7;  // 0 when Jan 1 is the week's first day
    return (dayOfYear(serial) - 1 + wdJan1) / 7 + 1;
}

std::string intervalArg(const Value& v) {
    return AsciiLower(CStr(v));
}

double addMonths(double serial, long months) {
    DateParts p = SplitDate(serial);
    long total = p.year * 12L + (p.month - 1) + months;
    int y = static_cast<int>(total / 12), m = static_cast<int>(total % 12) + 1;
    int d = p.day;
    while (d > 28 && !ValidDate(y, m, d)) --d;
    double day = DateSerial(y, m, d);
    double frac = serial - std::floor(serial);
    return day >= 0 ? day + frac : day - frac;
}

Value fnDatePart(const Args& a) {
    if (a[1].isNull()) return Value();
    std::string iv = intervalArg(a[0]);
    double d = dateArg(a[1]);
    int firstDay = a.size() > 2 && !a[2].isNull() ? static_cast<int>(longArg(a[2])) : 1;
    if (firstDay == 0) firstDay = 1;
    DateParts p = SplitDate(d);
    if (iv == "yyyy") return Value::Int(static_cast<std::int16_t>(p.year));
    if (iv == "q") return Value::Int(static_cast<std::int16_t>((p.month - 1) / 3 + 1));
    if (iv == "m") return Value::Int(static_cast<std::int16_t>(p.month));
    if (iv == "y") return Value::Int(static_cast<std::int16_t>(dayOfYear(d)));
    if (iv == "d") return Value::Int(static_cast<std::int16_t>(p.day));
    if (iv == "w") return Value::Int(static_cast<std::int16_t>((Weekday(d) - firstDay + 7) % 7 + 1));
    if (iv == "ww") return Value::Int(static_cast<std::int16_t>(weekOfYear(d, firstDay)));
    if (iv == "h") return Value::Int(static_cast<std::int16_t>(p.hour));
    if (iv == "n") return Value::Int(static_cast<std::int16_t>(p.minute));
    if (iv == "s") return Value::Int(static_cast<std::int16_t>(p.second));
    raise(err::ChiamataNonValida);
}

Value fnDateDiff(const Args& a) {
    if (a[1].isNull() || a[2].isNull()) return Value();
    std::string iv = intervalArg(a[0]);
    double x = dateArg(a[1]), y = dateArg(a[2]);
    DateParts p = SplitDate(x), q = SplitDate(y);
    double r;
    auto secs = [](double s) { return std::floor(s * 86400.0 + 0.5); };
    if (iv == "d" || iv == "y") r = std::floor(y) - std::floor(x);
    else if (iv == "yyyy") r = q.year - p.year;
    else if (iv == "m") r = (q.year - p.year) * 12 + (q.month - p.month);
    else if (iv == "q") r = (q.year - p.year) * 4 + ((q.month - 1) / 3 - (p.month - 1) / 3);
    else if (iv == "w") r = std::trunc((std::floor(y) - std::floor(x)) / 7);
    else if (iv == "ww") {
        int first = a.size() > 3 && !a[3].isNull() ? static_cast<int>(longArg(a[3])) : 1;
        if (first == 0) first = 1;
        double sx = std::floor(x) - (Weekday(x) - first + 7) % 7;
        double sy = std::floor(y) - (Weekday(y) - first + 7) % 7;
        r = (sy - sx) / 7;
    } else if (iv == "h") r = std::floor(secs(y) / 3600) - std::floor(secs(x) / 3600);
    else if (iv == "n") r = std::floor(secs(y) / 60) - std::floor(secs(x) / 60);
    else if (iv == "s") r = secs(y) - secs(x);
    else raise(err::ChiamataNonValida);
    if (r < -2147483648.0 || r > 2147483647.0) raise(err::Overflow);
    return Value::Long(static_cast<std::int32_t>(r));
}

Value fnDateAdd(const Args& a) {
    if (a[1].isNull() || a[2].isNull()) return Value();
    std::string iv = intervalArg(a[0]);
    double n = std::trunc(CDbl(a[1]));
    double d = dateArg(a[2]);
    double r;
    if (iv == "d" || iv == "y" || iv == "w") r = d + n;
    else if (iv == "ww") r = d + 7 * n;
    else if (iv == "m") r = addMonths(d, static_cast<long>(n));
    else if (iv == "q") r = addMonths(d, static_cast<long>(n) * 3);
    else if (iv == "yyyy") r = addMonths(d, static_cast<long>(n) * 12);
    else if (iv == "h") r = d + n / 24;
    else if (iv == "n") r = d + n / 1440;
    else if (iv == "s") r = d + n / 86400;
    else raise(err::ChiamataNonValida);
    if (r < -657434 || r >= 2958466) raise(err::ChiamataNonValida);
    return Value::Date(r);
}

// ---- the function table --------------------------------------------------------------------------
struct Entry {
    FnInfo info;
    Impl impl;
    bool publicName;
};

#define NULLARG(n) \
    if (anyNull(a, n)) return Value()

const Entry kFunctions[] = {
    // dates
    {{"datevalue", 1, 1, 'd'}, [](const Args& a) { NULLARG(1); return Value::Date(DateValue(a[0])); }, true},
    {{"timevalue", 1, 1, 'd'}, [](const Args& a) { NULLARG(1); double d = CDate(a[0]); return Value::Date(d - std::trunc(d)); }, true},
    {{"cdate", 1, 1, 'd'}, [](const Args& a) { if (a[0].isNull()) raise(err::UsoNonValidoDiNull); return Value::Date(CDate(a[0])); }, true},
    {{"cvdate", 1, 1, 'd'}, [](const Args& a) { NULLARG(1); return Value::Date(CDate(a[0])); }, true},
    {{"year", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).year)); }, true},
    {{"month", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).month)); }, true},
    {{"day", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).day)); }, true},
    {{"hour", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).hour)); }, true},
    {{"minute", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).minute)); }, true},
    {{"second", 1, 1, 'i'}, [](const Args& a) { NULLARG(1); return Value::Int(static_cast<std::int16_t>(SplitDate(dateArg(a[0])).second)); }, true},
    {{"weekday", 1, 2, 'i'}, [](const Args& a) {
         NULLARG(1);
         int first = a.size() > 1 && !a[1].isNull() ? static_cast<int>(longArg(a[1])) : 1;
         if (first == 0) first = 1;
         if (first < 1 || first > 7) raise(err::ChiamataNonValida);
         return Value::Int(static_cast<std::int16_t>((Weekday(dateArg(a[0])) - first + 7) % 7 + 1));
     }, true},
    {{"datepart", 2, 4, 'i'}, fnDatePart, true},
    {{"datediff", 3, 5, 'l'}, fnDateDiff, true},
    {{"dateadd", 3, 3, 'd'}, fnDateAdd, true},
    {{"dateserial", 3, 3, 'd'}, [](const Args& a) {
         NULLARG(3);
         double d = DateSerial(static_cast<int>(longArg(a[0])), static_cast<int>(longArg(a[1])), static_cast<int>(longArg(a[2])));
         if (d < -657434 || d >= 2958466) raise(err::ChiamataNonValida);
         return Value::Date(d);
     }, true},
    {{"timeserial", 3, 3, 'd'}, [](const Args& a) {
         NULLARG(3);
         double s = longArg(a[0]) * 3600.0 + longArg(a[1]) * 60.0 + longArg(a[2]);
         return Value::Date(s / 86400.0);
     }, true},
    // conversions
    {{"cdbl", 1, 1, 'f'}, [](const Args& a) { return numberValue(CDbl(a[0])); }, true},
    {{"csng", 1, 1, 'f'}, [](const Args& a) { return numberValue(static_cast<float>(CDbl(a[0]))); }, true},
    {{"ccur", 1, 1, 'f'}, [](const Args& a) { return numberValue(roundHalfEven(CDbl(a[0]) * 10000) / 10000); }, true},
    {{"clng", 1, 1, 'l'}, [](const Args& a) { return Value::Long(CLng(a[0])); }, true},
    {{"cint", 1, 1, 'i'}, [](const Args& a) { return Value::Int(CInt(a[0])); }, true},
    {{"cbyte", 1, 1, 'i'}, [](const Args& a) {
         double d = roundHalfEven(CDbl(a[0]));
         if (d < 0 || d > 255) raise(err::Overflow);
         return Value::Int(static_cast<std::int16_t>(d));
     }, true},
    {{"cbool", 1, 1, 'b'}, [](const Args& a) { if (a[0].isNull()) raise(err::UsoNonValidoDiNull); return Value::Bool(CBool(a[0])); }, true},
    {{"cstr", 1, 1, 't'}, [](const Args& a) { return Value::Text(CStr(a[0])); }, true},
    {{"val", 1, 1, 'f'}, [](const Args& a) { if (a[0].isNull()) raise(err::UsoNonValidoDiNull); return numberValue(Val(CStr(a[0]))); }, true},
    {{"str", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         double d = CDbl(a[0]);
         std::string s = NumberText(d);
         for (auto& c : s) if (c == ',') c = '.';
         return Value::Text(d >= 0 ? " " + s : s);
     }, true},
    {{"isnumeric", 1, 1, 'b'}, [](const Args& a) { return Value::Bool(!a[0].isNull() && IsNumeric(a[0])); }, true},
    {{"isdate", 1, 1, 'b'}, [](const Args& a) { return Value::Bool(!a[0].isNull() && IsDate(a[0])); }, true},
    // text
    {{"lcase", 1, 1, 't'}, [](const Args& a) { NULLARG(1); return Value::Text(mapCase(textOf(a[0]), false)); }, true},
    {{"ucase", 1, 1, 't'}, [](const Args& a) { NULLARG(1); return Value::Text(mapCase(textOf(a[0]), true)); }, true},
    {{"trim", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         std::string s = textOf(a[0]);
         std::size_t b = 0, e = s.size();
         while (b < e && blank(s[b])) ++b;
         while (e > b && blank(s[e - 1])) --e;
         return Value::Text(s.substr(b, e - b));
     }, true},
    {{"ltrim", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         std::string s = textOf(a[0]);
         std::size_t b = 0;
         while (b < s.size() && blank(s[b])) ++b;
         return Value::Text(s.substr(b));
     }, true},
    {{"rtrim", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         std::string s = textOf(a[0]);
         std::size_t e = s.size();
         while (e > 0 && blank(s[e - 1])) --e;
         return Value::Text(s.substr(0, e));
     }, true},
    {{"left", 2, 2, 't'}, [](const Args& a) {
         if (a[1].isNull()) raise(err::UsoNonValidoDiNull);
         long n = longArg(a[1]);
         if (n < 0) raise(err::ChiamataNonValida);
         NULLARG(1);
         std::string s = textOf(a[0]);
         return Value::Text(s.substr(0, u8off(s, static_cast<std::size_t>(n))));
     }, true},
    {{"right", 2, 2, 't'}, [](const Args& a) {
         if (a[1].isNull()) raise(err::UsoNonValidoDiNull);
         long n = longArg(a[1]);
         if (n < 0) raise(err::ChiamataNonValida);
         NULLARG(1);
         std::string s = textOf(a[0]);
         std::size_t len = u8len(s);
         std::size_t k = static_cast<std::size_t>(n) >= len ? 0 : len - static_cast<std::size_t>(n);
         return Value::Text(s.substr(u8off(s, k)));
     }, true},
    {{"mid", 2, 3, 't'}, [](const Args& a) {
         if (a[1].isNull()) raise(err::UsoNonValidoDiNull);
         long start = longArg(a[1]);
         if (start < 1) raise(err::ChiamataNonValida);
         long n = -1;
         if (a.size() > 2) {
             if (a[2].isNull()) raise(err::UsoNonValidoDiNull);
             n = longArg(a[2]);
             if (n < 0) raise(err::ChiamataNonValida);
         }
         NULLARG(1);
         std::string s = textOf(a[0]);
         std::size_t b = u8off(s, static_cast<std::size_t>(start - 1));
         std::size_t e = n < 0 ? s.size() : u8off(s, static_cast<std::size_t>(start - 1 + n));
         return Value::Text(s.substr(b, e - b));
     }, true},
    {{"len", 1, 1, 'l'}, [](const Args& a) { NULLARG(1); return Value::Long(static_cast<std::int32_t>(u8len(textOf(a[0])))); }, true},
    {{"instr", 2, 4, 'l'}, [](const Args& a) {
         // InStr([start,] text, find [, compare])
         std::size_t i = 0;
         long start = 1;
         if (a.size() >= 3 && (a[0].isNumeric() || a[0].isNull())) {
             if (a[0].isNull()) raise(err::UsoNonValidoDiNull);
             start = longArg(a[0]);
             if (start < 1) raise(err::ChiamataNonValida);
             i = 1;
         }
         if (a[i].isNull() || a[i + 1].isNull()) return Value();
         std::string s = textOf(a[i]), f = textOf(a[i + 1]);
         bool text = true;
         if (a.size() > i + 2 && !a[i + 2].isNull()) text = longArg(a[i + 2]) != 0;
         std::size_t from = u8off(s, static_cast<std::size_t>(start - 1));
         if (from >= s.size() && !(f.empty() && from == s.size())) return Value::Long(0);
         if (f.empty()) return Value::Long(static_cast<std::int32_t>(start));
         std::string hs = text ? mapCase(s, false) : s, nf = text ? mapCase(f, false) : f;
         std::size_t p = hs.find(nf, from);
         if (p == std::string::npos) return Value::Long(0);
         return Value::Long(static_cast<std::int32_t>(u8len(std::string_view(s).substr(0, p)) + 1));
     }, true},
    {{"space", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         long n = longArg(a[0]);
         if (n < 0 || n > 65535) raise(err::ChiamataNonValida);
         return Value::Text(std::string(static_cast<std::size_t>(n), ' '));
     }, true},
    {{"string", 2, 2, 't'}, [](const Args& a) {
         NULLARG(2);
         long n = longArg(a[0]);
         if (n < 0 || n > 65535) raise(err::ChiamataNonValida);
         std::string c;
         if (a[1].kind() == Value::Kind::Text) {
             if (a[1].text().empty()) raise(err::ChiamataNonValida);
             c = a[1].text().substr(0, u8off(a[1].text(), 1));
         } else {
             c = std::string(1, static_cast<char>(longArg(a[1]) & 0x7f));
         }
         std::string r;
         for (long i = 0; i < n; ++i) r += c;
         return Value::Text(r);
     }, true},
    {{"replace", 3, 6, 't'}, [](const Args& a) {
         NULLARG(3);
         std::string s = textOf(a[0]), f = textOf(a[1]), w = textOf(a[2]);
         if (f.empty()) return Value::Text(s);
         std::string ls = mapCase(s, false), lf = mapCase(f, false), r;
         std::size_t i = 0;
         for (;;) {
             std::size_t p = ls.find(lf, i);
             if (p == std::string::npos) break;
             r += s.substr(i, p - i) + w;
             i = p + f.size();
         }
         r += s.substr(i);
         return Value::Text(r);
     }, true},
    {{"chr", 1, 1, 't'}, [](const Args& a) {
         NULLARG(1);
         long c = longArg(a[0]);
         if (c < 0 || c > 255) raise(err::ChiamataNonValida);
         std::string one(1, static_cast<char>(c));
         return Value::Text(c < 128 ? one : Cp1252ToUtf8(one));
     }, true},
    {{"asc", 1, 1, 'i'}, [](const Args& a) {
         if (a[0].isNull()) raise(err::UsoNonValidoDiNull);
         std::string s = textOf(a[0]);
         if (s.empty()) raise(err::ChiamataNonValida);
         std::string one = Utf8ToCp1252(s.substr(0, u8off(s, 1)));
         return Value::Int(static_cast<std::int16_t>(one.empty() ? 63 : static_cast<unsigned char>(one[0])));
     }, true},
    {{"strcomp", 2, 3, 'i'}, [](const Args& a) {
         NULLARG(2);
         bool text = a.size() > 2 && !a[2].isNull() && longArg(a[2]) != 0;
         std::string x = textOf(a[0]), y = textOf(a[1]);
         int c = text ? CompareText(x, y) : x.compare(y);
         return Value::Int(static_cast<std::int16_t>(c < 0 ? -1 : c > 0 ? 1 : 0));
     }, true},
    {{"format", 1, 4, 't'}, [](const Args& a) {
         std::string mask = a.size() > 1 && !a[1].isNull() ? CStr(a[1]) : std::string();
         return Value::Text(Format(a[0], mask));
     }, true},
    {{"monthname", 1, 2, 't'}, [](const Args& a) {
         NULLARG(1);
         bool ab = a.size() > 1 && !a[1].isNull() && CBool(a[1]);
         return Value::Text(MonthName(static_cast<int>(longArg(a[0])), ab));
     }, true},
    {{"weekdayname", 1, 3, 't'}, [](const Args& a) {
         NULLARG(1);
         bool ab = a.size() > 1 && !a[1].isNull() && CBool(a[1]);
         return Value::Text(WeekdayName(static_cast<int>(longArg(a[0])), ab));
     }, true},
    // numbers
    {{"int", 1, 1, 'a'}, [](const Args& a) { NULLARG(1); return sameKind(a[0], std::floor(CDbl(a[0]))); }, true},
    {{"fix", 1, 1, 'a'}, [](const Args& a) { NULLARG(1); return sameKind(a[0], std::trunc(CDbl(a[0]))); }, true},
    {{"abs", 1, 1, 'a'}, [](const Args& a) { NULLARG(1); return sameKind(a[0], std::fabs(CDbl(a[0]))); }, true},
    {{"sgn", 1, 1, 'i'}, [](const Args& a) {
         NULLARG(1);
         double d = CDbl(a[0]);
         return Value::Int(static_cast<std::int16_t>(d > 0 ? 1 : d < 0 ? -1 : 0));
     }, true},
    {{"round", 1, 2, 'a'}, [](const Args& a) {
         NULLARG(1);
         int n = 0;
         if (a.size() > 1) {
             if (a[1].isNull()) raise(err::UsoNonValidoDiNull);
             n = static_cast<int>(longArg(a[1]));
         }
         return sameKind(a[0], Round(CDbl(a[0]), n));
     }, true},
    {{"sqr", 1, 1, 'f'}, [](const Args& a) {
         NULLARG(1);
         double d = CDbl(a[0]);
         if (d < 0) raise(err::ChiamataNonValida);
         return numberValue(std::sqrt(d));
     }, true},
    {{"exp", 1, 1, 'f'}, [](const Args& a) { NULLARG(1); return numberValue(std::exp(CDbl(a[0]))); }, true},
    {{"log", 1, 1, 'f'}, [](const Args& a) {
         NULLARG(1);
         double d = CDbl(a[0]);
         if (d <= 0) raise(err::ChiamataNonValida);
         return numberValue(std::log(d));
     }, true},
    {{"now", 0, 0, 'd'}, [](const Args&) { return Value::Date(Adesso()); }, true},
    {{"date", 0, 0, 'd'}, [](const Args&) { return Value::Date(Oggi()); }, true},
    {{"time", 0, 0, 'd'}, [](const Args&) { double d = Adesso(); return Value::Date(d - std::floor(d)); }, true},
    // internal conversions the generator inserts (Null stays Null)
    {{"cstrn", 1, 1, 't'}, [](const Args& a) { NULLARG(1); return Value::Text(CStr(a[0])); }, false},
    {{"cdaten", 1, 1, 'd'}, [](const Args& a) {
         NULLARG(1);
         if (a[0].kind() == Value::Kind::Text) {
             auto d = ParseDateText(a[0].text());
             if (!d) raise(err::TipoNonCorrispondenteCriterio);
             return Value::Date(*d);
         }
         return Value::Date(CDate(a[0]));
     }, false},
    {{"cdbln", 1, 1, 'f'}, [](const Args& a) {
         NULLARG(1);
         if (a[0].kind() == Value::Kind::Text) {
             auto d = ParseNumberText(a[0].text());
             if (!d) raise(err::TipoNonCorrispondenteCriterio);
             return numberValue(*d);
         }
         return numberValue(CDbl(a[0]));
     }, false},
};

const std::unordered_map<std::string_view, const Entry*>& table() {
    static const auto* m = [] {
        auto* t = new std::unordered_map<std::string_view, const Entry*>();
        for (const Entry& e : kFunctions) (*t)[e.info.name] = &e;
        return t;
    }();
    return *m;
}

const Entry* findEntry(std::string_view name) {
    auto it = table().find(name);
    return it == table().end() ? nullptr : it->second;
}

// ---- SQLite entry points -----------------------------------------------------------------------
std::string_view textArg(sqlite3_value* v) {
    const char* p = reinterpret_cast<const char*>(sqlite3_value_text(v));
    return p ? std::string_view(p, static_cast<std::size_t>(sqlite3_value_bytes(v))) : std::string_view();
}

// jet_fn(name, kinds, args...)
void sqlFn(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    guarded(ctx, [&] {
        if (argc < 2) raise(err::ChiamataNonValida);
        auto* e = static_cast<const Entry*>(sqlite3_get_auxdata(ctx, 0));
        if (!e) {
            e = findEntry(textArg(argv[0]));
            if (!e) raise(err::FunzioneNonDefinita, std::string(textArg(argv[0])));
            sqlite3_set_auxdata(ctx, 0, const_cast<Entry*>(e), nullptr);
        }
        std::string_view kinds = textArg(argv[1]);
        Args a;
        a.reserve(static_cast<std::size_t>(argc - 2));
        for (int i = 2; i < argc; ++i) {
            std::size_t k = static_cast<std::size_t>(i - 2);
            a.push_back(decode(argv[i], k < kinds.size() ? kinds[k] : 'v'));
        }
        encode(ctx, e->impl(a));
    });
}

void sqlNow(sqlite3_context* ctx, int, sqlite3_value**) {
    guarded(ctx, [&] { encode(ctx, Value::Date(Adesso())); });
}
void sqlToday(sqlite3_context* ctx, int, sqlite3_value**) {
    guarded(ctx, [&] { encode(ctx, Value::Date(Oggi())); });
}
void sqlTime(sqlite3_context* ctx, int, sqlite3_value**) {
    guarded(ctx, [&] {
        double d = Adesso();
        encode(ctx, Value::Date(d - std::floor(d)));
    });
}

// jet_dayfrom(d), jet_dayafter(d): for a date in storage form, the first midnight at or after it and
// the midnight that ends its day, in storage form; Null for Null. With them a range on a Date column
// answers DateValue(column) compared with d. Past the last day "9999-12-32", after every stored date.
void dayBound(sqlite3_context* ctx, sqlite3_value* v, bool dayAfter) {
    guarded(ctx, [&] {
        const Value d = decode(v, 'd');
        if (d.isNull()) {
            sqlite3_result_null(ctx);
            return;
        }
        const double serial = d.kind() == Value::Kind::Date ? d.number() : CDate(d);
        const double day = DateValue(Value::Date(serial));
        const double bound = dayAfter || day != serial ? day + 1 : day;
        const std::string iso = dateInRange(bound) ? DateToIso(bound) : "9999-12-32";
        sqlite3_result_text(ctx, iso.data(), static_cast<int>(iso.size()), SQLITE_TRANSIENT);
    });
}
void sqlDayFrom(sqlite3_context* ctx, int, sqlite3_value** argv) { dayBound(ctx, argv[0], false); }
void sqlDayAfter(sqlite3_context* ctx, int, sqlite3_value** argv) { dayBound(ctx, argv[0], true); }

// A stored day "YYYY-MM-DD" as & writes it, "DD/MM/YYYY", straight from its digits: the registers'
// descriptions join a date on every row. False for anything else (a time, the zero date).
bool appendStoredDay(std::string& out, std::string_view s) {
    if (s.size() != 10 || s[4] != '-' || s[7] != '-' || s == "1899-12-30") return false;
    int n[10];
    for (std::size_t i = 0; i < 10; ++i) {
        n[i] = s[i] - '0';
        if ((n[i] < 0 || n[i] > 9) && i != 4 && i != 7) return false;
    }
    const int year = n[0] * 1000 + n[1] * 100 + n[2] * 10 + n[3];
    if (!ValidDate(year, n[5] * 10 + n[6], n[8] * 10 + n[9])) return false;
    out.append(s.substr(8, 2)).append(1, '/').append(s.substr(5, 2)).append(1, '/').append(s.substr(0, 4));
    return true;
}

// jet_cat(kinds, a, b, ...): '&' — Null counts as "", all Null gives Null
void sqlCat(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    guarded(ctx, [&] {
        std::string_view kinds = textArg(argv[0]);
        std::string out;
        bool any = false;
        for (int i = 1; i < argc; ++i) {
            if (sqlite3_value_type(argv[i]) == SQLITE_NULL) continue;
            any = true;
            char k = static_cast<std::size_t>(i - 1) < kinds.size() ? kinds[static_cast<std::size_t>(i - 1)] : 'v';
            if (k == 't' && sqlite3_value_type(argv[i]) == SQLITE_TEXT) {
                out.append(textArg(argv[i]));
            } else if (k == 'd' && sqlite3_value_type(argv[i]) == SQLITE_TEXT && appendStoredDay(out, textArg(argv[i]))) {
                continue;
            } else {
                out += ConcatText(decode(argv[i], k));
            }
        }
        if (!any) sqlite3_result_null(ctx);
        else sqlite3_result_text(ctx, out.data(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
    });
}

// jet_like(text, pattern) -> 1/0/Null
void sqlLike(sqlite3_context* ctx, int, sqlite3_value** argv) {
    guarded(ctx, [&] {
        if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
            sqlite3_result_null(ctx);
            return;
        }
        std::string_view t = textArg(argv[0]), p = textArg(argv[1]);
        bool m;
        if (p == "*" || p == "**") m = true;
        else m = LikeMatch(t, p);
        sqlite3_result_int(ctx, m ? 1 : 0);
    });
}

// jet_div(a, b): '/' on numbers
void sqlDiv(sqlite3_context* ctx, int, sqlite3_value** argv) {
    guarded(ctx, [&] {
        if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
            sqlite3_result_null(ctx);
            return;
        }
        double b = sqlite3_value_double(argv[1]);
        if (b == 0) raise(err::DivisionePerZero);
        double r = sqlite3_value_double(argv[0]) / b;
        if (!std::isfinite(r)) raise(err::Overflow);
        sqlite3_result_double(ctx, r);
    });
}

Value arith(std::string_view op, const Value& a, const Value& b) {
    if (op == "neg") {
        if (a.isNull()) return a;
        if (a.kind() == Value::Kind::Date) return Value::Date(-a.number());
        return numberValue(-CDbl(a));
    }
    if (op == "not") {
        if (a.isNull()) return a;
        return Value::Long(static_cast<std::int32_t>(~toLong64(a)));
    }
    if (op == "and" || op == "or" || op == "xor" || op == "eqv" || op == "imp") {
        // bitwise on Longs, with the Null rules of the platform
        if (a.isNull() || b.isNull()) {
            if (op == "and") {
                const Value& o = a.isNull() ? b : a;
                if (!o.isNull() && toLong64(o) == 0) return Value::Long(0);
            }
            if (op == "or") {
                const Value& o = a.isNull() ? b : a;
                if (!o.isNull() && toLong64(o) == -1) return Value::Long(-1);
            }
            return Value();
        }
        std::int64_t x = toLong64(a), y = toLong64(b);
        std::int64_t r = op == "and" ? (x & y) : op == "or" ? (x | y) : op == "xor" ? (x ^ y)
                       : op == "eqv" ? ~(x ^ y) : (~x | y);
        return Value::Long(static_cast<std::int32_t>(r));
    }
    if (a.isNull() || b.isNull()) return Value();
    bool ta = a.kind() == Value::Kind::Text, tb = b.kind() == Value::Kind::Text;
    bool da = a.kind() == Value::Kind::Date, db = b.kind() == Value::Kind::Date;
    if (op == "+") {
        if (ta && tb) return Value::Text(a.text() + b.text());
        double r = CDbl(a) + CDbl(b);
        if ((da && !db) || (db && !da)) return Value::Date(r);
        return numberValue(r);
    }
    if (op == "-") {
        double r = CDbl(a) - CDbl(b);
        if (da && !db) return Value::Date(r);
        return numberValue(r);
    }
    if (op == "*") return numberValue(CDbl(a) * CDbl(b));
    if (op == "/") {
        double y = CDbl(b);
        if (y == 0) raise(err::DivisionePerZero);
        return numberValue(CDbl(a) / y);
    }
    if (op == "^") {
        double x = CDbl(a), y = CDbl(b);
        if (x < 0 && y != std::trunc(y)) raise(err::ChiamataNonValida);
        return numberValue(std::pow(x, y));
    }
    if (op == "\\" || op == "mod") {
        double x = roundHalfEven(CDbl(a)), y = roundHalfEven(CDbl(b));
        if (y == 0) raise(err::DivisionePerZero);
        if (op == "\\") {
            double q = std::trunc(x / y);
            if (q < -2147483648.0 || q > 2147483647.0) return numberValue(q);
            return Value::Long(static_cast<std::int32_t>(q));
        }
        double m = std::fmod(x, y);
        if (m < -2147483648.0 || m > 2147483647.0) return numberValue(m);
        return Value::Long(static_cast<std::int32_t>(m));
    }
    raise(err::ChiamataNonValida);
}

// jet_arith(op, kinds, a, b)
void sqlArith(sqlite3_context* ctx, int, sqlite3_value** argv) {
    guarded(ctx, [&] {
        std::string_view op = textArg(argv[0]), kinds = textArg(argv[1]);
        Value a = decode(argv[2], kinds.size() > 0 ? kinds[0] : 'v');
        Value b = decode(argv[3], kinds.size() > 1 ? kinds[1] : 'v');
        encode(ctx, arith(op, a, b));
    });
}

// jet_store(kind, value, fieldType, size): a value converted to the field's type in storage form
void sqlStore(sqlite3_context* ctx, int, sqlite3_value** argv) {
    guarded(ctx, [&] {
        std::string_view kinds = textArg(argv[0]);
        Value v = decode(argv[1], kinds.empty() ? 'v' : kinds[0]);
        int type = sqlite3_value_int(argv[2]);
        int size = sqlite3_value_int(argv[3]);
        encode(ctx, storeValue(v, static_cast<FieldType>(type), size));
    });
}

int collate(void*, int na, const void* a, int nb, const void* b) {
    try {
        return CompareText(std::string_view(static_cast<const char*>(a), static_cast<std::size_t>(na)),
                           std::string_view(static_cast<const char*>(b), static_cast<std::size_t>(nb)));
    } catch (...) {
        // never throw through SQLite: fall back to bytes
        int c = std::memcmp(a, b, static_cast<std::size_t>(std::min(na, nb)));
        return c != 0 ? c : na - nb;
    }
}

}  // namespace

const FnInfo* findFunction(std::string_view lowerName) {
    const Entry* e = findEntry(lowerName);
    return e && e->publicName ? &e->info : nullptr;
}

Value storeValue(const Value& v, FieldType type, int size) {
    if (v.isNull()) return v;
    switch (type) {
        case FieldType::Boolean: return Value::Bool(CBool(v));
        case FieldType::Byte: {
            double d = roundHalfEven(CDbl(v));
            if (d < 0 || d > 255) raise(err::Overflow);
            return Value::Long(static_cast<std::int32_t>(d));
        }
        case FieldType::Integer: return Value::Long(CInt(v));
        case FieldType::Long: return Value::Long(CLng(v));
        case FieldType::Currency: return numberValue(roundHalfEven(CDbl(v) * 10000) / 10000);
        case FieldType::Single: return numberValue(static_cast<float>(CDbl(v)));
        case FieldType::Double: return numberValue(CDbl(v));
        case FieldType::Date: {
            if (v.kind() == Value::Kind::Date) return v;
            return Value::Date(CDate(v));
        }
        case FieldType::Memo: return Value::Text(CStr(v));
        case FieldType::Text:
        default: {
            std::string s = CStr(v);
            if (size > 0 && u8len(s) > static_cast<std::size_t>(size)) raise(err::CampoTroppoPiccolo);
            return Value::Text(std::move(s));
        }
    }
}

void registerFunctions(sqlite3* db) {
    const int det = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_collation_v2(db, "JET", SQLITE_UTF8, nullptr, collate, nullptr);
    sqlite3_create_function_v2(db, "jet_fn", -1, det, nullptr, sqlFn, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_cat", -1, det, nullptr, sqlCat, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_like", 2, det, nullptr, sqlLike, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_div", 2, det, nullptr, sqlDiv, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_arith", 4, det, nullptr, sqlArith, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_store", 4, det, nullptr, sqlStore, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_dayfrom", 1, det, nullptr, sqlDayFrom, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_dayafter", 1, det, nullptr, sqlDayAfter, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_now", 0, SQLITE_UTF8, nullptr, sqlNow, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_date", 0, SQLITE_UTF8, nullptr, sqlToday, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_time", 0, SQLITE_UTF8, nullptr, sqlTime, nullptr, nullptr, nullptr);
    registerLimitFunctions(db);
    registerCalcFunction(db);
}

void bindParams(sqlite3_stmt* stmt, const std::vector<Value>& params) {
    for (std::size_t i = 0; i < params.size(); ++i) {
        const Value& v = params[i];
        int k = static_cast<int>(i + 1);
        switch (v.kind()) {
            case Value::Kind::Null: sqlite3_bind_null(stmt, k); break;
            case Value::Kind::Boolean: sqlite3_bind_int(stmt, k, v.number() != 0 ? -1 : 0); break;
            case Value::Kind::Integer:
            case Value::Kind::Long: sqlite3_bind_int64(stmt, k, static_cast<sqlite3_int64>(v.number())); break;
            case Value::Kind::Double: sqlite3_bind_double(stmt, k, v.number()); break;
            case Value::Kind::Date: {
                std::string iso = DateToIso(v.number());
                sqlite3_bind_text(stmt, k, iso.data(), static_cast<int>(iso.size()), SQLITE_TRANSIENT);
                break;
            }
            case Value::Kind::Text:
                sqlite3_bind_text(stmt, k, v.text().data(), static_cast<int>(v.text().size()), SQLITE_TRANSIENT);
                break;
        }
    }
}

void resultJetError(sqlite3_context* ctx, int number, const std::string& text) {
    std::string m = "JET:" + std::to_string(number) + ":" + text;
    sqlite3_result_error(ctx, m.c_str(), static_cast<int>(m.size()));
}

void resultJetError(sqlite3_context* ctx, int number) { resultJetError(ctx, number, errorText(number)); }

void raiseFromSqlite(sqlite3* db, int rc, std::string_view context) {
    const char* m = db ? sqlite3_errmsg(db) : nullptr;
    std::string msg = m ? m : "";
    int ext = db ? sqlite3_extended_errcode(db) : rc;
    if (msg.compare(0, 4, "JET:") == 0) {
        std::size_t colon = msg.find(':', 4);
        int number = std::atoi(msg.c_str() + 4);
        std::string text = colon == std::string::npos ? errorText(number) : msg.substr(colon + 1);
        throw JetError(number > 0 ? number : err::ChiamataNonValida, text);
    }
    int primary = rc & 0xff;
    if (ext == SQLITE_CONSTRAINT_UNIQUE || ext == SQLITE_CONSTRAINT_PRIMARYKEY || rc == SQLITE_CONSTRAINT_UNIQUE ||
        rc == SQLITE_CONSTRAINT_PRIMARYKEY || (primary == SQLITE_CONSTRAINT && msg.find("UNIQUE") != std::string::npos))
        raise(err::ValoriDuplicati);
    if (ext == SQLITE_CONSTRAINT_NOTNULL || rc == SQLITE_CONSTRAINT_NOTNULL) {
        std::string field = msg;
        std::size_t dot = field.rfind('.');
        if (dot != std::string::npos) field = field.substr(dot + 1);
        raise(err::ValoreRichiesto, field);
    }
    switch (primary) {
        case SQLITE_BUSY: raise(err::BloccatoDaAltroComputer);
        case SQLITE_LOCKED: raise(err::RecordBloccato);
        case SQLITE_READONLY: raise(err::SolaLettura);
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT: raise(err::DatabaseNonRiconosciuto, std::string(context));
        case SQLITE_CANTOPEN: raise(err::PercorsoNonValido, std::string(context));
        case SQLITE_NOMEM: throw std::bad_alloc();
        default: break;
    }
    std::string text = "Errore del motore di database";
    if (!context.empty()) text += " (" + std::string(context) + ")";
    if (!msg.empty()) text += ": " + msg;
    throw JetError(err::ErroreRiservato, text);
}

}  // namespace store::sql
