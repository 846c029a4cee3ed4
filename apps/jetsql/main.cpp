// jetsql: the engine's console for support work.
//   jetsql [--db FILE] [STATEMENT...]
// Runs statements of the program's dialect against FILE (created empty when missing; a database in
// memory without --db), or reads them from standard input, one per line. Rows print as a header of
// column names and one line per row, values separated by TAB. An engine error prints
// "error NUMBER: TEXT" on standard error and ends the run with status 1.
#include <charconv>
#include <iostream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "store/convert.h"
#include "store/errors.h"
#include "store/dao.h"

namespace {

struct Arguments {
    std::string dbPath;  // "" for a database in memory
    std::vector<std::string> statements;
};

bool parseArguments(int argc, char** argv, Arguments& out) {
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--db") {
            if (i + 1 >= argc) return false;
            out.dbPath = argv[++i];
        } else {
            out.statements.push_back(a);
        }
    }
    return true;
}

store::DatabasePtr openDatabase(const std::string& path) {
    auto& ws = store::Workspace::Default();
    if (path.empty()) return ws.OpenMemory();
    struct stat st{};
    return ::stat(path.c_str(), &st) == 0 ? ws.OpenDatabase(path) : ws.CreateDatabase(path);
}

// The shortest text that reads back as the same double.
std::string doubleText(double d) {
    if (d == 0) return "0";
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, end);
}

std::string escapedText(const std::string& s) {
    std::string out;
    out.reserve(s.size());
    for (char c : s) {
        switch (c) {
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\\': out += "\\\\"; break;
            default: out += c;
        }
    }
    return out;
}

std::string valueText(const store::Value& v) {
    using Kind = store::Value::Kind;
    switch (v.kind()) {
        case Kind::Null: return "NULL";
        case Kind::Boolean: return v.number() != 0 ? "-1" : "0";
        case Kind::Integer:
        case Kind::Long: return std::to_string(static_cast<long long>(v.number()));
        case Kind::Double: return doubleText(v.number());
        case Kind::Date: return store::DateToIso(v.number());
        case Kind::Text: return escapedText(v.text());
    }
    return "";
}

void printRows(store::Recordset& rs, std::ostream& out) {
    for (int i = 0; i < rs.FieldCount(); ++i) out << (i ? "\t" : "") << rs.Fields(i).Name();
    out << '\n';
    for (; !rs.Eof(); rs.MoveNext()) {
        for (int i = 0; i < rs.FieldCount(); ++i) out << (i ? "\t" : "") << valueText(rs.Fields(i).value());
        out << '\n';
    }
}

// A statement that returns rows is opened as a recordset; any other is executed.
void runStatement(store::Database& db, const std::string& text, std::ostream& out) {
    std::unique_ptr<store::Recordset> rs;
    try {
        rs = db.OpenRecordset(text);
    } catch (const store::JetError& e) {
        if (e.number() != store::err::OperazioneNonValida) throw;
        db.Execute(text);
        return;
    }
    printRows(*rs, out);
}

bool isBlank(const std::string& s) { return s.find_first_not_of(" \t\r") == std::string::npos; }

int fail(const std::string& number, const std::string& text) {
    std::cout.flush();
    std::cerr << "error " << number << ": " << text << '\n';
    return 1;
}

int run(const Arguments& args) {
    store::DatabasePtr db = openDatabase(args.dbPath);
    if (!args.statements.empty()) {
        for (const std::string& s : args.statements) runStatement(*db, s, std::cout);
        return 0;
    }
    for (std::string line; std::getline(std::cin, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!isBlank(line)) runStatement(*db, line, std::cout);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments args;
    if (!parseArguments(argc, argv, args)) {
        std::cerr << "usage: jetsql [--db FILE] [STATEMENT...]\n";
        return 2;
    }
    try {
        return run(args);
    } catch (const store::JetError& e) {
        return fail(std::to_string(e.number()), e.what());
    } catch (const std::exception& e) {
        return fail("0", e.what());
    }
}
