// Conversions and Format under the program's Italian locale. Every expected serial below is counted
// by hand from 01/01/2024 = 45292 (and 01/01/2000 = 36526), every formatted text worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "store/clock.h"
#include "store/convert.h"
#include "store/errors.h"
#include "store/format.h"
#include "convert_support.h"

using namespace store;

namespace {

constexpr double k1430 = 14.5 / 24;  // 14:30 as a day fraction
// 05/03/2024 14:30:05, a Tuesday in the tenth week (weeks start on Sunday, 01/01/2024 was a Monday).
const double kMarch5 = 45356 + (14 * 3600 + 30 * 60 + 5) / 86400.0;

class FixedClock : public ::testing::Test {
protected:
    void SetUp() override { fissaOrologio(45453.0); }  // 10/06/2024
    void TearDown() override { fissaOrologio(std::nullopt); }
};

}  // namespace

TEST(DateSerialTest, CountsDaysFromTheZeroDateBothWays) {
    struct Case { int y, m, d; double serial; };
    const Case cases[] = {
        {1899, 12, 30, 0},    {1900, 1, 1, 2},          {2000, 1, 1, 36526},  {2024, 3, 5, 45356},
        {1899, 12, 1, -29},   {1800, 1, 1, -36522},     {100, 1, 1, -657434}, {9999, 12, 31, 2958465},
        {2024, 13, 1, 45658}, {2024, 3, 0, 45351},      {2024, 0, 1, 45261},  {2023, 2, 29, 44986},
    };
    for (const auto& c : cases) EXPECT_EQ(DateSerial(c.y, c.m, c.d), c.serial) << c.y << "-" << c.m << "-" << c.d;
}

TEST(DateSerialTest, SplitsNegativeSerialsWithTheTimeCountedForward) {
    const DateParts p = SplitDate(-1.25);
    EXPECT_EQ((std::array{p.year, p.month, p.day, p.hour, p.minute, p.second}), (std::array{1899, 12, 29, 6, 0, 0}));
    const DateParts q = SplitDate(45356 + k1430);
    EXPECT_EQ((std::array{q.year, q.month, q.day, q.hour, q.minute, q.second}), (std::array{2024, 3, 5, 14, 30, 0}));
    const DateParts r = SplitDate(45356.99999999);  // under half a second before midnight
    EXPECT_EQ((std::array{r.month, r.day, r.hour}), (std::array{3, 6, 0}));
}

TEST(DateSerialTest, WeekdaysLeapYearsAndTheRange) {
    EXPECT_EQ(Weekday(0), 7);   // 30/12/1899, a Saturday: weeks start on Sunday
    EXPECT_EQ(Weekday(-2), 5);  // 28/12/1899, a Thursday
    EXPECT_EQ((std::array{ValidDate(1900, 2, 29), ValidDate(2000, 2, 29), ValidDate(99, 12, 31), ValidDate(10000, 1, 1)}),
              (std::array{false, true, false, false}));
    EXPECT_EQ(errorOf([] { SplitDate(NAN); }), 6);
    EXPECT_EQ(errorOf([] { DateText(1e300); }), 6);
}

TEST(DateTextTest, ShowsDateTimeOrBoth) {
    struct Case { double serial; const char* text; const char* iso; };
    const Case cases[] = {
        {0, "00.00.00", "1899-12-30"},
        {45356, "05/03/2024", "2024-03-05"},
        {k1430, "14.30.00", "1899-12-30 14:30:00"},
        {45356 + k1430, "05/03/2024 14.30.00", "2024-03-05 14:30:00"},
        {-1.25, "29/12/1899 06.00.00", "1899-12-29 06:00:00"},
        {-657434, "01/01/0100", "0100-01-01"},
        {2958465 + 86399.0 / 86400, "31/12/9999 23.59.59", "9999-12-31 23:59:59"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DateText(c.serial), c.text) << c.serial;
        EXPECT_EQ(DateToIso(c.serial), c.iso) << c.serial;
        auto back = DateFromIso(c.iso);
        ASSERT_TRUE(back.has_value()) << c.iso;
        EXPECT_NEAR(*back, c.serial, 1e-9) << c.iso;
    }
}

TEST(DateTextTest, IsoReaderRefusesWhatItDoesNotWrite) {
    for (const char* bad : {"", "2024-3-5", "2024-02-30", "05/03/2024", "2024-03-05 25:00:00", "2024-03-05x",
                            "2024-03-05 14.30.00", "20240305"})
        EXPECT_FALSE(DateFromIso(bad).has_value()) << bad;
}

// Texts typed by the user are read day first; the dialect's #...# literals month first.
TEST_F(FixedClock, ParseDateTextReadsTheItalianShortDateAndLiteralsMonthFirst) {
    struct Case { const char* text; std::optional<double> serial; bool literal = false; };
    const Case cases[] = {
        {" 5/3/2024 ", 45356},
        {"5/3", 45356},                      // this year, from the clock
        {"05/03/2024 14.30.00", 45356 + k1430},
        {"14.30", k1430},
        {"2.30 PM", k1430},
        {"12/25/2024", 45651},               // no 25th month: read the other way round
        {"2024-03-05", 45356},
        {"1/1/29", 47119},                   // 2029
        {"1/1/30", 10959},                   // 1930
        {"29/12/1899 06.00", -1.25},
        {"martedì 5 marzo 2024", 45356},
        {"05-mar-24", 45356},
        {"marzo 2024", 45352},
        {"5 marzo 2024 14.30", 45356 + k1430},
        {"5 foo 2024", std::nullopt},
        {"marzo", std::nullopt},
        {"29/02/2023", std::nullopt},
        {"", std::nullopt},
        {"25.00", std::nullopt},
        {"14.60", std::nullopt},
        {"31/12/2024 14.30 15.00", std::nullopt},
        {"5", std::nullopt},
        {"1/2-2024", std::nullopt},
        {"5-Mar-2024", 45356, true},  // a named month is the month whatever the order
        {"12/31/2024 2:30 PM", 45657 + k1430, true},
        {"12/31/2024 12:00 AM", 45657, true},
        {"31/31/2024", std::nullopt, true},
        {"13:30 PM", std::nullopt, true},
    };
    for (const auto& c : cases) {
        const std::optional<double> got = c.literal ? ParseDateLiteral(c.text) : ParseDateText(c.text);
        ASSERT_EQ(got.has_value(), c.serial.has_value()) << c.text;
        if (got) {
            EXPECT_NEAR(*got, *c.serial, 1e-9) << c.text;
        }
    }
}

TEST(NumberTest, ParseNumberTextUsesTheDecimalComma) {
    struct Case { const char* text; std::optional<double> value; };
    const Case cases[] = {
        {"1.5", 15},          {"1.234,5", 1234.5}, {" -3 ", -3},     {"&HFFFF", -1},    {"&H10000", 65536},
        {"&O17", 15},         {"-€ 1.234,50", -1234.5}, {"12,50 €", 12.5}, {"€", std::nullopt},
        {"2,5E-1", 0.25},     {",5", 0.5},         {"1.", 1},        {"  ", std::nullopt}, {"1,2,3", std::nullopt},
        {",", std::nullopt},  {"1e", std::nullopt}, {"&HG", std::nullopt}, {"1 2", std::nullopt}, {"--1", std::nullopt},
        {"1e999", std::nullopt},
    };
    for (const auto& c : cases) {
        auto got = ParseNumberText(c.text);
        ASSERT_EQ(got.has_value(), c.value.has_value()) << c.text;
        if (got) {
            EXPECT_DOUBLE_EQ(*got, *c.value) << c.text;
        }
    }
    EXPECT_FALSE(ParseNumberText(std::string(10000, 'x')).has_value());
    EXPECT_EQ(ParseNumberText(std::string(300, '1')).has_value(), true);
}

TEST(NumberTest, NumberTextShowsFifteenSignificantDigits) {
    struct Case { double value; const char* text; };
    const Case cases[] = {
        {2.5, "2,5"},           {-3, "-3"},        {0.1 + 0.2, "0,3"},       {1.0 / 3, "0,333333333333333"},
        {1e15, "1E+15"},        {123456789012345, "123456789012345"},    {0.0001, "0,0001"},
        {0.00001, "1E-05"},     {-0.0, "0"},       {1234.5, "1234,5"},       {1.5e20, "1,5E+20"},
    };
    for (const auto& c : cases) EXPECT_EQ(NumberText(c.value), c.text) << c.value;
}

TEST(NumberTest, RoundGoesHalfToEvenOnTheScaledDouble) {
    struct Case { double x; int digits; double expected; };
    const Case cases[] = {
        {2.5, 0, 2},       {3.5, 0, 4},         {-2.5, 0, -2},         {0.5, 0, 0},
        {2.675, 2, 2.68},  {1.005, 2, 1},       {0.125, 2, 0.12},      {-0.125, 2, -0.12},
        {1234.5678, 2, 1234.57}, {0.135, 2, 0.14}, {1e300, 2, 1e300}, {-0.4, 0, 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Round(c.x, c.digits), c.expected) << c.x << " to " << c.digits;
    EXPECT_FALSE(std::signbit(Round(-0.4)));
    EXPECT_EQ(errorOf([] { Round(1, -1); }), 5);
}

TEST(NumberTest, ValReadsOnlyThePoint) {
    struct Case { const char* text; double value; };
    const Case cases[] = {
        {"1,5", 1}, {" 1 2 ", 12}, {"", 0}, {"3.7abc", 3.7}, {"1.2.3", 1.2}, {"2e", 2},
        {"  -  4", -4}, {"1D2", 100}, {"&O19", 1}, {"&HFFZ", 255}, {"1e-400", 0},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(Val(c.text), c.value) << c.text;
    EXPECT_EQ(errorOf([] { Val("1e400"); }), 6);
}

TEST(ValueConversionTest, IntegersRoundHalfToEvenAndOverflow) {
    struct Case { Value v; int expected; };
    const Case cases[] = {
        {Value::Double(2.5), 2}, {Value::Double(3.5), 4}, {Value::Double(-2.5), -2}, {Value::Text("2,5"), 2},
        {Value::Text("1.5"), 15}, {Value::Bool(true), -1}, {Value::Date(45356.75), 45357},
    };
    for (const auto& c : cases) EXPECT_EQ(CLng(c.v), c.expected) << kindName(c.v.kind());
    EXPECT_EQ(CInt(Value::Double(32767.4)), 32767);
    EXPECT_EQ(errorOf([] { CInt(Value::Double(32767.5)); }), 6);
    EXPECT_EQ(errorOf([] { CLng(Value::Double(2147483647.5)); }), 6);
    EXPECT_EQ(CLng(Value::Double(-2147483648.0)), INT32_MIN);
    EXPECT_EQ(errorOf([] { CLng(Value::Double(NAN)); }), 6);
    EXPECT_EQ(errorOf([] { CInt(Value::Double(-INFINITY)); }), 6);
}

TEST(ValueConversionTest, NullAndEmptyTextAreErrors) {
    EXPECT_EQ(errorOf([] { CDbl(Value::Null()); }), 94);
    EXPECT_EQ(errorOf([] { CLng(Value::Null()); }), 94);
    EXPECT_EQ(errorOf([] { CStr(Value::Null()); }), 94);
    EXPECT_EQ(errorOf([] { CDate(Value::Null()); }), 94);
    EXPECT_EQ(errorOf([] { CDbl(Value::Text("")); }), 13);
    EXPECT_EQ(errorOf([] { CDate(Value::Text("")); }), 13);
    EXPECT_EQ(errorOf([] { CDbl(Value::Text("31/12/2024")); }), 13);
    EXPECT_EQ(errorOf([] { CBool(Value::Text("forse")); }), 13);
    EXPECT_EQ(errorOf([] { CDate(Value::Double(1e7)); }), 6);
}

TEST(ValueConversionTest, IsNumericAndIsDateAgreeWithTheConversions) {
    struct Case { Value v; bool numeric, date; };
    const Case cases[] = {
        {Value::Text("1.5"), true, true},       // also a time, 01.05
        {Value::Text("1,5"), true, false},
        {Value::Text("31/12/2024"), false, true},
        {Value::Text("0.00.00"), true, true},      // points are skipped: 0
        {Value::Text(""), false, false},
        {Value::Text("abc"), false, false},
        {Value::Null(), false, false},
        {Value::Long(3), true, false},
        {Value::Bool(false), true, false},
        {Value::Date(45356), false, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsNumeric(c.v), c.numeric) << CStr(c.v.isNull() ? Value::Text("Null") : c.v);
        EXPECT_EQ(IsDate(c.v), c.date) << CStr(c.v.isNull() ? Value::Text("Null") : c.v);
        if (c.v.kind() == Value::Kind::Text) {
            EXPECT_EQ(errorOf([&] { CDbl(c.v); }) == 0, c.numeric);
            EXPECT_EQ(errorOf([&] { CDate(c.v); }) == 0, c.date);
        }
    }
}

TEST(ValueConversionTest, BooleansAsItalianWordsAndDateValueDropsTheTime) {
    EXPECT_FALSE(CBool(Value::Text("FALSO")));
    EXPECT_TRUE(CBool(Value::Text("0,5")));
    EXPECT_EQ(CStr(Value::Bool(false)), "Falso");
    EXPECT_EQ(ConcatText(Value::Bool(false)), "Falso");
    EXPECT_EQ((std::array{DateValue(Value::Text("31/12/2024 14.30")), DateValue(Value::Date(45356 + k1430)),
                          DateValue(Value::Date(-1.25)), DateValue(Value::Text("14.30"))}),
              (std::array{45657.0, 45356.0, -1.0, 0.0}));
}

TEST(CompareTextTest, IgnoresCaseAndTrailingBlanksButNotAccents) {
    struct Case { const char* a; const char* b; int sign; };
    const Case cases[] = {
        {"a", "à", -1},   {"abc", " abc", 1}, {"ab", "abc", -1},        {"àncora", "banca", -1},
        {"àb", "ac", -1}, {"", " ", 0},       {"Œuvre", "œuvre", 0},    {"\xFF", "z", 1},
    };
    const auto sign = [](int v) { return (v > 0) - (v < 0); };
    for (const auto& c : cases) {
        EXPECT_EQ(sign(CompareText(c.a, c.b)), c.sign) << c.a << " vs " << c.b;
        EXPECT_EQ(sign(CompareText(c.b, c.a)), -c.sign) << c.b << " vs " << c.a;
    }
}

TEST(LikeTest, Wildcards) {
    struct Case { const char* text; const char* pattern; bool match; };
    const Case cases[] = {
        {"", "?", false},           {"A1x", "A##", false},       {"a[b", "a[[]b", true},    {"[x]", "[[]x]", true},
        {"a", "à", false},          {"città", "citt?", true},    {"-", "[a-]", true},       {"ab", "[]ab", true},
        {"aaa", "*a*a*a*a*", false}, {"aXbXc", "*x*x*", true},
    };
    for (const auto& c : cases) EXPECT_EQ(LikeMatch(c.text, c.pattern), c.match) << c.text << " Like " << c.pattern;
}

TEST(LikeTest, BrokenPatternsAreAnErrorAndLongTextsAreFine) {
    EXPECT_EQ(errorOf([] { LikeMatch("a", "[abc"); }), 93);
    EXPECT_EQ(errorOf([] { LikeMatch("a", "[z-a]"); }), 93);
    const std::string longText(10000, 'a');
    EXPECT_TRUE(LikeMatch(longText, "*a*a*a*"));
    EXPECT_FALSE(LikeMatch(longText, "*a*b*"));
    EXPECT_TRUE(LikeMatch("\xFF\xC3", "??"));
}

TEST(Cp1252Test, ConvertsBothWays) {
    EXPECT_EQ(Utf8ToCp1252("città €"), "citt\xE0 \x80");
    EXPECT_EQ(Utf8ToCp1252("Œ—…"), "\x8C\x97\x85");
    EXPECT_EQ(Utf8ToCp1252("漢x"), "?x");
    EXPECT_EQ(Utf8ToCp1252("a\xFF\xC3"), "a??");
    EXPECT_EQ(Utf8ToCp1252("\xED\xA0\x80"), "???");  // a UTF-16 surrogate is no character
    EXPECT_EQ(Cp1252ToUtf8("Perch\xE9 \x80"), "Perché €");
    std::string everyByte;
    for (int b = 1; b < 256; ++b) everyByte += static_cast<char>(b);
    EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(everyByte)), everyByte);
}

TEST(FormatTest, NumberMasks) {
    struct Case { double x; const char* mask; const char* text; };
    const Case cases[] = {
        {4.5, "00", "05"},                 {-3, "00", "-03"},                {12345, "0000", "12345"},
        {-1234.5, "#,0.00", "-1.234,50"},  {1234567.891, "#,##0.00", "1.234.567,89"},
        {0.045, "0.00%", "4,50%"},         {-0.5, "00", "-01"},              {2.5, "00", "03"},
        {1.005, "#,0.00", "1,01"},         {999.995, "#,0.00", "1.000,00"},  {0, "0#", "00"},
        {123, "0#", "123"},                {-0.001, "#,0.00", "0,00"},
        {1e15, "#,0.00", "1.000.000.000.000.000,00"},
        {0.5, "#.##", ",5"},               {5, "#.##", "5,"},                {0, "#", ""},
        {1234567, "0,", "1235"},           {-5, "0;(0)", "(5)"},             {0, "0;(0);\"zero\"", "zero"},
        {5, "0;(0);\"zero\"", "5"},        {12.5, "\"€ \"#,0.00", "€ 12,50"}, {3, "0\\%", "3%"},
        {0.5, "Percent", "50,00%"},        {-2.5, "Fixed", "-2,50"},         {1234.5, "Currency", "€ 1.234,50"},
        {0, "Yes/No", "No"},               {-1, "True/False", "Vero"},
        {1234, "Scientific", "1,23E+03"},  {1234, "00-00", "12-34"},         {123456, "00-00", "1234-56"},
        {56, "0 0 0", "0 5 6"},            {1.5, ".00", "1,50"},             {7, "(000)", "(007)"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format(Value::Double(c.x), c.mask), c.text) << c.x << " " << c.mask;
}

TEST(FormatTest, DateMasks) {
    struct Case { const char* mask; const char* text; };
    const Case cases[] = {
        {"mm/dd/yyyy", "03/05/2024"}, {"mmm", "mar"},               {"hh:nn:ss", "14.30.05"}, {"hh:mm", "14.30"},
        {"d/m/yy", "5/3/24"},         {"dddd", "martedì"},          {"ddd", "mar"},        {"ww", "10"},
        {"w", "3"},                   {"q", "1"},                   {"y", "65"},           {"DD/MM/YYYY", "05/03/2024"},
        {"\\d\\d dd", "dd 05"},       {"\"giorno\" d", "giorno 5"}, {"Short Date", "05/03/2024"},
        {"Long Date", "martedì 5 marzo 2024"},                      {"Short Time", "14.30"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format(Value::Date(kMarch5), c.mask), c.text) << c.mask;
    EXPECT_EQ(Format(Value::Date(-1.25), "dd/mm/yyyy hh.nn"), "29/12/1899 06.00");
    EXPECT_EQ(Format(Value::Date(45657), "mmmm yyyy"), "dicembre 2024");
    EXPECT_EQ(errorOf([] { MonthName(13); }), 5);
}

TEST(FormatTest, ValuesOfEveryKind) {
    struct Case { Value v; const char* mask; const char* text; };
    const Case cases[] = {
        {Value::Null(), "#,0.00", ""},              {Value::Null(), "0;0;0;\"vuoto\"", "vuoto"},
        {Value::Date(45356), "", "05/03/2024"},
        {Value::Date(14.5 / 24), "", "14.30.00"},   {Value::Double(2.5), "", "2,5"},
        {Value::Bool(true), "", "Vero"},            {Value::Bool(true), "00", "-01"},
        {Value::Double(45356), "dd/mm/yyyy", "05/03/2024"},  {Value::Date(45356), "0", "45356"},
        {Value::Text("31/12/2024"), "yyyy", "2024"}, {Value::Text("abc"), "#,0.00", "abc"},
        {Value::Text("1234,5"), "#,0.00", "1.234,50"}, {Value::Text("abc"), "dd/mm/yyyy", "abc"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format(c.v, c.mask), c.text) << c.mask;
}

TEST(FormatTest, WhatFormatWritesReadsBack) {
    for (const char* mask : {"Long Date", "Medium Date", "Short Date", "dd/mm/yyyy", "d mmmm yyyy"})
        EXPECT_EQ(ParseDateText(Format(Value::Date(45356), mask)), 45356.0) << mask;
    for (const char* mask : {"#,0.00", "Currency", "0.000", "Standard"})
        EXPECT_EQ(ParseNumberText(Format(Value::Double(-1234.5), mask)), -1234.5) << mask;
}

TEST(FormatTest, FormatNumberRoundsHalfAwayAndGroups) {
    EXPECT_EQ(FormatNumber(1234.5), "1.234,50");
    EXPECT_EQ(FormatNumber(0.125), "0,13");
    EXPECT_EQ(FormatNumber(-0.125), "-0,13");
    EXPECT_EQ(FormatNumber(-1234.5, 0, false), "-1235");
    EXPECT_EQ(FormatNumber(0.5, 0), "1");
    EXPECT_EQ(FormatNumber(1234.5678, 3), "1.234,568");
    EXPECT_EQ(FormatNumber(-0.004), "0,00");
    EXPECT_EQ(FormatNumber(1e6, -1), "1.000.000,00");
    EXPECT_EQ(errorOf([] { FormatNumber(1, -2); }), 5);
    EXPECT_EQ(errorOf([] { FormatNumber(NAN); }), 6);
}

TEST(FormatTest, OddMasksAndValuesDoNotBreakIt) {
    EXPECT_EQ(Format(Value::Double(1), std::string(10000, '0')).size(), 10000u);
    EXPECT_FALSE(Format(Value::Date(45356), std::string(10000, 'd')).empty());
    EXPECT_EQ(Format(Value::Double(5), "\xFF\xC3 0"), "\xFF\xC3 5");
    EXPECT_EQ(Format(Value::Double(5), "\"unterminated"), "unterminated");
    EXPECT_EQ(Format(Value::Double(5), "0\\"), "5");
    EXPECT_EQ(errorOf([] { Format(Value::Double(NAN), "0"); }), 6);
    EXPECT_EQ(errorOf([] { Format(Value::Double(1e300), "yyyy"); }), 6);
    EXPECT_EQ(Format(Value::Double(1e300), "0").size(), 301u);
}
