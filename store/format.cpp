#include "store/format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "store/convert.h"
#include "store/errors.h"

namespace store {

namespace {

constexpr std::array<const char*, 12> kMonths = {"gennaio", "febbraio", "marzo",     "aprile",  "maggio",   "giugno",
                                                 "luglio",  "agosto",   "settembre", "ottobre", "novembre", "dicembre"};
constexpr std::array<const char*, 7> kWeekdays = {"domenica", "lunedì",  "martedì", "mercoledì",
                                                  "giovedì",  "venerdì", "sabato"};

char lowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    return true;
}

// ================================================================================================
// Masks as tokens: placeholders and letters, with quoted and escaped text kept literal
// ================================================================================================

struct MaskToken {
    bool literal;
    std::string text;  // a literal's characters, or one mask character
};

// Splits a mask into sections at ';' and each section into tokens; "..." and \x are literal text.
std::vector<std::vector<MaskToken>> tokenizeSections(std::string_view mask) {
    std::vector<std::vector<MaskToken>> sections(1);
    for (std::size_t i = 0; i < mask.size(); ++i) {
        const char c = mask[i];
        auto& tokens = sections.back();
        if (c == ';') {
            sections.emplace_back();
        } else if (c == '"') {
            const std::size_t close = mask.find('"', i + 1);
            const std::size_t end = close == std::string_view::npos ? mask.size() : close;
            tokens.push_back({true, std::string(mask.substr(i + 1, end - i - 1))});
            i = end;
        } else if (c == '\\') {
            if (i + 1 < mask.size()) tokens.push_back({true, std::string(1, mask[++i])});
        } else {
            tokens.push_back({false, std::string(1, c)});
        }
    }
    return sections;
}

bool isPlaceholder(const MaskToken& t) { return !t.literal && (t.text == "0" || t.text == "#"); }

bool isDateLetter(char c) {
    return std::string_view("dmyhnswq").find(lowerAscii(c)) != std::string_view::npos;
}

// A mask is a date mask when it has date letters or separators and no digit placeholders.
bool isDateMask(const std::vector<MaskToken>& tokens) {
    bool dateish = false;
    for (const auto& t : tokens) {
        if (isPlaceholder(t)) return false;
        if (!t.literal && (isDateLetter(t.text[0]) || t.text == "/" || t.text == ":")) dateish = true;
    }
    return dateish;
}

// ================================================================================================
// Numbers: decimal rounding and layout
// ================================================================================================

// The value as the platform's formatter sees it: its 15 significant decimal digits, so that
// 1.005 rounds to 1.01 and 2.675 to 2.68 as they are written, halves away from zero.
struct Digits {
    std::string integer;   // no leading zeros, "" for zero
    std::string fraction;  // exactly the asked number of digits
    bool isZero() const { return integer.empty() && fraction.find_first_not_of('0') == std::string::npos; }
};

std::string incrementDecimal(std::string s) {
    for (std::size_t i = s.size(); i-- > 0;) {
        if (s[i] != '9') { ++s[i]; return s; }
        s[i] = '0';
    }
    return "1" + s;
}

// round(a * 10^decimals) as a decimal digit string, for a >= 0.
std::string scaledRoundedDigits(double a, int decimals) {
    if (a == 0) return "0";
    char buf[64];
    const char* end = std::to_chars(buf, buf + sizeof buf, a, std::chars_format::scientific, 14).ptr;
    std::string significant = std::string(1, buf[0]) + std::string(buf + 2, 14);
    long power = 0;  // "d.dddddddddddddde-NN": the exponent's sign at 17, its digits from 18
    std::from_chars(buf + 18, end, power);
    if (buf[17] == '-') power = -power;
    const long keep = power + 1 + decimals;  // digits left of the new point
    if (keep < 0) return "0";
    if (keep == 0) return significant[0] >= '5' ? "1" : "0";
    if (keep >= static_cast<long>(significant.size())) return significant + std::string(keep - significant.size(), '0');
    const bool up = significant[keep] >= '5';
    significant.resize(keep);
    return up ? incrementDecimal(significant) : significant;
}

Digits roundedDigits(double a, int decimals) {
    std::string n = scaledRoundedDigits(a, decimals);
    if (n.size() <= static_cast<std::size_t>(decimals)) n.insert(0, decimals + 1 - n.size(), '0');
    Digits d{n.substr(0, n.size() - decimals), n.substr(n.size() - decimals)};
    const std::size_t first = d.integer.find_first_not_of('0');
    d.integer = first == std::string::npos ? "" : d.integer.substr(first);
    return d;
}

std::string groupThousands(const std::string& integer) {
    std::string out;
    for (std::size_t i = 0; i < integer.size(); ++i) {
        if (i > 0 && (integer.size() - i) % 3 == 0) out += '.';
        out += integer[i];
    }
    return out;
}

// What a number section asks for, read once before the value is laid out.
struct NumberLayout {
    int integerPlaces = 0, integerZerosFrom = -1;  // index of the first '0' among the integer places
    int fractionPlaces = 0, fractionZerosTo = 0;   // one past the last '0' among the fraction places
    bool hasPoint = false, grouping = false, percent = false;
    int thousandsScale = 0;                        // commas right before the point divide by 1000 each
};

void noteIntegerComma(const std::vector<MaskToken>& tokens, std::size_t i, NumberLayout& layout) {
    const bool placeholderBefore = layout.integerPlaces > 0;
    bool placeholderAfter = false;
    for (std::size_t k = i + 1; k < tokens.size() && !placeholderAfter; ++k) {
        if (!tokens[k].literal && tokens[k].text == ".") break;
        placeholderAfter = isPlaceholder(tokens[k]);
    }
    if (placeholderBefore && placeholderAfter) layout.grouping = true;
    else if (placeholderBefore) ++layout.thousandsScale;
}

NumberLayout readLayout(const std::vector<MaskToken>& tokens) {
    NumberLayout layout;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const MaskToken& t = tokens[i];
        if (t.literal) continue;
        if (t.text == "%") layout.percent = true;
        else if (t.text == "." && !layout.hasPoint) layout.hasPoint = true;
        else if (t.text == "," && !layout.hasPoint) noteIntegerComma(tokens, i, layout);
        else if (isPlaceholder(t) && !layout.hasPoint) {
            if (t.text == "0" && layout.integerZerosFrom < 0) layout.integerZerosFrom = layout.integerPlaces;
            ++layout.integerPlaces;
        } else if (isPlaceholder(t)) {
            ++layout.fractionPlaces;
            if (t.text == "0") layout.fractionZerosTo = layout.fractionPlaces;
        }
    }
    return layout;
}

struct NumberPieces {
    std::string integer;                    // the whole integer part, padded and grouped
    std::vector<std::string> integerSlots;  // what each integer place of the mask shows
    std::string fraction;
};

// Digits fill the integer places from the right, so that "00-00" writes 1234 as "12-34"; digits
// beyond the places go to the first one. With grouping the whole part stands at the first place.
std::vector<std::string> integerSlots(const std::string& digits, int places, bool grouping) {
    std::vector<std::string> slots(places);
    if (places == 0) return slots;
    if (grouping) {
        slots[0] = digits;
        return slots;
    }
    const int offset = static_cast<int>(digits.size()) - places;
    for (int k = 0; k < places; ++k) {
        if (k == 0 && offset > 0) slots[0] = digits.substr(0, offset + 1);
        else if (k + offset >= 0) slots[k] = std::string(1, digits[k + offset]);
    }
    return slots;
}

NumberPieces numberParts(const Digits& d, const NumberLayout& layout) {
    NumberPieces out{d.integer, {}, d.fraction};
    const int minInteger = layout.integerZerosFrom < 0 ? 0 : layout.integerPlaces - layout.integerZerosFrom;
    if (static_cast<int>(out.integer.size()) < minInteger) out.integer.insert(0, minInteger - out.integer.size(), '0');
    if (layout.grouping) out.integer = groupThousands(out.integer);
    out.integerSlots = integerSlots(out.integer, layout.integerPlaces, layout.grouping);
    while (static_cast<int>(out.fraction.size()) > layout.fractionZerosTo && out.fraction.back() == '0')
        out.fraction.pop_back();
    return out;
}

// Walks the section: the integer digits go to the integer places, the decimal comma where the
// point stands, the fraction digits at the first fraction place; literals stay in place.
std::string layOut(const std::vector<MaskToken>& tokens, const NumberPieces& parts) {
    std::string out;
    std::size_t integerPlace = 0;
    bool pointDone = false, fractionDone = false;
    for (const MaskToken& t : tokens) {
        if (t.literal) { out += t.text; continue; }
        if (isPlaceholder(t) && !pointDone) {
            out += parts.integerSlots[integerPlace++];
        } else if (isPlaceholder(t)) {
            if (!fractionDone) out += parts.fraction;
            fractionDone = true;
        } else if (t.text == "." && !pointDone) {
            if (parts.integerSlots.empty()) out += parts.integer;  // ".00" still shows the integer part
            pointDone = true;
            out += ',';
        } else if (t.text != ",") {
            out += t.text;
        }
    }
    return out;
}

std::string formatWithSection(double magnitude, const std::vector<MaskToken>& tokens, bool minus) {
    const NumberLayout layout = readLayout(tokens);
    double scaled = magnitude / std::pow(1000.0, layout.thousandsScale);
    if (layout.percent) scaled *= 100;
    const Digits digits = roundedDigits(scaled, layout.fractionPlaces);
    const std::string text = layOut(tokens, numberParts(digits, layout));
    return minus && !digits.isZero() ? "-" + text : text;
}

std::string formatNumberMask(double x, const std::vector<std::vector<MaskToken>>& sections) {
    if (!std::isfinite(x)) raise(6);
    const bool hasNegativeSection = sections.size() > 1 && !sections[1].empty();
    if (x == 0 && sections.size() > 2 && !sections[2].empty()) return formatWithSection(0, sections[2], false);
    if (x < 0 && hasNegativeSection) return formatWithSection(-x, sections[1], false);
    return formatWithSection(std::fabs(x), sections[0], x < 0);
}

// ================================================================================================
// Dates
// ================================================================================================

int dayOfYear(const DateParts& p) {
    return static_cast<int>(DateSerial(p.year, p.month, p.day) - DateSerial(p.year, 1, 1)) + 1;
}

// Weeks start on Sunday and week 1 holds 1 January.
int weekOfYear(const DateParts& p) {
    const int firstWeekday = Weekday(DateSerial(p.year, 1, 1));
    return (dayOfYear(p) - 1 + firstWeekday - 1) / 7 + 1;
}

std::string padded(int n, int width) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%0*d", width, n);
    return buf;
}

std::string longDate(double serial) {
    const DateParts p = SplitDate(serial);
    return WeekdayName(Weekday(serial)) + " " + std::to_string(p.day) + " " + MonthName(p.month) + " " +
           padded(p.year, 4);
}

std::string dayField(double serial, const DateParts& p, std::size_t run) {
    switch (run) {
        case 1: return std::to_string(p.day);
        case 2: return padded(p.day, 2);
        case 3: return WeekdayName(Weekday(serial), true);
        case 4: return WeekdayName(Weekday(serial));
        case 5: return ShortDate(serial);
        default: return longDate(serial);
    }
}

std::string monthField(const DateParts& p, std::size_t run) {
    if (run == 1) return std::to_string(p.month);
    if (run == 2) return padded(p.month, 2);
    return MonthName(p.month, run == 3);
}

std::string yearField(const DateParts& p, std::size_t run) {
    if (run == 1) return std::to_string(dayOfYear(p));
    if (run < 4) return padded(p.year % 100, 2);
    return padded(p.year, 4);
}

std::string numberField(int n, std::size_t run) { return run == 1 ? std::to_string(n) : padded(n, 2); }

// One run of a date letter ("dd", "mmmm"); an 'm' run after an hour is minutes.
std::string dateField(char letter, std::size_t run, double serial, const DateParts& p, bool afterHour) {
    switch (letter) {
        case 'd': return dayField(serial, p, run);
        case 'm': return afterHour ? numberField(p.minute, run) : monthField(p, run);
        case 'y': return yearField(p, run);
        case 'h': return numberField(p.hour, run);
        case 'n': return numberField(p.minute, run);
        case 's': return numberField(p.second, run);
        case 'w': return run == 1 ? std::to_string(Weekday(serial)) : std::to_string(weekOfYear(p));
        default: return std::to_string((p.month - 1) / 3 + 1);  // 'q'
    }
}

std::string formatDateMask(double serial, const std::vector<MaskToken>& tokens) {
    const DateParts p = SplitDate(serial);
    std::string out;
    bool afterHour = false;
    for (std::size_t i = 0; i < tokens.size();) {
        const MaskToken& t = tokens[i];
        const char c = lowerAscii(t.text[0]);
        if (t.literal || !isDateLetter(c)) {
            out += !t.literal && t.text == ":" ? "." : t.text;  // the locale's time separator
            ++i;
            continue;
        }
        std::size_t run = 1;
        while (i + run < tokens.size() && !tokens[i + run].literal && lowerAscii(tokens[i + run].text[0]) == c) ++run;
        out += dateField(c, run, serial, p, afterHour);
        afterHour = c == 'h';
        i += run;
    }
    return out;
}

// ================================================================================================
// Named formats
// ================================================================================================

struct NamedFormat { const char* name; const char* mask; };

constexpr NamedFormat kNamedMasks[] = {
    {"Currency", "€ #,##0.00"}, {"Fixed", "0.00"},           {"Standard", "#,##0.00"},
    {"Percent", "0.00%"},         {"Short Date", "dd/mm/yyyy"}, {"Medium Date", "dd-mmm-yy"},
    {"Long Date", "dddddd"},      {"Long Time", "hh:nn:ss"},  {"Medium Time", "hh:nn"},
    {"Short Time", "hh:nn"},
};

std::optional<std::string_view> namedMask(std::string_view mask) {
    for (const auto& f : kNamedMasks)
        if (equalsNoCase(mask, f.name)) return std::string_view(f.mask);
    return std::nullopt;
}

std::string scientific(double x) {
    if (!std::isfinite(x)) raise(6);
    char buf[40];
    std::string s(buf, std::to_chars(buf, buf + sizeof buf, x, std::chars_format::scientific, 2).ptr);
    for (char& c : s) c = c == '.' ? ',' : c == 'e' ? 'E' : c;
    return s;
}

// The named formats that are no mask: words for true and false, and the exponent form.
std::optional<std::string> namedText(double x, std::string_view mask) {
    if (equalsNoCase(mask, "Scientific")) return scientific(x);
    if (equalsNoCase(mask, "Yes/No")) return std::string(x != 0 ? "Sì" : "No");
    if (equalsNoCase(mask, "True/False")) return std::string(x != 0 ? "Vero" : "Falso");
    if (equalsNoCase(mask, "On/Off")) return std::string(x != 0 ? "On" : "Off");
    return std::nullopt;
}

std::string plainText(const Value& v) {
    return v.isNull() ? std::string() : CStr(v);
}

std::string formatNumberValue(double x, std::string_view mask) {
    if (auto text = namedText(x, mask)) return *text;
    if (equalsNoCase(mask, "General Number")) return NumberText(x);
    if (equalsNoCase(mask, "General Date")) return DateText(x);
    const auto sections = tokenizeSections(namedMask(mask).value_or(mask));
    if (isDateMask(sections[0])) return formatDateMask(x, sections[0]);
    return formatNumberMask(x, sections);
}

std::string formatText(const std::string& text, std::string_view mask) {
    const auto sections = tokenizeSections(namedMask(mask).value_or(mask));
    if (isDateMask(sections[0])) {
        auto date = ParseDateText(text);
        return date ? formatDateMask(*date, sections[0]) : text;
    }
    auto number = ParseNumberText(text);
    return number ? formatNumberValue(*number, mask) : text;
}

std::string formatNull(std::string_view mask) {
    const auto sections = tokenizeSections(mask);
    if (sections.size() < 4) return {};
    std::string out;
    for (const auto& t : sections[3]) out += t.text;
    return out;
}

}  // namespace

std::string Format(const Value& value, std::string_view mask) {
    if (mask.empty()) return plainText(value);
    switch (value.kind()) {
        case Value::Kind::Null: return formatNull(mask);
        case Value::Kind::Text: return formatText(value.text(), mask);
        default: return formatNumberValue(value.number(), mask);
    }
}

std::string FormatNumber(double value, int decimals, bool grouping) {
    if (decimals == -1) decimals = 2;
    if (decimals < -1 || decimals > 99) raise(5);
    std::string mask = grouping ? "#,##0" : "0";
    if (decimals > 0) mask += "." + std::string(decimals, '0');
    return formatNumberMask(value, tokenizeSections(mask));
}

std::string MonthName(int month, bool abbreviated) {
    if (month < 1 || month > 12) raise(5);
    const std::string name = kMonths[month - 1];
    return abbreviated ? name.substr(0, 3) : name;
}

std::string WeekdayName(int weekday, bool abbreviated) {
    if (weekday < 1 || weekday > 7) raise(5);
    const std::string name = kWeekdays[weekday - 1];
    return abbreviated ? name.substr(0, 3) : name;
}

}  // namespace store
