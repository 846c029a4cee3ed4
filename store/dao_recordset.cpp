// The recordset: rows come from the SQLite statement as the program moves through them and are kept
// once fetched, packed in one buffer, so a register of many rows opens at once and stays light.
// While rows remain unread the statement holds SQLite's read lock on the file.
// MoveLast keeps only the rowid of the rows it passes over when the statement reads one table alone,
// so that each rowid stands for one row: their values are read when the program comes to them, and
// before any write or change of structure of this connection.
// Writes go to the base table of the statement (or of the saved query it reads) by the row's rowid.
#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "store/errors.h"
#include "store/catalog_database.h"
#include "store/convert.h"

namespace store {

using detail::Cell;

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The rows of a recordset: the first ones in a vector that grows as usual, the rest in segments
// that never move, so that a result of many rows grows without copying what it holds.
template <typename T>
class Segmented {
public:
    std::size_t size() const { return first_.size() + rest_; }
    T& operator[](std::size_t i) { return i < kSize ? first_[i] : segments_[(i >> kShift) - 1][i & kMask]; }
    const T& operator[](std::size_t i) const { return i < kSize ? first_[i] : segments_[(i >> kShift) - 1][i & kMask]; }
    void push_back(const T& v) {
        if (first_.size() < kSize) return first_.push_back(v);
        if ((rest_ & kMask) == 0) segments_.push_back(std::make_unique<T[]>(kSize));
        segments_.back()[rest_++ & kMask] = v;
    }
    void clear() {
        first_.clear();
        segments_.clear();
        rest_ = 0;
    }

private:
    static constexpr std::size_t kShift = 14, kSize = std::size_t{1} << kShift, kMask = kSize - 1;
    std::vector<T> first_;
    std::vector<std::unique_ptr<T[]>> segments_;
    std::size_t rest_ = 0;
};

constexpr char kDeletedRow[1] = {};  // deleted through this recordset
constexpr char kMissingRow[1] = {};  // another user deleted it before it was read
constexpr char kEmptyRow[1] = {};    // a row without columns

std::string trimmed(std::string_view s) {
    auto b = s.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos) return {};
    auto e = s.find_last_not_of(" \t\r\n");
    return std::string(s.substr(b, e - b + 1));
}

// A statement whose rows are rows of one table read alone, without joins or unions: its rowid
// stands for one row of the result. A Top (a limit, a window) is left out too: SQLite would run it
// whole again for every block of rows read by rowid.
bool oneRowPerRowid(const sql::Translation& tr) {
    const auto has = [&](const char* word) { return tr.sql.find(word) != std::string::npos; };
    return tr.hasRowid && has(".rowid AS \"__rowid\"") && !has("JOIN") && !has("UNION") && !has("LIMIT") &&
           !has(" OVER (");
}

}  // namespace

struct Recordset::Impl {
    struct Column {
        const sql::ResultColumn* result = nullptr;  // in tr.columns
        FieldType writeType = FieldType::Text;  // the base field's type and size, for writes
        int writeSize = 0;
        bool writable = false;
    };
    // A row is its rowid and where its values lie in the buffer, or one of the marks below.
    struct Row {
        const char* data = nullptr;  // nullptr: only the rowid is known yet
        std::int64_t rowid = 0;
        bool deleted() const { return data == kDeletedRow; }
        bool loaded() const { return data != nullptr && data != kMissingRow; }
    };
    enum class Pos { Bof, On, Eof };

    std::shared_ptr<Database> owner;
    Database::Impl* db = nullptr;
    std::string name;
    sql::Translation tr;
    std::optional<detail::CachedStmt> stmt;  // out of the cache while the recordset is open
    std::vector<Column> cols;
    std::vector<FieldType> types;  // of the columns, as read
    std::vector<Field> fields;
    Recordset* self = nullptr;  // the object the program holds
    bool fetchedAll = false;
    bool closed = false;
    bool resumable = false;   // let go of the statement before a write rather than read to the end
    bool appendOnly = false;  // added rows are not read back
    bool suspended = false;   // the statement was let go of after `stepped` rows
    std::size_t stepped = 0;  // rows the statement gave so far
    std::optional<bool> keyed;  // one row per rowid: rows can be read again by rowid (known when needed)
    bool unread = false;  // some rows are known by their rowid only
    std::size_t firstUnread = kNone;  // the first row read by rowid only

    detail::RowBuffer arena;
    Segmented<Row> rows;
    long deleted = 0;

    Pos pos = Pos::Eof;
    std::size_t cur = 0;
    std::vector<const char*> fieldAt;  // where the values of row `located` lie in the buffer
    std::vector<std::size_t> rowOffsets;
    std::size_t located = kNone;

    EditMode mode = EditMode::None;
    std::vector<Value> pending;
    std::vector<Cell> pendingCells;
    std::vector<bool> dirty;
    Pos savedPos = Pos::Eof;
    std::size_t savedCur = 0;
    std::size_t lastModified = kNone;

    ~Impl() { close(); }
    detail::Stmt& st() { return **stmt; }

    // ---- state checks
    void checkOpen() const {
        if (closed) raise(err::OggettoNonValido);
    }
    bool updatable() const { return !tr.baseTable.empty() && tr.hasRowid && !db->readOnly; }
    void checkUpdatable() const {
        checkOpen();
        if (db->readOnly) raise(err::SolaLettura);
        if (!updatable()) raise(err::RecordsetNonAggiornabile);
    }
    bool onRow() const { return pos == Pos::On && cur < rows.size() && !rows[cur].deleted(); }
    void checkCurrent() const {
        checkOpen();
        if (pos == Pos::On && cur < rows.size() && rows[cur].deleted()) raise(err::RecordEliminato);
        if (!onRow()) raise(err::NessunRecordCorrente);
    }
    long liveCount() const { return static_cast<long>(rows.size()) - deleted; }

    void close() {
        if (closed) return;
        closed = true;
        located = kNone;
        if (self) self->open_ = 0;
        stmt.reset();
        rows.clear();
        arena.clear();
        if (db) db->recordsets.erase(this);
    }

    // ---- fetching
    void bindParams() {
        for (std::size_t i = 0; i < tr.params.size(); ++i) st().bind(static_cast<int>(i + 1), tr.params[i]);
    }

    // The visible columns of the statement's current row into the buffer; where they begin.
    const char* packRow(sqlite3_stmt* s) {
        arena.startRow();
        for (std::size_t c = 0; c < types.size(); ++c) detail::packColumn(arena, types[c], s, static_cast<int>(c));
        return endRow();
    }

    // The same, noting where each value lies: the row fetched as the program moves onto it needs
    // no second pass to find its fields.
    const char* packAndLocateRow(sqlite3_stmt* s) {
        arena.startRow();
        rowOffsets.resize(types.size());
        for (std::size_t c = 0; c < types.size(); ++c) {
            rowOffsets[c] = arena.rowSize();
            detail::packColumn(arena, types[c], s, static_cast<int>(c));
        }
        const char* p = endRow();
        fieldAt.resize(types.size());
        for (std::size_t c = 0; c < types.size(); ++c) fieldAt[c] = p + rowOffsets[c];
        located = rows.size();
        return p;
    }

    const char* endRow() const {
        const char* p = arena.row();
        return p ? p : kEmptyRow;
    }

    // Runs the statement again up to where it stopped: the rows it gives there are the next ones.
    void resume() {
        suspended = false;
        st().reset();
        bindParams();
        for (std::size_t k = 0; k < stepped; ++k)
            if (!st().step()) {
                fetchedAll = true;
                sqlite3_reset(st().get());
                return;
            }
    }

    bool fetchOne(bool locate = false) {
        if (fetchedAll) return false;
        if (suspended) resume();
        if (fetchedAll) return false;
        if (!st().step()) {
            fetchedAll = true;
            sqlite3_reset(st().get());  // gives back the read lock
            return false;
        }
        ++stepped;
        Row r;
        r.data = locate ? packAndLocateRow(st().get()) : packRow(st().get());
        if (tr.hasRowid) r.rowid = sqlite3_column_int64(st().get(), static_cast<int>(cols.size()));
        rows.push_back(r);
        return true;
    }

    // To the end of the result: with only the rowids of the rows passed over when `keysOnly` and
    // the statement allows it.
    void fetchAll(bool keysOnly) {
        if (suspended) resume();
        if (!fetchedAll && !keyed) keyed = oneRowPerRowid(tr);
        if (!keysOnly || !*keyed) {
            while (fetchOne()) {
            }
            return;
        }
        const int rowidColumn = static_cast<int>(cols.size());
        while (!fetchedAll) {
            if (!st().step()) {
                fetchedAll = true;
                sqlite3_reset(st().get());
                break;
            }
            ++stepped;
            Row r;
            r.rowid = sqlite3_column_int64(st().get(), rowidColumn);
            if (!unread) firstUnread = rows.size();
            rows.push_back(r);
            unread = true;
        }
    }

    // Reads the values of every row passed over, before a write or a change of structure after
    // which the statement may no longer give the same rows: from then on the recordset shows them
    // as they were, as it does every row it read. The statement, run again before anything has
    // changed, gives the same rows in the same order; whatever it does not match is read by rowid.
    void loadAll() {
        if (!unread) return;
        unread = false;
        st().reset();
        bindParams();
        const int rowidColumn = static_cast<int>(cols.size());
        for (std::size_t k = 0; k < rows.size() && st().step(); ++k) {
            Row& r = rows[k];
            if (r.rowid != sqlite3_column_int64(st().get(), rowidColumn)) break;
            if (r.data) continue;
            r.data = packRow(st().get());
        }
        sqlite3_reset(st().get());
        for (std::size_t k = 0; k < rows.size(); ++k)
            if (!rows[k].data) load(k);
    }

    // Reads the values of row i, and of the rows not yet read next to it, by their rowids.
    void load(std::size_t i) {
        static constexpr std::size_t kBlock = 64;
        std::vector<std::size_t> block;
        const bool forward = i + 1 < rows.size() && rows[i + 1].data == nullptr;
        for (std::size_t k = i; block.size() < kBlock && k < rows.size() && rows[k].data == nullptr; k = forward ? k + 1 : k - 1) {
            block.push_back(k);
            if (!forward && k == 0) break;
        }
        std::string sql = "SELECT * FROM (" + tr.sql + ") AS __jet_row WHERE __jet_row.\"__rowid\" IN (?";
        for (std::size_t k = 1; k < kBlock; ++k) sql += ", ?";
        detail::CachedStmt s = statement(sql + ")");
        for (std::size_t k = 0; k < tr.params.size(); ++k) s->bind(static_cast<int>(k + 1), tr.params[k]);
        for (std::size_t k = 0; k < kBlock; ++k)
            s->bindInt(static_cast<int>(tr.params.size() + k + 1), rows[block[k < block.size() ? k : 0]].rowid);
        const int rowidColumn = static_cast<int>(cols.size());
        while (s->step()) {
            const std::int64_t rowid = sqlite3_column_int64(s->get(), rowidColumn);
            auto at = std::find_if(block.begin(), block.end(), [&](std::size_t k) { return rows[k].rowid == rowid; });
            if (at == block.end() || rows[*at].data) continue;
            rows[*at].data = packRow(s->get());
        }
        for (std::size_t k : block)
            if (!rows[k].data) rows[k].data = kMissingRow;
    }

    // The current row with its values read; error 3167 when another user deleted it meanwhile.
    // Walking on from the rows read in order (MoveLast, MoveFirst and every row, as an export does)
    // reads all the rest again in one pass, which costs far less than by rowid.
    void checkLoaded() {
        Row& r = rows[cur];
        if (!r.data && cur == firstUnread) loadAll();
        else if (!r.data) load(cur);
        if (!r.loaded()) raise(err::RecordEliminato);
    }

    // Rows come in small batches: a result of a few rows (an editor's "where ID=") is read to its
    // end at once, which gives back SQLite's read lock, so other users can write while it stays open.
    // Later ones come one at a time, as the program moves onto them.
    static constexpr std::size_t kBatch = 64;
    bool fetchBatch() {
        std::size_t n = 0;
        while (n < kBatch && fetchOne()) ++n;
        return n > 0;
    }

    std::size_t nextLive(std::size_t from) {
        for (std::size_t i = from;; ++i) {
            if (i >= rows.size() && !(rows.size() < kBatch ? fetchBatch() : fetchOne(true))) return kNone;
            if (!rows[i].deleted()) return i;
        }
    }

    std::size_t previousLive(std::size_t before) const {
        for (std::size_t i = std::min(before, rows.size()); i-- > 0;)
            if (!rows[i].deleted()) return i;
        return kNone;
    }

    void placeOn(std::size_t i, Pos ifNone) {
        if (i == kNone) {
            pos = ifNone;
        } else {
            pos = Pos::On;
            cur = i;
        }
    }

    void start() {
        fetchedAll = false;
        suspended = false;
        stepped = 0;
        unread = false;
        rows.clear();
        arena.clear();
        deleted = 0;
        located = kNone;
        placeOn(nextLive(0), Pos::Eof);
    }

    // ---- values
    void unpackRow(std::size_t i, std::vector<Value>& out) const {
        const char* p = rows[i].data;
        out.clear();
        for (std::size_t c = 0; c < cols.size(); ++c, p = detail::skipValue(p)) out.push_back(detail::unpackValue(p));
    }

    std::vector<Value> currentValues() {
        checkCurrent();
        checkLoaded();
        std::vector<Value> values;
        unpackRow(cur, values);
        return values;
    }

    // A field is read straight from the buffer into the value handed out. `located` is the current
    // row only while it is open, live and not being edited, so that is all the common case checks.
    Value value(int index) {
        if (located == cur && pos == Pos::On && mode == EditMode::None)
            return detail::unpackValue(fieldAt[static_cast<std::size_t>(index)]);
        return otherValue(index);
    }

    [[gnu::noinline]] Value otherValue(int index) {
        checkOpen();
        if (mode != EditMode::None) return pending[static_cast<std::size_t>(index)];
        checkCurrent();
        checkLoaded();
        if (located != cur) {
            const char* p = rows[cur].data;
            fieldAt.resize(cols.size());
            for (std::size_t c = 0; c < cols.size(); ++c, p = detail::skipValue(p)) fieldAt[c] = p;
            located = cur;
        }
        return detail::unpackValue(fieldAt[static_cast<std::size_t>(index)]);
    }

    void setValue(int index, const Value& v) {
        checkOpen();
        if (mode == EditMode::None) raise(err::AggiornamentoSenzaModifica);
        const Column& c = cols[static_cast<std::size_t>(index)];
        if (!c.writable) raise(err::CampoNonAggiornabile, c.result->name);
        Cell cell = detail::storeValue(c.writeType, c.writeSize, v);
        auto i = static_cast<std::size_t>(index);
        pending[i] = detail::readCell(c.writeType, cell);
        pendingCells[i] = std::move(cell);
        dirty[i] = true;
    }

    // ---- editing
    void cancelEdit() {
        if (mode == EditMode::AddNew) {
            pos = savedPos;
            cur = savedCur;
        }
        mode = EditMode::None;
    }

    void beginEdit(EditMode m) {
        pending.assign(cols.size(), Value::Null());
        pendingCells.assign(cols.size(), Cell{});
        dirty.assign(cols.size(), false);
        mode = m;
    }

    void addNew() {
        checkUpdatable();
        cancelEdit();
        savedPos = pos;
        savedCur = cur;
        beginEdit(EditMode::AddNew);
    }

    void edit() {
        checkUpdatable();
        cancelEdit();
        checkCurrent();
        std::vector<Value> values = currentValues();
        beginEdit(EditMode::Edit);
        pending = std::move(values);
    }

    std::string dirtyList(const char* separator, bool withPlaceholders) const {
        std::string out;
        for (std::size_t i = 0; i < cols.size(); ++i) {
            if (!dirty[i]) continue;
            if (!out.empty()) out += separator;
            out += detail::quoteIdent(cols[i].result->baseColumn);
            if (withPlaceholders) out += " = ?";
        }
        return out;
    }

    // Written and re-read through the connection's statement cache: a long run edits the same
    // columns of the same table over and over.
    detail::CachedStmt statement(std::string sql) { return detail::CachedStmt(db->statements, db->handle(), std::move(sql)); }

    int bindDirty(detail::Stmt& s) const {
        int n = 0;
        for (std::size_t i = 0; i < cols.size(); ++i)
            if (dirty[i]) detail::bindCell(s.get(), ++n, pendingCells[i]);
        return n;
    }

    std::int64_t insertRow() {
        std::string list = dirtyList(", ", false);
        std::string sql = "INSERT INTO " + detail::quoteIdent(tr.baseTable);
        if (list.empty()) {
            sql += " DEFAULT VALUES";
        } else {
            std::string marks;
            for (std::size_t i = 0; i < cols.size(); ++i)
                if (dirty[i]) marks += marks.empty() ? "?" : ", ?";
            sql += " (" + list + ") VALUES (" + marks + ")";
        }
        detail::CachedStmt s = statement(std::move(sql));
        bindDirty(*s);
        db->beforeWrite();
        s->step();
        std::int64_t rowid = sqlite3_last_insert_rowid(db->db);
        db->afterWrite();
        return rowid;
    }

    void updateRow(std::int64_t rowid) {
        std::string list = dirtyList(", ", true);
        if (list.empty()) return;
        detail::CachedStmt s = statement("UPDATE " + detail::quoteIdent(tr.baseTable) + " SET " + list + " WHERE rowid = ?");
        s->bindInt(bindDirty(*s) + 1, rowid);
        db->beforeWrite();
        s->step();
        bool changed = sqlite3_changes(db->db) != 0;
        db->afterWrite();
        if (!changed) raise(err::RecordEliminato);
    }

    // The row as the statement now shows it (defaults, values of joined tables), or, when the
    // statement no longer selects it, what was written over what was there.
    void storeRow(std::size_t index, std::int64_t rowid, const std::vector<Value>* before) {
        std::vector<Cell> cells = appendOnly && !before ? std::vector<Cell>{} : refetch(rowid);
        std::vector<Value> values(cols.size());
        for (std::size_t i = 0; i < cols.size(); ++i) {
            if (!cells.empty()) values[i] = detail::readCell(cols[i].result->type, std::move(cells[i]));
            else if (dirty[i]) values[i] = detail::readCell(cols[i].result->type, pendingCells[i]);
            else if (before) values[i] = (*before)[i];
        }
        Row r;
        r.rowid = rowid;
        arena.startRow();
        for (const Value& v : values) detail::packValue(arena, v);
        r.data = endRow();
        if (index == rows.size()) rows.push_back(r);
        else rows[index] = r;
        located = kNone;
    }

    std::vector<Cell> refetch(std::int64_t rowid) {
        std::vector<Cell> cells;
        try {
            const char* rowidName = sqlite3_column_name(st().get(), static_cast<int>(cols.size()));
            detail::CachedStmt s = statement("SELECT * FROM (" + tr.sql + ") AS __jet_row WHERE __jet_row." +
                                             detail::quoteIdent(rowidName ? rowidName : "__rowid") + " = ?");
            for (std::size_t i = 0; i < tr.params.size(); ++i) s->bind(static_cast<int>(i + 1), tr.params[i]);
            s->bindInt(static_cast<int>(tr.params.size() + 1), rowid);
            if (s->step())
                for (std::size_t i = 0; i < cols.size(); ++i) cells.push_back(detail::cellFromColumn(s->get(), static_cast<int>(i)));
        } catch (const JetError&) {
            cells.clear();
        }
        return cells;
    }

    void update() {
        checkOpen();
        if (mode == EditMode::None) raise(err::AggiornamentoSenzaModifica);
        db->finishReads();  // a write must not meet a statement half way through a table
        if (mode == EditMode::AddNew) {
            std::int64_t rowid = insertRow();
            storeRow(rows.size(), rowid, nullptr);
            lastModified = rows.size() - 1;
            pos = savedPos;
            cur = savedCur;
        } else {
            checkCurrent();
            checkLoaded();
            updateRow(rows[cur].rowid);
            std::vector<Value> before;
            unpackRow(cur, before);
            storeRow(cur, rows[cur].rowid, &before);
            lastModified = cur;
        }
        mode = EditMode::None;
    }

    void remove() {
        checkUpdatable();
        cancelEdit();
        checkCurrent();
        db->finishReads();
        detail::CachedStmt s = statement("DELETE FROM " + detail::quoteIdent(tr.baseTable) + " WHERE rowid = ?");
        s->bindInt(1, rows[cur].rowid);
        db->beforeWrite();
        s->step();
        db->afterWrite();
        rows[cur].data = kDeletedRow;
        ++deleted;
        located = kNone;
        // Run again, the statement gives one row less before where it stopped: the row after the
        // last one read must not be skipped.
        if (suspended && cur < stepped) --stepped;
    }

    // ---- moves
    void moveNext() {
        checkOpen();
        cancelEdit();
        if (pos == Pos::Eof || (fetchedAll && liveCount() == 0)) raise(err::NessunRecordCorrente);
        placeOn(nextLive(pos == Pos::Bof ? 0 : cur + 1), Pos::Eof);
    }

    void movePrevious() {
        checkOpen();
        cancelEdit();
        if (pos == Pos::Bof || (fetchedAll && liveCount() == 0)) raise(err::NessunRecordCorrente);
        placeOn(previousLive(pos == Pos::Eof ? rows.size() : cur), Pos::Bof);
    }

    void moveFirst() {
        checkOpen();
        cancelEdit();
        std::size_t i = nextLive(0);
        if (i == kNone) raise(err::NessunRecordCorrente);
        placeOn(i, Pos::Eof);
    }

    void moveLast() {
        checkOpen();
        cancelEdit();
        fetchAll(true);
        std::size_t i = previousLive(rows.size());
        if (i == kNone) raise(err::NessunRecordCorrente);
        placeOn(i, Pos::Eof);
    }

    long absolutePosition() const {
        checkOpen();
        if (!onRow()) return -1;
        if (deleted == 0) return static_cast<long>(cur);
        long n = 0;
        for (std::size_t i = 0; i < cur; ++i) n += rows[i].deleted() ? 0 : 1;
        return n;
    }

    void setAbsolutePosition(long target) {
        checkOpen();
        cancelEdit();
        if (target < 0) raise(err::ArgomentoNonValido);
        std::size_t i = nextLive(0);
        for (long n = 0; n < target && i != kNone; ++n) i = nextLive(i + 1);
        if (i == kNone) raise(err::ArgomentoNonValido);
        placeOn(i, Pos::Eof);
    }

    void setBookmark(Bookmark b) {
        checkOpen();
        cancelEdit();
        if (b < 1 || static_cast<std::size_t>(b) > rows.size() || rows[static_cast<std::size_t>(b - 1)].deleted())
            raise(err::SegnalibroNonValido);
        placeOn(static_cast<std::size_t>(b - 1), Pos::Eof);
    }
};

namespace {

bool isStatementWord(const std::string& word) {
    static const char* const words[] = {"select", "insert", "update", "delete", "create", "drop", "alter", "transform"};
    std::string w = store::AsciiLower(word);
    return std::any_of(std::begin(words), std::end(words), [&](const char* k) { return w == k; });
}

// "Clienti", "[Ritenuta Acconto]" or a statement: a bare name reads all of that table or query, and
// a name that is neither is "not found" (3078), as the platform answers.
std::string statementFor(std::string_view sqlOrName) {
    std::string t = trimmed(sqlOrName);
    bool bracketed = t.size() > 2 && t.front() == '[' && t.find(']') == t.size() - 1;
    std::string name = bracketed ? t.substr(1, t.size() - 2) : t;
    bool oneName = bracketed || (!t.empty() && t.find_first_of(" \t\r\n()[]*,;'\"") == std::string::npos &&
                                 !isStatementWord(t));
    return oneName ? "SELECT * FROM [" + name + "]" : std::string(sqlOrName);
}

const FieldDef* baseField(const TableDef& def, const std::string& column) {
    if (column.empty()) return nullptr;
    for (const FieldDef& f : def.Fields)
        if (detail::sameName(f.Name, column)) return &f;
    return nullptr;
}

// The columns the recordset shows, with what a write to each of them needs. Columns SQLite shows
// beyond the translation's are added to it as text, so that every column is one of tr.columns.
std::vector<Recordset::Impl::Column> columnsOf(Database::Impl& db, sql::Translation& tr, sqlite3_stmt* s) {
    std::vector<Recordset::Impl::Column> cols;
    const detail::TableEntry* base = tr.baseTable.empty() ? nullptr : db.catalogue.table(tr.baseTable);
    const auto visible = static_cast<std::size_t>(sqlite3_column_count(s) - (tr.hasRowid ? 1 : 0));
    for (std::size_t i = tr.columns.size(); i < visible; ++i)
        tr.columns.emplace_back().name = sqlite3_column_name(s, static_cast<int>(i));
    for (std::size_t i = 0; i < visible; ++i) {
        Recordset::Impl::Column c;
        c.result = &tr.columns[i];
        c.writeType = c.result->type;
        c.writeSize = c.result->size;
        // A statement of a whole table has its columns in the table's order: that place is tried first.
        const FieldDef* f = nullptr;
        if (base && i < base->def.Fields.size() && !c.result->baseColumn.empty() &&
            detail::sameName(base->def.Fields[i].Name, c.result->baseColumn))
            f = &base->def.Fields[i];
        else if (base)
            f = baseField(base->def, c.result->baseColumn);
        if (f) {
            c.writeType = f->Type;
            c.writeSize = f->Size;
            c.writable = true;
        }
        cols.push_back(std::move(c));
    }
    return cols;
}

}  // namespace

std::unique_ptr<Recordset> openRecordset(const std::shared_ptr<Database>& owner, std::string_view sqlOrName) {
    Database::Impl& db = owner->impl();
    auto impl = std::make_unique<Recordset::Impl>();
    impl->owner = owner;
    impl->db = &db;
    impl->name = std::string(sqlOrName);
    impl->tr = db.translate(statementFor(sqlOrName));
    if (impl->tr.kind != sql::StatementKind::Select) raise(err::OperazioneNonValida);
    impl->stmt.emplace(db.statements, db.handle(), impl->tr.sql);
    impl->bindParams();
    impl->cols = columnsOf(db, impl->tr, impl->st().get());
    for (const auto& c : impl->cols) impl->types.push_back(c.result->type);
    impl->start();
    db.recordsets.insert(impl.get());
    return std::make_unique<Recordset>(std::move(impl));
}

void closeRecordset(Recordset::Impl* rs) { rs->close(); }
void finishRecordset(Recordset::Impl* rs, bool structure) {
    if (rs->resumable && !rs->unread && !structure) {
        if (!rs->fetchedAll && !rs->suspended) {
            sqlite3_reset(rs->st().get());   // gives back the read lock
            rs->suspended = true;
        }
        return;
    }
    if (rs->suspended) rs->resume();
    rs->fetchAll(false);
    rs->loadAll();
}

// ---- Recordset -----------------------------------------------------------------------------------

Recordset::Recordset(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
    impl_->fields.resize(impl_->cols.size());
    for (std::size_t i = 0; i < impl_->cols.size(); ++i) {
        Field& f = impl_->fields[i];
        f.rs_ = this;
        f.index_ = static_cast<int>(i);
        const sql::ResultColumn& c = *impl_->cols[i].result;
        f.name_ = &c.name;
        f.type_ = c.type;
        f.size_ = c.size > 0 || detail::isTextType(c.type) ? c.size : detail::defaultSize(c.type);
    }
    impl_->self = this;
    fields_ = impl_->fields.data();
    open_ = static_cast<unsigned>(impl_->fields.size());
}

Recordset::~Recordset() = default;

bool Recordset::Eof() const {
    impl_->checkOpen();
    return impl_->pos == Impl::Pos::Eof || (impl_->fetchedAll && impl_->liveCount() == 0);
}

bool Recordset::Bof() const {
    impl_->checkOpen();
    return impl_->pos == Impl::Pos::Bof || (impl_->fetchedAll && impl_->liveCount() == 0);
}

void Recordset::MoveFirst() { impl_->moveFirst(); }
void Recordset::MoveLast() { impl_->moveLast(); }
void Recordset::MoveNext() { impl_->moveNext(); }
void Recordset::MovePrevious() { impl_->movePrevious(); }

long Recordset::RecordCount() const {
    impl_->checkOpen();
    return impl_->liveCount();
}

long Recordset::AbsolutePosition() const { return impl_->absolutePosition(); }
void Recordset::setAbsolutePosition(long pos) { impl_->setAbsolutePosition(pos); }

// Where the current row stands in the rows known so far: 100 on the last of them.
double Recordset::PercentPosition() const {
    long pos = impl_->absolutePosition();
    long count = impl_->liveCount();
    return pos < 0 || count == 0 ? 0.0 : (pos + 1) * 100.0 / count;
}

Bookmark Recordset::getBookmark() const {
    impl_->checkCurrent();
    return static_cast<Bookmark>(impl_->cur + 1);
}

void Recordset::setBookmark(Bookmark b) { impl_->setBookmark(b); }

Bookmark Recordset::LastModified() const {
    impl_->checkOpen();
    if (impl_->lastModified == kNone) raise(err::NessunRecordCorrente);
    return static_cast<Bookmark>(impl_->lastModified + 1);
}

void Recordset::Requery() {
    impl_->checkOpen();
    impl_->cancelEdit();
    impl_->st().reset();
    impl_->bindParams();
    impl_->lastModified = kNone;
    impl_->start();
}

void Recordset::AddNew() { impl_->addNew(); }
void Recordset::Edit() { impl_->edit(); }
void Recordset::Update() { impl_->update(); }

void Recordset::CancelUpdate() {
    impl_->checkOpen();
    impl_->cancelEdit();
}

void Recordset::Delete() { impl_->remove(); }
void Recordset::Close() { impl_->close(); }

Recordset::EditMode Recordset::editMode() const {
    impl_->checkOpen();
    return impl_->mode;
}

void Recordset::SetResumable(bool resumable) {
    impl_->checkOpen();
    impl_->resumable = resumable;
}

void Recordset::SetAppendOnly(bool appendOnly) {
    impl_->checkOpen();
    impl_->appendOnly = appendOnly;
}

bool Recordset::updatable() const {
    impl_->checkOpen();
    return impl_->updatable();
}

int Recordset::FieldCount() const {
    impl_->checkOpen();
    return static_cast<int>(impl_->fields.size());
}

Field& Recordset::otherField(int index) {
    impl_->checkOpen();
    if (index < 0 || static_cast<std::size_t>(index) >= impl_->fields.size()) raise(err::ElementoNonTrovato);
    return impl_->fields[static_cast<std::size_t>(index)];
}

Field& Recordset::Fields(std::string_view name) {
    impl_->checkOpen();
    for (Field& f : impl_->fields)
        if (detail::sameName(f.Name(), name)) return f;
    raise(err::ElementoNonTrovato, std::string(name));
}

bool Recordset::HasField(std::string_view name) const {
    impl_->checkOpen();
    for (const Field& f : impl_->fields)
        if (detail::sameName(f.Name(), name)) return true;
    return false;
}

const std::string& Recordset::Name() const { return impl_->name; }

// ---- Field ---------------------------------------------------------------------------------------

Value Field::value() const { return rs_->impl_->value(index_); }
void Field::setValue(const Value& v) { rs_->impl_->setValue(index_, v); }

}  // namespace store
