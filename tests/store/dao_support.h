// Test support for the database objects: a temporary folder of real files and a small customer table.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <string>

#include "convert_support.h"
#include "store/dao.h"
#include "support/cartella_temporanea.h"

namespace daotest {

using store::DatabasePtr;
using store::FieldDef;
using store::FieldType;
using store::JetError;
using store::TableDef;
using store::Value;
using store::Workspace;

// Another user on the same file through SQLite directly, as another process would be; waitMs is how
// long its statements wait for a lock.
class OtherUser {
public:
    explicit OtherUser(const std::string& path, int waitMs = 0) {
        sqlite3_open(path.c_str(), &db_);
        sqlite3_busy_timeout(db_, waitMs);
    }
    ~OtherUser() { sqlite3_close(db_); }
    int run(const char* sql) { return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr); }

private:
    sqlite3* db_ = nullptr;
};

class DaoTest : public ::testing::Test {
protected:
    void SetUp() override { Workspace::Default().setLockWait(300); }
    void TearDown() override { Workspace::Default().setLockWait(4000); }

    std::string path(const std::string& name) const { return folder_ / name; }
    DatabasePtr create(const std::string& name = "Archivio.mdb") { return Workspace::Default().CreateDatabase(path(name)); }
    DatabasePtr open(const std::string& name = "Archivio.mdb", bool exclusive = false, bool readOnly = false) {
        return Workspace::Default().OpenDatabase(path(name), exclusive, readOnly);
    }

    // A new database with Clienti: ID, Nome Text(20), Attivo Yes/No, Saldo Double, Dal Date, three rows.
    DatabasePtr createClienti() {
        DatabasePtr db = create();
        db->Execute("CREATE TABLE Clienti (ID LONG, Nome TEXT(20), Attivo YESNO, Saldo DOUBLE, Dal DATETIME)");
        db->Execute("INSERT INTO Clienti (ID, Nome, Attivo, Saldo, Dal) VALUES (1, 'Rossi', True, 2.5, #03/05/2024#)");
        db->Execute("INSERT INTO Clienti (ID, Nome, Attivo, Saldo, Dal) VALUES (2, 'Bianchi', False, 0.1, #12/31/2024#)");
        db->Execute("INSERT INTO Clienti (ID, Nome, Attivo, Saldo) VALUES (3, 'Verdi', True, -7)");
        return db;
    }

    test::CartellaTemporanea folder_;
};

}  // namespace daotest
