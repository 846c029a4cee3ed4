// Recordset semantics the program relies on: counts, positions, bookmarks, writes through tables
// and saved queries, typed values, prepared statements reused.
#include <algorithm>
#include <array>

#include "dao_support.h"
#include "store/catalog.h"
#include "store/convert.h"

namespace daotest {
namespace {

class RecordsetTest : public DaoTest {
protected:
    void SetUp() override {
        DaoTest::SetUp();
        db_ = createClienti();
    }
    std::vector<long> ids(const std::string& sql) {
        std::vector<long> out;
        for (auto rs = db_->OpenRecordset(sql); !rs->Eof(); rs->MoveNext()) out.push_back(static_cast<long>(rs->get("ID").number()));
        return out;
    }
    DatabasePtr db_;
};

TEST_F(RecordsetTest, CountsAndEndsRightAfterOpeningAndAfterMoveLast) {
    struct Case {
        const char* sql;
        bool empty;
        long countAfterLast;
    };
    const Case cases[] = {
        {"Select * from Clienti where ID<0", true, 0},
        {"Select * from Clienti where ID=2", false, 1},
        {"[Clienti]", false, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sql);
        auto rs = db_->OpenRecordset(c.sql);
        EXPECT_EQ((std::array{rs->RecordCount() == 0, rs->Eof(), rs->Bof()}), (std::array{c.empty, c.empty, c.empty}));
        if (c.empty) {
            EXPECT_EQ(errorOf([&] { rs->MoveLast(); }), 3021);
            EXPECT_EQ(errorOf([&] { rs->get("ID"); }), 3021);
            EXPECT_EQ(rs->AbsolutePosition(), -1);
            continue;
        }
        rs->MoveLast();
        EXPECT_EQ(rs->RecordCount(), c.countAfterLast);
        EXPECT_EQ(rs->AbsolutePosition(), c.countAfterLast - 1);
        rs->MoveNext();
        EXPECT_EQ(errorOf([&] { rs->MoveNext(); }), 3021);
        rs->MoveFirst();
        rs->MovePrevious();
        EXPECT_TRUE(rs->Bof());
        EXPECT_EQ(errorOf([&] { rs->MovePrevious(); }), 3021);
    }
}

TEST_F(RecordsetTest, WalksInOrderReadsTypedValuesAndReturnsByBookmark) {
    EXPECT_EQ(ids("Select * from Clienti order by Nome"), (std::vector<long>{2, 1, 3}));
    auto rs = db_->OpenRecordset("Select * from Clienti order by ID");
    EXPECT_EQ(rs->get("ATTIVO"), Value::Bool(true));
    EXPECT_EQ(rs->get("Dal"), Value::Date(45356));  // 5 March 2024
    EXPECT_EQ(errorOf([&] { rs->Fields("Indirizzo"); }), 3265);
    rs->MoveNext();
    store::Bookmark second = rs->getBookmark();
    rs->MoveLast();
    rs->setBookmark(second);
    EXPECT_EQ(rs->get("ID"), Value::Long(2));
    rs->setAbsolutePosition(2);
    EXPECT_EQ(rs->get("id"), Value::Long(3));
    EXPECT_TRUE(rs->get("Dal").isNull());
    EXPECT_EQ(errorOf([&] { rs->setBookmark(99); }), 3159);
    EXPECT_EQ(errorOf([&] { rs->setAbsolutePosition(3); }), 3001);
}

// As the program's new id does: AddNew, the id, Update, back to the new row by LastModified.
TEST_F(RecordsetTest, NewRecordIsReachedByLastModified) {
    auto rs = db_->OpenRecordset("Select * from Clienti order by ID");
    rs->AddNew();
    rs->set("ID", Value::Long(4));
    rs->Update();
    EXPECT_EQ(rs->get("ID"), Value::Long(1));  // the record current before AddNew
    rs->setBookmark(rs->LastModified());
    EXPECT_EQ(rs->get("ID"), Value::Long(4));
    EXPECT_EQ(rs->get("Attivo"), Value::Bool(false));  // a Yes/No never holds Null
    EXPECT_TRUE(rs->get("Nome").isNull());
    EXPECT_EQ(rs->RecordCount(), 4);
}

TEST_F(RecordsetTest, WritesAreConvertedAndCheckedAgainstTheField) {
    auto rs = db_->OpenRecordset("Select * from Clienti where ID=1");
    rs->Edit();
    struct Case {
        const char* field;
        Value written;
        int error;
        Value readBack;
    };
    const Case cases[] = {
        {"Attivo", Value::Long(5), 0, Value::Bool(true)},
        {"ID", Value::Text("abc"), 13, Value()},
        {"ID", Value::Text("12"), 0, Value::Long(12)},
        {"Nome", Value::Text(std::string(21, 'x')), 3163, Value()},
        {"Nome", Value::Text("àèìòùàèìòùàèìòùàèìòù"), 0, Value::Text("àèìòùàèìòùàèìòùàèìòù")},  // 20 letters
        {"Saldo", Value::Null(), 0, Value::Null()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.field);
        EXPECT_EQ(errorOf([&] { rs->set(c.field, c.written); }), c.error);
        if (!c.error) {
            EXPECT_EQ(rs->get(c.field), c.readBack);
        }
    }
    rs->Update();
    auto check = db_->OpenRecordset("Select * from Clienti where ID=12");
    EXPECT_EQ(check->get("Nome"), Value::Text("àèìòùàèìòùàèìòùàèìòù"));
    EXPECT_TRUE(check->get("Saldo").isNull());
}

// As the services register does: a query joining a code table, edited through to its base table,
// and the joined description read again after the write.
TEST_F(RecordsetTest, EditsThroughASavedQueryReachTheBaseTable) {
    db_->Execute("CREATE TABLE CodiciIva (ID LONG, DescIva TEXT(30))");
    db_->Execute("INSERT INTO CodiciIva (ID, DescIva) VALUES (2, 'Esente art. 10')");
    db_->Execute("ALTER TABLE Clienti ADD COLUMN CodiceIva LONG");
    db_->CreateQueryDef({"qrClienti",
                         "SELECT Clienti.*, CodiciIva.DescIva, Nome & ' (' & Clienti.ID & ')' AS Etichetta "
                         "FROM Clienti LEFT JOIN CodiciIva ON Clienti.CodiceIva = CodiciIva.ID"});
    auto rs = db_->OpenRecordset("Select * from qrClienti where ID=2");
    ASSERT_TRUE(rs->updatable());
    EXPECT_EQ(rs->get("Etichetta"), Value::Text("Bianchi (2)"));
    rs->Edit();
    rs->set("Nome", Value::Text("Gialli"));
    rs->set("Saldo", Value::Double(10.25));
    rs->set("CodiceIva", Value::Long(2));
    EXPECT_EQ(errorOf([&] { rs->set("Etichetta", Value::Text("x")); }), 3164);
    rs->Update();
    EXPECT_EQ(rs->get("Etichetta"), Value::Text("Gialli (2)"));  // the row is read again after the write
    EXPECT_EQ(rs->get("DescIva"), Value::Text("Esente art. 10"));

    auto base = db_->OpenRecordset("Select Nome & Saldo & CodiceIva AS Riga from Clienti where ID=2");
    EXPECT_EQ(base->get("Riga"), Value::Text("Gialli10,252"));
}

TEST_F(RecordsetTest, DeleteLeavesNoCurrentRecordUntilAMove) {
    auto rs = db_->OpenRecordset("Select * from Clienti order by ID");
    rs->MoveNext();
    rs->Delete();
    EXPECT_EQ(errorOf([&] { rs->get("ID"); }), 3167);
    rs->MoveNext();
    EXPECT_EQ(rs->get("ID"), Value::Long(3));
    rs->MovePrevious();
    EXPECT_EQ(rs->get("ID"), Value::Long(1));
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(ids("Select * from Clienti order by ID"), (std::vector<long>{1, 3}));
}

// A move drops what was set and leaves no edit under way; nothing reaches the table.
TEST_F(RecordsetTest, PendingChangesAreDroppedByAMove) {
    auto rs = db_->OpenRecordset("Select * from Clienti order by ID");
    EXPECT_EQ(errorOf([&] { rs->LastModified(); }), 3021);
    rs->Edit();
    rs->set("Nome", Value::Text("Cambiato"));
    rs->MoveNext();
    EXPECT_EQ(rs->editMode(), store::Recordset::EditMode::None);
    rs->MoveFirst();
    EXPECT_EQ(rs->get("Nome"), Value::Text("Rossi"));
}

TEST_F(RecordsetTest, ReadOnlyResultsRefuseWritesAndClosedObjectsAnswer3420) {
    auto totals = db_->OpenRecordset("Select Count(*) AS N, Sum(Saldo) AS Totale from Clienti");
    auto other = db_->OpenRecordset("Clienti");
    EXPECT_EQ(totals->get("N"), Value::Long(3));
    EXPECT_FALSE(totals->updatable());
    EXPECT_EQ(errorOf([&] { totals->Edit(); }), 3326);
    EXPECT_EQ(errorOf([&] { totals->AddNew(); }), 3326);
    EXPECT_EQ(errorOf([&] { totals->Update(); }), 3020);
    EXPECT_EQ(errorOf([&] { totals->set("N", Value::Long(1)); }), 3020);
    totals->Close();
    EXPECT_EQ(errorOf([&] { totals->MoveNext(); }), 3420);
    db_->Close();
    EXPECT_EQ(errorOf([&] { other->MoveNext(); }), 3420);
    EXPECT_EQ(errorOf([&] { db_->Execute("DELETE FROM Clienti"); }), 3420);
}

// MoveLast keeps only the rowids of the rows it passes over when one table is read alone; those rows
// are read later by rowid, a block at a time, in whichever direction the program goes.
TEST_F(RecordsetTest, RowsPassedOverByMoveLastReadTheirOwnValues) {
    db_->Execute("CREATE TABLE Righe (Cliente LONG, Riga LONG)");
    ASSERT_EQ(OtherUser(path("Archivio.mdb"))
                  .run("BEGIN; WITH RECURSIVE n(i) AS (SELECT 4 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
                       "INSERT INTO Clienti (ID, Nome, Attivo) SELECT i, 'Cliente ' || i, 0 FROM n; "
                       "INSERT INTO Righe SELECT ID, 1 FROM Clienti; INSERT INTO Righe SELECT ID, 2 FROM Clienti; "
                       "COMMIT;"),
              SQLITE_OK);
    auto row = [](store::Recordset& rs) {
        std::string out;
        for (int i = 0; i < rs.FieldCount(); ++i) out += store::CStr(rs.Fields(i).value()) + "|";
        return out;
    };
    for (const char* sql : {"Select ID, Nome from Clienti order by Nome desc",
                            "Select Clienti.ID, Righe.Riga from Clienti LEFT JOIN Righe ON Righe.Cliente = Clienti.ID "
                            "order by Clienti.ID, Righe.Riga"}) {
        SCOPED_TRACE(sql);
        std::vector<std::string> expected;
        for (auto rs = db_->OpenRecordset(sql); !rs->Eof(); rs->MoveNext()) expected.push_back(row(*rs));
        auto rs = db_->OpenRecordset(sql);
        rs->MoveLast();
        ASSERT_EQ(rs->RecordCount(), static_cast<long>(expected.size()));
        std::vector<std::string> backwards;
        for (; !rs->Bof(); rs->MovePrevious()) backwards.insert(backwards.begin(), row(*rs));
        EXPECT_EQ(backwards, expected);
        rs->setAbsolutePosition(150);
        EXPECT_EQ(row(*rs), expected[150]);
        auto again = db_->OpenRecordset(sql);
        again->MoveLast();
        std::vector<std::string> forwards;
        for (again->MoveFirst(); !again->Eof(); again->MoveNext()) forwards.push_back(row(*again));
        EXPECT_EQ(forwards, expected);
    }

    // Another user deletes a row the recordset knows by its rowid only: it reads as deleted.
    auto rs = db_->OpenRecordset("Select * from Clienti");
    rs->MoveLast();
    open()->Execute("DELETE FROM Clienti WHERE ID = 150");
    rs->setAbsolutePosition(149);
    EXPECT_EQ(errorOf([&] { rs->get("Nome"); }), 3167);
    rs->MovePrevious();
    EXPECT_EQ(rs->get("ID"), Value::Long(149));

    // A write of this connection first reads every row passed over: they keep what they held.
    rs->MoveFirst();
    rs->Edit();
    rs->set("Nome", Value::Text("Primo"));
    rs->Update();
    db_->Execute("UPDATE Clienti SET Nome = 'Cambiato'");
    rs->MoveLast();
    EXPECT_EQ(rs->get("Nome"), Value::Text("Cliente 300"));
    rs->setAbsolutePosition(0);
    EXPECT_EQ(rs->get("Nome"), Value::Text("Primo"));
}

// A recordset that follows a screen is not read to its end by a write: it lets go of its statement
// and reads on from where it stopped, the rows written meanwhile among those still to come. A change
// of structure still reads it to its end.
TEST_F(RecordsetTest, ResumableRecordsetReadsOnAfterAWrite) {
    db_->Execute("CREATE TABLE Righe (ID LONG, Nome TEXT(20))");
    OtherUser(path("Archivio.mdb"))
        .run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
             "INSERT INTO Righe SELECT i * 2, 'r' FROM n");
    auto rs = db_->OpenRecordset("Select * from Righe order by ID");
    rs->SetResumable(true);
    for (int i = 0; i < 100; ++i) rs->MoveNext();
    const long letti = rs->RecordCount();
    db_->Execute("INSERT INTO Righe (ID, Nome) VALUES (599, 'nuova')");   // after the rows read
    db_->Execute("INSERT INTO Righe (ID, Nome) VALUES (1, 'prima')");     // before them
    EXPECT_EQ(rs->RecordCount(), letti);
    EXPECT_EQ(rs->get("ID"), Value::Long(202));
    std::vector<long> resto;
    for (rs->MoveNext(); !rs->Eof(); rs->MoveNext()) resto.push_back(store::CLng(rs->get("ID")));
    ASSERT_FALSE(resto.empty());
    // One row before the resumption point shifts the rest by one: 202 is met again, 599 comes in order.
    EXPECT_EQ(resto.front(), 202);
    EXPECT_EQ(resto.back(), 600);
    EXPECT_NE(std::find(resto.begin(), resto.end(), 599), resto.end());

    auto altro = db_->OpenRecordset("Select * from Righe order by ID");
    altro->SetResumable(true);
    db_->Execute("CREATE TABLE Altra (ID LONG)");
    EXPECT_EQ(altro->RecordCount(), 302);
}

// The same statement text opened twice at once, and again after a close: each recordset keeps its
// own position and parameters, however the prepared statements are reused.
TEST_F(RecordsetTest, SameTextOpenTwiceKeepsEachCursor) {
    auto a = db_->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 1 ORDER BY ID");
    auto b = db_->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 2 ORDER BY ID");
    a->MoveNext();
    EXPECT_EQ(a->get("ID").number(), 2);
    EXPECT_EQ(b->get("ID").number(), 2);
    b->MoveNext();
    EXPECT_EQ(b->get("ID").number(), 3);
    a->Close();
    auto c = db_->OpenRecordset("SELECT * FROM Clienti WHERE ID >= 3 ORDER BY ID");
    EXPECT_EQ(c->get("ID").number(), 3);
    EXPECT_EQ(c->RecordCount(), 1);
    EXPECT_EQ(b->get("ID").number(), 3);
}

// A statement used before a change of the table's shape must not answer with the old shape.
TEST_F(RecordsetTest, SchemaChangeIsSeenByTheNextOpening) {
    db_->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1")->Close();
    db_->AppendField("Clienti", TableDef::CreateField("Citta", FieldType::Text, 30));
    auto rs = db_->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1");
    EXPECT_TRUE(rs->HasField("Citta"));
    rs->Edit();
    rs->set("Citta", Value::Text("Roma"));
    rs->Update();
    EXPECT_EQ(rs->get("Citta").text(), "Roma");

    db_->DeleteField("Clienti", "Saldo");
    db_->Execute("UPDATE Clienti SET Nome = 'Neri' WHERE ID = 1");
    auto after = db_->OpenRecordset("SELECT * FROM Clienti WHERE ID = 1");
    EXPECT_FALSE(after->HasField("Saldo"));
    EXPECT_EQ(after->get("Nome").text(), "Neri");
}

// A statement given back half read, with a parameter bound, comes out again reset and unbound.
TEST(StatementCache, GivenBackResetAndUnbound) {
    sqlite3* raw = nullptr;
    sqlite3_open(":memory:", &raw);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closing(raw, sqlite3_close_v2);
    store::detail::StatementCache cache;
    {
        store::detail::CachedStmt s(cache, raw, "SELECT ?1 UNION ALL SELECT 2");
        s->bindInt(1, 7);
        ASSERT_TRUE(s->step());  // left half way through its rows
    }
    store::detail::CachedStmt s(cache, raw, "SELECT ?1 UNION ALL SELECT 2");
    ASSERT_TRUE(s->step());
    EXPECT_TRUE(s->columnIsNull(0));
}

}  // namespace
}  // namespace daotest
