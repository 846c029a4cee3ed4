// The console run as a user runs it: statements as arguments or on standard input, exact output,
// exit status.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/cartella_temporanea.h"

namespace {

struct Result {
    int status = -1;
    std::string out, err;
};

std::string quoted(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string slurp(const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class JetsqlTest : public ::testing::Test {
protected:
    Result run(const std::vector<std::string>& args, const std::string& input = "") {
        std::ofstream(dir_ / "in") << input;
        std::string cmd = quoted(BREVANO_BIN_DIR "/jetsql");
        for (const std::string& a : args) cmd += " " + quoted(a);
        cmd += " < " + quoted(dir_ / "in") + " > " + quoted(dir_ / "out") + " 2> " + quoted(dir_ / "err");
        int raw = std::system(cmd.c_str());
        Result r;
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        r.out = slurp(dir_ / "out");
        r.err = slurp(dir_ / "err");
        return r;
    }
    std::string db(const char* name = "Prova.mdb") const { return dir_ / name; }

    test::CartellaTemporanea dir_;
};

// Statements on standard input build a file that a later run reads with statements as arguments.
TEST_F(JetsqlTest, PrintsEachKindOfValueFromAFileKeptBetweenRuns) {
    Result first = run({"--db", db()},
                       "CREATE TABLE V (ID LONG, Ok YESNO, N INTEGER, D DOUBLE, Quando DATETIME, Testo TEXT(40))\n"
                       "\n"
                       "INSERT INTO V VALUES (1, True, 7, 2.5, #03/05/2024#, 'a\tb')\r\n"
                       "INSERT INTO V VALUES (3, 1, 0, 16.2, Null, 'c:\\dati')\n"
                       "INSERT INTO V (ID, D) VALUES (4, 2)\n");
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out, "");  // action statements print nothing
    Result r = run({"--db", db(), "INSERT INTO V VALUES (2, False, -3, 0.1, #12/31/2024 14:30:00#, 'riga\nnuova')",
                    "SELECT * FROM V ORDER BY ID"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out,
              "ID\tOk\tN\tD\tQuando\tTesto\n"
              "1\t-1\t7\t2.5\t2024-03-05\ta\\tb\n"
              "2\t0\t-3\t0.1\t2024-12-31 14:30:00\triga\\nnuova\n"
              "3\t-1\t0\t16.2\tNULL\tc:\\\\dati\n"
              "4\t0\tNULL\t2\tNULL\tNULL\n");
}

TEST_F(JetsqlTest, StopsAtTheFirstErrorWithItsNumberOrTheUsage) {
    struct Case {
        std::vector<std::string> args;
        std::string input;
        std::string out;
        std::string errStart;
        int status = 1;
    };
    std::ofstream(dir_ / "testo.txt") << std::string(200, 'x');
    const Case cases[] = {
        {{"SELECT 1 AS Uno", "SELECT * FROM Manca", "SELECT 2 AS Due"}, "", "Uno\n1\n", "error 3078: "},
        {{}, "SELECT 'a' AS X\nSELEC X\nSELECT 'b' AS Y\n", "X\na\n", "error "},
        {{"--db", dir_ / "testo.txt", "SELECT 1 AS Uno"}, "", "", "error 3049: "},
        {{"--db"}, "", "", "usage: jetsql [--db FILE] [STATEMENT...]\n", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input + (c.args.empty() ? "" : c.args.back()));
        Result r = run(c.args, c.input);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(r.out, c.out);
        EXPECT_EQ(r.err.rfind(c.errStart, 0), 0u) << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line";
    }
}

}  // namespace
