// The corpus: every statement the program sends (tests/model/corpus/statements.txt), run through the
// engine on a database holding the real model: the archive's tables and saved queries, the master
// file's, the scratch table Estratto and Comuni. A statement the program sends on purpose as invalid
// is listed with the error it must give.
#include <gtest/gtest.h>

#include <fstream>

#include "store/names.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/dao.h"
#include "store/model/model.h"
#include "store/convert_support.h"

namespace {

using namespace store;

// One database with every table and query the statements name. The scratch file's PrimaNota and
// Note are left out: the archive's tables of those names are the ones the statements mean.
DatabasePtr programDatabase() {
    DatabasePtr db = Workspace::Default().OpenMemory();
    model::CreaArchivio(*db);
    model::CreaAziende(*db);
    std::vector<model::Tabella> scratch;
    for (const model::Tabella& t : model::TabelleTemp())
        if (!db->TableExists(t.nome)) scratch.push_back(t);
    model::CreaTabelle(*db, scratch);
    model::CreaTabelle(*db, model::TabelleUtilita());
    return db;
}

void run(Database& db, const std::string& text) {
    if (text.size() < 6 || !detail::sameName(std::string_view(text).substr(0, 6), "select")) {
        db.Execute(text);
        return;
    }
    auto rs = db.OpenRecordset(text);
    while (!rs->Eof()) rs->MoveNext();
}

struct CorpusLine {
    int line;
    int expectedError;  // 0 = must translate and run
    std::string text;
};

std::vector<CorpusLine> loadCorpus() {
    std::ifstream in(std::string(BREVANO_SOURCE_DIR) + "/tests/model/corpus/statements.txt");
    std::vector<CorpusLine> out;
    std::string s;
    int n = 0;
    while (std::getline(in, s)) {
        ++n;
        if (s.empty() || s[0] == '#') continue;
        CorpusLine c{n, 0, s};
        if (s[0] == '!') {
            auto sp = s.find(' ');
            c.expectedError = std::stoi(s.substr(1, sp - 1));
            c.text = s.substr(sp + 1);
        }
        out.push_back(c);
    }
    return out;
}

TEST(SqlCorpus, EveryStatementTranslatesAndRuns) {
    fissaOrologio(DateSerial(2024, 3, 5) + 0.5);
    DatabasePtr db = programDatabase();
    auto corpus = loadCorpus();
    ASSERT_GT(corpus.size(), 250u);
    int ok = 0, refused = 0;
    for (const CorpusLine& c : corpus) {
        SCOPED_TRACE("statements.txt:" + std::to_string(c.line) + ": " + c.text);
        const auto [error, message] = jetErrorOf([&] { run(*db, c.text); });
        EXPECT_EQ(error, c.expectedError) << message;
        (c.expectedError ? refused : ok) += error == c.expectedError;
    }
    fissaOrologio(std::nullopt);
    EXPECT_GT(ok, 240);
    EXPECT_GE(refused, 8);
}

}  // namespace
