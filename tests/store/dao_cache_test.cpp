// Reused prepared statements: the cache itself, and that reuse never shows through the objects.
#include <sqlite3.h>

#include "store/catalog.h"
#include "dao_support.h"

namespace daotest {
namespace {

using store::detail::CachedStmt;
using store::detail::StatementCache;
using store::detail::Stmt;

struct RawDb {
    sqlite3* db = nullptr;
    RawDb() { sqlite3_open(":memory:", &db); }
    ~RawDb() { sqlite3_close_v2(db); }
};

TEST(StatementCache, ReusesGivesOutOnceDropsOldestAndStale) {
    RawDb raw;
    StatementCache cache(2);
    sqlite3_stmt* kept = nullptr;
    {
        CachedStmt a(cache, raw.db, "SELECT 1");
        CachedStmt b(cache, raw.db, "SELECT 1");  // the same text while the first is in use
        EXPECT_NE(b->get(), a->get());
        kept = b->get();  // given back first
    }
    EXPECT_EQ(cache.size(), 1u) << "a second copy of the same text is not kept";
    {
        CachedStmt again(cache, raw.db, "SELECT 1");
        EXPECT_EQ(again->get(), kept);
        EXPECT_EQ(cache.size(), 0u) << "out of the cache while in use";
    }
    for (const char* sql : {"SELECT 2", "SELECT 3"}) CachedStmt(cache, raw.db, sql);
    EXPECT_EQ(cache.size(), 2u);
    CachedStmt oldest(cache, raw.db, "SELECT 1");
    EXPECT_EQ(cache.size(), 2u) << "the least recently used went first: prepared anew";
    CachedStmt recent(cache, raw.db, "SELECT 3");
    EXPECT_EQ(cache.size(), 1u);

    std::uint64_t before = cache.generation();
    Stmt s = cache.take(raw.db, "SELECT 4");
    cache.clear();
    cache.give("SELECT 4", std::move(s), before);
    EXPECT_EQ(cache.size(), 0u) << "prepared before the clear: dropped";
}

TEST(StatementCache, GivenBackResetAndUnbound) {
    RawDb raw;
    StatementCache cache;
    {
        CachedStmt s(cache, raw.db, "SELECT ?1 UNION ALL SELECT 2");
        s->bindInt(1, 7);
        ASSERT_TRUE(s->step());  // left half way through its rows
    }
    CachedStmt s(cache, raw.db, "SELECT ?1 UNION ALL SELECT 2");
    ASSERT_TRUE(s->step());
    EXPECT_TRUE(s->columnIsNull(0));
}

class DaoCache : public DaoTest {};

// The same statement text opened twice at once, and again after a close: each recordset keeps its
// own position and parameters.
TEST_F(DaoCache, SameTextOpenTwiceKeepsEachCursor) {
    auto db = create();
    fillClienti(*db);
    auto a = db->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 1 ORDER BY ID");
    auto b = db->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 2 ORDER BY ID");
    a->MoveNext();
    EXPECT_EQ(a->get("ID").number(), 2);
    EXPECT_EQ(b->get("ID").number(), 2);
    b->MoveNext();
    EXPECT_EQ(b->get("ID").number(), 3);
    a->Close();
    auto c = db->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 3 ORDER BY ID");
    EXPECT_EQ(c->get("ID").number(), 3);
    EXPECT_EQ(c->RecordCount(), 1);
    EXPECT_EQ(b->get("ID").number(), 3);
}

// A statement used before a change of the table's shape must not answer with the old shape.
TEST_F(DaoCache, SchemaChangeIsSeenByTheNextOpening) {
    auto db = create();
    fillClienti(*db);
    db->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1")->Close();
    db->AppendField("Clienti", TableDef::CreateField("Citta", FieldType::Text, 30));
    auto rs = db->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1");
    EXPECT_TRUE(rs->HasField("Citta"));
    rs->Edit();
    rs->set("Citta", Value::Text("Roma"));
    rs->Update();
    EXPECT_EQ(rs->get("Citta").text(), "Roma");

    db->DeleteField("Clienti", "Saldo");
    db->Execute("UPDATE Clienti SET Nome = 'Neri' WHERE ID = 1");
    auto after = db->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1");
    EXPECT_FALSE(after->HasField("Saldo"));
    EXPECT_EQ(after->get("Nome").text(), "Neri");
}

// Writes through reused statements: each edit, insert and delete hits its own row, and the re-read
// after an update shows the row as it now is.
TEST_F(DaoCache, RepeatedWritesHitTheirOwnRows) {
    auto db = create();
    fillClienti(*db);
    for (int id = 1; id <= 3; ++id) {
        auto rs = db->OpenRecordset("SELECT * FROM Clienti WHERE ID = " + std::to_string(id));
        rs->Edit();
        rs->set("Saldo", Value::Double(id * 10));
        rs->Update();
        EXPECT_EQ(rs->get("Saldo").number(), id * 10);
        EXPECT_EQ(rs->get("ID").number(), id);
    }
    auto all = db->OpenRecordset("SELECT * FROM Clienti ORDER BY ID");
    for (int id = 1; id <= 3; ++id, all->MoveNext()) EXPECT_EQ(all->get("Saldo").number(), id * 10);
    for (int id = 4; id <= 5; ++id) {
        auto rs = db->OpenRecordset("Clienti");
        rs->AddNew();
        rs->set("ID", Value::Long(id));
        rs->Update();
    }
    for (int id : {4, 2}) db->OpenRecordset("SELECT * FROM Clienti WHERE ID = " + std::to_string(id))->Delete();
    auto left = db->OpenRecordset("SELECT ID FROM Clienti ORDER BY ID");
    std::vector<double> ids;
    for (; !left->Eof(); left->MoveNext()) ids.push_back(left->get("ID").number());
    EXPECT_EQ(ids, (std::vector<double>{1, 3, 5}));
}

}  // namespace
}  // namespace daotest
