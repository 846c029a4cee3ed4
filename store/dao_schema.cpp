// Tables, fields, indexes and saved queries. A change to a table's structure builds the table anew
// (SQLite cannot change a column's type, size or default in place), carrying the rows over with their
// values converted, and then builds again the views of the saved queries that depend on it.
#include <sqlite3.h>

#include <algorithm>

#include "store/catalog_database.h"
#include "store/errors.h"

namespace store {

using detail::Catalogue;
using detail::exec;
using detail::quoteIdent;
using detail::sameName;

namespace {

// Groups the statements of one schema change, so that a failure half way leaves the file as it was.
// Recordsets of this database still reading are read to their end first: SQLite would refuse to
// drop a table under them, and a change rolled back would abort them.
// Outside a transaction the change takes the write lock up front, waiting for other users as a
// plain write does: a transaction that reads first is refused the upgrade at once while another
// process writes. Inside a batch's transaction the lock is held already.
class SchemaChange {
public:
    explicit SchemaChange(Database::Impl& d) : db_(d.handle()) {
        d.finishReads(true);
        ownsTransaction_ = sqlite3_get_autocommit(db_) != 0;
        if (ownsTransaction_) exec(db_, "BEGIN IMMEDIATE");
        exec(db_, "SAVEPOINT jet_schema");
    }
    ~SchemaChange() {
        if (done_) return;
        const char* undo = ownsTransaction_ ? "ROLLBACK" : "ROLLBACK TO jet_schema; RELEASE jet_schema";
        sqlite3_exec(db_, undo, nullptr, nullptr, nullptr);
    }
    void commit() {
        Catalogue::bumpVersion(db_);
        exec(db_, "RELEASE jet_schema");
        if (ownsTransaction_) exec(db_, "COMMIT");
        done_ = true;
    }

private:
    sqlite3* db_;
    bool ownsTransaction_ = false;
    bool done_ = false;
};

// A table that an open recordset is still reading cannot be dropped or rebuilt: error 3211 with
// the table's name.
template <class Change>
void changeTable(std::string_view table, Change&& change) {
    try {
        change();
    } catch (const JetError& e) {
        if (e.number() == err::TabellaBloccata) raise(err::TabellaBloccata, std::string(table));
        throw;
    }
}

const FieldDef* findField(const TableDef& def, std::string_view name) {
    for (const FieldDef& f : def.Fields)
        if (sameName(f.Name, name)) return &f;
    return nullptr;
}

const IndexDef* findIndex(const TableDef& def, std::string_view name) {
    for (const IndexDef& ix : def.Indexes)
        if (sameName(ix.Name, name)) return &ix;
    return nullptr;
}

void checkName(std::string_view name) {
    if (name.empty() || detail::isInternalName(name) || name.find_first_of("[]\x1e\x1f") != std::string_view::npos)
        raise(err::NomeNonValido, std::string(name));
}

// A field as it is kept: its size by type, its counter attribute, its place.
FieldDef normalizedField(FieldDef f, int position) {
    checkName(f.Name);
    if (!detail::isValidFieldType(static_cast<int>(f.Type))) raise(err::ArgomentoNonValido, f.Name);
    if (f.Type != FieldType::Text || f.Size <= 0) f.Size = detail::defaultSize(f.Type);
    if (f.Size > 255 && f.Type == FieldType::Text) f.Size = 255;
    if (!detail::isTextType(f.Type)) f.AllowZeroLength = false;
    if (f.OrdinalPosition == 0) f.OrdinalPosition = position;
    return f;
}

void checkIndexFields(const TableDef& def, const IndexDef& ix) {
    checkName(ix.Name);
    if (ix.Fields.empty()) raise(err::ArgomentoNonValido, ix.Name);
    for (const std::string& f : ix.Fields)
        if (!findField(def, f)) raise(err::ElementoNonTrovato, f);
}

TableDef normalizedTable(const TableDef& def) {
    checkName(def.Name);
    if (def.Fields.empty()) raise(err::NessunCampoDefinito);
    TableDef out;
    out.Name = def.Name;
    for (std::size_t i = 0; i < def.Fields.size(); ++i) {
        if (findField(out, def.Fields[i].Name)) raise(err::CampoDefinitoPiuVolte);
        out.Fields.push_back(normalizedField(def.Fields[i], static_cast<int>(i)));
    }
    for (const IndexDef& ix : def.Indexes) {
        if (findIndex(out, ix.Name)) raise(err::OggettoGiaEsistente, ix.Name);
        checkIndexFields(out, ix);
        out.Indexes.push_back(ix);
    }
    return out;
}

std::string createIndexSql(std::string_view table, const IndexDef& ix) {
    std::string cols;
    for (std::size_t i = 0; i < ix.Fields.size(); ++i) cols += (i ? ", " : "") + quoteIdent(ix.Fields[i]);
    return std::string("CREATE ") + (ix.Unique || ix.Primary ? "UNIQUE " : "") + "INDEX " +
           quoteIdent(Catalogue::sqliteIndexName(table, ix.Name)) + " ON " + quoteIdent(table) + " (" + cols + ")";
}

void createIndexesAndTriggers(sqlite3* db, const TableDef& def) {
    for (const IndexDef& ix : def.Indexes) exec(db, createIndexSql(def.Name, ix));
    for (const std::string& t : detail::booleanTriggersSql(def)) exec(db, t);
}

bool hasRowidCounter(const TableDef& def) {
    return std::any_of(def.Fields.begin(), def.Fields.end(),
                       [](const FieldDef& f) { return (f.Attributes & 16) != 0 && detail::isIntegerType(f.Type); });
}

// What each column of the new table is filled from: the old column, converted when its type or
// size changed; Null for a new column (rows already there do not take its default).
std::string carryOverSql(const TableDef& before, const TableDef& after, std::string_view from, std::string_view to) {
    std::string cols, exprs;
    for (const FieldDef& f : after.Fields) {
        const FieldDef* old = findField(before, f.Name);
        if (!old && f.Required) continue;  // takes its default: a Null would break the rule
        if (!old) {
            cols += (cols.empty() ? "" : ", ") + quoteIdent(f.Name);
            exprs += (exprs.empty() ? "" : ", ") + std::string("NULL");
            continue;
        }
        std::string col = quoteIdent(old->Name);
        bool changed = old->Type != f.Type || (f.Type == FieldType::Text && f.Size < old->Size);
        std::string expr = changed ? "__jet_conv(" + col + ", " + std::to_string(static_cast<int>(old->Type)) + ", " +
                                         std::to_string(static_cast<int>(f.Type)) + ", " + std::to_string(f.Size) + ")"
                                   : col;
        cols += (cols.empty() ? "" : ", ") + quoteIdent(f.Name);
        exprs += (exprs.empty() ? "" : ", ") + expr;
    }
    if (cols.empty()) return "";
    // Rows keep their rowid, by which open recordsets write to them; a counter that is the rowid
    // carries it already.
    if (!hasRowidCounter(after)) {
        cols = "rowid, " + cols;
        exprs = "rowid, " + exprs;
    }
    return "INSERT INTO " + quoteIdent(to) + " (" + cols + ") SELECT " + exprs + " FROM " + quoteIdent(from);
}

// Indexes that still have all their fields after a field is dropped.
std::vector<IndexDef> indexesWithFields(const TableDef& def) {
    std::vector<IndexDef> out;
    for (const IndexDef& ix : def.Indexes) {
        bool complete = std::all_of(ix.Fields.begin(), ix.Fields.end(),
                                    [&](const std::string& f) { return findField(def, f) != nullptr; });
        if (complete) out.push_back(ix);
    }
    return out;
}

TableDef& existing(std::optional<TableDef>& def, std::string_view name) {
    if (!def) raise(err::ElementoNonTrovato, std::string(name));
    return *def;
}

FieldDef fieldFromCampo(const sql::FieldSpec& campo) {
    FieldDef f = TableDef::CreateField(campo.name, campo.type, campo.size);
    f.Required = campo.notNull || campo.primaryKey;
    if (campo.counter) f.Attributes = 17;
    return f;
}

// ALTER COLUMN: a new type or size, the field's other properties kept.
void alterColumn(Database& db, std::string_view table, const sql::FieldSpec& campo) {
    auto def = db.GetTableDef(table);
    const FieldDef* old = findField(existing(def, table), campo.name);
    if (!old) raise(err::ElementoNonTrovato, campo.name);
    FieldDef f = *old;
    f.Type = campo.type;
    f.Size = campo.size;
    if (campo.notNull) f.Required = true;
    db.SetFieldProperties(table, f);
}

TableDef tableFromDdl(const sql::DdlCommand& c) {
    TableDef def;
    def.Name = c.table;
    std::vector<std::string> primary;
    for (const sql::FieldSpec& campo : c.fields) {
        def.Fields.push_back(fieldFromCampo(campo));
        if (campo.primaryKey) primary.push_back(campo.name);
        if (campo.unique) def.Indexes.push_back(TableDef::CreateIndex(campo.name, {campo.name}, true));
    }
    if (!primary.empty()) def.Indexes.push_back(TableDef::CreateIndex("PrimaryKey", primary, true, true));
    return def;
}

}  // namespace

// ---- TableDef helpers ----------------------------------------------------------------------------

FieldDef TableDef::CreateField(std::string name, FieldType type, int size) {
    FieldDef f;
    f.Name = std::move(name);
    f.Type = type;
    f.Size = type == FieldType::Text && size > 0 ? size : detail::defaultSize(type);
    return f;
}

IndexDef TableDef::CreateIndex(std::string name, std::vector<std::string> fields, bool unique, bool primary) {
    IndexDef ix;
    ix.Name = std::move(name);
    ix.Fields = std::move(fields);
    ix.Unique = unique || primary;
    ix.Primary = primary;
    return ix;
}

// ---- Impl: building and rebuilding ---------------------------------------------------------------

void Database::Impl::createTable(const TableDef& def) {
    checkWritable();
    if (catalogue.table(def.Name)) raise(err::TabellaGiaEsistente, def.Name);
    if (catalogue.query(def.Name)) raise(err::OggettoGiaEsistente, def.Name);
    TableDef norm = normalizedTable(def);
    {
        SchemaChange change(*this);
        exec(db, detail::createTableSql(norm, norm.Name));
        createIndexesAndTriggers(db, norm);
        Catalogue::saveTable(db, norm);
        change.commit();
    }
    reload();
    recreateDependents(norm.Name);
}

void Database::Impl::replaceTable(const TableDef& before, const TableDef& after) {
    checkWritable();
    static constexpr std::string_view kScratch = "__jet_rebuild";
    changeTable(before.Name, [&] {
        SchemaChange change(*this);
        exec(db, "DROP TABLE IF EXISTS " + quoteIdent(kScratch));
        exec(db, detail::createTableSql(after, kScratch));
        std::string copy = carryOverSql(before, after, before.Name, kScratch);
        if (!copy.empty()) exec(db, copy);
        exec(db, "DROP TABLE " + quoteIdent(before.Name));
        exec(db, "ALTER TABLE " + quoteIdent(kScratch) + " RENAME TO " + quoteIdent(after.Name));
        createIndexesAndTriggers(db, after);
        Catalogue::saveTable(db, after);
        change.commit();
    });
    reload();
    recreateDependents(after.Name);
}

// Saved queries whose text names `name`, directly or through other queries.
std::vector<QueryDef> Database::Impl::dependentQueries(std::string_view name) const {
    std::vector<std::string> affected{std::string(name)};
    auto named = [&](const std::string& q) { return std::any_of(affected.begin(), affected.end(), [&](const auto& a) { return sameName(a, q); }); };
    for (bool grew = true; grew;) {
        grew = false;
        for (const std::string& q : catalogue.queryOrder()) {
            const std::string& text = catalogue.query(q)->def.SQL;
            if (named(q) || std::none_of(affected.begin(), affected.end(), [&](const auto& a) { return detail::mentionsName(text, a); }))
                continue;
            affected.push_back(q);
            grew = true;
        }
    }
    std::vector<QueryDef> out;
    for (std::size_t i = 1; i < affected.size(); ++i) out.push_back(catalogue.query(affected[i])->def);
    return out;
}

// The dependent queries get their views built again from their own text, in one transaction; one
// that no longer translates keeps its text and loses its view until a later change makes it valid.
void Database::Impl::recreateDependents(std::string_view name) {
    std::vector<QueryDef> pending = dependentQueries(name);
    if (pending.empty()) return;
    {
        SchemaChange change(*this);
        for (const QueryDef& q : pending) {
            exec(db, "DROP VIEW IF EXISTS " + quoteIdent(q.Name));
            catalogue.putQuery(q, nullptr);
        }
        ++version;
        while (!pending.empty()) {  // a query may read another one that is built later in a pass
            auto built = std::remove_if(pending.begin(), pending.end(), [&](const QueryDef& q) { return buildView(q); });
            if (built == pending.end()) break;
            pending.erase(built, pending.end());
        }
        change.commit();
    }
    reload();
}

// Builds a saved query's view from its text, inside a schema change; false when the text does not
// translate now.
bool Database::Impl::buildView(const QueryDef& q) {
    sql::Translation t;
    try {
        t = translate(q.SQL, true);
        if (t.kind != sql::StatementKind::Select) return false;
        std::string cols;
        for (const auto& c : t.columns) cols += (cols.empty() ? "" : ", ") + quoteIdent(c.name);
        if (t.hasRowid) cols += ", \"__rowid\"";
        exec(db, "DROP VIEW IF EXISTS " + quoteIdent(q.Name));
        exec(db, "CREATE VIEW " + quoteIdent(q.Name) + " (" + cols + ") AS " + t.sql);
    } catch (const JetError&) {
        return false;
    }
    sql::RelationInfo shape;
    shape.baseTable = t.hasRowid ? t.baseTable : "";
    for (const auto& c : t.columns) shape.columns.push_back({c.name, c.type, c.size, t.hasRowid ? c.baseColumn : ""});
    Catalogue::saveQuery(db, q, &shape);
    catalogue.putQuery(q, &shape);
    ++version;
    return true;
}

void runDdl(Database& db, const sql::DdlCommand& c) {
    using Op = sql::DdlCommand::Op;
    switch (c.op) {
        case Op::CreateTable: db.AppendTableDef(tableFromDdl(c)); return;
        case Op::DropTable: db.DeleteTableDef(c.table); return;
        case Op::CreateIndex:
            db.AppendIndex(c.table, TableDef::CreateIndex(c.index, c.indexFields, c.unique, c.primary));
            return;
        case Op::DropIndex: db.DeleteIndex(c.table, c.index); return;
        default: break;
    }
    if (c.fields.size() != 1) raise(err::SintassiAlterTable);
    const sql::FieldSpec& campo = c.fields.front();
    if (c.op == Op::AddColumn) return db.AppendField(c.table, fieldFromCampo(campo));
    if (c.op == Op::DropColumn) return db.DeleteField(c.table, campo.name);
    alterColumn(db, c.table, campo);
}

// ---- Database: the schema API ---------------------------------------------------------------------

std::vector<std::string> Database::TableNames() const {
    impl_->noticeOtherWriters();
    return impl_->catalogue.tableOrder();
}

std::optional<TableDef> Database::GetTableDef(std::string_view name) const {
    impl_->noticeOtherWriters();
    const auto* t = impl_->catalogue.table(name);
    return t ? std::optional<TableDef>(t->def) : std::nullopt;
}

bool Database::TableExists(std::string_view name) const { return GetTableDef(name).has_value(); }

void Database::AppendTableDef(const TableDef& def) { impl_->createTable(def); }

void Database::DeleteTableDef(std::string_view name) {
    impl_->checkWritable();
    auto def = GetTableDef(name);
    const TableDef& t = existing(def, name);
    changeTable(t.Name, [&] {
        SchemaChange change(*impl_);
        exec(impl_->db, "DROP TABLE " + quoteIdent(t.Name));
        Catalogue::removeTable(impl_->db, t.Name);
        change.commit();
    });
    impl_->reload();
    impl_->recreateDependents(t.Name);
}

void Database::AppendField(std::string_view table, const FieldDef& field) {
    auto def = GetTableDef(table);
    TableDef before = existing(def, table);
    if (findField(before, field.Name)) raise(err::CampoDefinitoPiuVolte);
    TableDef after = before;
    after.Fields.push_back(normalizedField(field, static_cast<int>(before.Fields.size())));
    impl_->replaceTable(before, after);
}

void Database::DeleteField(std::string_view table, std::string_view field) {
    auto def = GetTableDef(table);
    TableDef before = existing(def, table);
    if (!findField(before, field)) raise(err::ElementoNonTrovato, std::string(field));
    if (before.Fields.size() == 1) raise(err::NessunCampoDefinito);
    TableDef after = before;
    std::erase_if(after.Fields, [&](const FieldDef& f) { return sameName(f.Name, field); });
    after.Indexes = indexesWithFields(after);
    impl_->replaceTable(before, after);
}

void Database::SetFieldProperties(std::string_view table, const FieldDef& field) {
    auto def = GetTableDef(table);
    TableDef before = existing(def, table);
    const FieldDef* old = findField(before, field.Name);
    if (!old) raise(err::ElementoNonTrovato, field.Name);
    TableDef after = before;
    for (FieldDef& f : after.Fields)
        if (sameName(f.Name, field.Name)) f = normalizedField(field, old->OrdinalPosition);
    impl_->replaceTable(before, after);
}

void Database::AppendIndex(std::string_view table, const IndexDef& index) {
    impl_->checkWritable();
    auto def = GetTableDef(table);
    TableDef t = existing(def, table);
    if (findIndex(t, index.Name)) raise(err::OggettoGiaEsistente, index.Name);
    checkIndexFields(t, index);
    IndexDef ix = TableDef::CreateIndex(index.Name, index.Fields, index.Unique, index.Primary);
    if (ix.Primary) {  // the table is built again with its key's fields refusing Null
        TableDef before = t;
        t.Indexes.push_back(ix);
        impl_->replaceTable(before, t);
        return;
    }
    t.Indexes.push_back(ix);
    {
        SchemaChange change(*impl_);
        exec(impl_->db, createIndexSql(t.Name, ix));
        Catalogue::saveTable(impl_->db, t);
        change.commit();
    }
    impl_->reload();
}

void Database::DeleteIndex(std::string_view table, std::string_view index) {
    impl_->checkWritable();
    auto def = GetTableDef(table);
    TableDef t = existing(def, table);
    const IndexDef* found = findIndex(t, index);
    if (!found) raise(err::ElementoNonTrovato, std::string(index));
    TableDef before = t;
    bool primary = found->Primary;
    std::erase_if(t.Indexes, [&](const IndexDef& ix) { return sameName(ix.Name, index); });
    if (primary) return impl_->replaceTable(before, t);  // its fields take Null again
    {
        SchemaChange change(*impl_);
        exec(impl_->db, "DROP INDEX " + quoteIdent(Catalogue::sqliteIndexName(t.Name, index)));
        Catalogue::saveTable(impl_->db, t);
        change.commit();
    }
    impl_->reload();
}

std::vector<QueryDef> Database::QueryDefs() const {
    impl_->noticeOtherWriters();
    std::vector<QueryDef> out;
    for (const std::string& q : impl_->catalogue.queryOrder()) out.push_back(impl_->catalogue.query(q)->def);
    return out;
}

std::optional<QueryDef> Database::GetQueryDef(std::string_view name) const {
    impl_->noticeOtherWriters();
    const auto* q = impl_->catalogue.query(name);
    return q ? std::optional<QueryDef>(q->def) : std::nullopt;
}

bool Database::QueryExists(std::string_view name) const { return GetQueryDef(name).has_value(); }

void Database::CreateQueryDef(const QueryDef& def) {
    impl_->checkWritable();
    checkName(def.Name);
    if (impl_->catalogue.table(def.Name) || impl_->catalogue.query(def.Name)) raise(err::OggettoGiaEsistente, def.Name);
    sql::Translation t = impl_->translate(def.SQL, true);  // raises the text's own error
    if (t.kind != sql::StatementKind::Select) raise(err::ArgomentoNonValido, def.Name);
    {
        SchemaChange change(*impl_);
        if (!impl_->buildView(def)) raise(err::ArgomentoNonValido, def.Name);
        change.commit();
    }
    impl_->reload();
    impl_->recreateDependents(def.Name);
}

void Database::DeleteQueryDef(std::string_view name) {
    impl_->checkWritable();
    auto q = GetQueryDef(name);
    if (!q) raise(err::ElementoNonTrovato, std::string(name));
    {
        SchemaChange change(*impl_);
        exec(impl_->db, "DROP VIEW IF EXISTS " + quoteIdent(q->Name));
        Catalogue::removeQuery(impl_->db, q->Name);
        change.commit();
    }
    impl_->reload();
    impl_->recreateDependents(q->Name);
}

}  // namespace store
