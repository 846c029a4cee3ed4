#include "store/convert.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "store/clock.h"
#include "store/errors.h"

namespace store {

namespace {

// ================================================================================================
// Calendar arithmetic on whole days (proleptic Gregorian, as the platform counts before 1582 too)
// ================================================================================================

constexpr std::int64_t kSerialOfUnixEpoch = 25569;  // 01/01/1970
constexpr double kSecondsPerDay = 86400.0;
// The platform's date range, 01/01/100 to 31/12/9999.
constexpr double kFirstSerial = -657434.0;
constexpr double kLastSerial = 2958465.0;

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

std::int64_t daysFromCivil(std::int64_t y, std::int64_t m, std::int64_t d) {
    y -= m <= 2;
    const std::int64_t era = floorDiv(y, 400);
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

struct Civil { std::int64_t year; int month, day; };

Civil civilFromDays(std::int64_t z) {
    z += 719468;
    const std::int64_t era = floorDiv(z, 146097);
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {yoe + era * 400 + (m <= 2), m, d};
}

int daysInMonth(int year, int month) {
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

// A negative serial keeps its day in the integer part and counts the time forward from that day:
// -1.25 is 29/12/1899 06:00.
double joinDayAndTime(double day, double timeFraction) {
    return day < 0 ? day - timeFraction : day + timeFraction;
}

double timeFraction(int hour, int minute, int second) {
    return (hour * 3600.0 + minute * 60.0 + second) / kSecondsPerDay;
}

struct DayAndSeconds { std::int64_t day; int seconds; };

// The time is kept to the second, as the platform shows it; 23:59:59.6 becomes the next midnight.
DayAndSeconds splitSerial(double serial) {
    if (!std::isfinite(serial) || std::fabs(serial) > 1e9) raise(6);
    const double day = std::trunc(serial);
    auto seconds = static_cast<std::int64_t>(std::llround(std::fabs(serial - day) * kSecondsPerDay));
    auto whole = static_cast<std::int64_t>(day);
    if (seconds >= 86400) { seconds -= 86400; ++whole; }
    return {whole, static_cast<int>(seconds)};
}

// ================================================================================================
// Small text helpers
// ================================================================================================

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char asciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (asciiLower(a[i]) != asciiLower(b[i])) return false;
    return true;
}

std::vector<std::string_view> splitOnBlanks(std::string_view s) {
    std::vector<std::string_view> parts;
    std::size_t i = 0;
    while (i < s.size()) {
        while (i < s.size() && isBlank(s[i])) ++i;
        std::size_t start = i;
        while (i < s.size() && !isBlank(s[i])) ++i;
        if (i > start) parts.push_back(s.substr(start, i - start));
    }
    return parts;
}

std::string twoDigits(int n) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", n);
    return buf;
}

// ================================================================================================
// Reading dates
// ================================================================================================

struct DigitGroup { int value; int digits; };

// "31/12/2024" -> {31,2}{12,2}{2024,4}. All separators must be the same character from `seps`.
std::optional<std::vector<DigitGroup>> digitGroups(std::string_view token, std::string_view seps) {
    std::vector<DigitGroup> groups;
    char separator = 0;
    std::size_t i = 0;
    while (true) {
        DigitGroup g{0, 0};
        while (i < token.size() && isDigit(token[i]) && g.digits < 5) {
            g.value = g.value * 10 + (token[i] - '0');
            ++g.digits;
            ++i;
        }
        if (g.digits == 0 || g.digits > 4) return std::nullopt;
        groups.push_back(g);
        if (i == token.size()) return groups;
        const char c = token[i];
        if (seps.find(c) == std::string_view::npos || (separator != 0 && c != separator)) return std::nullopt;
        separator = c;
        ++i;
        if (groups.size() == 3) return std::nullopt;
    }
}

// Two-digit years: 00-29 are this century, 30-99 the last one.
int fullYear(const DigitGroup& g) {
    if (g.digits > 2) return g.value;
    return g.value < 30 ? 2000 + g.value : 1900 + g.value;
}

int currentYear() { return SplitDate(Oggi()).year; }

struct Ymd { int year, month, day; };

std::optional<double> serialIfValid(const Ymd& d) {
    if (!ValidDate(d.year, d.month, d.day)) return std::nullopt;
    return DateSerial(d.year, d.month, d.day);
}

enum class DateOrder { DayFirst, MonthFirst };

// Reads the date groups in the preferred order, then in the other one, as the platform does when
// the first reading is no date (12/25/2024 is Christmas under either locale).
std::optional<double> dateFromGroups(const std::vector<DigitGroup>& g, DateOrder order) {
    if (g.size() == 3 && g[0].digits >= 3) {  // year first
        return g[2].digits <= 2 ? serialIfValid({g[0].value, g[1].value, g[2].value}) : std::nullopt;
    }
    if (g.size() == 2 && g[1].digits >= 3) return serialIfValid({g[1].value, g[0].value, 1});  // month/year
    const int year = g.size() == 3 ? fullYear(g[2]) : currentYear();
    const Ymd dayFirst{year, g[1].value, g[0].value};
    const Ymd monthFirst{year, g[0].value, g[1].value};
    const Ymd& preferred = order == DateOrder::DayFirst ? dayFirst : monthFirst;
    const Ymd& other = order == DateOrder::DayFirst ? monthFirst : dayFirst;
    if (auto s = serialIfValid(preferred)) return s;
    return serialIfValid(other);
}

struct TimeOfDay { int hour, minute, second; };

// "14.30", "14:30:15", "0.00.00".
std::optional<TimeOfDay> timeFromToken(std::string_view token) {
    const char sep = token.find(':') != std::string_view::npos ? ':' : '.';
    auto groups = digitGroups(token, std::string_view(&sep, 1));
    if (!groups || groups->size() < 2) return std::nullopt;
    for (const auto& g : *groups)
        if (g.digits > 2) return std::nullopt;
    TimeOfDay t{(*groups)[0].value, (*groups)[1].value, groups->size() == 3 ? (*groups)[2].value : 0};
    if (t.hour > 23 || t.minute > 59 || t.second > 59) return std::nullopt;
    return t;
}

bool applyMeridiem(TimeOfDay& t, std::string_view token) {
    const bool am = equalsNoCase(token, "AM");
    const bool pm = equalsNoCase(token, "PM");
    if ((!am && !pm) || t.hour < 1 || t.hour > 12) return false;
    if (am && t.hour == 12) t.hour = 0;
    if (pm && t.hour < 12) t.hour += 12;
    return true;
}

bool looksLikeTime(std::string_view token) {
    return token.find(':') != std::string_view::npos || token.find('.') != std::string_view::npos;
}

bool isWordByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

// Italian names and their three-letter forms, as Format writes them, and the English ones of literals.
int monthOfWord(const std::string& word) {
    static constexpr std::array<std::array<const char*, 2>, 12> kNames = {{
        {"gennaio", "january"}, {"febbraio", "february"}, {"marzo", "march"},  {"aprile", "april"},
        {"maggio", "may"},      {"giugno", "june"},       {"luglio", "july"},  {"agosto", "august"},
        {"settembre", "september"}, {"ottobre", "october"}, {"novembre", "november"}, {"dicembre", "december"}}};
    for (std::size_t m = 0; m < kNames.size(); ++m)
        for (const std::string_view name : kNames[m])
            if (word == name || (word.size() == 3 && name.substr(0, 3) == word)) return static_cast<int>(m) + 1;
    return 0;
}

bool isWeekdayWord(const std::string& word) {
    for (const char* day : {"domenica", "lunedì", "martedì", "mercoledì", "giovedì", "venerdì", "sabato", "lunedi",
                            "martedi", "mercoledi", "giovedi", "venerdi"})
        if (word == day) return true;
    return false;
}

std::string lowerWord(std::string_view w) {
    std::string out(w);
    for (char& c : out) c = asciiLower(c);
    return out;
}

struct NamedMonthText {
    std::string text;
    std::optional<DateOrder> order;  // a named month fixes which number is the day
};

// "martedì 5 marzo 2024" and "05-mar-24" become "5/3/2024" and "05/3/24": the weekday goes, the
// month name becomes its number between date separators. Other words stay for the parser to refuse.
NamedMonthText monthNamesToNumbers(std::string_view s) {
    NamedMonthText out;
    for (std::size_t i = 0; i < s.size();) {
        if (!isWordByte(s[i])) { out.text += s[i++]; continue; }
        const std::size_t start = i;
        while (i < s.size() && isWordByte(s[i])) ++i;
        const std::string word = lowerWord(s.substr(start, i - start));
        const int month = monthOfWord(word);
        if (isWeekdayWord(word)) continue;
        if (month == 0) { out.text += s.substr(start, i - start); continue; }
        std::string& t = out.text;
        while (!t.empty() && (isBlank(t.back()) || t.back() == '-')) t.pop_back();
        out.order = t.find_first_of("0123456789") == std::string::npos ? DateOrder::MonthFirst : DateOrder::DayFirst;
        if (!t.empty()) t += '/';
        t += std::to_string(month);
        while (i < s.size() && (isBlank(s[i]) || s[i] == '-')) ++i;
        std::size_t next = i;
        while (next < s.size() && !isBlank(s[next])) ++next;
        const bool yearFollows = i < s.size() && isDigit(s[i]) && !looksLikeTime(s.substr(i, next - i));
        t += yearFollows ? '/' : ' ';
    }
    if (out.order) std::replace(out.text.begin(), out.text.end(), '-', '/');  // "Mar-5-2024"
    return out;
}

// A date, a time or both, in that order, separated by blanks; the time may end in AM or PM.
std::optional<double> parseDateTime(std::string_view text, DateOrder order) {
    const NamedMonthText named = monthNamesToNumbers(text);
    const auto tokens = splitOnBlanks(named.text);
    order = named.order.value_or(order);
    if (tokens.empty() || tokens.size() > 3) return std::nullopt;
    std::optional<double> day;
    std::optional<TimeOfDay> time;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (time && i + 1 == tokens.size() && applyMeridiem(*time, tokens[i])) break;
        if (looksLikeTime(tokens[i])) {
            if (time || !(time = timeFromToken(tokens[i]))) return std::nullopt;
        } else {
            if (day || time) return std::nullopt;
            auto groups = digitGroups(tokens[i], "/-");
            if (!groups || groups->size() < 2 || !(day = dateFromGroups(*groups, order))) return std::nullopt;
        }
    }
    const double fraction = time ? timeFraction(time->hour, time->minute, time->second) : 0.0;
    return joinDayAndTime(day.value_or(0.0), fraction);
}

// ================================================================================================
// Reading numbers
// ================================================================================================

int digitValue(char c) {
    const char lower = asciiLower(c);
    if (isDigit(c)) return c - '0';
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 99;
}

// "&H1F", "&O17": a value that fits 16 bits is an Integer (&HFFFF is -1), a larger one a Long.
std::optional<double> radixNumber(std::string_view body, int radix) {
    if (body.empty()) return std::nullopt;
    std::uint64_t v = 0;
    for (char c : body) {
        const int digit = digitValue(c);
        if (digit >= radix) return std::nullopt;
        v = v * radix + digit;
        if (v > 0xFFFFFFFFull) return std::nullopt;
    }
    if (v <= 0xFFFF) return static_cast<std::int16_t>(v);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
}

std::optional<double> prefixedNumber(std::string_view s) {
    if (s.size() < 3 || s[0] != '&') return std::nullopt;
    const char kind = asciiLower(s[1]);
    if (kind == 'h') return radixNumber(s.substr(2), 16);
    if (kind == 'o') return radixNumber(s.substr(2), 8);
    return std::nullopt;
}

// Collects a locale number as "-123.45e6" for from_chars: ',' is the decimal point, '.' is skipped.
std::optional<std::string> canonicalLocaleNumber(std::string_view s) {
    std::string out;
    std::size_t i = 0;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) { if (s[i] == '-') out += '-'; ++i; }
    bool digits = false, comma = false;
    for (; i < s.size(); ++i) {
        const char c = s[i];
        if (isDigit(c)) { out += c; digits = true; }
        else if (c == '.') continue;
        else if (c == ',' && !comma) { out += '.'; comma = true; }
        else break;
    }
    if (!digits) return std::nullopt;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
        out += 'e';
        ++i;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) out += s[i++];
        const std::size_t start = i;
        while (i < s.size() && isDigit(s[i])) out += s[i++];
        if (i == start) return std::nullopt;
    }
    if (i != s.size()) return std::nullopt;
    return out;
}

// The locale's currency sign may stand before the number (after any sign) or after it: "€ 12,50",
// "-€ 12,50", "12,50 €".
std::string withoutCurrencySign(std::string_view s) {
    constexpr std::string_view kEuro = "\xE2\x82\xAC";
    std::string sign;
    if (!s.empty() && (s[0] == '-' || s[0] == '+') && s.substr(1, kEuro.size()) == kEuro) {
        sign = s.substr(0, 1);
        s.remove_prefix(1);
    }
    if (s.substr(0, kEuro.size()) == kEuro) return sign + std::string(trimBlanks(s.substr(kEuro.size())));
    if (s.size() >= kEuro.size() && s.substr(s.size() - kEuro.size()) == kEuro)
        return std::string(trimBlanks(s.substr(0, s.size() - kEuro.size())));
    return std::string(s);
}

std::optional<double> readDouble(const std::string& canonical) {
    double d = 0;
    auto [end, ec] = std::from_chars(canonical.data(), canonical.data() + canonical.size(), d);
    if (ec != std::errc() || end != canonical.data() + canonical.size() || !std::isfinite(d)) return std::nullopt;
    return d;
}

// "&H1FZ" reads as &H1F: the digits of the radix up to the first other character.
double valOfPrefixed(std::string_view s) {
    const int radix = asciiLower(s[1]) == 'h' ? 16 : 8;
    std::size_t end = 2;
    while (end < s.size() && digitValue(s[end]) < radix) ++end;
    return prefixedNumber(s.substr(0, end)).value_or(0.0);
}

// The longest leading "-12.5e3" of a text with its blanks already taken out; 'D' counts as 'E'.
std::string leadingPointNumber(std::string_view s) {
    std::string out;
    std::size_t i = 0;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) { if (s[i] == '-') out += '-'; ++i; }
    bool point = false;
    for (; i < s.size() && (isDigit(s[i]) || (s[i] == '.' && !point)); ++i) {
        point = point || s[i] == '.';
        out += s[i];
    }
    if (i < s.size() && (asciiLower(s[i]) == 'e' || asciiLower(s[i]) == 'd')) {
        std::string exponent = "e";
        std::size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) exponent += s[j++];
        const std::size_t start = j;
        while (j < s.size() && isDigit(s[j])) exponent += s[j++];
        if (j > start) out += exponent;
    }
    return out;
}

// Half to even on a double that is already scaled.
double roundHalfEven(double x) {
    const double lower = std::floor(x);
    const double diff = x - lower;
    if (diff > 0.5) return lower + 1;
    if (diff < 0.5) return lower;
    return std::fmod(lower, 2.0) == 0 ? lower : lower + 1;
}

// ================================================================================================
// UTF-8 and the collation
// ================================================================================================

// Bytes that are no valid UTF-8 are read one by one as code points above the Unicode range,
// so that they compare and match as themselves and never equal a real character.
constexpr char32_t kInvalidBase = 0x110000;

char32_t decodeUtf8(std::string_view s, std::size_t& i) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) { ++i; return b0; }
    const int extra = b0 >= 0xC2 && b0 <= 0xDF ? 1 : b0 >= 0xE0 && b0 <= 0xEF ? 2 : b0 >= 0xF0 && b0 <= 0xF4 ? 3 : -1;
    if (extra < 0 || i + extra >= s.size()) { ++i; return kInvalidBase + b0; }
    char32_t cp = b0 & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) { ++i; return kInvalidBase + b0; }
        cp = (cp << 6) | (b & 0x3F);
    }
    static constexpr char32_t kMinimum[] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) { ++i; return kInvalidBase + b0; }
    i += extra + 1;
    return cp;
}

std::u32string decodeAll(std::string_view s) {
    std::u32string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) out += decodeUtf8(s, i);
    return out;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) { out += static_cast<char>(cp); return; }
    if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
    } else {
        if (cp < 0x10000) {
            out += static_cast<char>(0xE0 | (cp >> 12));
        } else {
            out += static_cast<char>(0xF0 | (cp >> 18));
            out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        }
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    }
    out += static_cast<char>(0x80 | (cp & 0x3F));
}

// Lower case for ASCII, Latin-1 and the letters of the Windows-1252 range.
char32_t foldCase(char32_t c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    switch (c) {
        case 0x152: return 0x153;  // OE
        case 0x160: return 0x161;  // S caron
        case 0x17D: return 0x17E;  // Z caron
        case 0x178: return 0xFF;   // Y diaeresis
        default: return c;
    }
}

// The letter an accented Latin-1 letter is written on; sorting puts "àncora" right after "ancora".
char32_t baseLetter(char32_t lower) {
    static constexpr char32_t kBase[32] = {
        'a', 'a', 'a', 'a', 'a', 'a', 0xE6, 'c', 'e', 'e', 'e', 'e', 'i', 'i', 'i', 'i',
        0xF0, 'n', 'o', 'o', 'o', 'o', 'o', 0xF7, 0xF8, 'u', 'u', 'u', 'u', 'y', 0xFE, 'y'};
    if (lower >= 0xE0 && lower <= 0xFF) return kBase[lower - 0xE0];
    if (lower == 0x161) return 's';
    if (lower == 0x17E) return 'z';
    return lower;
}

std::string_view withoutTrailingSpaces(std::string_view s) {
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

// Walks both texts character by character, without copies: the collation runs for every
// comparison of a sort.
int compareFolded(std::string_view a, std::string_view b, bool accentsToo) {
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        char32_t x = foldCase(decodeUtf8(a, i)), y = foldCase(decodeUtf8(b, j));
        if (!accentsToo) { x = baseLetter(x); y = baseLetter(y); }
        if (x != y) return x < y ? -1 : 1;
    }
    return (i < a.size()) - (j < b.size());
}

// ================================================================================================
// Like
// ================================================================================================

struct LikeToken {
    enum class Kind { AnyRun, AnyOne, Digit, Set } kind;
    explicit LikeToken(Kind k) : kind(k) {}
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;  // folded bounds; a single character is {c, c}
};

[[noreturn]] void invalidPattern() { throw JetError(93, "Stringa criterio non valida."); }

// "[a-z]", "[!abc]", "[*]": the body between the brackets. The empty "[]" matches no character at all
// and is dropped by the caller.
LikeToken setToken(const std::u32string& p, std::size_t& i) {
    LikeToken t(LikeToken::Kind::Set);
    ++i;  // '['
    if (i < p.size() && p[i] == '!') { t.negated = true; ++i; }
    while (i < p.size() && p[i] != ']') {
        char32_t low = foldCase(p[i]), high = low;
        if (i + 2 < p.size() && p[i + 1] == '-' && p[i + 2] != ']') {
            high = foldCase(p[i + 2]);
            if (high < low) invalidPattern();
            i += 2;
        }
        t.ranges.emplace_back(low, high);
        ++i;
    }
    if (i >= p.size()) invalidPattern();
    ++i;  // ']'
    return t;
}

LikeToken literalToken(char32_t c) {
    LikeToken t(LikeToken::Kind::Set);
    t.ranges.emplace_back(foldCase(c), foldCase(c));
    return t;
}

std::vector<LikeToken> compileLike(const std::u32string& p) {
    std::vector<LikeToken> tokens;
    for (std::size_t i = 0; i < p.size();) {
        switch (p[i]) {
            case '*':
                if (tokens.empty() || tokens.back().kind != LikeToken::Kind::AnyRun)
                    tokens.emplace_back(LikeToken::Kind::AnyRun);
                ++i;
                break;
            case '?': tokens.emplace_back(LikeToken::Kind::AnyOne); ++i; break;
            case '#': tokens.emplace_back(LikeToken::Kind::Digit); ++i; break;
            case '[': {
                LikeToken t = setToken(p, i);
                if (t.negated || !t.ranges.empty()) tokens.push_back(std::move(t));
                break;
            }
            default: tokens.push_back(literalToken(p[i++]));  // a lone ']' too matches itself
        }
    }
    return tokens;
}

bool tokenMatches(const LikeToken& t, char32_t c) {
    switch (t.kind) {
        case LikeToken::Kind::AnyRun:
        case LikeToken::Kind::AnyOne: return true;
        case LikeToken::Kind::Digit: return c >= '0' && c <= '9';
        case LikeToken::Kind::Set: break;
    }
    const char32_t f = foldCase(c);
    bool inside = false;
    for (const auto& [low, high] : t.ranges) inside = inside || (f >= low && f <= high);
    return inside != t.negated;
}

// The classic wildcard walk: on a mismatch, go back to the last '*' and let it eat one more character.
bool matchTokens(const std::u32string& text, const std::vector<LikeToken>& tokens) {
    std::size_t ti = 0, pi = 0;
    std::size_t starPattern = std::string::npos, starText = 0;
    while (ti < text.size()) {
        if (pi < tokens.size() && tokens[pi].kind == LikeToken::Kind::AnyRun) {
            starPattern = pi++;
            starText = ti;
        } else if (pi < tokens.size() && tokenMatches(tokens[pi], text[ti])) {
            ++pi;
            ++ti;
        } else if (starPattern != std::string::npos) {
            pi = starPattern + 1;
            ti = ++starText;
        } else {
            return false;
        }
    }
    while (pi < tokens.size() && tokens[pi].kind == LikeToken::Kind::AnyRun) ++pi;
    return pi == tokens.size();
}

// ================================================================================================
// Windows-1252
// ================================================================================================

// 0x80-0x9F; zero where the code page has no character (those bytes keep their C1 code point).
constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178};

char32_t cp1252ToUnicode(unsigned char b) {
    if (b < 0x80 || b >= 0xA0) return b;
    const char16_t u = kCp1252High[b - 0x80];
    return u ? u : b;
}

std::optional<unsigned char> unicodeToCp1252(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
    for (std::size_t k = 0; k < kCp1252High.size(); ++k) {
        const char32_t mapped = kCp1252High[k] ? kCp1252High[k] : 0x80 + k;
        if (mapped == cp) return static_cast<unsigned char>(0x80 + k);
    }
    return std::nullopt;
}

const char* const kTrueText = "Vero";
const char* const kFalseText = "Falso";

}  // namespace

// ================================================================================================
// Dates
// ================================================================================================

double DateSerial(int year, int month, int day) {
    const std::int64_t m0 = static_cast<std::int64_t>(month) - 1;
    const std::int64_t y = year + floorDiv(m0, 12);
    const std::int64_t m = m0 - floorDiv(m0, 12) * 12 + 1;
    return static_cast<double>(daysFromCivil(y, m, 1) + (static_cast<std::int64_t>(day) - 1) + kSerialOfUnixEpoch);
}

DateParts SplitDate(double serial) {
    const auto [day, seconds] = splitSerial(serial);
    const Civil c = civilFromDays(day - kSerialOfUnixEpoch);
    return {static_cast<int>(c.year), c.month, c.day, seconds / 3600, seconds / 60 % 60, seconds % 60};
}

int Weekday(double serial) {
    const std::int64_t day = splitSerial(serial).day;
    return static_cast<int>(((day + 6) % 7 + 7) % 7) + 1;  // serial 0 was a Saturday
}

bool ValidDate(int year, int month, int day) {
    return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

std::string DateToIso(double serial) {
    const DateParts p = SplitDate(serial);
    char buf[40];
    if (p.hour == 0 && p.minute == 0 && p.second == 0)
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", p.year, p.month, p.day);
    else
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day, p.hour, p.minute,
                      p.second);
    return buf;
}

std::optional<double> DateFromIso(std::string_view text) {
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
    auto date = digitGroups(text.substr(0, 10), "-");
    if (!date || date->size() != 3 || (*date)[0].digits != 4) return std::nullopt;
    auto day = serialIfValid({(*date)[0].value, (*date)[1].value, (*date)[2].value});
    if (!day) return std::nullopt;
    if (text.size() == 10) return day;
    if (text[10] != ' ' && text[10] != 'T') return std::nullopt;
    const std::string_view timeText = text.substr(11);
    auto time = timeText.find('.') == std::string_view::npos ? timeFromToken(timeText) : std::nullopt;
    if (!time) return std::nullopt;
    return joinDayAndTime(*day, timeFraction(time->hour, time->minute, time->second));
}

std::string ShortDate(double serial) {
    const DateParts p = SplitDate(serial);
    char buf[24];
    std::snprintf(buf, sizeof buf, "%02d/%02d/%04d", p.day, p.month, p.year);
    return buf;
}

std::string DateText(double serial) {
    const auto [day, seconds] = splitSerial(serial);
    const std::string time =
        twoDigits(seconds / 3600) + "." + twoDigits(seconds / 60 % 60) + "." + twoDigits(seconds % 60);
    if (day == 0) return time;  // a time alone, and the zero date, show as a time
    if (seconds == 0) return ShortDate(serial);
    return ShortDate(serial) + " " + time;
}

std::optional<double> ParseDateText(std::string_view text) {
    return parseDateTime(trimBlanks(text), DateOrder::DayFirst);
}

std::optional<double> ParseDateLiteral(std::string_view body) {
    return parseDateTime(trimBlanks(body), DateOrder::MonthFirst);
}

// ================================================================================================
// Numbers
// ================================================================================================

std::optional<double> ParseNumberText(std::string_view text) {
    const std::string plain = withoutCurrencySign(trimBlanks(text));
    const std::string_view s = plain;
    if (s.empty()) return std::nullopt;
    if (s[0] == '&') return prefixedNumber(s);
    auto canonical = canonicalLocaleNumber(s);
    if (!canonical) return std::nullopt;
    return readDouble(*canonical);
}

std::string NumberText(double d) {
    if (!std::isfinite(d)) raise(6);
    if (d == 0) return "0";
    char buf[40];
    std::string s(buf, std::to_chars(buf, buf + sizeof buf, d, std::chars_format::general, 15).ptr);
    for (char& c : s) c = c == '.' ? ',' : c == 'e' ? 'E' : c;
    return s;
}

double Round(double x, int digits) {
    if (digits < 0) raise(5);
    if (!std::isfinite(x)) return x;
    const double scale = std::pow(10.0, digits);
    const double scaled = x * scale;
    if (!std::isfinite(scaled) || std::fabs(scaled) >= 4503599627370496.0) return x;  // 2^52: no fraction left
    const double r = roundHalfEven(scaled) / scale;
    return r == 0 ? 0.0 : r;  // never -0
}

double Val(std::string_view text) {
    std::string compact;
    for (char c : text)
        if (!isBlank(c)) compact += c;
    if (compact.size() >= 2 && compact[0] == '&') return valOfPrefixed(compact);
    const std::string canonical = leadingPointNumber(compact);
    double d = 0;
    const auto result = std::from_chars(canonical.data(), canonical.data() + canonical.size(), d);
    if (result.ec == std::errc::result_out_of_range && canonical.find("e-") == std::string::npos) raise(6);
    return result.ec == std::errc() ? d : 0.0;
}

// ================================================================================================
// Value conversions
// ================================================================================================

double CDbl(const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: raise(94);
        case Value::Kind::Text: {
            auto d = ParseNumberText(v.text());
            if (!d) raise(13);
            return *d;
        }
        default: return v.number();
    }
}

std::int32_t CLng(const Value& v) {
    const double r = roundHalfEven(CDbl(v));
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) raise(6);  // NaN too
    return static_cast<std::int32_t>(r);
}

std::int16_t CInt(const Value& v) {
    const double r = roundHalfEven(CDbl(v));
    if (!(r >= -32768.0 && r <= 32767.0)) raise(6);
    return static_cast<std::int16_t>(r);
}

bool CBool(const Value& v) {
    if (v.kind() == Value::Kind::Text) {
        const std::string_view t = trimBlanks(v.text());
        if (equalsNoCase(t, kTrueText) || equalsNoCase(t, "True")) return true;
        if (equalsNoCase(t, kFalseText) || equalsNoCase(t, "False")) return false;
    }
    return CDbl(v) != 0;
}

double CDate(const Value& v) {
    if (v.kind() == Value::Kind::Text) {
        auto d = ParseDateText(v.text());
        if (!d) raise(13);
        return *d;
    }
    const double d = CDbl(v);
    if (!(d >= kFirstSerial && d < kLastSerial + 1)) raise(6);
    return d;
}

std::string CStr(const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: raise(94);
        case Value::Kind::Boolean: return v.number() != 0 ? kTrueText : kFalseText;
        case Value::Kind::Date: return DateText(v.number());
        case Value::Kind::Text: return v.text();
        default: return NumberText(v.number());
    }
}

bool IsNumeric(const Value& v) {
    if (v.kind() == Value::Kind::Text) return ParseNumberText(v.text()).has_value();
    return v.isNumeric();
}

bool IsDate(const Value& v) {
    if (v.kind() == Value::Kind::Text) return ParseDateText(v.text()).has_value();
    return v.kind() == Value::Kind::Date;
}

double DateValue(const Value& v) {
    const double d = CDate(v);
    return std::trunc(d) == 0 ? 0.0 : std::trunc(d);
}

std::string ConcatText(const Value& v) {
    return v.isNull() ? std::string() : CStr(v);
}

// ================================================================================================
// Text
// ================================================================================================

std::string AsciiLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

int CompareText(std::string_view a, std::string_view b) {
    const std::string_view x = withoutTrailingSpaces(a), y = withoutTrailingSpaces(b);
    const int primary = compareFolded(x, y, false);
    return primary != 0 ? primary : compareFolded(x, y, true);
}

bool LikeMatch(std::string_view text, std::string_view pattern) {
    return matchTokens(decodeAll(text), compileLike(decodeAll(pattern)));
}

std::string Utf8ToCp1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const auto byte = unicodeToCp1252(decodeUtf8(utf8, i));
        out += byte ? static_cast<char>(*byte) : '?';
    }
    return out;
}

std::string Cp1252ToUtf8(std::string_view cp1252) {
    std::string out;
    out.reserve(cp1252.size() * 2);
    for (char c : cp1252) appendUtf8(out, cp1252ToUnicode(static_cast<unsigned char>(c)));
    return out;
}

}  // namespace store
