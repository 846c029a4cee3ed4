// DAO-style objects over SQLite files: the operations and semantics the program relies on.
// Names follow the platform's objects so that the program reads as its logic is told.
// Every failure is a JetError with the platform's number.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/errors.h"
#include "store/value.h"

namespace store {

class Database;
class Recordset;

struct FieldDef {
    std::string Name;
    FieldType Type = FieldType::Text;
    int Size = 0;                 // Text: maximum length
    bool AllowZeroLength = true;
    bool Required = false;
    std::string DefaultValue;     // as the platform keeps it: an expression text ("0", "'x'", "")
    std::string ValidationRule;
    std::string ValidationText;
    long Attributes = 0;          // 16 = auto-increment
    int OrdinalPosition = 0;
};

struct IndexDef {
    std::string Name;
    std::vector<std::string> Fields;
    bool Unique = false;
    bool Primary = false;
};

struct TableDef {
    std::string Name;
    std::vector<FieldDef> Fields;
    std::vector<IndexDef> Indexes;
    // CreateField: a field ready for Fields (Size 0 takes the type's default, Text 50).
    static FieldDef CreateField(std::string name, FieldType type, int size = 0);
    static IndexDef CreateIndex(std::string name, std::vector<std::string> fields, bool unique = false,
                                bool primary = false);
};

struct QueryDef {
    std::string Name;
    std::string SQL;
};

// One column of the current row of a recordset.
class Field {
public:
    const std::string& Name() const { return *name_; }
    FieldType Type() const { return type_; }
    int Size() const { return size_; }
    Value value() const;                 // Null reads as Null
    void setValue(const Value& v);       // only in Edit/AddNew mode
    Field& operator=(const Value& v) { setValue(v); return *this; }

private:
    friend class Recordset;
    Recordset* rs_ = nullptr;
    int index_ = 0;
    const std::string* name_ = nullptr;  // the recordset's own column name
    FieldType type_ = FieldType::Text;
    int size_ = 0;
};

using Bookmark = std::int64_t;

class Recordset {
public:
    enum class EditMode { None, Edit, AddNew };
    ~Recordset();

    bool Eof() const;
    bool Bof() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    long RecordCount() const;          // after opening: 0 when empty, above 0 otherwise; true count after MoveLast
    long AbsolutePosition() const;     // 0-based; -1 with no current record
    void setAbsolutePosition(long pos);
    double PercentPosition() const;
    Bookmark getBookmark() const;
    void setBookmark(Bookmark b);
    Bookmark LastModified() const;     // row last added or changed through this recordset
    void Requery();
    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    void Delete();
    void Close();
    EditMode editMode() const;
    bool updatable() const;
    // A recordset that follows a screen (a list the user scrolls) is not read to its end before a
    // write through its database, as every other open recordset is: it lets go of its statement
    // and runs it again from where it stopped when more rows are wanted. Rows it already read stay
    // as they were read; the rows after them are read as they are by then.
    void SetResumable(bool resumable);
    // Rows added are kept as they were set, not read back from the table: for a recordset that is
    // only written through, where the read back would cost as much as the insert.
    void SetAppendOnly(bool appendOnly);

    int FieldCount() const;
    Field& Fields(int index) {  // error 3265 out of range, 3420 once closed
        if (static_cast<unsigned>(index) < open_) return fields_[index];
        return otherField(index);
    }
    Field& Fields(std::string_view name);          // without case; error 3265 when absent
    bool HasField(std::string_view name) const;
    Value operator[](std::string_view name) { return Fields(name).value(); }
    Value get(std::string_view name) { return Fields(name).value(); }
    void set(std::string_view name, const Value& v) { Fields(name).setValue(v); }

    const std::string& Name() const;   // the text or the name it was opened on

    struct Impl;
    explicit Recordset(std::unique_ptr<Impl> impl);

private:
    friend class Field;
    Field& otherField(int index);
    // The fields while the recordset is open (open_ counts them; 0 once closed). Before impl_,
    // which clears open_ as it closes, down to its own destruction.
    Field* fields_ = nullptr;
    unsigned open_ = 0;
    std::unique_ptr<Impl> impl_;
};

class Database : public std::enable_shared_from_this<Database> {
public:
    ~Database();

    const std::string& Name() const;   // the file's path (":memory:" for a database in memory)

    void Execute(std::string_view sql);
    long RecordsAffected() const;
    std::unique_ptr<Recordset> OpenRecordset(std::string_view sqlOrName);

    // Schema.
    std::vector<std::string> TableNames() const;            // user tables, in creation order
    std::optional<TableDef> GetTableDef(std::string_view name) const;
    void AppendTableDef(const TableDef& def);               // TableDefs.Append
    void DeleteTableDef(std::string_view name);             // TableDefs.Delete
    void AppendField(std::string_view table, const FieldDef& field);
    void DeleteField(std::string_view table, std::string_view field);
    void SetFieldProperties(std::string_view table, const FieldDef& field);  // by field.Name
    void AppendIndex(std::string_view table, const IndexDef& index);
    void DeleteIndex(std::string_view table, std::string_view index);
    std::vector<QueryDef> QueryDefs() const;
    std::optional<QueryDef> GetQueryDef(std::string_view name) const;
    void CreateQueryDef(const QueryDef& def);               // CreateQueryDef + Append
    void DeleteQueryDef(std::string_view name);
    bool TableExists(std::string_view name) const;
    bool QueryExists(std::string_view name) const;

    void Close();        // commits what an open batch holds first
    bool isOpen() const;

    // Batched writes for long runs: between BeginBatch and EndBatch the writes of this connection
    // are committed together every `every` statements and at the end, instead of one by one. A
    // failing statement raises as always and rolls back nothing already written. Batches nest; the
    // outermost one decides the count and commits at its end. Other users see the batch's rows only
    // once committed, and cannot write while a transaction of it is open.
    void BeginBatch(int every = 500);
    void EndBatch();     // raises when the last commit fails; what it held is then rolled back
    bool inBatch() const;

    // For a scratch file that is thrown away whenever a run on it fails: no rollback journal and no
    // waiting for the disk, so large deletes cost no more than the pages they touch. A crash may leave
    // the file damaged; only a file not yet given to anyone may be set so.
    void SetScratch();

    struct Impl;
    explicit Database(std::unique_ptr<Impl> impl);
    Impl& impl() { return *impl_; }

private:
    std::unique_ptr<Impl> impl_;
};

using DatabasePtr = std::shared_ptr<Database>;

// A batch of writes for a scope: ends when the scope is left, by an exception too (then a commit
// that fails is rolled back quietly, since the first error is the one to report).
class WriteBatch {
public:
    explicit WriteBatch(Database& db, int every = 500);
    ~WriteBatch() noexcept(false);
    void End();  // ends it now, raising as EndBatch does
    WriteBatch(const WriteBatch&) = delete;
    WriteBatch& operator=(const WriteBatch&) = delete;

private:
    DatabasePtr db_;
    int exceptionsAtStart_;
};

// The one workspace, user "admin" with an empty password.
class Workspace {
public:
    static Workspace& Default();
    const std::string& UserName() const { return user_; }

    // Opens an existing file; error 3024 when it is missing, 3049 when it is no database of ours,
    // 3045/3051 when another holds it exclusively.
    DatabasePtr OpenDatabase(const std::string& path, bool exclusive = false, bool readOnly = false);
    DatabasePtr CreateDatabase(const std::string& path);   // error 3204 when the file exists
    DatabasePtr OpenMemory();                              // a database in memory
    void CompactDatabase(const std::string& from, const std::string& to);  // 'to' must not exist

    // Copies a file page by page through SQLite's online backup: a consistent picture even while this
    // or another process has it open and writes. 'to' must not exist; a failed copy leaves no 'to'.
    // `progress(done, total)` is called with pages after each step.
    void BackupDatabase(const std::string& from, const std::string& to,
                        const std::function<void(long, long)>& progress = {});
    // The engine's check of a whole file: "" when sound, else its first findings, one a line.
    std::string IntegrityCheck(const std::string& path);

    // How long a statement waits for another user's lock before it fails with 3218 (milliseconds);
    // databases opened afterwards take it.
    void setLockWait(int milliseconds) { lockWait_ = milliseconds; }
    int lockWait() const { return lockWait_; }

private:
    std::string user_ = "admin";
    int lockWait_ = 4000;
};

}  // namespace store
