// Batched writes: what another user sees and when, and that no way of leaving a batch loses a row
// that was written before it or leaves the file locked.
#include "dao_support.h"

namespace daotest {
namespace {

class DaoBatch : public DaoTest {
protected:
    void SetUp() override {
        DaoTest::SetUp();
        db_ = createClienti();
        other_ = open();
    }

    long seenByOther(const std::string& where = "ID > 3") {
        return static_cast<long>(
            other_->OpenRecordset("SELECT Count(*) AS N FROM Clienti WHERE " + where)->get("N").number());
    }

    void insert(int id) {
        db_->Execute("INSERT INTO Clienti (ID, Nome) VALUES (" + std::to_string(id) + ", 'Nuovo')");
    }

    DatabasePtr db_, other_;
};

// Each kind of write counts towards the commit: the other connection sees nothing until the
// count is reached, then everything.
TEST_F(DaoBatch, CommitsEveryNWritesOfEachKind) {
    const std::pair<const char*, std::function<void(int)>> cases[] = {
        {"Execute", [this](int id) { insert(id); }},
        {"AddNew", [this](int id) {
             auto rs = db_->OpenRecordset("Clienti");
             rs->AddNew();
             rs->set("ID", Value::Long(id));
             rs->Update();
         }},
    };
    int id = 10;
    for (const auto& [name, write] : cases) {
        SCOPED_TRACE(name);
        long before = seenByOther();
        store::WriteBatch batch(*db_, 3);
        write(id++);
        write(id++);
        EXPECT_EQ(seenByOther(), before);
        EXPECT_EQ(db_->OpenRecordset("SELECT Count(*) AS N FROM Clienti WHERE ID > 3")->get("N").number(), before + 2)
            << "the batch's own connection sees its writes";
        write(id++);
        EXPECT_EQ(seenByOther(), before + 3);
        write(id++);
        batch.End();
        EXPECT_EQ(seenByOther(), before + 4);
    }
}

TEST_F(DaoBatch, EditAndDeleteCountAndLandAtTheEnd) {
    {
        store::WriteBatch batch(*db_, 100);
        auto rs = db_->OpenRecordset("SELECT * FROM Clienti ORDER BY ID");
        rs->Edit();
        rs->set("Nome", Value::Text("Gialli"));
        rs->Update();
        rs->MoveNext();
        rs->Delete();
        EXPECT_EQ(seenByOther("Nome = 'Gialli' OR ID = 2"), 1) << "nothing of it yet";
    }
    EXPECT_EQ(seenByOther("Nome = 'Gialli'"), 1);
    EXPECT_EQ(seenByOther("ID = 2"), 0);
}

TEST_F(DaoBatch, NestedBatchesCommitAtTheOutermostEnd) {
    db_->BeginBatch(100);
    insert(4);
    {
        store::WriteBatch inner(*db_, 1);  // the outer count holds
        insert(5);
        insert(6);
    }
    EXPECT_TRUE(db_->inBatch());
    EXPECT_EQ(seenByOther(), 0);
    db_->EndBatch();
    EXPECT_FALSE(db_->inBatch());
    EXPECT_EQ(seenByOther(), 3);
    db_->EndBatch();  // one end too many changes nothing
    insert(7);
    EXPECT_EQ(seenByOther(), 4) << "outside a batch each write commits at once";
}

// A failing statement raises as ever; the rows before it stay, whether the caller goes on or the
// error leaves the batch's scope.
TEST_F(DaoBatch, FailingWriteKeepsWhatCameBefore) {
    const std::string tooLong(21, 'x');
    {
        store::WriteBatch batch(*db_, 100);
        insert(4);
        EXPECT_EQ(errorOf([&] { db_->Execute("INSERT INTO Clienti (ID, Nome) VALUES (5, '" + tooLong + "')"); }), 3163);
        insert(6);
    }
    EXPECT_EQ(seenByOther(), 2);
    EXPECT_EQ(errorOf([&] {
                  store::WriteBatch batch(*db_, 100);
                  insert(7);
                  db_->Execute("INSERT INTO Clienti (ID, Nome) VALUES (8, '" + tooLong + "')");
              }),
              3163);
    EXPECT_FALSE(db_->inBatch());
    EXPECT_EQ(seenByOther(), 3);
    insert(10);
    EXPECT_EQ(seenByOther(), 4) << "no transaction left open";
}

TEST_F(DaoBatch, CloseDuringABatchCommitsIt) {
    {
        store::WriteBatch batch(*db_, 100);
        insert(4);
        auto rs = db_->OpenRecordset("SELECT * FROM Clienti");  // still open at the close
        db_->Close();
        EXPECT_FALSE(db_->inBatch());
    }  // the batch's end on the closed database is harmless
    EXPECT_EQ(seenByOther(), 1);
    EXPECT_EQ(errorOf([&] { db_->BeginBatch(); }), 3420);
}

}  // namespace
}  // namespace daotest
