// The translator: statement text of the program's dialect in, SQLite text out.
// Lexer -> syntax tree -> binder (names resolved against the catalogue, types known) -> generator.
// A statement seen before with other literals reuses its translation: only the literals change.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/value.h"

struct sqlite3;

namespace store::sql {

struct ColumnInfo {
    std::string name;
    FieldType type = FieldType::Text;
    int size = 0;  // Text: maximum length; 0 for other types
};

// A table or a saved query as the binder sees it.
struct RelationInfo {
    std::string name;  // as stored
    bool isQuery = false;
    std::vector<ColumnInfo> columns;  // in ordinal order
    // A saved query whose rows are rows of one table (it can be written through): that table.
    // The view then carries that table's rowid in a hidden last column named "__rowid".
    std::string baseTable;
};

// Implemented by the database object: what the file holds, found by name without case.
class Catalog {
public:
    virtual ~Catalog() = default;
    virtual const RelationInfo* findRelation(std::string_view name) const = 0;
    virtual std::uint64_t schemaVersion() const = 0;  // changes whenever a table or query changes
};

enum class StatementKind { Select, Insert, Update, Delete, Ddl };

struct ResultColumn {
    std::string name;            // the name the recordset shows (alias, field name, or Expr1000...)
    FieldType type = FieldType::Text;
    int size = 0;
    std::string baseColumn;      // a plain column of the base table: the one an Update writes; else ""
};

// Schema statements are handed to the database object, which keeps the field properties SQLite
// does not know (type code, size, required...).
struct FieldSpec {
    std::string name;
    FieldType type = FieldType::Text;
    int size = 0;          // TEXT(n); 0 = default for the type
    bool counter = false;  // COUNTER / AUTOINCREMENT
    bool notNull = false;
    bool primaryKey = false;
    bool unique = false;
};
struct DdlCommand {
    enum class Op { CreateTable, DropTable, CreateIndex, DropIndex, AddColumn, AlterColumn, DropColumn };
    Op op = Op::CreateTable;
    std::string table;
    std::vector<FieldSpec> fields;         // CreateTable; AddColumn/AlterColumn: one
    std::string index;                     // CreateIndex, DropIndex
    std::vector<std::string> indexFields;  // CreateIndex
    bool unique = false, primary = false;  // CreateIndex
};

struct Translation {
    StatementKind kind = StatementKind::Select;
    std::string sql;               // SQLite text; '?' placeholders unless inlineLiterals
    std::vector<Value> params;     // bound to the placeholders in order
    // Select only:
    std::vector<ResultColumn> columns;  // visible columns, in order
    std::string baseTable;              // the table rows are written to, "" when not updatable
    bool hasRowid = false;              // the SQLite text yields the base rowid as one extra last column
    // Ddl only:
    std::optional<DdlCommand> ddl;
};

struct Options {
    bool inlineLiterals = false;  // literals written into the text (for views); no params
};

class Translator {
public:
    explicit Translator(const Catalog& catalog);
    ~Translator();
    Translator(const Translator&) = delete;
    Translator& operator=(const Translator&) = delete;

    // Throws JetError with the platform's number (3075, 3131, 3061, 3078, 3085, ...).
    Translation translate(std::string_view text, const Options& options = {});

    std::size_t cacheSize() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Registers the engine's collation "JET" and its functions (jet_*) on a connection.
void registerFunctions(sqlite3* db);

// A SQLite failure as the engine's error: a function that raised a JetError passes its number and
// text through the SQLite message; constraint failures become 3022, busy/locked 3218/3260, and so on.
[[noreturn]] void raiseFromSqlite(sqlite3* db, int rc, std::string_view context = {});

}  // namespace store::sql
