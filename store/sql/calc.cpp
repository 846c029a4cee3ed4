#include "store/sql/calc.h"

#include <sqlite3.h>

#include <cmath>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "store/errors.h"
#include "store/sql/translator.h"

namespace store::sql {

// ---- building ----------------------------------------------------------------------------------

std::shared_ptr<const Calc> CalcOperand(std::string sql, std::string key, bool literal) {
    auto c = std::make_shared<Calc>();
    c->literalsOnly = literal;
    c->args.push_back(std::move(sql));
    c->keys.push_back(std::move(key));
    c->nodes.push_back({'$', 0, -1, false});
    return c;
}

namespace {

// Puts the parts of several trees into one, each distinct part once.
class Fusione {
public:
    explicit Fusione(Calc& c) : c_(c) {}

    int copia(const Calc& da) {
        std::vector<int> dove(da.nodes.size());
        for (std::size_t i = 0; i < da.nodes.size(); ++i) {
            Calc::Node n = da.nodes[i];
            if (n.op == '$') {
                n.a = argomento(da.args[static_cast<std::size_t>(n.a)], da.keys[static_cast<std::size_t>(n.a)]);
            } else {
                n.a = dove[static_cast<std::size_t>(n.a)];
                n.b = dove[static_cast<std::size_t>(n.b)];
            }
            dove[i] = nodo(n);
        }
        return dove.back();
    }

    int nodo(const Calc::Node& n) {
        std::string firma{n.op, n.finite ? '!' : ' '};
        firma += std::to_string(n.a) + "," + std::to_string(n.b);
        auto [it, nuovo] = nodi_.emplace(std::move(firma), static_cast<int>(c_.nodes.size()));
        if (nuovo) c_.nodes.push_back(n);
        return it->second;
    }

private:
    int argomento(const std::string& sql, const std::string& key) {
        if (!key.empty()) {
            auto it = argomenti_.find(key);
            if (it != argomenti_.end()) return it->second;
        }
        const int i = static_cast<int>(c_.args.size());
        c_.args.push_back(sql);
        c_.keys.push_back(key);
        if (!key.empty()) argomenti_.emplace(key, i);
        return i;
    }

    Calc& c_;
    std::unordered_map<std::string, int> argomenti_;
    std::unordered_map<std::string, int> nodi_;
};

}  // namespace

std::shared_ptr<const Calc> CalcJoin(char op, bool finite, const Calc& a, const Calc& b) {
    auto c = std::make_shared<Calc>();
    Fusione f(*c);
    const int x = f.copia(a);
    const int y = f.copia(b);
    f.nodo({op, x, y, finite});
    c->calls = a.calls + b.calls + (finite || op == '/' ? 1 : 0);
    c->literalsOnly = a.literalsOnly && b.literalsOnly;
    return c;
}

// The program: a node per word, "$k" the k-th argument, "+i,j" an operation on earlier nodes,
// with "!" when its result must be finite.
std::string CalcSql(const Calc& c) {
    std::string p;
    for (const Calc::Node& n : c.nodes) {
        if (!p.empty()) p += ' ';
        if (n.op == '$') {
            p += '$' + std::to_string(n.a);
            continue;
        }
        p += n.op + std::to_string(n.a) + "," + std::to_string(n.b);
        if (n.finite) p += '!';
    }
    std::string sql = "jet_calc('" + p + "'";
    for (const std::string& a : c.args) sql += "," + a;
    return sql + ")";
}

// ---- evaluating --------------------------------------------------------------------------------

namespace {

struct Numero {
    enum class Tipo { Null, Intero, Reale } tipo = Tipo::Null;
    std::int64_t i = 0;
    double d = 0;

    double reale() const { return tipo == Tipo::Intero ? static_cast<double>(i) : d; }
    static Numero intero(std::int64_t v) { return {Tipo::Intero, v, 0}; }
    // SQLite gives Null for a result that is not a number.
    static Numero reale(double v) { return std::isnan(v) ? Numero{} : Numero{Tipo::Reale, 0, v}; }
};

struct Errore {
    int numero;
};

struct Programma {
    std::vector<Calc::Node> nodi;
    std::vector<Numero> valori;
};

bool leggiNumero(std::string_view& s, int& n) {
    std::size_t k = 0;
    n = 0;
    while (k < s.size() && s[k] >= '0' && s[k] <= '9') n = n * 10 + (s[k++] - '0');
    s.remove_prefix(k);
    return k > 0;
}

bool leggiProgramma(std::string_view s, int argomenti, Programma& p) {
    while (!s.empty()) {
        Calc::Node n;
        n.op = s.front();
        s.remove_prefix(1);
        const int fatti = static_cast<int>(p.nodi.size());
        if (n.op == '$') {
            if (!leggiNumero(s, n.a) || n.a >= argomenti) return false;
        } else {
            if (n.op != '+' && n.op != '-' && n.op != '*' && n.op != '/') return false;
            if (!leggiNumero(s, n.a) || s.empty() || s.front() != ',') return false;
            s.remove_prefix(1);
            if (!leggiNumero(s, n.b) || n.a >= fatti || n.b >= fatti) return false;
            if (!s.empty() && s.front() == '!') {
                n.finite = true;
                s.remove_prefix(1);
            }
        }
        if (!s.empty()) {
            if (s.front() != ' ') return false;
            s.remove_prefix(1);
        }
        p.nodi.push_back(n);
    }
    p.valori.resize(p.nodi.size());
    return !p.nodi.empty();
}

// An argument as SQLite's arithmetic takes it.
Numero operando(sqlite3_value* v) {
    switch (sqlite3_value_numeric_type(v)) {
        case SQLITE_NULL: return {};
        case SQLITE_INTEGER: return Numero::intero(sqlite3_value_int64(v));
        default: return Numero::reale(sqlite3_value_double(v));  // a real, or a text SQLite read as one
    }
}

Numero operazione(char op, const Numero& a, const Numero& b) {
    if (a.tipo == Numero::Tipo::Null || b.tipo == Numero::Tipo::Null) return {};
    if (op == '/') {
        const double divisore = b.reale();
        if (divisore == 0) throw Errore{err::DivisionePerZero};
        const double r = a.reale() / divisore;
        if (!std::isfinite(r)) throw Errore{err::Overflow};
        return Numero::reale(r);
    }
    if (a.tipo == Numero::Tipo::Intero && b.tipo == Numero::Tipo::Intero) {
        std::int64_t r = 0;
        const bool oltre = op == '+'   ? __builtin_add_overflow(a.i, b.i, &r)
                           : op == '-' ? __builtin_sub_overflow(a.i, b.i, &r)
                                       : __builtin_mul_overflow(a.i, b.i, &r);
        if (!oltre) return Numero::intero(r);
    }
    const double x = a.reale(), y = b.reale();
    return Numero::reale(op == '+' ? x + y : op == '-' ? x - y : x * y);
}

const Numero& esegui(Programma& p, sqlite3_value** argv) {
    for (std::size_t k = 0; k < p.nodi.size(); ++k) {
        const Calc::Node& n = p.nodi[k];
        if (n.op == '$') {
            p.valori[k] = operando(argv[n.a + 1]);
            continue;
        }
        Numero r = operazione(n.op, p.valori[static_cast<std::size_t>(n.a)], p.valori[static_cast<std::size_t>(n.b)]);
        if (n.finite && r.tipo == Numero::Tipo::Reale && !std::isfinite(r.d)) throw Errore{err::Overflow};
        p.valori[k] = r;
    }
    return p.valori.back();
}

void sqlCalc(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    auto* p = static_cast<Programma*>(sqlite3_get_auxdata(ctx, 0));
    std::unique_ptr<Programma> nuovo;
    if (!p) {
        nuovo = std::make_unique<Programma>();
        const auto* testo = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
        if (!testo || !leggiProgramma(testo, argc - 1, *nuovo)) {
            resultJetError(ctx, err::ChiamataNonValida);
            return;
        }
        p = nuovo.get();
    }
    try {
        const Numero& r = esegui(*p, argv);
        if (r.tipo == Numero::Tipo::Null) sqlite3_result_null(ctx);
        else if (r.tipo == Numero::Tipo::Intero) sqlite3_result_int64(ctx, r.i);
        else sqlite3_result_double(ctx, r.d);
    } catch (const Errore& e) {
        resultJetError(ctx, e.numero);
    }
    // SQLite keeps the parsed program for the next row while the text stays the same; it may also
    // free it at once, so it is handed over only after its last use here.
    if (nuovo) sqlite3_set_auxdata(ctx, 0, nuovo.release(), [](void* q) { delete static_cast<Programma*>(q); });
}

}  // namespace

void registerCalcFunction(sqlite3* db) {
    sqlite3_create_function_v2(db, "jet_calc", -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, sqlCalc, nullptr,
                               nullptr, nullptr);
}

}  // namespace store::sql
