#include "store/catalog.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>

#include "store/convert.h"
#include "store/errors.h"

namespace store::detail {

// ---- Stmt ----------------------------------------------------------------------------------------

Stmt::Stmt(sqlite3* db, std::string_view sql) : db_(db) {
    int rc = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt_, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt_);
        stmt_ = nullptr;
        raiseSqlite(db, rc);
    }
}

Stmt::~Stmt() { sqlite3_finalize(stmt_); }

Stmt::Stmt(Stmt&& o) noexcept : db_(o.db_), stmt_(o.stmt_) { o.stmt_ = nullptr; }

Stmt& Stmt::operator=(Stmt&& o) noexcept {
    if (this != &o) {
        sqlite3_finalize(stmt_);
        db_ = o.db_;
        stmt_ = o.stmt_;
        o.stmt_ = nullptr;
    }
    return *this;
}

bool Stmt::step() {
    int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    sqlite3_reset(stmt_);
    raiseSqlite(db_, rc);
}

void Stmt::reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

void Stmt::bind(int index, const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: sqlite3_bind_null(stmt_, index); break;
        case Value::Kind::Boolean:
        case Value::Kind::Integer:
        case Value::Kind::Long: sqlite3_bind_int64(stmt_, index, static_cast<std::int64_t>(v.number())); break;
        case Value::Kind::Double: sqlite3_bind_double(stmt_, index, v.number()); break;
        case Value::Kind::Date: bindText(index, DateToIso(v.number())); break;
        case Value::Kind::Text: bindText(index, v.text()); break;
    }
}

void Stmt::bindText(int index, std::string_view text) {
    sqlite3_bind_text(stmt_, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

void Stmt::bindInt(int index, std::int64_t v) { sqlite3_bind_int64(stmt_, index, v); }

std::int64_t Stmt::columnInt(int i) const { return sqlite3_column_int64(stmt_, i); }

std::string Stmt::columnText(int i) const {
    const unsigned char* t = sqlite3_column_text(stmt_, i);
    return t ? std::string(reinterpret_cast<const char*>(t), sqlite3_column_bytes(stmt_, i)) : std::string();
}

bool Stmt::columnIsNull(int i) const { return sqlite3_column_type(stmt_, i) == SQLITE_NULL; }

// ---- statement cache -----------------------------------------------------------------------------

Stmt StatementCache::take(sqlite3* db, const std::string& sql) {
    auto found = index_.find(sql);
    if (found == index_.end()) return Stmt(db, sql);
    Stmt s = std::move(found->second->stmt);
    auto entry = found->second;
    index_.erase(found);
    entries_.erase(entry);
    return s;
}

void StatementCache::give(std::string sql, Stmt s, std::uint64_t generation) {
    if (generation != generation_ || !s.get() || index_.count(sql)) return;  // finalized as it goes
    s.reset();  // no read lock and no value of the last use stays behind
    entries_.push_front(Entry{std::move(sql), std::move(s)});
    index_.emplace(entries_.front().sql, entries_.begin());
    if (entries_.size() <= capacity_) return;
    index_.erase(entries_.back().sql);
    entries_.pop_back();
}

void StatementCache::clear() {
    ++generation_;
    index_.clear();
    entries_.clear();
}

CachedStmt::CachedStmt(StatementCache& cache, sqlite3* db, std::string sql)
    : cache_(cache), sql_(std::move(sql)), generation_(cache.generation()), stmt_(cache.take(db, sql_)) {}

CachedStmt::~CachedStmt() { cache_.give(std::move(sql_), std::move(stmt_), generation_); }

void exec(sqlite3* db, std::string_view sql) {
    std::string text(sql);
    int rc = sqlite3_exec(db, text.c_str(), nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) raiseSqlite(db, rc);
}

std::int64_t queryInt(sqlite3* db, std::string_view sql) {
    Stmt s(db, sql);
    return s.step() ? s.columnInt(0) : 0;
}

// ---- errors --------------------------------------------------------------------------------------

namespace {

// "CHECK constraint failed: __jet_size:Descrizione" -> the field after the engine's prefix.
std::optional<std::string> checkedField(std::string_view message, std::string_view prefix) {
    auto pos = message.find(prefix);
    if (pos == std::string_view::npos) return std::nullopt;
    return std::string(message.substr(pos + prefix.size()));
}

// "NOT NULL constraint failed: Tabella.Campo" -> "Campo".
std::string notNullField(std::string_view message) {
    auto dot = message.rfind('.');
    return dot == std::string_view::npos ? std::string() : std::string(message.substr(dot + 1));
}

[[noreturn]] void raiseConstraint(int extended, std::string_view message) {
    if (extended == SQLITE_CONSTRAINT_CHECK) {
        if (checkedField(message, kCheckKey)) raise(err::ChiavePrimariaNull);
        if (checkedField(message, kCheckSize)) raise(err::CampoTroppoPiccolo);
        if (auto f = checkedField(message, kCheckRequired)) raise(err::ValoreRichiesto, *f);
        if (auto f = checkedField(message, kCheckZeroLength)) raise(err::StringaVuotaNonAmmessa, *f);
    }
    if (extended == SQLITE_CONSTRAINT_NOTNULL) raise(err::ValoreRichiesto, notNullField(message));
    raise(err::ValoriDuplicati);
}

}  // namespace

void raiseSqlite(sqlite3* db, int rc, std::string_view context) {
    int extended = sqlite3_extended_errcode(db);
    std::string message = sqlite3_errmsg(db);
    switch (extended & 0xff) {
        case SQLITE_CONSTRAINT: raiseConstraint(extended, message);
        case SQLITE_BUSY: raise(err::RecordBloccato);
        case SQLITE_LOCKED: raise(err::TabellaBloccata, std::string(context.empty() ? std::string_view(message) : context));
        case SQLITE_READONLY: raise(err::SolaLettura);
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT: raise(err::DatabaseNonRiconosciuto, std::string(context));
        case SQLITE_NOMEM: raise(err::MemoriaEsaurita);
        case SQLITE_FULL:
        case SQLITE_IOERR: raise(err::ErroreDiscoORete, message);
        default: break;
    }
    sql::raiseFromSqlite(db, rc == SQLITE_OK ? extended : rc, context);
}

// ---- names ---------------------------------------------------------------------------------------

std::size_t utf8Length(std::string_view s) {
    return static_cast<std::size_t>(
        std::count_if(s.begin(), s.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string utf8Prefix(std::string_view s, std::size_t chars) {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80) {
            if (seen == chars) return std::string(s.substr(0, i));
            ++seen;
        }
    }
    return std::string(s);
}

namespace {
bool isNameChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || (static_cast<unsigned char>(c) & 0x80);
}
}  // namespace

bool mentionsName(std::string_view text, std::string_view name) {
    if (name.empty()) return false;
    std::string t = AsciiLower(text), n = AsciiLower(name);
    for (auto pos = t.find(n); pos != std::string::npos; pos = t.find(n, pos + 1)) {
        bool startOk = pos == 0 || !isNameChar(t[pos - 1]);
        bool endOk = pos + n.size() >= t.size() || !isNameChar(t[pos + n.size()]);
        if (startOk && endOk) return true;
    }
    return false;
}

bool isInternalName(std::string_view name) {
    std::string f = AsciiLower(name);
    return f.rfind("sqlite_", 0) == 0 || f.rfind("__jet_", 0) == 0;
}

// ---- types ---------------------------------------------------------------------------------------

bool isTextType(FieldType t) { return t == FieldType::Text || t == FieldType::Memo; }

bool isIntegerType(FieldType t) {
    return t == FieldType::Boolean || t == FieldType::Byte || t == FieldType::Integer || t == FieldType::Long;
}

bool isRealType(FieldType t) {
    return t == FieldType::Currency || t == FieldType::Single || t == FieldType::Double;
}

bool isValidFieldType(int code) {
    switch (code) {
        case 1: case 2: case 3: case 4: case 5: case 6: case 7: case 8: case 10: case 12: return true;
        default: return false;
    }
}

int defaultSize(FieldType t) {
    switch (t) {
        case FieldType::Boolean:
        case FieldType::Byte: return 1;
        case FieldType::Integer: return 2;
        case FieldType::Long:
        case FieldType::Single: return 4;
        case FieldType::Currency:
        case FieldType::Double:
        case FieldType::Date: return 8;
        case FieldType::Text: return 50;
        case FieldType::Memo: return 0;
    }
    return 0;
}

const char* storageTypeName(FieldType t) {
    if (isIntegerType(t)) return "INTEGER";
    if (isRealType(t)) return "REAL";
    return "TEXT";
}

FieldType typeFromDeclared(std::string_view declared, int* size) {
    std::string d = AsciiLower(declared);
    auto has = [&](const char* w) { return d.find(w) != std::string::npos; };
    *size = 0;
    FieldType t = FieldType::Memo;
    if (has("bool") || has("bit") || has("yesno")) t = FieldType::Boolean;
    else if (has("byte")) t = FieldType::Byte;
    else if (has("smallint") || has("short")) t = FieldType::Integer;
    else if (has("int") || has("long") || has("counter")) t = FieldType::Long;
    else if (has("date") || has("time")) t = FieldType::Date;
    else if (has("real") || has("floa") || has("doub") || has("num") || has("dec") || has("curr")) t = FieldType::Double;
    else if (has("memo") || has("clob") || has("longtext")) t = FieldType::Memo;
    else if (has("char") || has("text")) {
        auto open = d.find('(');
        int n = open == std::string::npos ? 0 : std::atoi(d.c_str() + open + 1);
        t = n > 0 ? FieldType::Text : FieldType::Memo;
        *size = n;
        return t;
    }
    *size = defaultSize(t);
    return t;
}

// ---- defaults ------------------------------------------------------------------------------------

namespace {

std::string trim(std::string_view s) {
    auto b = s.find_first_not_of(" \t");
    if (b == std::string_view::npos) return {};
    auto e = s.find_last_not_of(" \t");
    return std::string(s.substr(b, e - b + 1));
}

std::optional<double> plainNumber(std::string_view s) {
    if (s.empty()) return std::nullopt;
    double d = 0;
    auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), d);
    if (ec != std::errc() || p != s.data() + s.size()) return std::nullopt;
    return d;
}

std::optional<bool> truthWord(std::string_view s) {
    std::string f = AsciiLower(s);
    if (f == "true" || f == "yes" || f == "vero" || f == "sì" || f == "on") return true;
    if (f == "false" || f == "no" || f == "falso" || f == "off") return false;
    return std::nullopt;
}

std::string unquote(std::string_view s) {
    char q = s.front();
    std::string out;
    for (std::size_t i = 1; i + 1 < s.size(); ++i) {
        out += s[i];
        if (s[i] == q && s[i + 1] == q) ++i;
    }
    return out;
}

std::string numberLiteral(double d) {
    char buf[64];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, p);
}

// The default as a value of the field's storage, from a literal already read.
std::string storedLiteral(FieldType type, const std::string& text, std::optional<double> number) {
    if (type == FieldType::Boolean) return number ? (*number != 0 ? "-1" : "0") : "";
    if (isTextType(type)) return quoteText(text);
    if (type == FieldType::Date) {
        auto d = ParseDateText(text);
        return d ? quoteText(DateToIso(*d)) : "";
    }
    return number ? numberLiteral(*number) : "";
}

}  // namespace

std::string sqliteDefault(const FieldDef& f) {
    std::string t = trim(f.DefaultValue);
    if (!t.empty() && t.front() == '=') t = trim(t.substr(1));
    if (t.empty()) return "";
    std::string fold = AsciiLower(t);
    if (fold == "date()" || fold == "date") return f.Type == FieldType::Date ? "(__jet_date())" : "";
    if (fold == "now()" || fold == "now") return f.Type == FieldType::Date ? "(__jet_now())" : "";
    if (auto w = truthWord(t)) return isTextType(f.Type) ? quoteText(t) : (*w ? "-1" : "0");
    if (t.size() >= 2 && (t.front() == '\'' || t.front() == '"') && t.back() == t.front()) {
        std::string text = unquote(t);
        return storedLiteral(f.Type, text, isTextType(f.Type) ? std::nullopt : ParseNumberText(text));
    }
    if (t.size() >= 2 && t.front() == '#' && t.back() == '#') {
        auto d = ParseDateLiteral(std::string_view(t).substr(1, t.size() - 2));
        if (!d) return "";
        return f.Type == FieldType::Date ? quoteText(DateToIso(*d)) : storedLiteral(f.Type, DateText(*d), *d);
    }
    auto number = plainNumber(t);
    if (!number) return "";
    return storedLiteral(f.Type, t, number);
}

// ---- table text ----------------------------------------------------------------------------------

namespace {

bool isCounter(const FieldDef& f) { return (f.Attributes & 16) != 0 && isIntegerType(f.Type); }

std::string columnSql(const FieldDef& f, bool rowidCounter) {
    std::string s = quoteIdent(f.Name) + " " + storageTypeName(f.Type);
    if (rowidCounter) return s + " PRIMARY KEY AUTOINCREMENT";
    if (isTextType(f.Type)) s += " COLLATE JET";
    std::string dflt = sqliteDefault(f);
    if (!dflt.empty()) s += " DEFAULT " + dflt;
    return s;
}

void appendChecks(const FieldDef& f, std::vector<std::string>& out) {
    std::string col = quoteIdent(f.Name);
    if (f.Type == FieldType::Text && f.Size > 0) {
        out.push_back("CONSTRAINT " + quoteIdent(std::string(kCheckSize) + f.Name) + " CHECK (length(" + col +
                      ") <= " + std::to_string(f.Size) + ")");
    }
    if (f.Required) {
        out.push_back("CONSTRAINT " + quoteIdent(std::string(kCheckRequired) + f.Name) + " CHECK (" + col +
                      " IS NOT NULL)");
    }
    if (isTextType(f.Type) && !f.AllowZeroLength) {
        out.push_back("CONSTRAINT " + quoteIdent(std::string(kCheckZeroLength) + f.Name) + " CHECK (length(" +
                      col + ") > 0)");
    }
}

// The fields of the primary key hold no Null (error 3058); a counter that is the rowid gets its
// value from SQLite and needs no check.
void appendKeyChecks(const TableDef& def, const FieldDef* rowidCounter, std::vector<std::string>& out) {
    for (const IndexDef& ix : def.Indexes) {
        if (!ix.Primary) continue;
        for (const std::string& name : ix.Fields) {
            if (rowidCounter && sameName(rowidCounter->Name, name)) continue;
            out.push_back("CONSTRAINT " + quoteIdent(std::string(kCheckKey) + name) + " CHECK (" + quoteIdent(name) +
                          " IS NOT NULL)");
        }
    }
}

}  // namespace

std::string createTableSql(const TableDef& def, std::string_view sqliteName) {
    std::vector<std::string> parts, checks;
    const FieldDef* counter = nullptr;
    for (const FieldDef& f : def.Fields) {
        bool rowidCounter = !counter && isCounter(f);
        if (rowidCounter) counter = &f;
        parts.push_back(columnSql(f, rowidCounter));
    }
    appendKeyChecks(def, counter, checks);
    for (const FieldDef& f : def.Fields) appendChecks(f, checks);
    parts.insert(parts.end(), checks.begin(), checks.end());
    std::string sql = "CREATE TABLE " + quoteIdent(sqliteName) + " (";
    for (std::size_t i = 0; i < parts.size(); ++i) sql += (i ? ", " : "") + parts[i];
    return sql + ")";
}

std::vector<std::string> booleanTriggersSql(const TableDef& def) {
    std::vector<std::string> cols;
    for (const FieldDef& f : def.Fields)
        if (f.Type == FieldType::Boolean) cols.push_back(quoteIdent(f.Name));
    if (cols.empty()) return {};
    std::string when, set, names;
    for (std::size_t i = 0; i < cols.size(); ++i) {
        const std::string& c = cols[i];
        when += (i ? " OR " : "") + ("NEW." + c + " IS NULL OR NEW." + c + " NOT IN (0,-1)");
        set += (i ? ", " : "") + (c + " = CASE WHEN " + c + " IS NULL OR " + c + " = 0 THEN 0 ELSE -1 END");
        names += (i ? ", " : "") + c;
    }
    std::string table = quoteIdent(def.Name);
    std::string body = " WHEN " + when + " BEGIN UPDATE " + table + " SET " + set + " WHERE rowid = NEW.rowid; END";
    return {
        "CREATE TRIGGER " + quoteIdent("__jet_yesno_insert:" + def.Name) + " AFTER INSERT ON " + table + body,
        "CREATE TRIGGER " + quoteIdent("__jet_yesno_update:" + def.Name) + " AFTER UPDATE OF " + names + " ON " +
            table + body,
    };
}

// ---- column shapes of saved queries --------------------------------------------------------------

std::string encodeColumns(const std::vector<sql::ColumnInfo>& cols) {
    std::string out;
    for (const auto& c : cols) {
        out += c.name + '\x1f' + std::to_string(static_cast<int>(c.type)) + '\x1f' + std::to_string(c.size) + '\x1f' +
               c.baseColumn + '\x1e';
    }
    return out;
}

std::vector<sql::ColumnInfo> decodeColumns(std::string_view text) {
    std::vector<sql::ColumnInfo> cols;
    while (!text.empty()) {
        auto end = text.find('\x1e');
        std::string_view item = text.substr(0, end);
        auto a = item.find('\x1f');
        auto b = item.find('\x1f', a + 1);
        auto e = item.find('\x1f', b + 1);
        if (a == std::string_view::npos || b == std::string_view::npos || e == std::string_view::npos) break;
        sql::ColumnInfo c;
        c.name = std::string(item.substr(0, a));
        int code = std::atoi(std::string(item.substr(a + 1, b - a - 1)).c_str());
        c.type = isValidFieldType(code) ? static_cast<FieldType>(code) : FieldType::Text;
        c.size = std::atoi(std::string(item.substr(b + 1, e - b - 1)).c_str());
        c.baseColumn = std::string(item.substr(e + 1));
        cols.push_back(std::move(c));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return cols;
}

// ---- the catalogue -------------------------------------------------------------------------------

void Catalogue::ensureTables(sqlite3* db) {
    exec(db,
         "CREATE TABLE IF NOT EXISTS __jet_objects (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, "
         "kind TEXT NOT NULL, seq INTEGER NOT NULL, sqltext TEXT, base TEXT, columns TEXT);"
         "CREATE TABLE IF NOT EXISTS __jet_fields (tbl TEXT NOT NULL COLLATE NOCASE, name TEXT NOT NULL COLLATE "
         "NOCASE, type INTEGER, size INTEGER, allowZeroLength INTEGER, required INTEGER, defaultValue TEXT, "
         "validationRule TEXT, validationText TEXT, attributes INTEGER, ordinal INTEGER, PRIMARY KEY (tbl, name));"
         "CREATE TABLE IF NOT EXISTS __jet_indexes (tbl TEXT NOT NULL COLLATE NOCASE, name TEXT NOT NULL COLLATE "
         "NOCASE, sqlname TEXT NOT NULL, isPrimary INTEGER, PRIMARY KEY (tbl, name));");
}

std::string Catalogue::sqliteIndexName(std::string_view table, std::string_view index) {
    return std::string(table) + ":" + std::string(index);
}

namespace {

bool hasCatalogue(sqlite3* db) {
    return queryInt(db, "SELECT count(*) FROM sqlite_master WHERE type='table' AND name='__jet_objects'") > 0;
}

std::int64_t nextSeq(sqlite3* db) { return queryInt(db, "SELECT coalesce(max(seq), 0) + 1 FROM __jet_objects"); }

void upsertObject(sqlite3* db, std::string_view name, const char* kind, std::string_view text, std::string_view base,
                  std::string_view columns) {
    std::int64_t seq = nextSeq(db);
    Stmt s(db,
           "INSERT INTO __jet_objects (name, kind, seq, sqltext, base, columns) VALUES (?1, ?2, ?3, ?4, ?5, ?6) "
           "ON CONFLICT (name) DO UPDATE SET name = excluded.name, kind = excluded.kind, sqltext = excluded.sqltext, "
           "base = excluded.base, columns = excluded.columns");
    s.bindText(1, name);
    s.bindText(2, kind);
    s.bindInt(3, seq);
    s.bindText(4, text);
    s.bindText(5, base);
    s.bindText(6, columns);
    s.step();
}

void deleteRows(sqlite3* db, const char* sql, std::string_view name) {
    Stmt s(db, sql);
    s.bindText(1, name);
    s.step();
}

void saveField(sqlite3* db, std::string_view table, const FieldDef& f) {
    Stmt s(db,
           "INSERT INTO __jet_fields (tbl, name, type, size, allowZeroLength, required, defaultValue, "
           "validationRule, validationText, attributes, ordinal) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)");
    s.bindText(1, table);
    s.bindText(2, f.Name);
    s.bindInt(3, static_cast<int>(f.Type));
    s.bindInt(4, f.Size);
    s.bindInt(5, f.AllowZeroLength ? 1 : 0);
    s.bindInt(6, f.Required ? 1 : 0);
    s.bindText(7, f.DefaultValue);
    s.bindText(8, f.ValidationRule);
    s.bindText(9, f.ValidationText);
    s.bindInt(10, f.Attributes);
    s.bindInt(11, f.OrdinalPosition);
    s.step();
}

void saveIndexName(sqlite3* db, std::string_view table, const IndexDef& ix) {
    Stmt s(db, "INSERT INTO __jet_indexes (tbl, name, sqlname, isPrimary) VALUES (?1, ?2, ?3, ?4)");
    s.bindText(1, table);
    s.bindText(2, ix.Name);
    s.bindText(3, Catalogue::sqliteIndexName(table, ix.Name));
    s.bindInt(4, ix.Primary ? 1 : 0);
    s.step();
}

FieldDef fieldFromRow(const Stmt& s) {
    FieldDef f;
    f.Name = s.columnText(0);
    int code = static_cast<int>(s.columnInt(1));
    f.Type = isValidFieldType(code) ? static_cast<FieldType>(code) : FieldType::Text;
    f.Size = static_cast<int>(s.columnInt(2));
    f.AllowZeroLength = s.columnInt(3) != 0;
    f.Required = s.columnInt(4) != 0;
    f.DefaultValue = s.columnText(5);
    f.ValidationRule = s.columnText(6);
    f.ValidationText = s.columnText(7);
    f.Attributes = static_cast<long>(s.columnInt(8));
    f.OrdinalPosition = static_cast<int>(s.columnInt(9));
    return f;
}

std::map<std::string, FieldDef> storedFields(sqlite3* db, const std::string& table, bool catalogue) {
    std::map<std::string, FieldDef> out;
    if (!catalogue) return out;
    Stmt s(db,
           "SELECT name, type, size, allowZeroLength, required, defaultValue, validationRule, validationText, "
           "attributes, ordinal FROM __jet_fields WHERE tbl = ?1");
    s.bindText(1, table);
    while (s.step()) {
        FieldDef f = fieldFromRow(s);
        out[AsciiLower(f.Name)] = f;
    }
    return out;
}

FieldDef derivedField(const Stmt& info, int position) {
    FieldDef f;
    f.Name = info.columnText(1);
    f.Type = typeFromDeclared(info.columnText(2), &f.Size);
    f.Required = info.columnInt(3) != 0;
    f.DefaultValue = info.columnText(4);
    f.OrdinalPosition = position;
    if (info.columnInt(5) != 0 && isIntegerType(f.Type) && sameName(info.columnText(2), "integer")) f.Attributes = 17;
    return f;
}

struct IndexName {
    std::string name;
    bool primary = false;
};

std::map<std::string, IndexName> storedIndexNames(sqlite3* db, const std::string& table, bool catalogue) {
    std::map<std::string, IndexName> out;
    if (!catalogue) return out;
    Stmt s(db, "SELECT sqlname, name, isPrimary FROM __jet_indexes WHERE tbl = ?1");
    s.bindText(1, table);
    while (s.step()) out[s.columnText(0)] = IndexName{s.columnText(1), s.columnInt(2) != 0};
    return out;
}

std::vector<IndexDef> readIndexes(sqlite3* db, const std::string& table, bool catalogue) {
    auto names = storedIndexNames(db, table, catalogue);
    std::vector<IndexDef> out;
    Stmt list(db, "SELECT name, \"unique\", origin FROM pragma_index_list(?1) ORDER BY seq DESC");
    list.bindText(1, table);
    while (list.step()) {
        IndexDef ix;
        std::string sqlName = list.columnText(0);
        auto known = names.find(sqlName);
        ix.Name = known != names.end() ? known->second.name : (list.columnText(2) == "pk" ? "PrimaryKey" : sqlName);
        ix.Primary = known != names.end() ? known->second.primary : list.columnText(2) == "pk";
        ix.Unique = list.columnInt(1) != 0;
        Stmt cols(db, "SELECT name FROM pragma_index_info(?1) ORDER BY seqno");
        cols.bindText(1, sqlName);
        while (cols.step()) ix.Fields.push_back(cols.columnText(0));
        out.push_back(std::move(ix));
    }
    return out;
}

sql::RelationInfo relationOf(const TableDef& def) {
    sql::RelationInfo rel;
    rel.name = def.Name;
    for (const FieldDef& f : def.Fields) rel.columns.push_back({f.Name, f.Type, isTextType(f.Type) ? f.Size : 0, f.Name});
    return rel;
}

}  // namespace

void Catalogue::saveTable(sqlite3* db, const TableDef& def) {
    upsertObject(db, def.Name, "T", "", "", "");
    deleteRows(db, "DELETE FROM __jet_fields WHERE tbl = ?1", def.Name);
    deleteRows(db, "DELETE FROM __jet_indexes WHERE tbl = ?1", def.Name);
    for (const FieldDef& f : def.Fields) saveField(db, def.Name, f);
    for (const IndexDef& ix : def.Indexes) saveIndexName(db, def.Name, ix);
}

void Catalogue::removeTable(sqlite3* db, std::string_view name) {
    deleteRows(db, "DELETE FROM __jet_objects WHERE name = ?1", name);
    deleteRows(db, "DELETE FROM __jet_fields WHERE tbl = ?1", name);
    deleteRows(db, "DELETE FROM __jet_indexes WHERE tbl = ?1", name);
}

void Catalogue::saveQuery(sqlite3* db, const QueryDef& def, const sql::RelationInfo* shape) {
    upsertObject(db, def.Name, "Q", def.SQL, shape ? shape->baseTable : "", shape ? encodeColumns(shape->columns) : "");
}

void Catalogue::removeQuery(sqlite3* db, std::string_view name) {
    deleteRows(db, "DELETE FROM __jet_objects WHERE name = ?1", name);
}

void Catalogue::putQuery(const QueryDef& def, const sql::RelationInfo* shape) {
    QueryEntry& q = queries_[AsciiLower(def.Name)];
    if (q.def.Name.empty()) queryOrder_.push_back(def.Name);
    q.def = def;
    q.hasView = shape != nullptr;
    if (shape) q.rel = *shape;
    q.rel.name = def.Name;
    q.rel.isQuery = true;
}

void Catalogue::bumpVersion(sqlite3* db) {
    exec(db, "PRAGMA user_version = " + std::to_string(queryInt(db, "PRAGMA user_version") + 1));
}

TableEntry Catalogue::readTable(sqlite3* db, const std::string& name) const {
    bool catalogue = hasCatalogue(db);
    auto stored = storedFields(db, name, catalogue);
    TableEntry e;
    e.def.Name = name;
    Stmt info(db, "SELECT cid, name, type, \"notnull\", dflt_value, pk FROM pragma_table_info(?1) ORDER BY cid");
    info.bindText(1, name);
    for (int position = 0; info.step(); ++position) {
        auto it = stored.find(AsciiLower(info.columnText(1)));
        e.def.Fields.push_back(it != stored.end() ? it->second : derivedField(info, position));
    }
    e.def.Indexes = readIndexes(db, name, catalogue);
    e.rel = relationOf(e.def);
    return e;
}

void Catalogue::loadTables(sqlite3* db) {
    std::vector<std::string> names;
    if (hasCatalogue(db)) {
        Stmt known(db,
                   "SELECT m.name FROM __jet_objects o JOIN sqlite_master m ON m.type = 'table' AND m.name = o.name "
                   "COLLATE NOCASE WHERE o.kind = 'T' ORDER BY o.seq");
        while (known.step()) names.push_back(known.columnText(0));
    }
    Stmt all(db, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid");
    while (all.step()) {
        std::string n = all.columnText(0);
        bool listed = std::any_of(names.begin(), names.end(), [&](const std::string& k) { return sameName(k, n); });
        if (!listed && !isInternalName(n)) names.push_back(n);
    }
    for (const std::string& n : names) {
        tables_[AsciiLower(n)] = readTable(db, n);
        tableOrder_.push_back(n);
    }
}

void Catalogue::loadQueries(sqlite3* db) {
    std::map<std::string, bool> views;
    Stmt v(db, "SELECT name FROM sqlite_master WHERE type = 'view'");
    while (v.step()) views[AsciiLower(v.columnText(0))] = true;
    if (!hasCatalogue(db)) return;
    Stmt s(db, "SELECT name, sqltext, base, columns FROM __jet_objects WHERE kind = 'Q' ORDER BY seq");
    while (s.step()) {
        QueryEntry q;
        q.def.Name = s.columnText(0);
        q.def.SQL = s.columnText(1);
        q.rel.name = q.def.Name;
        q.rel.isQuery = true;
        q.rel.baseTable = s.columnText(2);
        q.rel.columns = decodeColumns(s.columnText(3));
        q.hasView = views.count(AsciiLower(q.def.Name)) > 0;
        queryOrder_.push_back(q.def.Name);
        queries_[AsciiLower(q.def.Name)] = std::move(q);
    }
}

void Catalogue::load(sqlite3* db) {
    tables_.clear();
    queries_.clear();
    tableOrder_.clear();
    queryOrder_.clear();
    loadTables(db);
    loadQueries(db);
}

const TableEntry* Catalogue::table(std::string_view name) const {
    auto it = tables_.find(AsciiLower(name));
    return it == tables_.end() ? nullptr : &it->second;
}

const QueryEntry* Catalogue::query(std::string_view name) const {
    auto it = queries_.find(AsciiLower(name));
    return it == queries_.end() ? nullptr : &it->second;
}

}  // namespace store::detail
