// The engine's own catalogue inside each file: what SQLite does not keep about tables, fields,
// indexes and saved queries. Three small tables, all named "__jet_*":
//   __jet_objects  one row per table or saved query (kind, creation order, query text and shape)
//   __jet_fields   the platform's field properties (type code, size, required, default...)
//   __jet_indexes  the platform's index names (SQLite index names are global) and the primary flag
// PRAGMA user_version counts catalogue changes, so that another connection notices them.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/dao.h"
#include "store/names.h"
#include "store/sql/translator.h"

struct sqlite3;
struct sqlite3_stmt;

namespace store::detail {

// ---- SQLite helpers ------------------------------------------------------------------------------

// A prepared statement that finalizes itself.
class Stmt {
public:
    Stmt() = default;
    Stmt(sqlite3* db, std::string_view sql);  // raises the engine's error on a prepare failure
    ~Stmt();
    Stmt(Stmt&& o) noexcept;
    Stmt& operator=(Stmt&& o) noexcept;
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;

    bool step();  // true while there is a row; raises on failure
    void reset();
    void bind(int index, const Value& v);  // 1-based; a Date as ISO text, a Boolean as -1/0
    void bindText(int index, std::string_view text);
    void bindInt(int index, std::int64_t v);
    std::int64_t columnInt(int i) const;
    std::string columnText(int i) const;
    bool columnIsNull(int i) const;
    sqlite3_stmt* get() const { return stmt_; }

private:
    sqlite3* db_ = nullptr;
    sqlite3_stmt* stmt_ = nullptr;
};

// Prepared statements of one connection kept for reuse, keyed by their SQL text, the least recently
// used dropped first. Preparing the engine's statements (views with several joins) costs more than
// running them on one row. A statement is out of the cache while it is in use, so two users never
// share one; what is given back after clear() (a schema change, the connection closing) is dropped,
// since it was prepared against what no longer holds.
class StatementCache {
public:
    explicit StatementCache(std::size_t capacity = 48) : capacity_(capacity) {}
    Stmt take(sqlite3* db, const std::string& sql);  // reset and unbound, or freshly prepared
    void give(std::string sql, Stmt s, std::uint64_t generation);
    void clear();
    std::uint64_t generation() const { return generation_; }
    std::size_t size() const { return entries_.size(); }

private:
    struct Entry {
        std::string sql;
        Stmt stmt;
    };
    std::size_t capacity_;
    std::uint64_t generation_ = 0;
    std::list<Entry> entries_;  // most recently given back first
    std::unordered_map<std::string_view, std::list<Entry>::iterator> index_;
};

// A statement borrowed from the cache for as long as this lives.
class CachedStmt {
public:
    CachedStmt(StatementCache& cache, sqlite3* db, std::string sql);
    ~CachedStmt();
    CachedStmt(const CachedStmt&) = delete;
    CachedStmt& operator=(const CachedStmt&) = delete;
    Stmt& operator*() { return stmt_; }
    Stmt* operator->() { return &stmt_; }

private:
    StatementCache& cache_;
    std::string sql_;
    std::uint64_t generation_;
    Stmt stmt_;
};

void exec(sqlite3* db, std::string_view sql);  // one or more statements without results
std::int64_t queryInt(sqlite3* db, std::string_view sql);

// A SQLite failure as the engine's error. The engine's own check constraints (text size, required,
// zero length) become their platform numbers with the field's name; the rest goes to the translator's
// mapping, which knows the SQL functions' errors.
[[noreturn]] void raiseSqlite(sqlite3* db, int rc, std::string_view context = {});

std::size_t utf8Length(std::string_view s);
std::string utf8Prefix(std::string_view s, std::size_t chars);
// True when `text` holds `name` as a whole word (case ignored): how a query's text is known to
// depend on a table or another query.
bool mentionsName(std::string_view text, std::string_view name);

// ---- field types ---------------------------------------------------------------------------------

bool isTextType(FieldType t);
bool isIntegerType(FieldType t);   // Boolean, Byte, Integer, Long
bool isRealType(FieldType t);      // Currency, Single, Double
int defaultSize(FieldType t);      // Text 50; other types their byte size; Memo 0
const char* storageTypeName(FieldType t);
// The platform type of a column of a table the engine did not create, from its declared type.
FieldType typeFromDeclared(std::string_view declared, int* size);
bool isValidFieldType(int code);

// The SQLite DEFAULT clause for a field's DefaultValue expression, or "" when it has none that
// can be stored (a literal number, text, date, True/False, Date()/Now()).
std::string sqliteDefault(const FieldDef& f);

// Name prefixes of the engine's CHECK constraints; the failing constraint's name carries the field.
inline constexpr std::string_view kCheckSize = "__jet_size:";
inline constexpr std::string_view kCheckRequired = "__jet_required:";
inline constexpr std::string_view kCheckZeroLength = "__jet_zerolength:";
inline constexpr std::string_view kCheckKey = "__jet_key:";

// The full CREATE TABLE text for a definition, under the given SQLite name.
std::string createTableSql(const TableDef& def, std::string_view sqliteName);
// The triggers that keep Yes/No fields at -1/0 whatever is written to them.
std::vector<std::string> booleanTriggersSql(const TableDef& def);

bool isInternalName(std::string_view name);  // sqlite_* and __jet_* tables, never shown

// ---- the catalogue -------------------------------------------------------------------------------

struct TableEntry {
    TableDef def;
    sql::RelationInfo rel;
};

struct QueryEntry {
    QueryDef def;
    sql::RelationInfo rel;
    bool hasView = false;  // false when its text no longer translates (a table or field it names is gone)
};

class Catalogue {
public:
    // Creates the catalogue tables when missing (on a writable connection).
    static void ensureTables(sqlite3* db);
    // Reads tables, fields, indexes and queries. Tables SQLite has but the catalogue lacks are taken
    // with types read from their declarations.
    void load(sqlite3* db);

    const TableEntry* table(std::string_view name) const;
    const QueryEntry* query(std::string_view name) const;
    const std::vector<std::string>& tableOrder() const { return tableOrder_; }
    const std::vector<std::string>& queryOrder() const { return queryOrder_; }

    // Writes; the caller reloads afterwards.
    static void saveTable(sqlite3* db, const TableDef& def);  // object row, fields, index names
    static void removeTable(sqlite3* db, std::string_view name);
    static void saveQuery(sqlite3* db, const QueryDef& def, const sql::RelationInfo* shape);
    static void removeQuery(sqlite3* db, std::string_view name);
    static void bumpVersion(sqlite3* db);
    // Changes the query in memory only, while its schema change is still open; a null shape marks
    // it as having no view.
    void putQuery(const QueryDef& def, const sql::RelationInfo* shape);
    static std::string sqliteIndexName(std::string_view table, std::string_view index);

private:
    std::map<std::string, TableEntry> tables_;   // by folded name
    std::map<std::string, QueryEntry> queries_;
    std::vector<std::string> tableOrder_, queryOrder_;  // stored names in creation order

    void loadTables(sqlite3* db);
    void loadQueries(sqlite3* db);
    TableEntry readTable(sqlite3* db, const std::string& name) const;
};

std::string encodeColumns(const std::vector<sql::ColumnInfo>& cols);
std::vector<sql::ColumnInfo> decodeColumns(std::string_view text);

}  // namespace store::detail
