#include "store/sql/limits.h"

#include <sqlite3.h>

#include <cmath>
#include <string>

#include "store/errors.h"
#include "store/sql/translator.h"

namespace store::sql {

namespace {

constexpr double kFirstDateSerial = -657434.0;  // 1/1/100
constexpr double kEndDateSerial = 2958466.0;    // 1/1/10000

void jetFinite(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_FLOAT && !std::isfinite(sqlite3_value_double(argv[0]))) {
        resultJetError(ctx, err::Overflow);
        return;
    }
    sqlite3_result_value(ctx, argv[0]);
}

// A connection with no tables: SQLite parses a text in full before it looks for any name, so a
// text too deep for its parser is told apart from one that only names what is not there.
class ParserProbe {
public:
    ParserProbe() { sqlite3_open_v2(":memory:", &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr); }
    ~ParserProbe() { sqlite3_close_v2(db_); }
    bool overflows(const std::string& sql) {
        sqlite3_stmt* s = nullptr;
        int rc = sqlite3_prepare_v2(db_, sql.c_str(), static_cast<int>(sql.size()), &s, nullptr);
        sqlite3_finalize(s);
        if (rc == SQLITE_OK) return false;
        std::string_view m = sqlite3_errmsg(db_);
        return m.find("parser stack overflow") != m.npos || m.find("Expression tree is too large") != m.npos;
    }

private:
    sqlite3* db_ = nullptr;
};

}  // namespace

void checkSqliteDepth(const std::string& sql) {
    thread_local ParserProbe probe;
    if (probe.overflows(sql)) raise(err::QueryTroppoComplessa, "L'espressione è annidata troppo in profondità.");
}

void checkStatementLength(std::string_view text) {
    if (text.size() > kMaxStatementLength)
        raise(err::QueryTroppoComplessa, "L'istruzione supera i " + std::to_string(kMaxStatementLength) + " caratteri.");
}

void checkInListLength(std::size_t terms) {
    if (terms > kMaxInListTerms)
        raise(err::QueryTroppoComplessa, "L'elenco di In supera i " + std::to_string(kMaxInListTerms) + " valori.");
}

void checkSelectListLength(std::size_t terms) {
    if (terms > kMaxSelectTerms)
        raise(err::QueryTroppoComplessa, "L'elenco dei campi supera i " + std::to_string(kMaxSelectTerms) + " campi.");
}

void raiseNestingLimit(int levels) {
    raise(err::QueryTroppoComplessa, "L'espressione supera i " + std::to_string(levels) + " livelli di annidamento.");
}

void raiseChainLimit(int terms) {
    raise(err::QueryTroppoComplessa, "L'espressione supera i " + std::to_string(terms) + " termini uniti da And, Or o &.");
}

bool dateInRange(double serial) { return serial >= kFirstDateSerial && serial < kEndDateSerial; }

void registerLimitFunctions(sqlite3* db) {
    sqlite3_create_function_v2(db, "jet_finite", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, jetFinite, nullptr,
                               nullptr, nullptr);
}

}  // namespace store::sql
