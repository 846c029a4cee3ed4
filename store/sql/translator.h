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
struct sqlite3_context;
struct sqlite3_stmt;

namespace store::sql {

struct ColumnInfo {
    std::string name;
    FieldType type = FieldType::Text;
    int size = 0;  // Text: maximum length; 0 for other types
    // A saved query's column: the column of RelationInfo::baseTable it shows unchanged (what an
    // Update through the query writes), "" for a computed one. Fill it from the query's own
    // Translation (ResultColumn::baseColumn). When no column of a writable query has it, a column
    // named like one of the base table's is taken as that one.
    std::string baseColumn;
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
    // SQLite text; numbered placeholders "?N" unless inlineLiterals. params[i] binds to ?(i+1)
    // (sqlite3_bind_*(stmt, i + 1, ...)); a placeholder may appear more than once in the text.
    std::string sql;
    // In storage form already: texts, Longs, Doubles; a date literal is its ISO-8601 text.
    // bindParams() below binds them.
    std::vector<Value> params;
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

// Binds Translation::params to a prepared statement (param i to placeholder i+1), in storage form
// (a Date value as ISO text, a Boolean as -1/0).
void bindParams(sqlite3_stmt* stmt, const std::vector<Value>& params);

// A value converted to a field's type in storage form, as INSERT and UPDATE write it: text by the
// locale to a number or a date, any non-zero number to -1 for Yes/No, half-even rounding to the
// integer types. Errors: 3163 text longer than size (size > 0), 6 overflow, 13 type mismatch.
// A Date comes back as Value::Date (the caller writes DateToIso).
Value storeValue(const Value& v, FieldType type, int size);

// A SQLite failure as the engine's error: a function that raised a JetError passes its number and
// text through the SQLite message; constraint failures become 3022, busy/locked 3218/3260, and so on.
[[noreturn]] void raiseFromSqlite(sqlite3* db, int rc, std::string_view context = {});

// The engine's error number and text as an SQL function's error, for raiseFromSqlite to read back;
// without a text, the number's own.
void resultJetError(sqlite3_context* ctx, int number, const std::string& text);
void resultJetError(sqlite3_context* ctx, int number);

}  // namespace store::sql
