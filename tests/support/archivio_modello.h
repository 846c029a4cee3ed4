// Small archives built by hand for the model's tests, and short ways to read them.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "store/convert.h"
#include "store/dao.h"
#include "store/model/model.h"

namespace modeltest {

using store::Value;

inline Value L(long v) { return Value::Long(static_cast<std::int32_t>(v)); }
inline Value D(double v) { return Value::Double(v); }
inline Value T(const char* s) { return Value::Text(s); }
inline Value B(bool b) { return Value::Bool(b); }
inline Value Giorno(int g, int m, int a) { return Value::Date(store::DateSerial(a, m, g)); }

using Campi = std::initializer_list<std::pair<const char*, Value>>;

// Adds one row through the empty result of "where ID<0", as the program's editors do.
inline void riga(store::Database& db, const std::string& tabella, Campi campi) {
    auto rs = db.OpenRecordset("Select * from " + tabella + " where ID<0");
    rs->AddNew();
    for (const auto& [nome, valore] : campi) rs->set(nome, valore);
    rs->Update();
    rs->Close();
}

// The IDs of the rows of a statement, in the order given.
inline std::vector<long> ids(store::Database& db, const std::string& sql) {
    std::vector<long> out;
    auto rs = db.OpenRecordset(sql);
    for (; !rs->Eof(); rs->MoveNext()) out.push_back(static_cast<long>(rs->get("ID").number()));
    return out;
}

// One field of the only row of a statement.
inline Value campo(store::Database& db, const std::string& sql, const std::string& nome) {
    auto rs = db.OpenRecordset(sql);
    if (rs->Eof()) return Value::Text("<nessuna riga: " + sql + ">");
    return rs->get(nome);
}

// An expected text of one column of the only row of a statement.
struct Testo {
    const char* sql;
    const char* colonna;
    const char* atteso;
};

inline std::string testo(const Value& v) { return v.isNull() ? "<Null>" : store::ConcatText(v); }

}  // namespace modeltest
