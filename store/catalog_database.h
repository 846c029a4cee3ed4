// Inside the database object: the connection, its catalogue and translator, the conversions between
// program values and what SQLite stores. Shared by the dao_*.cpp files only.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/catalog.h"
#include "store/dao.h"
#include "store/sql/translator.h"

struct sqlite3;
struct sqlite3_stmt;

namespace store {

namespace detail {

// One value as SQLite stores it.
struct Cell {
    enum class Kind : std::uint8_t { Null, Int, Real, Text };
    Kind kind = Kind::Null;
    std::int64_t i = 0;
    double d = 0;
    std::string s;
};

Cell cellFromColumn(sqlite3_stmt* s, int column);
void bindCell(sqlite3_stmt* s, int index, const Cell& c);

// A stored value read as the program sees it: ISO text -> Date, integers -> Long (Integer for the
// Integer and Byte types), Yes/No -> Boolean. A value that does not fit the type keeps its own kind.
Value readCell(FieldType type, Cell c);

// Rows kept by a recordset, packed one after the other in a buffer: each value is one byte of its
// kind, then its number (8 bytes) or its text's length (4 bytes) and bytes. packColumn reads a column
// of a statement's current row straight into it, as readCell would see it.
// The buffer grows by blocks that never move, so a row stays where it was written and growing
// copies nothing but the row being written.
class RowBuffer {
public:
    void startRow() { start_ = used_; }
    char* extend(std::size_t n) {  // n more bytes of the row being written
        if (cap_ - used_ < n) grow(n);
        char* p = block_ + used_;
        used_ += n;
        return p;
    }
    const char* row() const { return block_ + start_; }  // the row begun last
    std::size_t rowSize() const { return used_ - start_; }  // bytes of it written so far
    void clear();

private:
    void grow(std::size_t n);
    std::vector<std::unique_ptr<char[]>> blocks_;
    char* block_ = nullptr;
    std::size_t used_ = 0, cap_ = 0, start_ = 0;
};

void packColumn(RowBuffer& buffer, FieldType type, sqlite3_stmt* s, int column);
void packValue(RowBuffer& buffer, const Value& v);

inline const char* skipValue(const char* p) {  // the next value's place
    const auto kind = static_cast<Value::Kind>(*p);
    if (kind == Value::Kind::Null) return p + 1;
    if (kind != Value::Kind::Text) return p + 1 + sizeof(double);
    std::uint32_t n = 0;
    std::memcpy(&n, p + 1, sizeof n);
    return p + 1 + sizeof n + n;
}

inline Value unpackValue(const char* p) {
    const auto kind = static_cast<Value::Kind>(*p);
    if (kind == Value::Kind::Null) return Value::Null();
    if (kind == Value::Kind::Text) {
        std::uint32_t n = 0;
        std::memcpy(&n, p + 1, sizeof n);
        return Value::Text(std::string(p + 1 + sizeof n, n));
    }
    double d = 0;
    std::memcpy(&d, p + 1, sizeof d);
    return Value::Stored(kind, d);
}

// A program value converted to the storage of a field. Strict (a recordset's write): a text longer
// than `size` is error 3163 and a value that does not convert raises. Lenient (a change of a field's
// type or size): a longer text is cut and a value that does not convert becomes Null.
enum class Conversion { Strict, Lenient };
Cell storeValue(FieldType type, int size, const Value& v, Conversion mode = Conversion::Strict);

// The connection's own functions: "__jet_conv(value, fromType, toType, size)" for field changes.
void registerEngineFunctions(sqlite3* db);

}  // namespace detail

struct Database::Impl final : sql::Catalog {
    sqlite3* db = nullptr;
    std::string path;
    bool readOnly = false;
    detail::Catalogue catalogue;
    std::unique_ptr<sql::Translator> translator;
    std::uint64_t version = 1;
    long recordsAffected = 0;
    std::int64_t seenDataVersion = -1;
    std::int64_t seenUserVersion = -1;
    std::set<Recordset::Impl*> recordsets;  // closed with the database
    detail::StatementCache statements;
    struct Batch {
        int depth = 0;       // nested BeginBatch calls still open
        int every = 500;     // writes per transaction
        int written = 0;     // writes in the open transaction
        bool open = false;   // the batch began a transaction that is not yet committed
    } batch;

    ~Impl() override;

    const sql::RelationInfo* findRelation(std::string_view name) const override;
    std::uint64_t schemaVersion() const override { return version; }

    sqlite3* handle() const;      // error 3420 once closed
    void checkWritable() const;   // error 3027 on a read-only database
    void close();
    // Reads every open recordset to its end; before a write (not a change of structure) those that
    // follow a screen only let go of their statements.
    void finishReads(bool structure = false);
    void reload();                // reads the catalogue again; the translator sees a new version
    void noticeOtherWriters();    // reloads when another connection changed the catalogue
    sql::Translation translate(std::string_view text, bool inlineLiterals = false);
    void runAction(const sql::Translation& t);
    std::int64_t cachedInt(const std::string& sql);  // first column of the first row, 0 when none

    // Batched writes (dao_database.cpp): every write goes through beforeWrite/afterWrite.
    void beforeWrite();   // opens the batch's transaction at its first write
    void afterWrite();    // commits once the batch has gathered its count of writes
    void commitBatch();   // commits what the batch holds; on failure nothing stays half open

    // Schema changes (dao_schema.cpp).
    void createTable(const TableDef& def);
    void replaceTable(const TableDef& before, const TableDef& after);
    std::vector<QueryDef> dependentQueries(std::string_view name) const;
    void recreateDependents(std::string_view name);
    bool buildView(const QueryDef& q);
};

// dao_schema.cpp: a schema statement of the dialect, through the schema API.
void runDdl(Database& db, const sql::DdlCommand& c);

// dao_recordset.cpp: opens a recordset on a statement or a table or query name.
std::unique_ptr<Recordset> openRecordset(const std::shared_ptr<Database>& db, std::string_view sqlOrName);
void closeRecordset(Recordset::Impl* rs);
void finishRecordset(Recordset::Impl* rs, bool structure);

}  // namespace store
