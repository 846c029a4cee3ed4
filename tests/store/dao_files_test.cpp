// Files: opening, refusing what is not ours, exclusive and read-only use, locks between connections,
// compacting, copies.
#include <array>
#include <chrono>
#include <fstream>
#include <thread>

#include "dao_support.h"

namespace daotest {
namespace {

class FilesTest : public DaoTest {};

TEST_F(FilesTest, FilesThatAreMissingOrNotOursAreRefused) {
    const std::string text = path("Testo.mdb"), empty = path("Vuoto.mdb"), foreign = path("Altro.mdb");
    std::ofstream(text) << "Questo non è un database, ma un testo abbastanza lungo da avere un'intestazione: "
                           "righe e righe di parole che nessun motore sa leggere come pagine.";
    std::ofstream(empty).flush();
    OtherUser(foreign).run("PRAGMA application_id = 1234; CREATE TABLE t (x)");

    const std::pair<std::string, int> cases[] = {
        {path("Manca.mdb"), 3024}, {text, 3049}, {empty, 3049}, {foreign, 3049}, {folder_.percorso(), 3049}};
    for (const auto& [file, error] : cases) {
        const auto [number, text] = jetErrorOf([&] { Workspace::Default().OpenDatabase(file); });
        EXPECT_EQ(number, error) << file;
        EXPECT_NE(text.find(file), std::string::npos) << text;
    }
    create("Nuovo.mdb");
    EXPECT_EQ(errorOf([&] { create("Nuovo.mdb"); }), 3204);
    EXPECT_EQ(errorOf([&] { Workspace::Default().CreateDatabase(path("manca/Nuovo.mdb")); }), 3044);
}

// A plain SQLite file made by another tool is taken as it is, its types read from its declarations.
TEST_F(FilesTest, PlainSqliteFileIsAdopted) {
    OtherUser(path("Esterno.db"))
        .run("CREATE TABLE Voci (ID INTEGER, Descrizione VARCHAR(30), Prezzo REAL); "
             "INSERT INTO Voci VALUES (1, 'Penna', 1.5)");
    auto db = open("Esterno.db");
    auto def = db->GetTableDef("Voci");
    ASSERT_TRUE(def);
    EXPECT_EQ((std::array{def->Fields[0].Type, def->Fields[1].Type, def->Fields[2].Type}),
              (std::array{FieldType::Long, FieldType::Text, FieldType::Double}));
    EXPECT_EQ(def->Fields[1].Size, 30);
    EXPECT_EQ(db->OpenRecordset("Select Descrizione from Voci where Prezzo > 1")->get("Descrizione"), Value::Text("Penna"));
}

TEST_F(FilesTest, ExclusiveUseKeepsOthersOutAndReadOnlyUseRefusesWrites) {
    create()->Close();
    {
        auto mine = open("Archivio.mdb", true);
        EXPECT_EQ(errorOf([&] { open(); }), 3051);
        EXPECT_EQ(errorOf([&] { open("Archivio.mdb", true); }), 3045);
        mine->Execute("CREATE TABLE T (ID LONG)");  // the holder itself works as usual
    }
    EXPECT_EQ(errorOf([&] { open()->Execute("INSERT INTO T (ID) VALUES (1)"); }), 0);

    OtherUser other(path("Archivio.mdb"));
    other.run("BEGIN EXCLUSIVE");
    EXPECT_EQ(errorOf([&] { open("Archivio.mdb", true); }), 3045);
    other.run("COMMIT");

    auto ro = open("Archivio.mdb", false, true);
    EXPECT_EQ(errorOf([&] { ro->Execute("DELETE FROM T"); }), 3027);
    auto rs = ro->OpenRecordset("T");
    EXPECT_EQ(errorOf([&] { rs->Edit(); }), 3027);
    EXPECT_EQ(errorOf([&] { ro->AppendField("T", TableDef::CreateField("X", FieldType::Long)); }), 3027);
}

TEST_F(FilesTest, WriterWaitsForAnotherUsersLockThenFails) {
    auto db = create();
    db->Execute("CREATE TABLE T (ID LONG)");
    OtherUser other(path("Archivio.mdb"));
    other.run("BEGIN EXCLUSIVE");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf([&] { db->Execute("INSERT INTO T (ID) VALUES (1)"); }), 3218);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    other.run("COMMIT");

    // A lock given back within the wait lets the write through (the wait is taken at opening); a
    // structure change waits as well, also for a user who is only about to write.
    Workspace::Default().setLockWait(5000);
    auto patient = open();
    for (const char* lock : {"BEGIN EXCLUSIVE", "BEGIN IMMEDIATE"}) {
        for (const char* sql : {"INSERT INTO T (ID) VALUES (2)", "ALTER TABLE T ADD COLUMN Nota TEXT(20)"}) {
            SCOPED_TRACE(std::string(lock) + ": " + sql);
            patient->Execute("DELETE FROM T WHERE ID = 2");
            if (patient->GetTableDef("T")->Fields.size() > 1) patient->Execute("ALTER TABLE T DROP COLUMN Nota");
            ASSERT_EQ(other.run(lock), SQLITE_OK);
            std::thread release([&] {  // the other user's commit waits for a reader, as the engine's does
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
                while (other.run("COMMIT") == SQLITE_BUSY) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            });
            EXPECT_EQ(errorOf([&] { patient->Execute(sql); }), 0);
            release.join();
        }
    }
    EXPECT_EQ(db->OpenRecordset("Select Count(*) AS N from T")->get("N"), Value::Long(0));
    EXPECT_EQ(db->GetTableDef("T")->Fields.size(), 2u);
}

// A register half read holds a read lock; a write meanwhile, while another user is writing too,
// must wait for that user instead of failing at once.
TEST_F(FilesTest, WriteWithARegisterHalfReadWaitsForAnotherWriter) {
    Workspace::Default().setLockWait(5000);
    auto db = create();
    db->Execute("CREATE TABLE T (ID LONG)");
    OtherUser other(path("Archivio.mdb"), 5000);
    other.run("BEGIN; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) "
              "INSERT INTO T SELECT i FROM n; COMMIT;");
    auto reg = db->OpenRecordset("Select * from T");
    other.run("BEGIN IMMEDIATE; INSERT INTO T VALUES (-1)");
    std::thread commit([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        other.run("COMMIT");
    });
    EXPECT_EQ(errorOf([&] { db->Execute("INSERT INTO T (ID) VALUES (-2)"); }), 0);
    commit.join();
    reg->MoveLast();
    EXPECT_EQ(reg->RecordCount(), 1000);
    EXPECT_EQ(db->OpenRecordset("Select Count(*) AS N from T where ID < 0")->get("N"), Value::Long(2));
}

// A second connection sees the first one's new table and its rules; an editor keeps its one-row
// recordset open while another user saves.
TEST_F(FilesTest, OtherConnectionsSeeSchemaChangesAndWriteBesideAnOpenRecordset) {
    auto db = createClienti();
    auto b = open();
    db->Execute("CREATE TABLE Note (ID LONG, Testo TEXT(5))");
    b->Execute("INSERT INTO [Note] (ID, Testo) VALUES (1, 'ciao')");
    EXPECT_EQ(errorOf([&] { b->Execute("INSERT INTO [Note] (ID, Testo) VALUES (2, 'troppo')"); }), 3163);
    EXPECT_EQ(db->OpenRecordset("[Note]")->get("Testo"), Value::Text("ciao"));

    auto editing = db->OpenRecordset("Select * from Clienti where ID=1");
    OtherUser other(path("Archivio.mdb"));
    EXPECT_EQ(other.run("INSERT INTO Clienti (ID, Nome) VALUES (9, 'Altro')"), SQLITE_OK);
    editing->Edit();
    editing->set("Nome", Value::Text("Rosa"));
    editing->Update();
    EXPECT_EQ(db->OpenRecordset("Select Count(*) AS N from Clienti")->get("N"), Value::Long(4));
}

TEST_F(FilesTest, CompactCopiesTablesPropertiesAndQueries) {
    auto db = createClienti();
    db->CreateQueryDef({"qrAttivi", "SELECT * FROM Clienti WHERE Attivo = True"});
    db->Execute("DELETE FROM Clienti WHERE ID = 2");
    db->Close();
    Workspace::Default().CompactDatabase(path("Archivio.mdb"), path("Compatto.mdb"));
    auto copy = open("Compatto.mdb");
    EXPECT_EQ(copy->GetTableDef("Clienti")->Fields[1].Size, 20);
    auto rs = copy->OpenRecordset("qrAttivi");
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(errorOf([&] { Workspace::Default().CompactDatabase(path("Archivio.mdb"), path("Compatto.mdb")); }), 3204);
    EXPECT_EQ(errorOf([&] { Workspace::Default().CompactDatabase(path("Manca.mdb"), path("Altro.mdb")); }), 3024);
}

// The copy of a file in use holds what was committed when it was taken, and not a write still open.
TEST_F(FilesTest, BackupOfAnOpenFileIsWholeAndChecked) {
    auto db = createClienti();
    OtherUser other(path("Archivio.mdb"));
    other.run("BEGIN; INSERT INTO Clienti (ID, Nome) VALUES (9, 'Aperto')");
    long last = 0, total = -1;
    Workspace::Default().BackupDatabase(path("Archivio.mdb"), path("Copia.mdb"), [&](long done, long all) {
        last = done;
        total = all;
    });
    other.run("ROLLBACK");
    EXPECT_EQ(last, total);
    EXPECT_EQ(Workspace::Default().IntegrityCheck(path("Copia.mdb")), "");
    auto copy = open("Copia.mdb");
    EXPECT_EQ(copy->OpenRecordset("Select Count(*) As N from Clienti")->get("N"), Value::Long(3));

    EXPECT_EQ(errorOf([&] { Workspace::Default().BackupDatabase(path("Archivio.mdb"), path("Copia.mdb")); }), 3204);
    EXPECT_EQ(errorOf([&] { Workspace::Default().BackupDatabase(path("Manca.mdb"), path("Altra.mdb")); }), 3024);
    EXPECT_EQ(errorOf([&] { Workspace::Default().BackupDatabase(path("Archivio.mdb"), "/proc/Copia.mdb"); }), 3044);

    // A page overwritten in the middle of the file is found by the check.
    db->Close();
    copy->Close();
    {
        std::fstream f(path("Copia.mdb"), std::ios::in | std::ios::out | std::ios::binary);
        f.seekp(0, std::ios::end);
        const auto size = static_cast<std::size_t>(f.tellp());
        f.seekp(4096);
        const std::string noise(size - 4096, '\x5a');
        f.write(noise.data(), static_cast<std::streamsize>(noise.size()));
    }
    EXPECT_NE(Workspace::Default().IntegrityCheck(path("Copia.mdb")), "");
}

}  // namespace
}  // namespace daotest
