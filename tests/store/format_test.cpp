// Format and FormatNumber under the Italian locale; the expected texts are worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "convert_support.h"
#include "store/convert.h"
#include "store/format.h"

using namespace store;

namespace {

// 05/03/2024 14:30:05, a Tuesday in the tenth week (weeks start on Sunday, 01/01/2024 was a Monday).
const double kMarch5 = 45356 + (14 * 3600 + 30 * 60 + 5) / 86400.0;

}  // namespace

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
    for (const char* mask : {"Long Date", "Medium Date", "Short Date", "dd/mm/yyyy", "d mmmm yyyy"}) {
        const auto back = ParseDateText(Format(Value::Date(45356), mask));
        ASSERT_TRUE(back.has_value()) << mask;
        EXPECT_EQ(*back, 45356) << mask;
    }
    for (const char* mask : {"#,0.00", "Currency", "0.000", "Standard"}) {
        const auto back = ParseNumberText(Format(Value::Double(-1234.5), mask));
        ASSERT_TRUE(back.has_value()) << mask;
        EXPECT_EQ(*back, -1234.5) << mask;
    }
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
