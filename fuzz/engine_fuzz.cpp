// libFuzzer target: statements through the engine's objects. The input is up to eight statements,
// one a line, run in order on a scratch archive in memory (a few tables with rows and a saved query
// that can be written through): a statement that returns rows is opened as a recordset and read,
// moved in and written to; any other is executed. Each statement must work or raise a JetError with
// the platform's number; an engine error 3000 (SQLite refused the engine's own text), any other
// exception, a crash, a hang or a leak is a finding.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "store/catalog_database.h"

namespace {

constexpr std::size_t kMaxInput = 20000;
constexpr int kMaxStatements = 8;
constexpr int kMaxRows = 50;

store::DatabasePtr scratchArchive() {
    auto db = store::Workspace::Default().OpenMemory();
    for (const char* sql : {
             "CREATE TABLE Clienti (ID LONG PRIMARY KEY, DescCliente TEXT(50), Sconto1 DOUBLE, Note MEMO)",
             "INSERT INTO Clienti VALUES (1, 'Rossi', 10, Null)",
             "INSERT INTO Clienti VALUES (2, 'bianchi', Null, 'x')",
             "CREATE TABLE Documenti (ID COUNTER PRIMARY KEY, Tipo LONG, Data DATETIME, Cliente LONG, Pagato YESNO, "
             "ImportoTotale DOUBLE, Prefisso TEXT(20))",
             "INSERT INTO Documenti (Tipo, Data, Cliente, Pagato, ImportoTotale, Prefisso) "
             "VALUES (5, #01/10/2024#, 1, True, 122, 'A')",
             "INSERT INTO Documenti (Tipo, Data, Cliente, Pagato) VALUES (9, #02/10/2024 10:00#, 2, False)",
             "CREATE TABLE Movimenti (ID LONG PRIMARY KEY, Documento LONG, Importo DOUBLE, Iva LONG)",
             "INSERT INTO Movimenti VALUES (1, 1, 100, 1)",
             "INSERT INTO Movimenti VALUES (2, 1, 22.5, 2)",
             "INSERT INTO Movimenti VALUES (3, 7, Null, 1)",
             "CREATE TABLE CodiciIva (ID LONG PRIMARY KEY, DescIva TEXT(50), AliquotaIva DOUBLE)",
             "INSERT INTO CodiciIva VALUES (1, '22%', 22)",
             "INSERT INTO CodiciIva VALUES (2, '10%', 10)",
             "CREATE UNIQUE INDEX DescIva ON CodiciIva (DescIva)",
         })
        db->Execute(sql);
    db->CreateQueryDef({"qrClienti", "SELECT ID, DescCliente, Sconto1, Note, DescCliente & '!' AS Denominazione "
                                     "FROM Clienti"});
    return db;
}

[[noreturn]] void finding(const char* what, std::string_view statement, const std::string& detail) {
    std::fprintf(stderr, "%s: %s\nstatement: %.*s\n", what, detail.c_str(), static_cast<int>(statement.size()),
                 statement.data());
    std::abort();
}

// SQLite's own counts (columns, terms, sizes) are bounds of SQLite, not faults of the engine.
bool sqliteBound(const std::string& text) {
    return text.find("too many") != std::string::npos || text.find("too large") != std::string::npos ||
           text.find("too big") != std::string::npos;
}

void readAndWrite(store::Recordset& rs) {
    for (int n = 0; !rs.Eof() && n < kMaxRows; ++n) {
        for (int i = 0; i < rs.FieldCount(); ++i) (void)rs.Fields(i).value();
        rs.MoveNext();
    }
    if (rs.RecordCount() == 0) return;
    rs.MoveLast();
    rs.MovePrevious();
    if (rs.Bof()) rs.MoveFirst();
    if (!rs.updatable() || rs.FieldCount() == 0) return;
    // Writes a field's own value back: the row must take it unchanged or refuse it with an error.
    rs.Edit();
    int last = rs.FieldCount() - 1;
    rs.Fields(last).setValue(rs.Fields(last).value());
    rs.Update();
}

void runStatement(store::Database& db, std::string_view text) {
    try {
        try {
            db.Execute(text);
        } catch (const store::JetError& e) {
            if (e.number() != 3065) throw;  // a select: its rows are read through a recordset
            readAndWrite(*db.OpenRecordset(text));
        }
    } catch (const store::JetError& e) {
        if (e.number() == 3000 && !sqliteBound(e.what())) finding("engine error 3000", text, e.what());
        if (e.number() <= 0) finding("error without a number", text, e.what());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        finding("exception that is not an engine error", text, e.what());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static store::DatabasePtr db = scratchArchive();
    if (size > kMaxInput) return 0;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    // One transaction around the input, rolled back at its end, so that every input starts from the
    // same archive; the engine's writes and structure changes join it.
    sqlite3* handle = db->impl().handle();
    sqlite3_exec(handle, "BEGIN", nullptr, nullptr, nullptr);
    for (int n = 0; n < kMaxStatements && !input.empty(); ++n) {
        std::size_t end = input.find('\n');
        std::string_view line = input.substr(0, end);
        input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
        runStatement(*db, line);
    }
    if (sqlite3_get_autocommit(handle)) {  // SQLite ended the transaction itself: start afresh
        db->Close();
        db = scratchArchive();
        return 0;
    }
    sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
    db->impl().reload();
    return 0;
}
