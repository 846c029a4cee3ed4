// libFuzzer target: any text into Translator::translate(). A translation must come back or a
// JetError go out; the SQLite text of every translation must prepare and run (empty and small
// tables) without an error that is not the engine's own. Nothing may crash, hang or leak.
#include <sqlite3.h>

#include <cstdint>
#include <cstdlib>
#include <cstdio>
#include <map>
#include <string>

#include "store/errors.h"
#include "store/sql/translator.h"
#include "tests/store/sql_support.h"

// The translator's sources are compiled into this target so that they carry the fuzzer's coverage
// instrumentation (the library itself is built without it); the library's copies are then not linked.
#include "store/sql/functions.cpp"
#include "store/sql/parser.cpp"
#include "store/sql/translator.cpp"

namespace {

using store::FieldType;
using store::sql::ColumnInfo;
using store::sql::RelationInfo;

using Cat = sqltest::MemCatalog;

struct World {
    Cat cat;
    sqlite3* db = nullptr;
    store::sql::Translator* tr = nullptr;

    void table(const char* name, std::initializer_list<std::pair<const char*, FieldType>> cols, const char* rows) {
        RelationInfo r;
        r.name = name;
        std::string sql = std::string("CREATE TABLE \"") + name + "\" (";
        bool first = true;
        for (auto& [n, t] : cols) {
            r.columns.push_back({n, t, t == FieldType::Text ? 50 : 0, {}});
            sql += std::string(first ? "\"" : ", \"") + n + "\" " +
                   (t == FieldType::Text || t == FieldType::Memo || t == FieldType::Date ? "TEXT"
                    : t == FieldType::Double                                              ? "REAL"
                                                                                          : "INTEGER");
            first = false;
        }
        sqlite3_exec(db, (sql + ")").c_str(), nullptr, nullptr, nullptr);
        sqlite3_exec(db, (std::string("INSERT INTO \"") + name + "\" VALUES " + rows).c_str(), nullptr, nullptr, nullptr);
        cat.put(r);
    }

    World() {
        sqlite3_open(":memory:", &db);
        store::sql::registerFunctions(db);
        table("Clienti", {{"ID", FieldType::Long}, {"DescCliente", FieldType::Text}, {"Sconto1", FieldType::Double},
                          {"Note", FieldType::Memo}},
              "(1,'Rossi',10,NULL),(2,'bianchi',NULL,'x')");
        table("Documenti", {{"ID", FieldType::Long}, {"Tipo", FieldType::Long}, {"Data", FieldType::Date},
                            {"Cliente", FieldType::Long}, {"Pagato", FieldType::Boolean},
                            {"ImportoTotale", FieldType::Double}, {"Prefisso", FieldType::Text}},
              "(1,5,'2024-01-10',1,-1,122,'A'),(2,9,'2024-02-10 10:00:00',2,0,NULL,NULL)");
        table("Movimenti", {{"ID", FieldType::Long}, {"Documento", FieldType::Long}, {"Importo", FieldType::Double},
                            {"Iva", FieldType::Long}},
              "(1,1,100,1),(2,1,22.5,2),(3,7,NULL,1)");
        table("CodiciIva", {{"ID", FieldType::Long}, {"DescIva", FieldType::Text}, {"AliquotaIva", FieldType::Double}},
              "(1,'22%',22),(2,'10%',10)");
        table("Note", {{"ID", FieldType::Long}, {"Descrizione", FieldType::Text}, {"Predefinita", FieldType::Boolean}},
              "(1,'a',0)");
        // a writable saved query
        sqlite3_exec(db,
                     "CREATE VIEW qrClienti AS SELECT ID, DescCliente, Sconto1, Note, DescCliente || '!' AS "
                     "Denominazione, rowid AS __rowid FROM Clienti",
                     nullptr, nullptr, nullptr);
        RelationInfo q;
        q.name = "qrClienti";
        q.isQuery = true;
        q.baseTable = "Clienti";
        q.columns = {{"ID", FieldType::Long, 0, "ID"}, {"DescCliente", FieldType::Text, 50, "DescCliente"},
                     {"Sconto1", FieldType::Double, 0, "Sconto1"}, {"Note", FieldType::Memo, 0, "Note"},
                     {"Denominazione", FieldType::Text, 255, ""}};
        cat.put(q);
        tr = new store::sql::Translator(cat);
    }
};

int progress(void* p) {
    // bounds the run of one statement (a cross join of many tables, a long recursion of views)
    return ++*static_cast<int*>(p) > 2000;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World* w = new World();
    if (size > 20000) return 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    store::sql::Translation t;
    try {
        t = w->tr->translate(text);
    } catch (const store::JetError&) {
        return 0;
    }
    if (t.kind == store::sql::StatementKind::Ddl) return 0;
    // Writes run inside a transaction that is rolled back, so that the tables stay small.
    sqlite3_exec(w->db, "SAVEPOINT f", nullptr, nullptr, nullptr);
    sqlite3_stmt* st = nullptr;
    int rc = sqlite3_prepare_v2(w->db, t.sql.c_str(), static_cast<int>(t.sql.size()), &st, nullptr);
    if (rc != SQLITE_OK) {
        std::string m = sqlite3_errmsg(w->db);
        // SQLite's own limits are not the translator's fault
        // SQLite's own counts (columns, compound terms) are not the translator's; its depth limits
        // are: the translator refuses what SQLite's parser could not take.
        if (m.find("too many") == std::string::npos) {
            std::fprintf(stderr, "generated SQL does not prepare: %s\n%s\n", m.c_str(), t.sql.c_str());
            std::abort();
        }
    } else {
        store::sql::bindParams(st, t.params);
        int ticks = 0;
        sqlite3_progress_handler(w->db, 1000, progress, &ticks);
        int rows = 0;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW && ++rows < 1000) {
        }
        sqlite3_progress_handler(w->db, 0, nullptr, nullptr);
        if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
            std::string m = sqlite3_errmsg(w->db);
            bool engine = m.compare(0, 4, "JET:") == 0 || rc == SQLITE_INTERRUPT || m == "interrupted";
            if (!engine && m.find("too many") == std::string::npos && m.find("too large") == std::string::npos &&
                m.find("UNIQUE") == std::string::npos) {
                std::fprintf(stderr, "generated SQL fails to run: %s\n%s\n", m.c_str(), t.sql.c_str());
                std::abort();
            }
            try {
                store::sql::raiseFromSqlite(w->db, rc);
            } catch (const store::JetError&) {
            }
        }
        sqlite3_finalize(st);
    }
    sqlite3_exec(w->db, "ROLLBACK TO f; RELEASE f", nullptr, nullptr, nullptr);
    return 0;
}
