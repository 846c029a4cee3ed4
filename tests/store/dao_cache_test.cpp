// Reused prepared statements: the cache itself, and that reuse never shows through the objects.
#include <sqlite3.h>

#include "store/catalog.h"
#include "dao_support.h"

namespace daotest {
namespace {

using store::detail::CachedStmt;
using store::detail::StatementCache;

struct RawDb {
    sqlite3* db = nullptr;
    RawDb() { sqlite3_open(":memory:", &db); }
    ~RawDb() { sqlite3_close_v2(db); }
};

// A statement given back half read, with a parameter bound, comes out again reset and unbound.
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

}  // namespace
}  // namespace daotest
