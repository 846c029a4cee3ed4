// Nothing crashes or hangs on any input: long texts, deep nesting, NUL bytes, invalid UTF-8.
// Each input either translates (and then runs) or is refused with the engine's error. Inputs whose
// only rule is not to crash live in the fuzz corpus (fuzz/corpus/engine), run by scripts/test.sh.
#include <gtest/gtest.h>

#include "convert_support.h"
#include "sql_support.h"

using sqltest::TestDb;

namespace {

class SqlRobust : public ::testing::Test {
protected:
    void SetUp() override {
        db.table("T", {"ID:L", "Nome:S50", "Valore:D", "Quando:T", "Si:B"});
        db.raw("INSERT INTO T VALUES (1,'a',1.5,'2024-01-01',-1),(2,'b',NULL,NULL,0)");
    }
    // 0 when it ran, else the engine's error number; never anything else
    int outcome(const std::string& text) {
        try {
            db.run(text);
            return 0;
        } catch (const store::JetError& e) {
            EXPECT_GT(e.number(), 0);
            return e.number();
        }
    }
    TestDb db;
};

TEST_F(SqlRobust, DeepNestingIsTooComplex) {
    for (int n : {150, 250, 1000, 100000}) {
        SCOPED_TRACE(n);
        const std::string open(static_cast<std::size_t>(n), '('), close(static_cast<std::size_t>(n), ')');
        EXPECT_EQ(outcome("Select " + open + "1" + close + " from T"), n <= 150 ? 0 : 3360);
        std::string nots, sub;
        for (int i = 0; i < n; ++i) nots += "Not ";
        for (int i = 0; i < std::min(n, 5000); ++i) sub += "(Select * from ";
        // refused or run, never a crash
        outcome("Select * from T where " + open + "ID=1" + close);
        outcome("Select * from T where " + nots + "Si");
        outcome("Select " + std::string(static_cast<std::size_t>(n), '-') + "1 from T");
        outcome("Select * from " + sub + "T" + std::string(static_cast<std::size_t>(std::min(n, 5000)), ')'));
    }
    // Each negated date is a call nested in the argument of the next: shallow in the statement,
    // too deep for SQLite's parser once translated.
    EXPECT_EQ(outcome("Select Abs(" + std::string(36, '-') + "#12/31/9999# - 1 * 10) from T"), 3360);
    EXPECT_EQ(outcome("Select Abs(" + std::string(8, '-') + "#12/31/2024# - 1 * 10) from T"), 0);
}

// Values past what a Double or a date holds raise Overflow (6) wherever they arise, as the
// platform does. The dialect's text functions, also in their text form (Left$), are functions: an
// unknown one is error 3085, never a syntax error.
TEST_F(SqlRobust, OverflowAndTextFunctions) {
    const std::pair<std::string, int> cases[] = {
        {"Select " + std::string(400, '9') + " from T", 6},
        {"Select 0.0e999 from T", 0},
        {"Select 1e308 * 10 from T", 6},
        {"Select Abs(1e308 * 10) from T", 6},
        {"Select Sum(1e308) from T", 6},
        {"Select Valore - 1e308 - 1e308 from T", 6},
        {"Insert Into T (ID, Valore) Values (9, 1e308 * 10)", 6},
        {"Insert Into T (ID, Quando) Values (9, #12/31/9999# + 1)", 6},
        {"Update T Set Quando = Quando - 800000", 6},
        {"Insert Into T (ID, Quando) Values (9, #12/31/9999#)", 0},
        {"Select StrReverse('ab') from T", 3085},
        {"Select Left$(Nome, 1) & Trim$(Nome) & Chr$(65) from T", 0},
        {"Select Asc$('a') from T", 3085},
        {"Select Foo$(1) from T", 3085},
    };
    for (const auto& [sql, error] : cases) EXPECT_EQ(outcome(sql), error) << sql;
    EXPECT_EQ(db.rows("Select Asc('A') & Chr(66) from T where ID=1"), "65B");
}

// Bounds on one statement give error 3360 instead of unbounded work; below them a long In list and
// many unknown names answer (their speed is measured in the translator benchmark).
TEST_F(SqlRobust, StatementBoundsAndLongLists) {
    auto list = [](const std::string& head, int n, const std::string& item, const std::string& tail,
                   const std::string& after = "") {
        std::string s = head;
        for (int i = 0; i < n; ++i) s += (i ? "," : "") + item + std::to_string(i) + after;
        return s + tail;
    };
    EXPECT_EQ(db.rows(list("Select ID from T where ID In (", 100000, "", ") order by ID")), "1;2");
    EXPECT_EQ(db.rows(list("Select ID from T where Nome In (", 1000, "'x", ") or Nome = 'b'", "'")), "2");
    EXPECT_EQ(db.rows(list(std::string("Select ID from T where Nome In ('a\0b',", 38), 1000, "'x", ")", "'")), "");
    EXPECT_EQ(outcome(list("Select ", 50000, "p", " from T")), 3061);
    EXPECT_EQ(outcome(list("Select ID from T where ID In (", 100001, "", ")")), 3360);
    EXPECT_EQ(outcome(list("Select ", 2001, "ID+", " from T")), 3360);
    EXPECT_EQ(outcome("Select ID from T where Nome = '" + std::string(1 << 20, 'x') + "'"), 3360);
}

TEST_F(SqlRobust, LongTexts) {
    std::string big(10000, 'x');
    EXPECT_EQ(db.rows("Select Len('" + big + "') from T where ID=1"), "10000");
    // long chains of operators: refused as too complex, or run, never a crash
    std::string sum = "Select 1";
    for (int i = 0; i < 3000; ++i) sum += "+1";
    EXPECT_EQ(outcome(sum + " from T"), 3360);
    std::string cat = "Select 'a'";
    for (int i = 0; i < 150; ++i) cat += " & 'b'";
    EXPECT_EQ(outcome(cat + " from T"), 0);
    std::string ands = "Select ID from T where ID=1";
    for (int i = 0; i < 2000; ++i) ands += " or ID=" + std::to_string(i);
    EXPECT_EQ(outcome(ands), 3360);
    std::string cols = "Select ID";
    for (int i = 0; i < 1200; ++i) cols += ", Nome";
    EXPECT_NE(outcome(cols + " from T"), -1);
}

TEST_F(SqlRobust, NulBytesAndInvalidUtf8) {
    std::string nul("Select * from T where Nome='a\0b'", 32);
    EXPECT_EQ(outcome(nul), 0);
    EXPECT_EQ(outcome(std::string("Select * from T\0 where ID=1", 27)), 3075);
    EXPECT_EQ(outcome(std::string("\0", 1)), 3075);
    EXPECT_EQ(outcome("Select * from T where Nome='\xff\xfe\xc3'"), 0);
    EXPECT_EQ(outcome("Select * from T where Nome Like '*\xc3*'"), 0);
    EXPECT_EQ(outcome("Select * from T where Nome='\xc3' order by Nome"), 0);
    EXPECT_EQ(outcome("Select * from T\xff"), 3078);
    EXPECT_EQ(outcome("Select [\xff\xfe] from T"), 3061);
    EXPECT_EQ(outcome("Select UCase('\xc3') & LCase('\xff'), Len('\xe2\x82'), Left('\xe2\x82\xac', 1) from T"), 0);
    EXPECT_EQ(outcome("Select Mid('\xe2\x82\xac\xe2', 2, 5), InStr('\xc3\xa0\xc3', '\xc3') from T"), 0);
    // a NUL in a text that must be written into a view
    store::sql::Options o;
    o.inlineLiterals = true;
    EXPECT_EQ(errorOf([&] { db.translator().translate(nul, o); }), 3075);
}

}  // namespace
