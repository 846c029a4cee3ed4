// Test support for the translator: a catalogue in memory, tables made on a real SQLite connection
// with the engine's storage rules, and statements run through translate() + registerFunctions(), their
// values read back as the engine reads what it stores.
#pragma once

#include <sqlite3.h>

#include <map>
#include <string>
#include <vector>

#include "convert_support.h"
#include "store/catalog_database.h"
#include "store/convert.h"
#include "store/errors.h"
#include "store/sql/translator.h"

namespace sqltest {

using store::FieldType;
using store::Value;
using store::sql::ColumnInfo;
using store::sql::RelationInfo;
using store::sql::Translation;

class MemCatalog : public store::sql::Catalog {
public:
    const RelationInfo* findRelation(std::string_view name) const override {
        auto it = rel_.find(store::AsciiLower(name));
        return it == rel_.end() ? nullptr : &it->second;
    }
    std::uint64_t schemaVersion() const override { return version_; }
    void put(RelationInfo r) {
        rel_[store::AsciiLower(r.name)] = std::move(r);
        ++version_;
    }

private:
    std::map<std::string, RelationInfo> rel_;
    std::uint64_t version_ = 1;
};

// Column shorthand: "Name:L" Long, ":B" Yes/No, ":D" Double, ":T" Date, ":S50" Text(50), ":M" Memo,
// ":C" Currency.
inline ColumnInfo col(const std::string& forma) {
    ColumnInfo c;
    auto p = forma.find(':');
    c.name = forma.substr(0, p);
    std::string t = p == std::string::npos ? "S" : forma.substr(p + 1);
    switch (t[0]) {
        case 'L': c.type = FieldType::Long; break;
        case 'B': c.type = FieldType::Boolean; break;
        case 'D': c.type = FieldType::Double; break;
        case 'C': c.type = FieldType::Currency; break;
        case 'T': c.type = FieldType::Date; break;
        case 'M': c.type = FieldType::Memo; break;
        default:
            c.type = FieldType::Text;
            c.size = t.size() > 1 ? std::stoi(t.substr(1)) : 50;
    }
    return c;
}

// A short text of a value for comparisons in tests: Null "Null", dates "d:2024-03-05", booleans
// "True"/"False", numbers as %g, texts as they are.
inline std::string show(const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: return "Null";
        case Value::Kind::Boolean: return v.number() != 0 ? "True" : "False";
        case Value::Kind::Date: return "d:" + store::DateToIso(v.number());
        case Value::Kind::Text: return v.text();
        default: {
            char b[64];
            std::snprintf(b, sizeof b, "%.15g", v.number());
            return b;
        }
    }
}

struct Result {
    Translation t;
    std::vector<std::vector<Value>> rows;
    // rows as "a|b|c" lines joined by ";"
    std::string text() const {
        std::string s;
        for (std::size_t r = 0; r < rows.size(); ++r) {
            if (r) s += ";";
            for (std::size_t c = 0; c < rows[r].size(); ++c) {
                if (c) s += "|";
                s += show(rows[r][c]);
            }
        }
        return s;
    }
    std::string names() const {
        std::string s;
        for (std::size_t c = 0; c < t.columns.size(); ++c) s += (c ? "," : "") + t.columns[c].name;
        return s;
    }
};

class TestDb {
public:
    TestDb() : tr_(cat_) {
        sqlite3_open(":memory:", &db_);
        store::sql::registerFunctions(db_);
    }
    ~TestDb() { sqlite3_close(db_); }
    TestDb(const TestDb&) = delete;
    TestDb& operator=(const TestDb&) = delete;

    sqlite3* db() const { return db_; }
    store::sql::Translator& translator() { return tr_; }

    // Creates a table by the storage rules; text columns take the engine's collation.
    void table(const std::string& name, const std::vector<std::string>& specs,
               const std::vector<std::string>& indexes = {}) {
        RelationInfo r;
        r.name = name;
        std::string sql = "CREATE TABLE \"" + name + "\" (";
        for (std::size_t i = 0; i < specs.size(); ++i) {
            ColumnInfo c = col(specs[i]);
            sql += (i ? ", \"" : "\"") + c.name + "\" " + store::detail::storageTypeName(c.type);
            if (c.type == FieldType::Text || c.type == FieldType::Memo) sql += " COLLATE JET";
            r.columns.push_back(c);
        }
        sql += ")";
        raw(sql);
        for (auto& ix : indexes) raw("CREATE INDEX \"" + name + "_" + ix + "\" ON \"" + name + "\" (\"" + ix + "\")");
        cat_.put(std::move(r));
    }

    // A saved query: translated with literals inline, made a view, entered in the catalogue.
    Translation query(const std::string& name, const std::string& jet) {
        store::sql::Options o;
        o.inlineLiterals = true;
        Translation t = tr_.translate(jet, o);
        raw("CREATE VIEW \"" + name + "\" AS " + t.sql);
        RelationInfo r;
        r.name = name;
        r.isQuery = true;
        r.baseTable = t.baseTable;
        for (auto& c : t.columns) r.columns.push_back({c.name, c.type, c.size, c.baseColumn});
        cat_.put(std::move(r));
        return t;
    }

    void raw(const std::string& sql) {
        char* err = nullptr;
        int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err);
        if (rc != SQLITE_OK) {
            std::string m = err ? err : "";
            sqlite3_free(err);
            throw std::runtime_error("SQLite: " + m + " in " + sql);
        }
    }

    // Translates and runs a statement; rows for a SELECT (without the hidden rowid).
    Result run(const std::string& jet) {
        Result r;
        r.t = tr_.translate(jet);
        if (r.t.kind == store::sql::StatementKind::Ddl) return r;
        sqlite3_stmt* st = nullptr;
        int rc = sqlite3_prepare_v2(db_, r.t.sql.c_str(), -1, &st, nullptr);
        if (rc != SQLITE_OK) {
            std::string m = sqlite3_errmsg(db_);
            throw std::runtime_error("prepare: " + m + " in " + r.t.sql);
        }
        store::sql::bindParams(st, r.t.params);
        for (;;) {
            rc = sqlite3_step(st);
            if (rc == SQLITE_ROW) {
                std::vector<Value> row;
                for (std::size_t c = 0; c < r.t.columns.size(); ++c) {
                    using namespace store::detail;
                    row.push_back(readCell(r.t.columns[c].type, cellFromColumn(st, static_cast<int>(c))));
                }
                r.rows.push_back(std::move(row));
                continue;
            }
            if (rc == SQLITE_DONE) break;
            sqlite3_finalize(st);
            store::sql::raiseFromSqlite(db_, rc);
        }
        sqlite3_finalize(st);
        return r;
    }

    std::string rows(const std::string& jet) { return run(jet).text(); }
    std::string one(const std::string& expr) { return run("SELECT " + expr).text(); }

    // The error number a statement gives (translation or execution), 0 when none.
    int error(const std::string& jet) { return errorOf([&] { run(jet); }); }

private:
    MemCatalog cat_;
    sqlite3* db_ = nullptr;
    store::sql::Translator tr_;
};

}  // namespace sqltest
