// Several processes on one archive, as in an office with several machines: a writer and a console
// changing the table's structure run together and are killed at random points. Every row the writer
// acknowledged must be in the file, and the file must stay whole.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "store/dao.h"
#include "support/cartella_temporanea.h"

namespace {

// A child process whose standard output the test reads line by line. The shell prints its own id
// and then becomes the program, so the id is the program's.
class Child {
public:
    explicit Child(const std::vector<std::string>& argv) {
        std::string command = "echo $$; exec";
        for (const std::string& a : argv) command += " '" + a + "'";
        out_ = ::popen(command.c_str(), "re");  // later children do not keep this one's pipe
        if (out_ && std::fscanf(out_, "%d", &pid_) != 1) pid_ = -1;
    }
    ~Child() {
        if (status_ < 0 && out_) kill();
        wait();
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool started() const { return pid_ > 0; }

    // The numbers the child prints, one a line, up to atMost or the end of its output.
    std::vector<long> readIds(std::size_t atMost = SIZE_MAX) {
        std::vector<long> ids;
        long id;
        char end;  // a line cut short by a kill is not a number printed
        while (ids.size() < atMost && std::fscanf(out_, "%ld%c", &id, &end) == 2 && end == '\n') ids.push_back(id);
        return ids;
    }
    void kill() { ::kill(pid_, SIGKILL); }
    int wait() {  // the exit status; -1 when killed by a signal
        if (out_) {
            const int raw = ::pclose(out_);
            out_ = nullptr;
            status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 1000;
        }
        return status_ == 1000 ? -1 : status_;
    }

private:
    pid_t pid_ = -1;
    std::FILE* out_ = nullptr;
    int status_ = -1;
};

const std::string kWriter = BREVANO_TESTS_DIR "/store_writer";
const std::string kConsole = BREVANO_BIN_DIR "/jetsql";

class SeveralUsers : public ::testing::Test {
protected:
    void SetUp() override {
        file_ = dir_ / "Archivio.mdb";
        auto db = store::Workspace::Default().CreateDatabase(file_);
        db->Execute("CREATE TABLE Nuova0 (ID LONG PRIMARY KEY, Testo TEXT(20))");
    }
    // The first column of a statement's rows, read by SQLite alone, joined by blanks.
    std::string sqliteRows(const char* sql) {
        sqlite3* db = nullptr;
        sqlite3_stmt* s = nullptr;
        std::string result;
        sqlite3_open_v2(file_.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
        if (sqlite3_prepare_v2(db, sql, -1, &s, nullptr) == SQLITE_OK)
            while (sqlite3_step(s) == SQLITE_ROW)
                result += (result.empty() ? "" : " ") + std::string(reinterpret_cast<const char*>(sqlite3_column_text(s, 0)));
        sqlite3_finalize(s);
        sqlite3_close(db);
        return result;
    }
    // The fields of Nuova0 as the engine keeps them, and as SQLite has the table.
    std::string engineFields() {
        std::string names;
        auto def = store::Workspace::Default().OpenDatabase(file_)->GetTableDef("Nuova0");
        for (const store::FieldDef& f : def.value().Fields) names += (names.empty() ? "" : " ") + f.Name;
        return names;
    }
    std::string tableColumns() { return sqliteRows("SELECT name FROM pragma_table_info('Nuova0')"); }

    test::CartellaTemporanea dir_;
    std::string file_;
};

// A writer killed at a random point, one row at a time or in batches, and a console changing the
// table's structure killed with it: the file passes SQLite's check, holds every row acknowledged and
// at most the rows of the commit under way besides, and the engine's fields are the table's columns.
TEST_F(SeveralUsers, KilledWriterLeavesEveryAcknowledgedRow) {
    const unsigned seed = static_cast<unsigned>(std::random_device{}());
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::set<long> acknowledged;
    std::size_t pending = 0;  // rows that a killed writer may have committed without acknowledging
    for (int round = 0; round < 8; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const long batch = round % 2 ? 7 : 1;
        const long first = round * 10000L;
        Child writer({kWriter, file_, "Nuova0", std::to_string(first), "5000", std::to_string(batch)});
        ASSERT_TRUE(writer.started());
        std::vector<std::string> changes{kConsole, "--db", file_};
        bool extra = tableColumns().ends_with(" Extra");  // left by the change a kill cut short
        for (int i = 0; i < 40; ++i, extra = !extra)
            changes.push_back(extra ? "ALTER TABLE Nuova0 DROP COLUMN Extra" : "ALTER TABLE Nuova0 ADD COLUMN Extra TEXT(10)");
        Child structure(changes);
        std::vector<long> ids = writer.readIds(std::uniform_int_distribution<std::size_t>(0, 40)(random));
        std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<int>(0, 20000)(random)));
        writer.kill();
        structure.kill();
        structure.wait();
        for (std::vector<long> rest = writer.readIds(); long id : rest) ids.push_back(id);
        EXPECT_EQ(writer.wait(), -1);
        acknowledged.insert(ids.begin(), ids.end());
        pending += static_cast<std::size_t>(batch);

        // SQLite's own check of the file, after the journal of a killed process is rolled back
        ASSERT_EQ(sqliteRows("PRAGMA integrity_check"), "ok");
        std::vector<long> stored;
        std::istringstream storedText(sqliteRows("SELECT ID FROM Nuova0"));
        for (long id; storedText >> id;) stored.push_back(id);
        std::set<long> present(stored.begin(), stored.end());
        EXPECT_EQ(present.size(), stored.size());
        for (long id : acknowledged) ASSERT_TRUE(present.count(id)) << "row " << id << " lost";
        EXPECT_LE(stored.size(), acknowledged.size() + pending);
        EXPECT_EQ(engineFields(), tableColumns());
    }
}

}  // namespace
