// Rows written in bulk: one Insert of a union of single-row selects per block of rows.
#include <charconv>
#include <cmath>

#include "store/convert.h"
#include "store/model/model.h"

namespace store::model {

namespace {

// SQLite takes at most 500 terms in one compound select.
constexpr std::size_t kRighePerBlocco = 500;

std::string due(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

std::string letteraleData(double serial) {
    const DateParts p = SplitDate(serial);
    std::string out = "#" + due(p.month) + "/" + due(p.day) + "/" + std::to_string(p.year);
    if (p.hour || p.minute || p.second) out += " " + due(p.hour) + ":" + due(p.minute) + ":" + due(p.second);
    return out + "#";
}

std::string letteraleNumero(double d) {
    if (!std::isfinite(d)) raise(6);
    // 17 significant digits give the double back exactly; to_chars writes the point whatever the
    // C library's locale says.
    char buf[40];
    const auto end = std::to_chars(buf, buf + sizeof buf, d, std::chars_format::general, 17).ptr;
    return std::string(buf, end);
}

std::string bloccoInsert(const std::string& tabella, const std::vector<std::string>& colonne,
                         const std::vector<std::vector<Value>>& righe, std::size_t da, std::size_t a) {
    std::string sql = "INSERT INTO [" + tabella + "] (";
    for (std::size_t c = 0; c < colonne.size(); ++c) sql += (c ? ",[" : "[") + colonne[c] + "]";
    sql += ") ";
    for (std::size_t r = da; r < a; ++r) {
        if (righe[r].size() != colonne.size()) raise(3346);
        sql += r == da ? "SELECT " : " UNION ALL SELECT ";
        for (std::size_t c = 0; c < colonne.size(); ++c) sql += (c ? "," : "") + Letterale(righe[r][c]);
    }
    return sql;
}

}  // namespace

std::string Letterale(const Value& v) {
    switch (v.kind()) {
        case Value::Kind::Null: return "Null";
        case Value::Kind::Boolean: return v.number() != 0 ? "True" : "False";
        case Value::Kind::Integer:
        case Value::Kind::Long: return std::to_string(static_cast<long long>(v.number()));
        case Value::Kind::Double: return letteraleNumero(v.number());
        case Value::Kind::Date: return letteraleData(v.number());
        case Value::Kind::Text: break;
    }
    std::string out = "'";
    for (char c : v.text()) out += c == '\'' ? std::string("''") : std::string(1, c);
    return out + "'";
}

void InserisciRighe(Database& db, const std::string& tabella, const std::vector<std::string>& colonne,
                    const std::vector<std::vector<Value>>& righe) {
    for (std::size_t da = 0; da < righe.size(); da += kRighePerBlocco)
        db.Execute(bloccoInsert(tabella, colonne, righe, da, std::min(righe.size(), da + kRighePerBlocco)));
}

}  // namespace store::model
