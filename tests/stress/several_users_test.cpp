// Several processes on one archive, as in an office with several machines: writers that run
// together with a structure change, and a writer killed at random points. Every row a writer
// acknowledged must be in the file, and the file must stay whole.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "store/dao.h"

namespace {

namespace fs = std::filesystem;

// A child process whose standard output the test reads line by line.
class Child {
public:
    explicit Child(const std::vector<std::string>& argv) {
        int fds[2];
        if (::pipe(fds) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(fds[1], 1);
            ::close(fds[0]);
            ::close(fds[1]);
            std::vector<char*> args;
            for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
            args.push_back(nullptr);
            ::execv(args[0], args.data());
            ::_exit(127);
        }
        ::close(fds[1]);
        out_ = fds[0];
    }
    ~Child() {
        if (pid_ > 0 && status_ < 0) {
            ::kill(pid_, SIGKILL);
            wait();
        }
        if (out_ >= 0) ::close(out_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool started() const { return pid_ > 0 && out_ >= 0; }

    // The next line of output; false at its end.
    bool readLine(std::string& line) {
        line.clear();
        for (char c; ;) {
            if (::read(out_, &c, 1) != 1) return false;
            if (c == '\n') return true;
            line += c;
        }
    }
    std::vector<long> readIds(std::size_t atMost = SIZE_MAX) {
        std::vector<long> ids;
        for (std::string line; ids.size() < atMost && readLine(line);) ids.push_back(std::stol(line));
        return ids;
    }
    void kill() { ::kill(pid_, SIGKILL); }
    int wait() {  // the exit status; -1 when killed by a signal
        if (status_ >= 0 || pid_ <= 0) return status_;
        int raw = 0;
        ::waitpid(pid_, &raw, 0);
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 1000;
        return status_ == 1000 ? -1 : status_;
    }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    int status_ = -1;
};

const std::string kWriter = BREVANO_TESTS_DIR "/store_writer";
const std::string kConsole = BREVANO_BIN_DIR "/jetsql";

class SeveralUsers : public ::testing::Test {
protected:
    void SetUp() override {
        std::string tmpl = (fs::temp_directory_path() / "users-XXXXXX").string();
        ASSERT_NE(::mkdtemp(tmpl.data()), nullptr);
        dir_ = tmpl;
        file_ = (dir_ / "Archivio.mdb").string();
        auto db = store::Workspace::Default().CreateDatabase(file_);
        db->Execute("CREATE TABLE Nuova0 (ID LONG PRIMARY KEY, Testo TEXT(20))");
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::vector<long> storedIds() {
        auto db = store::Workspace::Default().OpenDatabase(file_);
        std::vector<long> ids;
        for (auto rs = db->OpenRecordset("SELECT ID FROM Nuova0 ORDER BY ID"); !rs->Eof(); rs->MoveNext())
            ids.push_back(static_cast<long>(rs->get("ID").number()));
        return ids;
    }

    // SQLite's own check of the file, after the journal of a killed writer is rolled back.
    std::string integrity() {
        sqlite3* db = nullptr;
        std::string result = "cannot open";
        if (sqlite3_open_v2(file_.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
            sqlite3_stmt* s = nullptr;
            if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &s, nullptr) == SQLITE_OK && sqlite3_step(s) == SQLITE_ROW)
                result = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
            sqlite3_finalize(s);
        }
        sqlite3_close(db);
        return result;
    }

    fs::path dir_;
    std::string file_;
};

// Four writers insert while the structure changes three times: the change waits for them instead of failing,
// and no row is lost or doubled.
TEST_F(SeveralUsers, WritersAndStructureChangesLoseNothing) {
    constexpr int kWriters = 4;
    constexpr long kRows = 60;
    std::vector<std::unique_ptr<Child>> writers;
    for (int w = 0; w < kWriters; ++w) {
        writers.push_back(std::make_unique<Child>(std::vector<std::string>{
            kWriter, file_, "Nuova0", std::to_string(w * 1000), std::to_string(kRows)}));
        ASSERT_TRUE(writers.back()->started());
    }
    std::vector<long> acked = writers[0]->readIds(10);  // the writers are under way
    ASSERT_EQ(acked.size(), 10u);
    for (const char* change : {"ALTER TABLE Nuova0 ADD COLUMN Nota TEXT(20)", "ALTER TABLE Nuova0 ALTER COLUMN Nota TEXT(40)",
                               "ALTER TABLE Nuova0 ADD COLUMN Nota2 LONG"}) {
        Child alter({kConsole, "--db", file_, change});
        EXPECT_EQ(alter.wait(), 0) << change;
    }

    std::set<long> expected;
    for (int w = 0; w < kWriters; ++w) {
        std::vector<long> ids = writers[w]->readIds();
        if (w == 0) ids.insert(ids.begin(), acked.begin(), acked.end());
        EXPECT_EQ(writers[w]->wait(), 0) << "writer " << w;
        EXPECT_EQ(ids.size(), static_cast<std::size_t>(kRows)) << "writer " << w;
        for (long id = w * 1000; id < w * 1000 + kRows; ++id) expected.insert(id);
    }
    std::vector<long> stored = storedIds();
    EXPECT_EQ(std::set<long>(stored.begin(), stored.end()), expected);
    EXPECT_EQ(stored.size(), expected.size());
    auto def = store::Workspace::Default().OpenDatabase(file_)->GetTableDef("Nuova0");
    ASSERT_TRUE(def);
    EXPECT_EQ(def->Fields.size(), 4u);
}

// A writer killed at a random point, one row at a time or in batches: the file passes SQLite's
// check, holds every row acknowledged, and at most the rows of the commit under way besides.
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
        std::vector<long> ids = writer.readIds(std::uniform_int_distribution<std::size_t>(0, 40)(random));
        std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<int>(0, 20000)(random)));
        writer.kill();
        for (std::vector<long> rest = writer.readIds(); long id : rest) ids.push_back(id);
        EXPECT_EQ(writer.wait(), -1);
        acknowledged.insert(ids.begin(), ids.end());
        pending += static_cast<std::size_t>(batch);

        ASSERT_EQ(integrity(), "ok");
        std::vector<long> stored = storedIds();
        std::set<long> present(stored.begin(), stored.end());
        EXPECT_EQ(present.size(), stored.size());
        for (long id : acknowledged) ASSERT_TRUE(present.count(id)) << "row " << id << " lost";
        EXPECT_LE(stored.size(), acknowledged.size() + pending);
    }
}

}  // namespace
