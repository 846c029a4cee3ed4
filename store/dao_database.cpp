// The workspace and the database object: files, connections, locks, action statements.
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fstream>

#include "store/catalog_database.h"
#include "store/errors.h"

namespace store {

using detail::Stmt;

namespace {

// Written into every file the engine makes, at the place SQLite keeps for an application's mark.
constexpr std::int64_t kApplicationId = 0x42524556;  // "BREV"

bool fileExists(const std::string& path) {
    struct stat st{};
    return ::stat(path.c_str(), &st) == 0;
}

bool isRegularFile(const std::string& path) {
    struct stat st{};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string parentFolder(const std::string& path) {
    auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Reads the file's header before SQLite sees it: an SQLite 3 file whose application mark is ours or
// not set. Anything else is refused with 3049 rather than handed to SQLite.
void checkHeader(const std::string& path) {
    if (!fileExists(path)) raise(err::FileDatabaseNonTrovato, path);
    if (!isRegularFile(path)) raise(err::DatabaseNonRiconosciuto, path);
    std::ifstream in(path, std::ios::binary);
    if (!in) raise(err::FileApertoInEsclusiva, path);  // no permission to read it
    unsigned char header[100] = {};
    in.read(reinterpret_cast<char*>(header), sizeof header);
    if (in.gcount() < static_cast<std::streamsize>(sizeof header)) raise(err::DatabaseNonRiconosciuto, path);
    if (std::memcmp(header, "SQLite format 3", 16) != 0) raise(err::DatabaseNonRiconosciuto, path);
    std::int64_t appId = (std::int64_t{header[68]} << 24) | (header[69] << 16) | (header[70] << 8) | header[71];
    if (appId != 0 && appId != kApplicationId) raise(err::DatabaseNonRiconosciuto, path);
}

struct ConnectionCloser {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
using Connection = std::unique_ptr<sqlite3, ConnectionCloser>;

Connection openConnection(const std::string& path, int flags, int missingError) {
    sqlite3* raw = nullptr;
    // One thread uses a connection: SQLite's own per-call locking is not needed.
    int rc = sqlite3_open_v2(path.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    Connection db(raw);
    if (rc != SQLITE_OK) raise(missingError, path);
    sqlite3_extended_result_codes(raw, 1);
    return db;
}

// Waits for another user's lock by looking again every millisecond or two, up to the workspace's
// wait. SQLite's own wait looks ever more seldom (up to every 100 ms): while other machines write
// one row after another, it keeps missing the moments the file is free and gives up.
int waitForLock(void* lockWaitMs, int calls) {
    if (calls >= static_cast<int>(reinterpret_cast<std::intptr_t>(lockWaitMs))) return 0;
    ::usleep(calls < 10 ? 500 : 1000);
    return 1;
}

// Every connection: the engine's functions, a wait for others' locks, a rollback journal written
// through to the disk, and table renames that leave the views' text alone (views are rebuilt from
// the saved queries' own text instead).
void configure(sqlite3* db, int lockWaitMs) {
    sqlite3_busy_handler(db, waitForLock, reinterpret_cast<void*>(static_cast<std::intptr_t>(lockWaitMs)));
    sql::registerFunctions(db);
    detail::registerEngineFunctions(db);
    detail::exec(db, "PRAGMA legacy_alter_table = ON; PRAGMA foreign_keys = OFF; PRAGMA synchronous = FULL;");
}

// The first read: a damaged file answers that it is not a database.
void checkReadable(sqlite3* db, const std::string& path) {
    try {
        detail::queryInt(db, "SELECT count(*) FROM sqlite_master");
    } catch (const JetError& e) {
        if (e.number() == err::DatabaseNonRiconosciuto) raise(err::DatabaseNonRiconosciuto, path);
        throw;
    }
}

void adoptFile(sqlite3* db) {
    if (detail::queryInt(db, "PRAGMA application_id") != kApplicationId) {
        detail::exec(db, "PRAGMA application_id = " + std::to_string(kApplicationId));
    }
    detail::exec(db, "PRAGMA journal_mode = DELETE");
    detail::Catalogue::ensureTables(db);
}

bool catalogueMissing(sqlite3* db) {
    return detail::queryInt(db,
                            "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name IN "
                            "('__jet_objects', '__jet_fields', '__jet_indexes')") < 3 ||
           detail::queryInt(db, "PRAGMA application_id") != kApplicationId;
}

DatabasePtr makeDatabase(Connection db, const std::string& path, bool readOnly) {
    auto impl = std::make_unique<Database::Impl>();
    impl->db = db.release();
    impl->path = path;
    impl->readOnly = readOnly;
    impl->translator = std::make_unique<sql::Translator>(*impl);
    auto database = std::make_shared<Database>(std::move(impl));
    database->impl().reload();
    return database;
}

}  // namespace

// ---- Workspace -----------------------------------------------------------------------------------

Workspace& Workspace::Default() {
    static Workspace ws;
    return ws;
}

DatabasePtr Workspace::OpenDatabase(const std::string& path, bool exclusive, bool readOnly) {
    checkHeader(path);
    Connection db = openConnection(path, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE, err::FileDatabaseNonTrovato);
    try {
        configure(db.get(), lockWait_);
        // Exclusive use keeps SQLite's exclusive lock until the connection closes: other processes
        // are kept out as well.
        if (exclusive) detail::exec(db.get(), "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT;");
        checkReadable(db.get(), path);
        if (!readOnly && catalogueMissing(db.get())) adoptFile(db.get());
        return makeDatabase(std::move(db), path, readOnly);
    } catch (const JetError& e) {
        // Still locked after the wait: another user holds the file for himself, or is using it
        // while this one asks for exclusive use.
        if (e.number() == err::RecordBloccato) raise(exclusive ? err::FileGiaInUso : err::FileApertoInEsclusiva, path);
        throw;
    }
}

DatabasePtr Workspace::CreateDatabase(const std::string& path) {
    if (fileExists(path)) raise(err::DatabaseGiaEsistente, path);
    if (!fileExists(parentFolder(path))) raise(err::PercorsoNonValido, parentFolder(path));
    Connection db = openConnection(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, err::PercorsoNonValido);
    configure(db.get(), lockWait_);
    adoptFile(db.get());
    return makeDatabase(std::move(db), path, false);
}

DatabasePtr Workspace::OpenMemory() {
    Connection db = openConnection(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, err::PercorsoNonValido);
    configure(db.get(), lockWait_);
    adoptFile(db.get());
    return makeDatabase(std::move(db), ":memory:", false);
}

void Workspace::CompactDatabase(const std::string& from, const std::string& to) {
    if (fileExists(to)) raise(err::DatabaseGiaEsistente, to);
    if (!fileExists(parentFolder(to))) raise(err::PercorsoNonValido, parentFolder(to));
    checkHeader(from);
    // Through a read-write connection when the file allows one: SQLite's VACUUM INTO from a
    // read-only connection takes several times as long (38 s against 6 s on a 1 GB archive). The
    // statement itself writes nothing to the source.
    Connection source = ::access(from.c_str(), W_OK) == 0
                            ? openConnection(from, SQLITE_OPEN_READWRITE, err::FileDatabaseNonTrovato)
                            : openConnection(from, SQLITE_OPEN_READONLY, err::FileDatabaseNonTrovato);
    configure(source.get(), lockWait_);
    checkReadable(source.get(), from);
    detail::Stmt vacuum(source.get(), "VACUUM INTO ?1");
    vacuum.bindText(1, to);
    vacuum.step();
}

// The source is read through its own read-only connection: the backup restarts by itself when
// another connection writes to it meanwhile, and waits out others' locks through the busy handler.
void Workspace::BackupDatabase(const std::string& from, const std::string& to,
                               const std::function<void(long, long)>& progress) {
    checkHeader(from);
    if (fileExists(to)) raise(err::DatabaseGiaEsistente, to);
    if (!fileExists(parentFolder(to))) raise(err::PercorsoNonValido, parentFolder(to));
    Connection source = openConnection(from, SQLITE_OPEN_READONLY, err::FileDatabaseNonTrovato);
    sqlite3_busy_handler(source.get(), waitForLock, reinterpret_cast<void*>(static_cast<std::intptr_t>(lockWait_)));
    int rc = SQLITE_OK;
    {
        Connection target = openConnection(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, err::PercorsoNonValido);
        sqlite3_backup* copy = sqlite3_backup_init(target.get(), "main", source.get(), "main");
        if (!copy) {
            rc = sqlite3_errcode(target.get());
        } else {
            constexpr int kPagesPerStep = 4096;
            int waits = 0;
            while (true) {
                rc = sqlite3_backup_step(copy, kPagesPerStep);
                if (rc == SQLITE_OK || rc == SQLITE_DONE) {
                    if (progress) {
                        const long total = sqlite3_backup_pagecount(copy);
                        progress(total - sqlite3_backup_remaining(copy), total);
                    }
                    if (rc == SQLITE_DONE) break;
                } else if ((rc == SQLITE_BUSY || rc == SQLITE_LOCKED) && ++waits < lockWait_) {
                    sqlite3_sleep(1);
                } else {
                    break;
                }
            }
            const int end = sqlite3_backup_finish(copy);
            if (rc == SQLITE_DONE) rc = end;
        }
    }
    if (rc == SQLITE_OK || rc == SQLITE_DONE) return;
    ::unlink(to.c_str());
    ::unlink((to + "-journal").c_str());
    const int primary = rc & 0xff;
    if (primary == SQLITE_FULL || primary == SQLITE_IOERR) raise(err::ErroreDiscoORete, to);
    if (primary == SQLITE_READONLY || primary == SQLITE_CANTOPEN || primary == SQLITE_PERM)
        raise(err::AccessoPercorsoNegato, to);
    if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) raise(err::FileGiaInUso, from);
    raise(err::ErroreDiscoORete, std::string(sqlite3_errstr(rc)) + ": " + to);
}

std::string Workspace::IntegrityCheck(const std::string& path) {
    checkHeader(path);
    Connection db = openConnection(path, SQLITE_OPEN_READONLY, err::FileDatabaseNonTrovato);
    configure(db.get(), lockWait_);  // the indexes use the engine's collations
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db.get(), "PRAGMA integrity_check(20)", -1, &stmt, nullptr) != SQLITE_OK)
        return sqlite3_errmsg(db.get());
    std::string findings;
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        const std::string line = text ? text : "";
        if (line == "ok") continue;
        findings += line + "\n";
    }
    if (rc != SQLITE_DONE) findings += std::string(sqlite3_errmsg(db.get())) + "\n";
    sqlite3_finalize(stmt);
    return findings;
}

// ---- Database ------------------------------------------------------------------------------------

Database::Database(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Database::~Database() = default;

const std::string& Database::Name() const { return impl_->path; }
bool Database::isOpen() const { return impl_->db != nullptr; }
// The batch's writes are committed before the connection goes; should that fail, the connection
// still closes (SQLite rolls the transaction back) and the failure is reported.
void Database::Close() {
    try {
        if (isOpen()) impl_->commitBatch();
    } catch (const JetError&) {
        impl_->close();
        throw;
    }
    impl_->close();
}

void Database::BeginBatch(int every) {
    impl_->handle();
    if (impl_->batch.depth++ > 0) return;
    impl_->batch.every = std::max(1, every);
    impl_->batch.written = 0;
}

// A transaction whose commit failed is not kept open: every later write would then silently join it.
void Database::EndBatch() {
    auto& b = impl_->batch;
    if (b.depth == 0 || --b.depth > 0 || !isOpen()) return;
    try {
        impl_->commitBatch();
    } catch (const JetError&) {
        if (!sqlite3_get_autocommit(impl_->db)) sqlite3_exec(impl_->db, "ROLLBACK", nullptr, nullptr, nullptr);
        b.open = false;
        throw;
    }
}

bool Database::inBatch() const { return impl_->batch.depth > 0; }

void Database::SetScratch() { detail::exec(impl_->handle(), "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF"); }

// ---- WriteBatch ----------------------------------------------------------------------------------

WriteBatch::WriteBatch(Database& db, int every)
    : db_(db.shared_from_this()), exceptionsAtStart_(std::uncaught_exceptions()) {
    db_->BeginBatch(every);
}

// Left normally, a failed commit is reported like any write's; left by an exception, that
// exception is the one the caller must see.
WriteBatch::~WriteBatch() noexcept(false) {
    if (!db_) return;
    if (std::uncaught_exceptions() == exceptionsAtStart_) {
        End();
        return;
    }
    try {
        End();
    } catch (const JetError&) {
    }
}

void WriteBatch::End() {
    DatabasePtr db = std::move(db_);
    if (db) db->EndBatch();
}

long Database::RecordsAffected() const { return impl_->recordsAffected; }

void Database::Execute(std::string_view sqlText) {
    impl_->noticeOtherWriters();
    sql::Translation t = impl_->translate(sqlText);
    impl_->recordsAffected = 0;
    switch (t.kind) {
        case sql::StatementKind::Select: raise(err::SelezioneNonEseguibile);
        case sql::StatementKind::Ddl:
            if (!t.ddl) raise(err::ArgomentoNonValido);
            runDdl(*this, *t.ddl);
            return;
        default: impl_->runAction(t);
    }
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view sqlOrName) {
    impl_->noticeOtherWriters();
    return openRecordset(shared_from_this(), sqlOrName);
}

Database::Impl::~Impl() { close(); }

sqlite3* Database::Impl::handle() const {
    if (!db) raise(err::OggettoNonValido);
    return db;
}

void Database::Impl::checkWritable() const {
    handle();
    if (readOnly) raise(err::SolaLettura);
}

void Database::Impl::close() {
    if (!db) return;
    auto open = recordsets;
    for (Recordset::Impl* rs : open) closeRecordset(rs);
    recordsets.clear();
    try {
        commitBatch();
    } catch (const JetError&) {
        // Closing rolls back what could not be committed; Close() has already reported it.
    }
    batch = Batch{};
    statements.clear();
    sqlite3_close_v2(db);
    db = nullptr;
}

void Database::Impl::finishReads(bool structure) {
    for (Recordset::Impl* rs : recordsets) finishRecordset(rs, structure);
}

void Database::Impl::reload() {
    catalogue.load(handle());
    ++version;
    statements.clear();
    seenDataVersion = detail::queryInt(db, "PRAGMA data_version");
    seenUserVersion = detail::queryInt(db, "PRAGMA user_version");
}

// Another connection, in this process or another, may have changed tables or queries. SQLite tells
// whether anyone else wrote since the last look; only then is the catalogue's counter read.
// Error 3420 once the database is closed.
void Database::Impl::noticeOtherWriters() {
    std::int64_t data = cachedInt("PRAGMA data_version");
    if (data == seenDataVersion) return;
    seenDataVersion = data;
    if (detail::queryInt(db, "PRAGMA user_version") != seenUserVersion) reload();
}

const sql::RelationInfo* Database::Impl::findRelation(std::string_view name) const {
    if (const auto* t = catalogue.table(name)) return &t->rel;
    const auto* q = catalogue.query(name);
    return q && q->hasView ? &q->rel : nullptr;
}

sql::Translation Database::Impl::translate(std::string_view text, bool inlineLiterals) {
    handle();
    sql::Options options;
    options.inlineLiterals = inlineLiterals;
    return translator->translate(text, options);
}

std::int64_t Database::Impl::cachedInt(const std::string& sql) {
    detail::CachedStmt s(statements, handle(), sql);
    return s->step() ? s->columnInt(0) : 0;
}

// Writes first read the open recordsets to their end: a connection that keeps a read lock while it
// asks for the write lock is refused at once by SQLite (it could deadlock with another writer),
// where without it the write waits for the other user as it should.
void Database::Impl::runAction(const sql::Translation& t) {
    finishReads(t.kind == sql::StatementKind::Ddl);
    detail::CachedStmt s(statements, handle(), t.sql);
    for (std::size_t i = 0; i < t.params.size(); ++i) s->bind(static_cast<int>(i + 1), t.params[i]);
    beforeWrite();
    while (s->step()) {
    }
    recordsAffected = sqlite3_changes(db);
    afterWrite();
}

// IMMEDIATE takes the write lock at once, waiting for other users as a single write does; a
// deferred transaction would first read under a shared lock and then be refused the upgrade.
// SQLite may itself end a transaction when a statement in it fails badly (a full disk): the next
// write then opens a new one.
void Database::Impl::beforeWrite() {
    if (batch.depth == 0 || readOnly || !sqlite3_get_autocommit(handle())) return;
    detail::exec(db, "BEGIN IMMEDIATE");
    batch.open = true;
    batch.written = 0;
}

void Database::Impl::afterWrite() {
    if (batch.open && ++batch.written >= batch.every) commitBatch();
}

// A commit that fails (another user still reading when the wait runs out) leaves the transaction
// open, so the next write or the batch's end tries again.
void Database::Impl::commitBatch() {
    if (!batch.open) return;
    if (!sqlite3_get_autocommit(handle())) {
        finishReads();
        detail::exec(db, "COMMIT");
    }
    batch.open = false;
    batch.written = 0;
}

}  // namespace store
