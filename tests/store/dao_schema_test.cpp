// Tables, fields, indexes and saved queries kept in the file, as the structure update uses them.
#include <tuple>

#include "dao_support.h"
#include "store/clock.h"

namespace daotest {
namespace {

using store::IndexDef;
using store::QueryDef;

FieldDef field(const char* name, FieldType type, int size = 0, const char* defaultValue = "") {
    FieldDef f = TableDef::CreateField(name, type, size);
    f.DefaultValue = defaultValue;
    return f;
}

TableDef spese() {
    TableDef t;
    t.Name = "Spese";
    t.Fields.push_back(field("ID", FieldType::Long));
    FieldDef numero = field("Numero", FieldType::Text, 10);
    numero.Required = true;
    numero.AllowZeroLength = false;
    numero.ValidationRule = "Is Not Null";
    numero.ValidationText = "Manca il numero";
    t.Fields.push_back(numero);
    t.Fields.push_back(field("Importo", FieldType::Double, 0, "0"));
    t.Fields.push_back(field("Pagata", FieldType::Boolean, 0, "False"));
    t.Fields.push_back(field("Descrizione", FieldType::Text, 0, "'nessuna'"));
    t.Fields.push_back(field("Note", FieldType::Memo));
    t.Fields.push_back(field("Data", FieldType::Date));
    t.Indexes.push_back(TableDef::CreateIndex("PrimaryKey", {"ID"}, true, true));
    t.Indexes.push_back(TableDef::CreateIndex("NumeroData", {"Numero", "Data"}));
    return t;
}

class SchemaTest : public DaoTest {
protected:
    void SetUp() override {
        DaoTest::SetUp();
        db_ = create();
        db_->AppendTableDef(spese());
    }
    Value first(const std::string& sql, const char* field) { return db_->OpenRecordset(sql)->get(field); }
    void reopen() {
        db_->Close();
        db_ = open();
    }
    DatabasePtr db_;
};

TEST_F(SchemaTest, FieldPropertiesAndIndexesSurviveCloseAndReopen) {
    reopen();
    auto def = db_->GetTableDef("spese");
    ASSERT_TRUE(def);
    EXPECT_EQ(def->Name, "Spese");
    const TableDef want = spese();
    ASSERT_EQ(def->Fields.size(), want.Fields.size());
    const int sizes[] = {4, 10, 8, 1, 50, 0, 8};  // Text without a size takes 50
    for (std::size_t i = 0; i < want.Fields.size(); ++i) {
        const FieldDef &got = def->Fields[i], &w = want.Fields[i];
        SCOPED_TRACE(w.Name);
        EXPECT_EQ(std::tie(got.Name, got.Type, got.Required, got.DefaultValue, got.ValidationRule, got.ValidationText),
                  std::tie(w.Name, w.Type, w.Required, w.DefaultValue, w.ValidationRule, w.ValidationText));
        EXPECT_EQ(got.Size, sizes[i]);
        EXPECT_EQ(got.OrdinalPosition, static_cast<int>(i));
        if (w.Type == FieldType::Text) {
            EXPECT_EQ(got.AllowZeroLength, w.AllowZeroLength);
        }
    }
    ASSERT_EQ(def->Indexes.size(), 2u);
    const IndexDef& ix = def->Indexes[def->Indexes[0].Name == "PrimaryKey" ? 1 : 0];
    EXPECT_FALSE(ix.Primary || ix.Unique);
    EXPECT_EQ(ix.Fields, (std::vector<std::string>{"Numero", "Data"}));
}

TEST_F(SchemaTest, DefaultsApplyToRowsInsertedWithoutTheField) {
    store::fissaOrologio(45356.75);  // 5 March 2024, 18:00
    db_->AppendField("Spese", field("Giorno", FieldType::Date, 0, "Date()"));
    db_->AppendField("Spese", field("Ora", FieldType::Date, 0, "=Now()"));
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (1, 'A1')");
    store::fissaOrologio(std::nullopt);
    auto rs = db_->OpenRecordset("Select * from Spese where ID=1");
    EXPECT_EQ(rs->get("Importo"), Value::Double(0));
    EXPECT_EQ(rs->get("Pagata"), Value::Bool(false));
    EXPECT_EQ(rs->get("Descrizione"), Value::Text("nessuna"));
    EXPECT_TRUE(rs->get("Note").isNull());
    EXPECT_EQ(rs->get("Giorno"), Value::Date(45356));
    EXPECT_EQ(rs->get("Ora"), Value::Date(45356.75));
}

TEST_F(SchemaTest, WritesBreakingTheFieldRulesAreRefused) {
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (1, 'A1')");
    const std::pair<std::string, int> cases[] = {
        {"INSERT INTO Spese (ID, Numero) VALUES (2, '12345678901')", 3163},
        {"INSERT INTO Spese (ID, Numero) VALUES (1, 'B1')", 3022},
        {"INSERT INTO Spese (ID) VALUES (3)", 3314},
        {"INSERT INTO Spese (ID, Numero) VALUES (4, '')", 3315},
        {"UPDATE Spese SET ID = Null WHERE ID = 1", 3058},
        {"INSERT INTO Spese (ID, Numero, Note) VALUES (5, 'C', '" + std::string(10000, 'n') + "')", 0},
    };
    for (const auto& [sql, error] : cases) EXPECT_EQ(errorOf([&] { db_->Execute(sql); }), error) << sql;
    EXPECT_EQ(first("Select Count(*) AS N from Spese", "N"), Value::Long(2));
}

// The structure update: a new numeric field gets no value in the rows already there (the update
// then sets them to 0 itself); a memo narrowed to a text of 3 cuts its values; a retyped field keeps
// the text form of its numbers.
TEST_F(SchemaTest, FieldChangesCarryTheRowsOver) {
    db_->Execute("INSERT INTO Spese (ID, Numero, [Note], Importo) VALUES (1, 'A1', 'Cancelleria', 2.5)");
    db_->AppendField("Spese", field("Quota", FieldType::Long, 0, "0"));
    db_->Execute("ALTER TABLE Spese ALTER COLUMN [Note] TEXT(3)");
    db_->Execute("ALTER TABLE Spese ALTER COLUMN Importo TEXT");
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (2, 'A2')");

    auto rs = db_->OpenRecordset("Select * from Spese order by ID");
    EXPECT_TRUE(rs->get("Quota").isNull());
    EXPECT_EQ(rs->get("Note"), Value::Text("Can"));
    EXPECT_EQ(rs->get("Importo"), Value::Text("2,5"));
    EXPECT_EQ(rs->Fields("Note").Type(), FieldType::Text);
    EXPECT_EQ(rs->Fields("Note").Size(), 3);
    rs->MoveNext();
    EXPECT_EQ(rs->get("Quota"), Value::Long(0));

    rs->Close();
    db_->DeleteField("Spese", "Numero");  // part of an index: the index goes with it
    auto def = db_->GetTableDef("Spese");
    EXPECT_EQ(def->Fields.size(), 7u);
    EXPECT_EQ(def->Indexes.size(), 1u);
    EXPECT_EQ(errorOf([&] { db_->DeleteField("Spese", "Numero"); }), 3265);
}

// Properties set on a field already there: the rows keep their values, new rows meet the new rules.
TEST_F(SchemaTest, ChangedFieldPropertiesAreKeptAndApplied) {
    db_->Execute("INSERT INTO Spese (ID, Numero, Descrizione) VALUES (1, 'A1', '')");
    FieldDef desc = db_->GetTableDef("Spese")->Fields[4];
    desc.AllowZeroLength = false;
    desc.DefaultValue = "\"varie\"";
    desc.ValidationText = "Descrizione vuota";
    EXPECT_EQ(errorOf([&] { db_->SetFieldProperties("Spese", desc); }), 3315);  // a row breaks the rule
    db_->Execute("UPDATE Spese SET Descrizione = 'x' WHERE ID = 1");
    db_->SetFieldProperties("Spese", desc);
    reopen();
    const FieldDef kept = db_->GetTableDef("Spese")->Fields[4];
    EXPECT_EQ(std::tie(kept.AllowZeroLength, kept.DefaultValue, kept.ValidationText, kept.OrdinalPosition),
              std::make_tuple(false, std::string("\"varie\""), std::string("Descrizione vuota"), 4));
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (2, 'A2')");
    EXPECT_EQ(first("Select Descrizione from Spese where ID=2", "Descrizione"), Value::Text("varie"));
    EXPECT_EQ(errorOf([&] { db_->Execute("UPDATE Spese SET Descrizione = '' WHERE ID = 2"); }), 3315);
}

TEST_F(SchemaTest, CounterFieldNumbersNewRows) {
    db_->Execute("CREATE TABLE Note (ID COUNTER, Testo TEXT(20))");
    db_->Execute("INSERT INTO [Note] (Testo) VALUES ('prima')");
    db_->Execute("INSERT INTO [Note] (Testo) VALUES ('seconda')");
    EXPECT_EQ(first("Select Max(ID) AS M from [Note]", "M"), Value::Long(2));
}

TEST_F(SchemaTest, SavedQueriesFollowTheTablesTheyRead) {
    db_->Execute("INSERT INTO Spese (ID, Numero, Importo) VALUES (1, 'A1', 4)");
    db_->CreateQueryDef({"qrSpese", "SELECT * FROM Spese WHERE Importo > 0"});
    db_->CreateQueryDef({"qrSpeseTotali", "SELECT Sum(Importo) AS Totale FROM qrSpese"});
    db_->AppendField("Spese", field("Fornitore", FieldType::Long));
    EXPECT_TRUE(db_->OpenRecordset("Select * from qrSpese")->HasField("Fornitore"));

    db_->DeleteTableDef("Spese");
    EXPECT_TRUE(db_->QueryExists("qrSpese"));  // its text is kept; it fails when opened
    EXPECT_EQ(errorOf([&] { db_->OpenRecordset("qrSpeseTotali"); }), 3078);
    db_->AppendTableDef(spese());
    db_->Execute("INSERT INTO Spese (ID, Numero, Importo) VALUES (1, 'A1', 6.5)");
    EXPECT_EQ(first("qrSpeseTotali", "Totale"), Value::Double(6.5));

    reopen();
    auto queries = db_->QueryDefs();
    ASSERT_EQ(queries.size(), 2u);
    EXPECT_EQ(queries[0].Name, "qrSpese");
    EXPECT_EQ(queries[0].SQL, "SELECT * FROM Spese WHERE Importo > 0");
    db_->DeleteQueryDef("qrSpese");
    EXPECT_FALSE(db_->QueryExists("qrSpese"));
    EXPECT_EQ(errorOf([&] { db_->OpenRecordset("Select * from qrSpeseTotali"); }), 3078);
    db_->CreateQueryDef({"qrSpese", "SELECT * FROM Spese WHERE Importo > 5"});  // the other one works again
    EXPECT_EQ(first("qrSpeseTotali", "Totale"), Value::Double(6.5));
    EXPECT_EQ(errorOf([&] { db_->OpenRecordset("qrNessuna"); }), 3078);
}

TEST_F(SchemaTest, SchemaCallsOnMissingOrDuplicateObjectsFail) {
    struct Case {
        const char* what;
        std::function<void()> call;
        int error;
    };
    const Case cases[] = {
        {"table again", [&] { db_->AppendTableDef(spese()); }, 3010},
        {"query named as a table", [&] { db_->CreateQueryDef({"Spese", "SELECT * FROM Spese"}); }, 3012},
        {"field again", [&] { db_->AppendField("Spese", field("importo", FieldType::Long)); }, 3191},
        {"missing index", [&] { db_->DeleteIndex("Spese", "Nessuno"); }, 3265},
        {"index on a missing field", [&] { db_->AppendIndex("Spese", TableDef::CreateIndex("X", {"Manca"})); }, 3265},
        {"table with no fields", [&] { db_->AppendTableDef(TableDef{"Vuota", {}, {}}); }, 3264},
    };
    for (const Case& c : cases) EXPECT_EQ(errorOf(c.call), c.error) << c.what;
    EXPECT_FALSE(db_->GetTableDef("Nessuna"));
}

TEST_F(SchemaTest, UniqueIndexAddedLaterRefusesDuplicates) {
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (1, 'A1')");
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (2, 'A1')");
    EXPECT_EQ(errorOf([&] { db_->AppendIndex("Spese", TableDef::CreateIndex("Numero", {"Numero"}, true)); }), 3022);
    db_->Execute("DELETE FROM Spese WHERE ID = 2");
    db_->AppendIndex("Spese", TableDef::CreateIndex("Numero", {"Numero"}, true));
    // Texts compare without case, in an index too.
    EXPECT_EQ(errorOf([&] { db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (3, 'a1')"); }), 3022);
}

// A key added later refuses Null in its fields, and one that is dropped accepts it again.
TEST_F(SchemaTest, PrimaryKeyAddedLaterRefusesNull) {
    db_->DeleteIndex("Spese", "PrimaryKey");
    db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (Null, 'A1')");
    EXPECT_EQ(errorOf([&] { db_->AppendIndex("Spese", TableDef::CreateIndex("PrimaryKey", {"ID"}, true, true)); }), 3058);
    db_->Execute("UPDATE Spese SET ID = 1");
    db_->AppendIndex("Spese", TableDef::CreateIndex("PrimaryKey", {"ID"}, true, true));
    EXPECT_EQ(errorOf([&] { db_->Execute("INSERT INTO Spese (ID, Numero) VALUES (Null, 'B1')"); }), 3058);
}

}  // namespace
}  // namespace daotest
