// Expressions of the dialect, evaluated for real on SQLite: operators and precedence, Null rules,
// text comparison, Like, dates, functions. Answers worked out by hand from jet-dialect.md.
#include <gtest/gtest.h>

#include <clocale>

#include "sql_support.h"
#include "store/clock.h"
#include "store/sql/ast.h"

using sqltest::TestDb;

namespace {

struct Case {
    const char* expr;
    const char* expected;  // as sqltest::show() writes the one value
};

class SqlExpr : public ::testing::Test {
protected:
    void SetUp() override { store::fissaOrologio(store::DateSerial(2024, 3, 5) + 0.5); }
    void TearDown() override { store::fissaOrologio(std::nullopt); }
    void check(const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            SCOPED_TRACE(c.expr);
            try {
                EXPECT_EQ(db.one(c.expr), c.expected);
            } catch (const std::exception& e) {
                ADD_FAILURE() << e.what();
            }
        }
    }
    TestDb db;
};

TEST_F(SqlExpr, OperatorsAndPrecedence) {
    check({
        {"'a' & 1 + 2", "a3"},
        {"2 + 3 * 4", "14"},
        {"2 ^ 3 ^ 2", "64"},
        {"-2 ^ 2", "-4"},
        {"10 \\ 3", "3"},
        {"10 Mod 3", "1"},
        {"-7 Mod 3", "-1"},
        {"7 Mod -3", "1"},
        {"2.5 \\ 1", "2"},
        {"3.5 \\ 1", "4"},
        {"5.5 Mod 3", "0"},
        {"7 / 2", "3.5"},
        {"1 + 2 & 3", "33"},
        {"10 - 2 - 3", "5"},
        {"8 / 2 / 2", "2"},
        {"2 * 3 Mod 4", "2"},
        {"7 \\ 2 * 2", "1"},
        {"1 < 2", "True"},
        {"1 = 2", "False"},
        {"1 < 2 = True", "True"},
        {"Not 1 = 2", "True"},
        {"Not 0", "-1"},
        {"True And False", "False"},
        {"True Or False", "True"},
        {"True Xor True", "False"},
        {"5 And 3", "1"},
        {"5 Or 3", "7"},
        {"True", "True"},
        {"-True", "1"},
        {"1 + True", "0"},
        {"True Or False And False", "True"},
        {"False Imp True Eqv False", "True"},
        {"True Xor Null", "Null"},
        {"1 = 1 And 2 = 2 And 3 = 3", "True"},
        {"1 = 2 Or 2 = 3 Or 3 = 3", "True"},
        {"Not 1 = 1 Or 2 = 2", "True"},
        {"12 Xor 10", "6"},
        {"Not 5", "-6"},
        {"2 In (1, 2, 3)", "True"},
        {"'B' In ('a', 'b')", "True"},
        {"5 Between 1 And 5", "True"},
        {"5 Not Between 1 And 4", "True"},
    });
}

TEST_F(SqlExpr, NullRules) {
    check({
        {"Null & 'a'", "a"},
        {"'a' & Null", "a"},
        {"Null & Null", "Null"},
        {"Null + 1", "Null"},
        {"Null = Null", "Null"},
        {"Not Null", "Null"},
        {"IsNull(Null)", "True"},
        {"IsNull(1)", "False"},
        {"Null Is Null", "True"},
        {"1 Is Not Null", "True"},
        {"Null And False", "False"},
        {"Null Or True", "True"},
        {"Null And True", "Null"},
        {"IIf(Null, 'y', 'n')", "n"},
        {"IIf(1 = 1, 'y', 'n')", "y"},
        {"IIf(True, 1, 1 / 0)", "1"},
        {"Year(Null)", "Null"},
        {"Len(Null)", "Null"},
        {"Null Like 'a'", "Null"},
    });
}

TEST_F(SqlExpr, TextJoinAndPlus) {
    check({
        {"'a' + 'b'", "ab"},
        {"'1' + 2", "3"},
        {"'1,5' + 1", "2.5"},
        {"2.5 & ''", "2,5"},
        {"#03/05/2024# & ''", "05/03/2024"},
        {"#01/01/0100# & ''", "01/01/0100"},
        {"'x' & 1 / 4", "x0,25"},
        {"\"say \"\"hi\"\"\"", "say \"hi\""},
        {"'it''s'", "it's"},
    });
}

TEST_F(SqlExpr, TextComparison) {
    check({
        {"'abc' = 'ABC'", "True"},
        {"'abc' = 'abc   '", "True"},
        {"'a' < 'B'", "True"},
        {"'10' < '9'", "True"},
    });
}

TEST_F(SqlExpr, Like) {
    check({
        {"'Rossi' Like '*oss*'", "True"},
        {"'Rossi' Like '*OSS*'", "True"},
        {"'Rossi' Like 'R?ssi'", "True"},
        {"'Rossi' Like 'R#ssi'", "False"},
        {"'R1ssi' Like 'R#ssi'", "True"},
        {"'b' Like '[abc]'", "True"},
        {"'d' Like '[!abc]'", "True"},
        {"'m' Like '[a-z]'", "True"},
        {"'a*b' Like 'a[*]b'", "True"},
        {"'axb' Like 'a[*]b'", "False"},
        {"'50%' Like '50%'", "True"},
        {"'500' Like '50%'", "False"},
        {"'a_b' Like 'a_b'", "True"},
        {"'' Like '**'", "True"},
        {"'abc ' Like 'abc'", "False"},
        {"'x' Not Like 'y'", "True"},
    });
}

TEST_F(SqlExpr, DatesAndLiterals) {
    check({
        {"#05/03/2024#", "d:2024-05-03"},
        {"#25/03/2024#", "d:2024-03-25"},
        {"#2024-03-05#", "d:2024-03-05"},
        {"#14:30#", "d:1899-12-30 14:30:00"},
        {"DateValue('31/12/2024')", "d:2024-12-31"},
        {"DateValue(#12/31/2024 10:30#)", "d:2024-12-31"},
        {"Year(#12/31/2024#)", "2024"},
        {"Month(#12/31/2024#)", "12"},
        {"Day(#12/31/2024#)", "31"},
        {"DatePart('m', #12/31/2024#)", "12"},
        {"DatePart('yyyy', #12/31/2024#)", "2024"},
        {"DatePart('ww', #01/06/2024#)", "1"},
        {"DatePart('ww', #01/07/2024#)", "2"},
        {"DatePart('q', #05/15/2024#)", "2"},
        {"DatePart('w', #03/05/2024#)", "3"},
        {"DateDiff('d', #01/01/2024#, #03/01/2024#)", "60"},
        {"DateDiff('d', '01/01/2024', #01/02/2024 23:00#)", "1"},
        {"DateAdd('m', 1, #01/31/2024#)", "d:2024-02-29"},
        {"DateAdd('d', 1, #12/31/2024#)", "d:2025-01-01"},
        {"#01/02/2024# - #01/01/2024#", "1"},
        {"#01/01/2024# + 1", "d:2024-01-02"},
        {"Now", "d:2024-03-05 12:00:00"},
        {"Date()", "d:2024-03-05"},
        {"#03/05/2024# = '05/03/2024'", "True"},
        {"DateValue('05/03/2024') = #03/05/2024#", "True"},
    });
}

TEST_F(SqlExpr, Functions) {
    check({
        {"Round(2.5)", "2"},
        {"Round(0.125, 2)", "0.12"},
        {"CDbl('1.234,5')", "1234.5"},
        {"CLng(2.5)", "2"},
        {"CInt(3.5)", "4"},
        {"CStr(2.5)", "2,5"},
        {"Val('1,5')", "1"},
        {"IsNumeric('12,5')", "True"},
        {"IsNumeric('abc')", "False"},
        {"IsNumeric(Null)", "False"},
        {"IsDate('31/12/2024')", "True"},
        {"LCase('AbC')", "abc"},
        {"UCase('àbc')", "ÀBC"},
        {"Trim('  a  ')", "a"},
        {"LTrim('  a ')", "a "},
        {"RTrim(' a  ')", " a"},
        {"Left('abcdef', 2)", "ab"},
        {"Right('abcdef', 2)", "ef"},
        {"Mid('abcdef', 2, 3)", "bcd"},
        {"Mid('abcdef', 4)", "def"},
        {"Len('città')", "5"},
        {"InStr('abcabc', 'ca')", "3"},
        {"InStr(4, 'abcabc', 'b')", "5"},
        {"InStr('abc', 'x')", "0"},
        {"Int(-2.5)", "-3"},
        {"Fix(-2.5)", "-2"},
        {"Abs(-3)", "3"},
        {"Format(1234.5, '#,0.00')", "1.234,50"},
        {"CDate('31/12/2024')", "d:2024-12-31"},
        {"IIf(1 > 2, 'a', 3)", "3"},
    });
}

TEST_F(SqlExpr, NumberLiterals) {
    check({
        {"1.5", "1.5"},
        {"1 + .5", "1.5"},
        {"1.", "1"},
        {"1.5E-3", "0.0015"},
        {"2147483648", "2147483648"},
        {"1e-400", "0"},
    });
    EXPECT_EQ(db.error("SELECT 1e400"), 6);  // out of a double's range: Overflow, not silently zero
}

// The literal must not depend on the decimal separator of the C locale the program may have set.
TEST(SqlNumberLocale, ItalianLocaleReadsThePoint) {
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    if (!std::setlocale(LC_NUMERIC, "it_IT.UTF-8")) GTEST_SKIP() << "locale it_IT.UTF-8 not installed";
    const std::string text = "SELECT 1.5";
    std::vector<store::sql::detail::Token> tokens;
    store::sql::detail::lex(text, tokens);
    const double parsed = store::sql::detail::parse(text, tokens).select->cores[0].items[0].expr->num;
    TestDb db;
    const store::Value run = db.run(text).rows.at(0).at(0);
    std::setlocale(LC_NUMERIC, previous.c_str());
    EXPECT_EQ(parsed, 1.5);
    EXPECT_EQ(run.number(), 1.5);
}

// Arithmetic over columns that repeats its parts goes to SQLite as one call evaluating each part once:
// the same values, Nulls and errors as operator by operator.
TEST_F(SqlExpr, ArithmeticOverColumnsWrittenAsOneCall) {
    db.table("N", {"ID:L", "D:D", "L:L", "C:C"});
    db.raw("INSERT INTO N VALUES (1, 12.5, 4, 3), (2, NULL, 2, 1), (3, 1e300, 7, 0)");
    const struct {
        int row;
        const char* expr;
        const char* expected;  // or the error number
        int error;
    } cases[] = {
        {1, "D - D/5*L - (D - D/5*L)/5*L", "0.5", 0},  // 12.5 less 10 is 2.5, less 2
        {1, "(D - D/5*L) - (D - D/5*L)/5*C", "1", 0},
        {1, "D/4 + D/2 + D/4", "12.5", 0},  // equal literals share one value, different ones do not
        {2, "D*L + L*L", "Null", 0},
        {2, "D/(C-1) + D/(C-1)", "Null", 0},  // Null before the zero divisor: Null, as / gives
        {2, "L/(C-1) + L/(C-1)", nullptr, 11},
        {3, "D*D - D*D", nullptr, 6},  // infinity less infinity: overflow, not the Null of NaN
        {3, "D/L*L + L*L*L", "1e+300", 0},
    };
    for (const auto& c : cases) {
        const std::string sql = "SELECT " + std::string(c.expr) + " FROM N WHERE ID=" + std::to_string(c.row);
        SCOPED_TRACE(sql);
        if (c.error) {
            EXPECT_EQ(db.error(sql), c.error);
            continue;
        }
        EXPECT_EQ(db.run(sql).text(), c.expected);
        EXPECT_NE(db.run(sql).t.sql.find("jet_calc("), std::string::npos);
    }
    // A translation kept for a shape serves only statements whose literals are equal in the same places.
    EXPECT_EQ(db.run("SELECT D/4 + D/4 + D/4 FROM N WHERE ID=1").text(), "9.375");
    EXPECT_EQ(db.run("SELECT D/4 + D/2 + D/4 FROM N WHERE ID=1").text(), "12.5");
    EXPECT_EQ(db.run("SELECT D/5 + D/2 + D/4 FROM N WHERE ID=1").text(), "11.875");
}

TEST_F(SqlExpr, RuntimeErrors) {
    const std::pair<const char*, int> cases[] = {{"1 / 0", 11}, {"1 \\ 0", 11}, {"5 Mod 0", 11}, {"CDbl('abc')", 13},
                                                 {"CDbl(Null)", 94}, {"CLng(3000000000)", 6}, {"DatePart('zz', #01/01/2024#)", 5}};
    for (const auto& [expr, error] : cases) EXPECT_EQ(db.error(std::string("SELECT ") + expr), error) << expr;
}

}  // namespace
