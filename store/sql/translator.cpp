// Binder and generator: the syntax tree resolved against the catalogue, typed, and written as
// SQLite text; and the cache of translations keyed on the text without its literals.
#include "store/sql/translator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "store/convert.h"
#include "store/errors.h"
#include "store/sql/ast.h"
#include "store/sql/functions.h"
#include "store/sql/limits.h"

namespace store::sql {

using namespace detail;

namespace {

// ---- types -------------------------------------------------------------------------------------
enum class Ty : std::uint8_t { Null, Bool, Byte, Int, Long, Cur, Sng, Dbl, Date, Text, Memo, Var };

bool isNum(Ty t) { return t >= Ty::Bool && t <= Ty::Dbl; }
bool isIntTy(Ty t) { return t >= Ty::Bool && t <= Ty::Long; }
bool isTxt(Ty t) { return t == Ty::Text || t == Ty::Memo; }

Ty fromField(FieldType f) {
    switch (f) {
        case FieldType::Boolean: return Ty::Bool;
        case FieldType::Byte: return Ty::Byte;
        case FieldType::Integer: return Ty::Int;
        case FieldType::Long: return Ty::Long;
        case FieldType::Currency: return Ty::Cur;
        case FieldType::Single: return Ty::Sng;
        case FieldType::Double: return Ty::Dbl;
        case FieldType::Date: return Ty::Date;
        case FieldType::Memo: return Ty::Memo;
        case FieldType::Text: default: return Ty::Text;
    }
}

FieldType toField(Ty t) {
    switch (t) {
        case Ty::Bool: return FieldType::Boolean;
        case Ty::Byte: return FieldType::Byte;
        case Ty::Int: return FieldType::Integer;
        case Ty::Long: return FieldType::Long;
        case Ty::Cur: return FieldType::Currency;
        case Ty::Sng: return FieldType::Single;
        case Ty::Dbl: return FieldType::Double;
        case Ty::Date: return FieldType::Date;
        case Ty::Memo: return FieldType::Memo;
        default: return FieldType::Text;
    }
}

char kindChar(Ty t) {
    if (t == Ty::Bool) return 'b';
    if (isNum(t)) return 'n';
    if (t == Ty::Date) return 'd';
    if (isTxt(t)) return 't';
    return 'v';
}

// The wider of two numeric types for + - *.
Ty widen(Ty a, Ty b) {
    if (a == Ty::Dbl || b == Ty::Dbl || a == Ty::Sng || b == Ty::Sng) return Ty::Dbl;
    if (a == Ty::Cur || b == Ty::Cur) return Ty::Cur;
    return Ty::Long;
}

std::string quoteId(std::string_view s) {
    std::string r;
    r.reserve(s.size() + 2);
    r.push_back('"');
    for (char c : s) {
        if (c == '"') r.push_back('"');
        r.push_back(c);
    }
    r.push_back('"');
    return r;
}

std::string quoteStr(std::string_view s) {
    std::string r;
    r.reserve(s.size() + 2);
    r.push_back('\'');
    for (char c : s) {
        if (c == '\'') r.push_back('\'');
        r.push_back(c);
    }
    r.push_back('\'');
    return r;
}

std::string numText(double d) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, d);
    std::string s(buf, res.ptr);
    if (s.find_first_of(".eE") == std::string::npos && !std::isfinite(d)) return "NULL";
    return s;
}

// Double arithmetic done by SQLite gives infinity where the platform raises Overflow (6).
std::string finite(Ty t, std::string sql) {
    return t == Ty::Dbl || t == Ty::Sng || t == Ty::Cur ? "jet_finite(" + sql + ")" : sql;
}

double parseNumberToken(std::string_view s) {
    double d = 0;
    auto res = std::from_chars(s.data(), s.data() + s.size(), d);
    if (res.ec == std::errc::result_out_of_range) return numberOutOfRange(s);
    return d;
}

// ---- scopes ------------------------------------------------------------------------------------
struct SrcCol {
    std::string name;
    Ty ty = Ty::Text;
    int size = 0;
    std::string baseColumn;  // the column of the source's base table it shows; "" when computed
};

struct Source {
    std::string alias;     // as the statement names it
    std::string sqlAlias;  // quoted
    std::vector<SrcCol> cols;
    bool table = false;          // a base table
    std::string relName;         // stored name of the table or query
    std::string baseTable;       // table: relName; query: RelationInfo::baseTable; derived: ""
};

struct Scope {
    std::vector<Source*> sources;
    Scope* parent = nullptr;
};

// An expression as written in SQLite, with its type. A logical one is in predicate form (1/0/Null);
// its value form (-1/0/Null) is -(sql).
struct R {
    std::string sql;
    Ty ty = Ty::Var;
    bool logical = false;
    bool agg = false;
    bool literal = false;  // a literal or Null/True/False
    int size = 0;
    const Source* src = nullptr;  // plain column
    const SrcCol* col = nullptr;
};

std::string val(const R& r) { return r.logical ? "(- " + r.sql + ")" : r.sql; }
std::string pred(const R& r) { return r.sql; }

struct OutCol {
    std::string name;
    Ty ty = Ty::Text;
    int size = 0;
    std::string baseColumn;
    bool fromColumn = false;  // named after a column (may be renamed "T.Col" on a clash)
    std::string srcAlias;
};

struct SelOut {
    std::string sql;
    std::vector<OutCol> cols;
    std::string baseTable;
    bool hasRowid = false;
};

// ---- compiler ----------------------------------------------------------------------------------
class Compiler {
public:
    Compiler(const Catalog& cat, std::string_view text, const std::vector<Value>& lits, bool inlineLits)
        : cat_(cat), text_(text), lits_(lits), inline_(inlineLits) {}

    Translation run(Statement& st);
    bool cacheable() const { return cacheable_; }
    int maxParam() const { return maxParam_; }

private:
    const Catalog& cat_;
    std::string_view text_;
    const std::vector<Value>& lits_;
    bool inline_;
    bool cacheable_ = true;
    int maxParam_ = 0;
    int derivedCount_ = 0;
    std::vector<std::string> missing_;
    std::unordered_set<std::string> missingSeen_;  // missing_ in lower case
    std::vector<std::unique_ptr<Source>> pool_;

    // per-expression context
    struct Ctx {
        Scope* scope = nullptr;
        bool allowAgg = false;
        const std::vector<std::pair<std::string, R>>* aliases = nullptr;
        std::vector<const SrcCol*>* refs = nullptr;  // columns read (for HAVING -> WHERE)
        bool* sawSub = nullptr;
    };

    [[noreturn]] void exprError(const Expr& e) {
        std::string d(text_.substr(std::min<std::size_t>(e.pos, text_.size()),
                                   e.end > e.pos ? e.end - e.pos : 0));
        for (auto& c : d)
            if (c == '\0') c = ' ';
        raise(3075, d);
    }

    // ---- literals
    R literal(const Expr& e) {
        R r;
        r.literal = true;
        switch (e.lit) {
            case 'N': r.sql = "NULL"; r.ty = Ty::Null; return r;
            case 'B': r.sql = e.num != 0 ? "-1" : "0"; r.ty = Ty::Bool; return r;
            case 'S': r.ty = Ty::Text; break;
            case 'I': r.ty = Ty::Long; break;
            case 'D': r.ty = Ty::Dbl; break;
            case 'T': r.ty = Ty::Date; break;
        }
        if (inline_) {
            const Value& v = lits_.at(static_cast<std::size_t>(e.litIndex));
            if (v.kind() == Value::Kind::Text) {
                if (v.text().find('\0') != std::string::npos) exprError(e);
                r.sql = quoteStr(v.text());
            } else if (v.kind() == Value::Kind::Long) {
                r.sql = std::to_string(static_cast<long long>(v.number()));
            } else {
                r.sql = numText(v.number());
                if (r.sql.find_first_of(".eEN") == std::string::npos) r.sql += ".0";
            }
        } else {
            r.sql = "?" + std::to_string(e.litIndex + 1);
            maxParam_ = std::max(maxParam_, e.litIndex + 1);
        }
        return r;
    }

    // A literal that can stand in the text as it is (a text holding a NUL stays a parameter).
    bool writableInline(const Expr& e) const {
        if (e.k != Expr::K::Lit || e.litIndex < 0) return false;
        const Value& v = lits_.at(static_cast<std::size_t>(e.litIndex));
        return v.kind() != Value::Kind::Text || v.text().find('\0') == std::string::npos;
    }

    R inlineLiteral(const Expr& e) {
        bool saved = inline_;
        inline_ = true;
        R r = literal(e);
        inline_ = saved;
        return r;
    }

    // ---- conversions between representations
    std::string asText(const R& r) {
        if (isTxt(r.ty) || r.ty == Ty::Null) return r.sql;
        return "jet_fn('cstrn','" + std::string(1, kindChar(r.ty)) + "'," + val(r) + ")";
    }
    std::string asDate(const R& r) {
        if (r.ty == Ty::Date || r.ty == Ty::Null) return r.sql;
        return "jet_fn('cdaten','" + std::string(1, kindChar(r.ty)) + "'," + val(r) + ")";
    }
    std::string asNum(const R& r) {
        if (isNum(r.ty) || r.ty == Ty::Null) return val(r);
        return "jet_fn('cdbln','" + std::string(1, kindChar(r.ty)) + "'," + val(r) + ")";
    }

    // ---- names
    Source* findSource(Scope* sc, std::string_view alias, Scope** where) {
        for (Scope* s = sc; s; s = s->parent)
            for (Source* src : s->sources)
                if (iequals(src->alias, alias)) {
                    if (where) *where = s;
                    return src;
                }
        return nullptr;
    }

    R column(const Expr& e, Ctx& cx) {
        R r;
        if (!e.qual.empty()) {
            Source* src = findSource(cx.scope, e.qual, nullptr);
            if (src) {
                for (const SrcCol& c : src->cols)
                    if (iequals(c.name, e.text)) return colRef(*src, c, cx);
            }
            // The platform merges a saved query into the statement, so a field of the query's base
            // table may be named with that table: "Spese.Numero" selecting from qrSpese.
            if (!src) {
                for (Scope* s = cx.scope; s; s = s->parent)
                    for (Source* q : s->sources) {
                        if (q->table || !iequals(q->baseTable, e.qual)) continue;
                        for (const SrcCol& c : q->cols)
                            if (iequals(c.baseColumn, e.text)) return colRef(*q, c, cx);
                    }
            }
            return missing(e.qual + "." + e.text);
        }
        for (Scope* s = cx.scope; s; s = s->parent) {
            const Source* found = nullptr;
            const SrcCol* fc = nullptr;
            for (Source* src : s->sources)
                for (const SrcCol& c : src->cols)
                    if (iequals(c.name, e.text)) {
                        if (found && found != src) raise(3079, e.text);
                        if (!found) {
                            found = src;
                            fc = &c;
                        }
                    }
            if (found) return colRef(*found, *fc, cx);
            if (s == cx.scope && cx.aliases) {
                for (auto& [n, ar] : *cx.aliases)
                    if (iequals(n, e.text)) return ar;
            }
        }
        return missing(e.text);
    }

    R colRef(const Source& src, const SrcCol& c, Ctx& cx) {
        R r;
        r.sql = src.sqlAlias + "." + quoteId(c.name);
        r.ty = c.ty;
        r.size = c.size;
        r.src = &src;
        r.col = &c;
        if (cx.refs) cx.refs->push_back(&c);
        return r;
    }

    R missing(const std::string& name) {
        if (missingSeen_.insert(AsciiLower(name)).second) missing_.push_back(name);
        R r;
        r.sql = "NULL";
        r.ty = Ty::Var;
        return r;
    }

    // ---- comparison
    R compare(Op op, const R& a, const R& b) {
        static const char* ops[] = {"=", "<>", "<", ">", "<=", ">="};
        const char* o = ops[static_cast<int>(op) - static_cast<int>(Op::Eq)];
        R r;
        r.ty = Ty::Bool;
        r.logical = true;
        r.agg = a.agg || b.agg;
        if (a.ty == Ty::Null || b.ty == Ty::Null) {
            r.sql = "(NULL)";
            r.logical = false;
            r.ty = Ty::Null;
            return r;
        }
        std::string x = val(a), y = val(b);
        bool collate = false;
        if (isTxt(a.ty) && isTxt(b.ty)) collate = true;
        else if (a.ty == Ty::Date && b.ty != Ty::Date && b.ty != Ty::Var) y = asDate(b);
        else if (b.ty == Ty::Date && a.ty != Ty::Date && a.ty != Ty::Var) x = asDate(a);
        else if (isTxt(a.ty) && isNum(b.ty)) x = asNum(a);
        else if (isNum(a.ty) && isTxt(b.ty)) y = asNum(b);
        else if ((isTxt(a.ty) && b.ty == Ty::Var) || (a.ty == Ty::Var && isTxt(b.ty))) collate = true;
        r.sql = "(" + x + " " + o + " " + y + (collate ? " COLLATE JET)" : ")");
        return r;
    }

    // ---- expressions
    R expr(const Expr& e, Ctx& cx) {
        switch (e.k) {
            case Expr::K::Lit: return literal(e);
            case Expr::K::Col: return column(e, cx);
            case Expr::K::Unary: return unary(e, cx);
            case Expr::K::Binary: return binary(e, cx);
            case Expr::K::Func: return func(e, cx);
            case Expr::K::IsNull: {
                R a = expr(*e.args[0], cx);
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.agg = a.agg;
                r.sql = "(" + val(a) + (e.negated ? " IS NOT NULL)" : " IS NULL)");
                return r;
            }
            case Expr::K::Between: {
                R a = expr(*e.args[0], cx), lo = expr(*e.args[1], cx), hi = expr(*e.args[2], cx);
                R c1 = compare(Op::Ge, a, lo), c2 = compare(Op::Le, a, hi);
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.agg = a.agg || lo.agg || hi.agg;
                r.sql = "(" + pred(c1) + " AND " + pred(c2) + ")";
                if (e.negated) r.sql = "(NOT " + r.sql + ")";
                return r;
            }
            case Expr::K::InList: {
                // x In (a, b, ...): each item read as x's kind of value
                R a = expr(*e.args[0], cx);
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.agg = a.agg;
                if (a.ty == Ty::Null) {
                    r.sql = "(NULL)";
                    return r;
                }
                std::string items;
                checkInListLength(e.args.size() - 1);
                // A long list writes its literals into the text: SQLite looks numbered parameters
                // up one by one, which grows with the square of their count.
                const bool inlineItems = e.args.size() > kInlineInList + 1;
                if (inlineItems) cacheable_ = false;
                for (std::size_t i = 1; i < e.args.size(); ++i) {
                    R b = inlineItems && writableInline(*e.args[i]) ? inlineLiteral(*e.args[i]) : expr(*e.args[i], cx);
                    r.agg = r.agg || b.agg;
                    std::string y = val(b);
                    if (a.ty == Ty::Date) y = asDate(b);
                    else if (isNum(a.ty) && !isNum(b.ty) && b.ty != Ty::Var) y = asNum(b);
                    else if (isTxt(a.ty) && !isTxt(b.ty) && b.ty != Ty::Var) y = asText(b);
                    items += (i > 1 ? ", " : "") + y;
                }
                std::string x = isTxt(a.ty) ? val(a) + " COLLATE JET" : val(a);
                r.sql = "(" + x + (e.negated ? " NOT IN (" : " IN (") + items + "))";
                return r;
            }
            case Expr::K::InSelect: {
                R a = expr(*e.args[0], cx);
                if (cx.sawSub) *cx.sawSub = true;
                SelOut so = select(*e.sub, cx.scope, false, false);
                if (so.cols.size() != 1) exprError(e);
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.agg = a.agg;
                std::string x = val(a);
                if (a.ty == Ty::Date && so.cols[0].ty != Ty::Date) x = val(a);
                bool collate = isTxt(a.ty) || isTxt(so.cols[0].ty);
                r.sql = "(" + x + (collate ? " COLLATE JET" : "") + (e.negated ? " NOT IN (" : " IN (") + so.sql + "))";
                return r;
            }
            case Expr::K::Exists: {
                if (cx.sawSub) *cx.sawSub = true;
                SelOut so = select(*e.sub, cx.scope, false, false);
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.sql = "(EXISTS (" + so.sql + "))";
                return r;
            }
            case Expr::K::SubQuery: {
                if (cx.sawSub) *cx.sawSub = true;
                SelOut so = select(*e.sub, cx.scope, false, false);
                if (so.cols.size() != 1) exprError(e);
                R r;
                r.ty = so.cols[0].ty;
                r.size = so.cols[0].size;
                r.sql = "(" + so.sql + ")";
                return r;
            }
        }
        exprError(e);
    }

    R unary(const Expr& e, Ctx& cx) {
        R a = expr(*e.args[0], cx);
        R r;
        r.agg = a.agg;
        if (e.op == Op::Pos) return a;
        if (e.op == Op::Neg) {
            if (a.ty == Ty::Null) return a;
            if (isNum(a.ty)) {
                r.ty = a.ty == Ty::Bool ? Ty::Int : a.ty;
                r.sql = "(- " + val(a) + ")";
            } else {
                r.ty = a.ty == Ty::Date ? Ty::Date : Ty::Dbl;
                r.sql = "jet_arith('neg','" + std::string(1, kindChar(a.ty)) + "'," + val(a) + ",NULL)";
            }
            return r;
        }
        // Not
        if (a.logical) {
            r = a;
            r.sql = "(NOT " + a.sql + ")";
            r.literal = false;
            r.src = nullptr;
            r.col = nullptr;
            return r;
        }
        if (a.ty == Ty::Null) return a;
        if (isIntTy(a.ty)) {
            r.ty = a.ty == Ty::Bool ? Ty::Bool : Ty::Long;
            r.sql = "(~" + val(a) + ")";
            return r;
        }
        r.ty = Ty::Long;
        r.sql = "jet_arith('not','" + std::string(1, kindChar(a.ty)) + "'," + val(a) + ",NULL)";
        return r;
    }

    // The terms of a left-deep chain of one operator (a & b & c), in order, without recursion.
    static void flattenChain(const Expr& e, Op op, std::vector<const Expr*>& out) {
        std::vector<const Expr*> rights;
        const Expr* cur = &e;
        while (cur->k == Expr::K::Binary && cur->op == op) {
            rights.push_back(cur->args[1].get());
            cur = cur->args[0].get();
        }
        out.push_back(cur);
        for (auto it = rights.rbegin(); it != rights.rend(); ++it) out.push_back(*it);
    }

    R binary(const Expr& e, Ctx& cx) {
        if (e.op == Op::Cat) {
            std::vector<const Expr*> parts;
            flattenChain(e, Op::Cat, parts);
            R r;
            r.ty = Ty::Text;
            r.size = 255;
            // SQLite takes at most 127 arguments: a long chain joins groups of 100
            std::string outerKinds, outerArgs;
            for (std::size_t g = 0; g < parts.size(); g += 100) {
                std::string kinds, args;
                for (std::size_t i = g; i < parts.size() && i < g + 100; ++i) {
                    R a = expr(*parts[i], cx);
                    r.agg = r.agg || a.agg;
                    kinds.push_back(a.logical ? 'b' : kindChar(a.ty));
                    args += "," + val(a);
                }
                outerKinds.push_back('t');
                outerArgs += ",jet_cat('" + kinds + "'" + args + ")";
            }
            r.sql = parts.size() <= 100 ? outerArgs.substr(1) : "jet_cat('" + outerKinds + "'" + outerArgs + ")";
            return r;
        }
        if ((e.op == Op::And || e.op == Op::Or) && e.chain > 2) {
            // a chain of And (or Or) of conditions is written flat: (p1 AND p2 AND p3)
            std::vector<const Expr*> parts;
            flattenChain(e, e.op, parts);
            std::vector<R> rs;
            bool logical = true;
            for (const Expr* p : parts) {
                rs.push_back(expr(*p, cx));
                const R& x = rs.back();
                if (!(x.logical || x.ty == Ty::Bool || x.ty == Ty::Null)) logical = false;
            }
            if (logical) {
                R r;
                r.ty = Ty::Bool;
                r.logical = true;
                r.sql = "(";
                for (std::size_t i = 0; i < rs.size(); ++i) {
                    const R& x = rs[i];
                    r.agg = r.agg || x.agg;
                    if (i) r.sql += e.op == Op::And ? " AND " : " OR ";
                    r.sql += x.ty == Ty::Null ? "NULL" : x.logical ? x.sql : "(" + x.sql + "<>0)";
                }
                r.sql += ")";
                return r;
            }
        }
        R a = expr(*e.args[0], cx);
        R b = expr(*e.args[1], cx);
        R r;
        r.agg = a.agg || b.agg;
        switch (e.op) {
            case Op::Eq: case Op::Ne: case Op::Lt: case Op::Gt: case Op::Le: case Op::Ge:
                return compare(e.op, a, b);
            case Op::Like: {
                r.ty = Ty::Bool;
                r.logical = true;
                r.sql = "jet_like(" + asText(a) + "," + asText(b) + ")";
                return r;
            }
            case Op::And: case Op::Or: case Op::Xor: case Op::Eqv: case Op::Imp: {
                bool la = a.logical || a.ty == Ty::Bool || a.ty == Ty::Null;
                bool lb = b.logical || b.ty == Ty::Bool || b.ty == Ty::Null;
                if (la && lb) {
                    r.ty = Ty::Bool;
                    r.logical = true;
                    std::string x = a.logical ? a.sql : "(" + a.sql + "<>0)";
                    std::string y = b.logical ? b.sql : "(" + b.sql + "<>0)";
                    if (a.ty == Ty::Null) x = "NULL";
                    if (b.ty == Ty::Null) y = "NULL";
                    switch (e.op) {
                        case Op::And: r.sql = "(" + x + " AND " + y + ")"; break;
                        case Op::Or: r.sql = "(" + x + " OR " + y + ")"; break;
                        case Op::Xor: r.sql = "(" + x + " <> " + y + ")"; break;
                        case Op::Eqv: r.sql = "(" + x + " = " + y + ")"; break;
                        default: r.sql = "((NOT " + x + ") OR " + y + ")"; break;
                    }
                    return r;
                }
                r.ty = Ty::Long;
                const char* name = e.op == Op::And ? "and" : e.op == Op::Or ? "or" : e.op == Op::Xor ? "xor"
                                 : e.op == Op::Eqv ? "eqv" : "imp";
                r.sql = std::string("jet_arith('") + name + "','" + kindChar(a.logical ? Ty::Bool : a.ty) +
                        kindChar(b.logical ? Ty::Bool : b.ty) + "'," + val(a) + "," + val(b) + ")";
                return r;
            }
            default: break;
        }
        // arithmetic
        if (a.ty == Ty::Null || b.ty == Ty::Null) {
            r.sql = "NULL";
            r.ty = Ty::Null;
            return r;
        }
        bool na = isNum(a.ty), nb = isNum(b.ty);
        const char* opname = nullptr;
        switch (e.op) {
            case Op::Add:
                if (na && nb) { r.ty = widen(a.ty, b.ty); r.sql = finite(r.ty, "(" + val(a) + " + " + val(b) + ")"); return r; }
                if (isTxt(a.ty) && isTxt(b.ty)) { r.ty = Ty::Text; r.sql = "(" + a.sql + " || " + b.sql + ")"; return r; }
                if ((a.ty == Ty::Date && (nb || isTxt(b.ty))) || (b.ty == Ty::Date && (na || isTxt(a.ty)))) r.ty = Ty::Date;
                else if (a.ty == Ty::Var || b.ty == Ty::Var) r.ty = Ty::Var;
                else r.ty = Ty::Dbl;
                opname = "+";
                break;
            case Op::Sub:
                if (na && nb) { r.ty = widen(a.ty, b.ty); r.sql = finite(r.ty, "(" + val(a) + " - " + val(b) + ")"); return r; }
                if (a.ty == Ty::Date && b.ty == Ty::Date) r.ty = Ty::Dbl;
                else if (a.ty == Ty::Date) r.ty = Ty::Date;
                else if (a.ty == Ty::Var || b.ty == Ty::Var) r.ty = Ty::Var;
                else r.ty = Ty::Dbl;
                opname = "-";
                break;
            case Op::Mul:
                if (na && nb) { r.ty = widen(a.ty, b.ty); r.sql = finite(r.ty, "(" + val(a) + " * " + val(b) + ")"); return r; }
                r.ty = Ty::Dbl;
                opname = "*";
                break;
            case Op::Div:
                r.ty = Ty::Dbl;
                if (na && nb) { r.sql = "jet_div(" + val(a) + "," + val(b) + ")"; return r; }
                opname = "/";
                break;
            case Op::IDiv: r.ty = Ty::Long; opname = "\\"; break;
            case Op::Mod: r.ty = Ty::Long; opname = "mod"; break;
            case Op::Pow: r.ty = Ty::Dbl; opname = "^"; break;
            default: exprError(e);
        }
        r.sql = std::string("jet_arith('") + opname + "','" + kindChar(a.logical ? Ty::Bool : a.ty) +
                kindChar(b.logical ? Ty::Bool : b.ty) + "'," + val(a) + "," + val(b) + ")";
        return r;
    }

    R func(const Expr& e, Ctx& cx) {
        std::string n = AsciiLower(e.text);
        if (n.ends_with('$')) n = textFormName(n, e.text);
        // aggregates
        static const char* aggs[] = {"sum", "avg", "min", "max", "count"};
        for (const char* ag : aggs) {
            if (n != ag) continue;
            if (!cx.allowAgg) raise(3096);
            R r;
            r.agg = true;
            if (n == "count" && e.star) {
                if (!e.args.empty()) exprError(e);
                r.sql = "COUNT(*)";
                r.ty = Ty::Long;
                return r;
            }
            if (e.args.size() != 1 || e.star) exprError(e);
            Ctx inner = cx;
            inner.allowAgg = false;
            R a = expr(*e.args[0], inner);
            if (a.agg) exprError(e);
            if (n == "count") {
                r.ty = Ty::Long;
                r.sql = "COUNT(" + val(a) + ")";
            } else if (n == "sum" || n == "avg") {
                std::string x = a.ty == Ty::Date ? "jet_fn('cdbl','d'," + a.sql + ")" : asNum(a);
                if (n == "avg") r.ty = a.ty == Ty::Cur ? Ty::Cur : Ty::Dbl;
                else if (isIntTy(a.ty)) r.ty = Ty::Long;
                else if (a.ty == Ty::Cur) r.ty = Ty::Cur;
                else r.ty = Ty::Dbl;
                r.sql = finite(r.ty, (n == "sum" ? "SUM(" : "AVG(") + x + ")");
            } else {
                r.ty = a.logical ? Ty::Bool : a.ty;
                r.size = a.size;
                r.sql = (n == "min" ? "MIN(" : "MAX(") + val(a) + (isTxt(a.ty) ? " COLLATE JET)" : ")");
            }
            return r;
        }
        if (e.star) exprError(e);
        if (n == "iif") {
            if (e.args.size() != 3) exprError(e);
            R c = expr(*e.args[0], cx), a = expr(*e.args[1], cx), b = expr(*e.args[2], cx);
            R r;
            r.agg = c.agg || a.agg || b.agg;
            Ty ta = a.logical ? Ty::Bool : a.ty, tb = b.logical ? Ty::Bool : b.ty;
            std::string x = val(a), y = val(b);
            if (ta == tb) r.ty = ta;
            else if (ta == Ty::Null) r.ty = tb;
            else if (tb == Ty::Null) r.ty = ta;
            else if (isNum(ta) && isNum(tb)) r.ty = (isIntTy(ta) && isIntTy(tb)) ? Ty::Long : Ty::Dbl;
            else if (isTxt(ta) && isTxt(tb)) r.ty = Ty::Memo;
            else if (isTxt(ta) || isTxt(tb)) {
                r.ty = Ty::Text;
                x = asText(a);
                y = asText(b);
            } else r.ty = Ty::Var;
            std::string cond = c.logical ? c.sql : "(" + val(c) + "<>0)";
            if (c.ty == Ty::Null) cond = "NULL";
            r.sql = "(CASE WHEN " + cond + " THEN " + x + " ELSE " + y + " END)";
            r.size = std::max(a.size, b.size);
            return r;
        }
        if (n == "isnull") {
            if (e.args.size() != 1) exprError(e);
            R a = expr(*e.args[0], cx);
            R r;
            r.ty = Ty::Bool;
            r.logical = true;
            r.agg = a.agg;
            r.sql = "(" + val(a) + " IS NULL)";
            return r;
        }
        const FnInfo* fi = findFunction(n);
        if (!fi) raise(3085, e.text);
        if (static_cast<int>(e.args.size()) < fi->minArgs || static_cast<int>(e.args.size()) > fi->maxArgs)
            exprError(e);
        R r;
        std::string kinds, args;
        std::vector<R> as;
        for (auto& ap : e.args) {
            R a = expr(*ap, cx);
            r.agg = r.agg || a.agg;
            kinds.push_back(a.logical ? 'b' : kindChar(a.ty));
            args += "," + val(a);
            as.push_back(std::move(a));
        }
        switch (fi->result) {
            case 'd': r.ty = Ty::Date; break;
            case 'i': r.ty = Ty::Int; break;
            case 'l': r.ty = Ty::Long; break;
            case 'f': r.ty = Ty::Dbl; break;
            case 't': r.ty = Ty::Text; r.size = 255; break;
            case 'b': r.ty = Ty::Bool; break;
            case 'a': r.ty = (!as.empty() && isNum(as[0].ty)) ? (as[0].ty == Ty::Bool ? Ty::Int : as[0].ty) : Ty::Dbl; break;
            default: r.ty = Ty::Var; break;
        }
        if (n == "now" || n == "date" || n == "time") {
            r.sql = "jet_" + n + "()";
            return r;
        }
        r.sql = "jet_fn('" + n + "','" + kinds + "'" + args + ")";
        return r;
    }

    // "Left$" is Left giving a text; only a function that gives a text has such a form.
    static std::string textFormName(std::string lower, const std::string& written) {
        lower.pop_back();
        const FnInfo* fi = findFunction(lower);
        if (!fi || fi->result != 't') raise(3085, written);
        return lower;
    }

    // ---- FROM
    Source* newSource() {
        pool_.push_back(std::make_unique<Source>());
        return pool_.back().get();
    }

    // Writes the FROM item's SQL, adding its sources to scope (in order).
    std::string from(FromItem& f, Scope& scope, Scope* outer) {
        switch (f.k) {
            case FromItem::K::Table: {
                const RelationInfo* rel = cat_.findRelation(f.name);
                if (!rel) raise(3078, f.name);
                Source* s = newSource();
                s->alias = f.alias.empty() ? f.name : f.alias;
                s->sqlAlias = quoteId(s->alias);
                s->relName = rel->name;
                s->table = !rel->isQuery;
                s->baseTable = rel->isQuery ? rel->baseTable : rel->name;
                const RelationInfo* base = nullptr;
                bool anyBase = false;
                for (auto& c : rel->columns) anyBase = anyBase || !c.baseColumn.empty();
                if (rel->isQuery && !rel->baseTable.empty() && !anyBase) base = cat_.findRelation(rel->baseTable);
                for (auto& c : rel->columns) {
                    SrcCol sc{c.name, fromField(c.type), c.size, {}};
                    if (!rel->isQuery) sc.baseColumn = c.name;
                    else if (!rel->baseTable.empty()) {
                        if (!c.baseColumn.empty()) sc.baseColumn = c.baseColumn;
                        else if (base)
                            for (auto& bc : base->columns)
                                if (iequals(bc.name, c.name)) sc.baseColumn = bc.name;
                    }
                    s->cols.push_back(std::move(sc));
                }
                scope.sources.push_back(s);
                std::string r = quoteId(rel->name);
                if (!iequals(s->alias, rel->name) || s->alias != rel->name) r += " AS " + s->sqlAlias;
                return r;
            }
            case FromItem::K::Derived: {
                SelOut so = select(*f.sub, outer, false, false);
                Source* s = newSource();
                s->alias = f.alias.empty() ? "__d" + std::to_string(++derivedCount_) : f.alias;
                s->sqlAlias = quoteId(s->alias);
                for (auto& c : so.cols) s->cols.push_back({c.name, c.ty, c.size, {}});
                scope.sources.push_back(s);
                return "(" + so.sql + ") AS " + s->sqlAlias;
            }
            case FromItem::K::Join: {
                std::string l = from(*f.left, scope, outer);
                std::string r = from(*f.right, scope, outer);
                if (f.right->k == FromItem::K::Join) r = "(" + r + ")";
                Ctx cx;
                cx.scope = &scope;
                R on = expr(*f.on, cx);
                if (on.agg) raise(3096);
                const char* j = f.join == FromItem::J::Left ? " LEFT JOIN " : f.join == FromItem::J::Right ? " RIGHT JOIN " : " JOIN ";
                return l + j + r + " ON " + (on.logical ? on.sql : "(" + val(on) + "<>0)");
            }
        }
        return {};
    }

    // The source whose rows the FROM item's rows are: the leftmost of a chain of LEFT JOINs.
    static const FromItem* baseItem(const FromItem& f) {
        if (f.k == FromItem::K::Table) return &f;
        if (f.k == FromItem::K::Join && f.join == FromItem::J::Left) return baseItem(*f.left);
        return nullptr;
    }

    static bool hasAggregate(const Expr& e) {
        if (e.k == Expr::K::Func) {
            std::string n = AsciiLower(e.text);
            if (n == "sum" || n == "avg" || n == "min" || n == "max" || n == "count") return true;
        }
        for (auto& a : e.args)
            if (a && hasAggregate(*a)) return true;
        return false;
    }

    static void conjuncts(ExprP& e, std::vector<ExprP*>& out) {
        if (e->k == Expr::K::Binary && e->op == Op::And) {
            conjuncts(e->args[0], out);
            conjuncts(e->args[1], out);
        } else {
            out.push_back(&e);
        }
    }

public:
    // ---- SELECT
    SelOut select(Select& s, Scope* outer, bool wantRowid, bool positional) {
        if (s.cores.size() == 1) return core(s.cores[0], &s.orderBy, outer, wantRowid, positional, false);
        SelOut out;
        std::string sql;
        for (std::size_t i = 0; i < s.cores.size(); ++i) {
            SelOut c = core(s.cores[i], nullptr, outer, false, positional && i == 0, true);
            if (i == 0) out.cols = c.cols;
            else {
                if (c.cols.size() != out.cols.size()) raise(3307);
                for (std::size_t k = 0; k < c.cols.size(); ++k) {
                    Ty& t = out.cols[k].ty;
                    Ty u = c.cols[k].ty;
                    if (t == u) continue;
                    if (t == Ty::Null) t = u;
                    else if (isNum(t) && isNum(u)) t = widen(t, u);
                    else if (u != Ty::Null) t = isTxt(t) || isTxt(u) ? Ty::Text : Ty::Var;
                }
                sql += s.unionAll[i - 1] ? " UNION ALL " : " UNION ";
            }
            sql += c.sql;
        }
        if (!s.orderBy.empty()) {
            // ORDER BY names the union's columns
            Source* u = newSource();
            u->alias = "__u";
            u->sqlAlias = quoteId("__u");
            for (auto& c : out.cols) u->cols.push_back({c.name, c.ty, c.size, {}});
            Scope sc;
            sc.sources.push_back(u);
            sc.parent = outer;
            Ctx cx;
            cx.scope = &sc;
            std::string ob;
            for (auto& oi : s.orderBy) {
                R r = expr(*oi.e, cx);
                if (r.literal) continue;
                if (!ob.empty()) ob += ", ";
                ob += val(r) + (isTxt(r.ty) ? " COLLATE JET" : "") + (oi.desc ? " DESC" : "");
            }
            sql = "SELECT * FROM (" + sql + ") AS \"__u\"" + (ob.empty() ? "" : " ORDER BY " + ob);
        }
        out.sql = std::move(sql);
        return out;
    }

private:
    SelOut core(SelectCore& c, std::vector<OrderItem>* orderBy, Scope* outer, bool wantRowid, bool positional,
                bool inUnion) {
        SelOut out;
        Scope scope;
        scope.parent = outer;
        std::vector<std::string> fromSql;
        for (auto& f : c.from) fromSql.push_back(from(*f, scope, outer));

        bool grouped = !c.groupBy.empty();
        bool aggInSelect = false;
        for (auto& it : c.items)
            if (it.e && hasAggregate(*it.e)) aggInSelect = true;
        if (c.having && hasAggregate(*c.having)) grouped = true;
        bool aggregate = grouped || aggInSelect;

        // updatable: one FROM item, a table (or writable query) at the left of LEFT JOINs
        const Source* base = nullptr;
        if (wantRowid && !aggregate && !c.distinct && c.from.size() == 1 && !inUnion) {
            const FromItem* bi = baseItem(*c.from[0]);
            if (bi) {
                for (Source* src : scope.sources)
                    if (iequals(src->alias, bi->alias.empty() ? bi->name : bi->alias)) {
                        if (!src->baseTable.empty()) base = src;
                        break;
                    }
            }
        }

        // select list
        Ctx cx;
        cx.scope = &scope;
        cx.allowAgg = true;
        std::vector<std::pair<std::string, R>> aliases;
        cx.aliases = &aliases;
        std::vector<std::string> itemSql;
        int exprNo = 0;
        for (auto& it : c.items) {
            if (it.star) {
                bool any = false;
                for (Source* src : scope.sources) {
                    if (!it.starQual.empty() && !iequals(src->alias, it.starQual)) continue;
                    any = true;
                    for (const SrcCol& col : src->cols) {
                        OutCol oc;
                        oc.name = col.name;
                        oc.ty = col.ty;
                        oc.size = col.size;
                        oc.fromColumn = true;
                        oc.srcAlias = src->alias;
                        if (base == src) oc.baseColumn = col.baseColumn;
                        out.cols.push_back(oc);
                        itemSql.push_back(src->sqlAlias + "." + quoteId(col.name));
                    }
                }
                if (!it.starQual.empty() && !any) {
                    // T.* of no source: the platform asks for it as a parameter
                    missing(it.starQual + ".*");
                }
                if (it.starQual.empty() && scope.sources.empty()) raise(3141);
                continue;
            }
            R r = expr(*it.e, cx);
            if (it.aliasLiteral) cacheable_ = false;
            OutCol oc;
            oc.ty = r.logical ? Ty::Bool : r.ty;
            oc.size = r.size;
            if (!it.alias.empty()) {
                oc.name = it.alias;
                if (r.col && r.src == base) oc.baseColumn = r.col->baseColumn;
            } else if (r.col) {
                oc.name = r.col->name;
                oc.fromColumn = true;
                oc.srcAlias = r.src->alias;
                if (r.src == base) oc.baseColumn = r.col->baseColumn;
            } else {
                oc.name = "Expr" + std::to_string(1000 + exprNo++);
            }
            if (!it.alias.empty() && it.alias.size() >= 1) aliases.emplace_back(it.alias, r);
            out.cols.push_back(oc);
            itemSql.push_back(val(r));
        }
        // names that clash: "T.Col"
        for (std::size_t i = 0; i < out.cols.size(); ++i) {
            if (!out.cols[i].fromColumn) continue;
            for (std::size_t j = 0; j < out.cols.size(); ++j)
                if (i != j && out.cols[j].fromColumn && iequals(out.cols[i].name, out.cols[j].name) &&
                    !iequals(out.cols[i].srcAlias, out.cols[j].srcAlias)) {
                    const std::string clash = out.cols[i].name;
                    for (std::size_t k = 0; k < out.cols.size(); ++k)
                        if (out.cols[k].fromColumn && iequals(out.cols[k].name, clash) &&
                            out.cols[k].name.find('.') == std::string::npos)
                            out.cols[k].name = out.cols[k].srcAlias + "." + out.cols[k].name;
                    break;
                }
        }

        // WHERE, and HAVING terms on grouped columns moved to WHERE
        std::vector<std::string> whereTerms, havingTerms;
        if (c.where) {
            Ctx wx;
            wx.scope = &scope;
            R w = expr(*c.where, wx);
            whereTerms.push_back(w.logical ? w.sql : "(" + val(w) + "<>0)");
        }
        std::vector<const SrcCol*> groupCols;
        std::vector<std::string> groupSql;
        for (auto& g : c.groupBy) {
            Ctx gx;
            gx.scope = &scope;
            R r = expr(*g, gx);
            if (r.col) groupCols.push_back(r.col);
            if (r.literal) continue;
            groupSql.push_back(val(r) + (isTxt(r.ty) ? " COLLATE JET" : ""));
        }
        if (c.having) {
            std::vector<ExprP*> terms;
            conjuncts(c.having, terms);
            for (ExprP* t : terms) {
                std::vector<const SrcCol*> refs;
                bool sub = false;
                Ctx hx;
                hx.scope = &scope;
                hx.allowAgg = true;
                hx.refs = &refs;
                hx.sawSub = &sub;
                std::size_t missingBefore = missing_.size();
                R r = expr(**t, hx);
                bool movable = grouped && !r.agg && !sub && !refs.empty() && missing_.size() == missingBefore;
                for (const SrcCol* rc : refs)
                    if (std::find(groupCols.begin(), groupCols.end(), rc) == groupCols.end()) movable = false;
                std::string p = r.logical ? r.sql : "(" + val(r) + "<>0)";
                (movable ? whereTerms : havingTerms).push_back(p);
            }
        }

        // ORDER BY (a single SELECT: its sources, and the select list's aliases)
        std::vector<std::string> orderSql;
        if (orderBy) {
            Ctx ox;
            ox.scope = &scope;
            ox.allowAgg = aggregate;
            ox.aliases = &aliases;
            for (auto& oi : *orderBy) {
                R r = expr(*oi.e, ox);
                if (r.literal) continue;
                orderSql.push_back(val(r) + (isTxt(r.ty) ? " COLLATE JET" : "") + (oi.desc ? " DESC" : ""));
            }
        }

        if (!missing_.empty() && outer == nullptr) {
            // reported by run(); keep going only to find other errors first
        }

        // assemble
        bool collateOut = c.distinct || inUnion;
        std::string sel = "SELECT ";
        if (c.distinct) sel += "DISTINCT ";
        std::vector<std::string> names;
        for (std::size_t i = 0; i < out.cols.size(); ++i)
            names.push_back(positional ? "_c" + std::to_string(i) : out.cols[i].name);
        bool ties = c.top && !orderSql.empty() && !c.distinct;
        for (std::size_t i = 0; i < out.cols.size(); ++i) {
            if (i) sel += ", ";
            sel += itemSql[i];
            if (collateOut && isTxt(out.cols[i].ty)) sel += " COLLATE JET";
            sel += " AS " + quoteId(ties ? "_c" + std::to_string(i) : names[i]);
        }
        std::string rowid;
        if (base) {
            rowid = base->table ? base->sqlAlias + ".rowid" : base->sqlAlias + "." + quoteId("__rowid");
            sel += (out.cols.empty() ? "" : ", ") + rowid + " AS \"__rowid\"";
            out.baseTable = base->baseTable;
            out.hasRowid = true;
        }
        std::string topN;
        if (c.top) {
            if (inline_) topN = std::to_string(static_cast<long long>(c.topN));
            else {
                topN = "?" + std::to_string(c.topLit + 1);
                maxParam_ = std::max(maxParam_, c.topLit + 1);
            }
        }
        if (ties) {
            sel += ", RANK() OVER (ORDER BY ";
            for (std::size_t i = 0; i < orderSql.size(); ++i) sel += (i ? ", " : "") + orderSql[i];
            sel += ") AS \"__rk\"";
            if (c.percent) sel += ", COUNT(*) OVER () AS \"__cnt\"";
        } else if (c.top && c.percent) {
            sel += ", ROW_NUMBER() OVER () AS \"__rk\", COUNT(*) OVER () AS \"__cnt\"";
        }
        std::string body;
        if (!fromSql.empty()) {
            body += " FROM ";
            for (std::size_t i = 0; i < fromSql.size(); ++i) body += (i ? ", " : "") + fromSql[i];
        }
        if (!whereTerms.empty()) {
            body += " WHERE ";
            for (std::size_t i = 0; i < whereTerms.size(); ++i) body += (i ? " AND " : "") + whereTerms[i];
        }
        if (!groupSql.empty()) {
            body += " GROUP BY ";
            for (std::size_t i = 0; i < groupSql.size(); ++i) body += (i ? ", " : "") + groupSql[i];
        } else if (grouped && c.groupBy.empty() == false) {
            body += " GROUP BY NULL";
        }
        if (!havingTerms.empty()) {
            body += " HAVING ";
            for (std::size_t i = 0; i < havingTerms.size(); ++i) body += (i ? " AND " : "") + havingTerms[i];
        }
        if (ties || (c.top && c.percent)) {
            std::string outerSel = "SELECT ";
            for (std::size_t i = 0; i < out.cols.size(); ++i)
                outerSel += (i ? ", " : "") + quoteId(ties ? "_c" + std::to_string(i) : names[i]) +
                            (ties ? " AS " + quoteId(names[i]) : "");
            if (base) outerSel += (out.cols.empty() ? "" : ", ") + std::string("\"__rowid\"");
            std::string cond = c.percent ? "\"__rk\" <= (" + topN + " * \"__cnt\" + 99) / 100" : "\"__rk\" <= " + topN;
            out.sql = outerSel + " FROM (" + sel + body + ") WHERE " + cond + " ORDER BY \"__rk\"";
        } else {
            out.sql = sel + body;
            if (!orderSql.empty()) {
                out.sql += " ORDER BY ";
                for (std::size_t i = 0; i < orderSql.size(); ++i) out.sql += (i ? ", " : "") + orderSql[i];
            }
            if (c.top) out.sql += " LIMIT " + topN;
        }
        if (positional)
            for (std::size_t i = 0; i < out.cols.size(); ++i) out.cols[i].name = names[i];
        return out;
    }

    // ---- storage conversion for INSERT and UPDATE
    std::string store(const R& r, const ColumnInfo& col) {
        Ty t = fromField(col.type);
        Ty s = r.logical ? Ty::Bool : r.ty;
        if (s == Ty::Null) return "NULL";
        bool same = false;
        switch (t) {
            case Ty::Long: same = s == Ty::Long || s == Ty::Int || s == Ty::Byte; break;
            case Ty::Int: same = s == Ty::Int || s == Ty::Byte; break;
            case Ty::Byte: same = s == Ty::Byte; break;
            case Ty::Dbl: same = isNum(s) && s != Ty::Bool; break;
            case Ty::Sng: case Ty::Cur: same = isNum(s) && s != Ty::Bool; break;
            case Ty::Bool: same = s == Ty::Bool; break;
            case Ty::Date: same = s == Ty::Date; break;
            case Ty::Memo: same = isTxt(s); break;
            case Ty::Text: same = isTxt(s) && col.size <= 0; break;
            default: break;
        }
        if (same) return val(r);
        return "jet_store('" + std::string(1, kindChar(s)) + "'," + val(r) + "," +
               std::to_string(static_cast<int>(col.type)) + "," + std::to_string(col.size) + ")";
    }

    const RelationInfo& targetTable(const std::string& name) {
        const RelationInfo* rel = cat_.findRelation(name);
        if (!rel) raise(3078, name);
        return *rel;
    }

    const ColumnInfo* findColumn(const RelationInfo& rel, std::string_view name) {
        for (auto& c : rel.columns)
            if (iequals(c.name, name)) return &c;
        return nullptr;
    }

    void checkMissing() {
        if (!missing_.empty()) raise(3061, std::to_string(missing_.size()));
    }

    Translation insert(Statement& st) {
        Translation t;
        t.kind = StatementKind::Insert;
        const RelationInfo& rel = targetTable(st.table);
        if (rel.isQuery) raise(3326);
        std::vector<const ColumnInfo*> cols;
        if (st.columns.empty()) {
            for (auto& c : rel.columns) cols.push_back(&c);
        } else {
            for (auto& n : st.columns) {
                const ColumnInfo* c = findColumn(rel, n);
                if (!c) raise(3127, n);
                for (auto* p : cols)
                    if (p == c) raise(3191);
                cols.push_back(c);
            }
        }
        std::string sql = "INSERT INTO " + quoteId(rel.name) + " (";
        for (std::size_t i = 0; i < cols.size(); ++i) sql += (i ? ", " : "") + quoteId(cols[i]->name);
        sql += ") ";
        if (st.select) {
            SelOut so = select(*st.select, nullptr, false, true);
            if (so.cols.size() != cols.size()) raise(3346);
            sql += "SELECT ";
            for (std::size_t i = 0; i < cols.size(); ++i) {
                R r;
                r.ty = so.cols[i].ty;
                r.sql = "\"__s\"." + quoteId(so.cols[i].name);
                sql += (i ? ", " : "") + store(r, *cols[i]);
            }
            sql += " FROM (" + so.sql + ") AS \"__s\"";
        } else {
            if (st.values.size() != cols.size()) raise(3346);
            Scope empty;
            Ctx cx;
            cx.scope = &empty;
            sql += "VALUES (";
            for (std::size_t i = 0; i < cols.size(); ++i) {
                R r = expr(*st.values[i], cx);
                if (r.agg) raise(3096);
                sql += (i ? ", " : "") + store(r, *cols[i]);
            }
            sql += ")";
        }
        checkMissing();
        t.sql = std::move(sql);
        return t;
    }

    Translation update(Statement& st) {
        Translation t;
        t.kind = StatementKind::Update;
        Scope scope;
        std::string fromSql = from(*st.from[0], scope, nullptr);
        // the target: the source named by the SET columns' qualifier, else the leftmost table
        Source* target = nullptr;
        for (auto& a : st.sets)
            if (!a.qual.empty()) {
                target = findSource(&scope, a.qual, nullptr);
                if (!target) {
                    missing(a.qual + "." + a.column);
                }
                break;
            }
        if (!target) {
            const FromItem* bi = st.from[0].get();
            while (bi->k == FromItem::K::Join) bi = bi->left.get();
            if (bi->k != FromItem::K::Table) raise(3144);
            for (Source* s : scope.sources)
                if (iequals(s->alias, bi->alias.empty() ? bi->name : bi->alias)) target = s;
        }
        if (!target) checkMissing();
        if (!target || !target->table) raise(3326);
        const RelationInfo& rel = targetTable(target->relName);
        bool joined = st.from[0]->k == FromItem::K::Join;
        Ctx cx;
        cx.scope = &scope;
        std::string sets;
        std::vector<std::string> setCols;
        for (auto& a : st.sets) {
            if (!a.qual.empty() && !iequals(a.qual, target->alias)) raise(3144);
            const ColumnInfo* col = findColumn(rel, a.column);
            R r = expr(*a.value, cx);
            if (r.agg) raise(3096);
            if (!col) {
                missing(a.column);
                continue;
            }
            std::string v = store(r, *col);
            if (joined)
                v = "(SELECT " + v + " FROM " + fromSql + " WHERE " + target->sqlAlias + ".rowid = \"__upd\".rowid)";
            sets += (sets.empty() ? "" : ", ") + quoteId(col->name) + " = " + v;
        }
        std::string where;
        if (st.where) {
            R w = expr(*st.where, cx);
            if (w.agg) raise(3096);
            where = w.logical ? w.sql : "(" + val(w) + "<>0)";
        }
        checkMissing();
        if (joined) {
            t.sql = "UPDATE " + quoteId(rel.name) + " AS \"__upd\" SET " + sets + " WHERE \"__upd\".rowid IN (SELECT " +
                    target->sqlAlias + ".rowid FROM " + fromSql + (where.empty() ? "" : " WHERE " + where) + ")";
        } else {
            t.sql = "UPDATE " + quoteId(rel.name) + (target->alias != rel.name ? " AS " + target->sqlAlias : "") +
                    " SET " + sets + (where.empty() ? "" : " WHERE " + where);
        }
        return t;
    }

    Translation del(Statement& st) {
        Translation t;
        t.kind = StatementKind::Delete;
        Scope scope;
        std::string fromSql;
        for (std::size_t i = 0; i < st.from.size(); ++i) fromSql += (i ? ", " : "") + from(*st.from[i], scope, nullptr);
        Source* target = nullptr;
        if (!st.deleteQual.empty()) {
            target = findSource(&scope, st.deleteQual, nullptr);
            if (!target) raise(3078, st.deleteQual);
        } else {
            const FromItem* bi = st.from[0].get();
            while (bi->k == FromItem::K::Join) bi = bi->left.get();
            if (bi->k != FromItem::K::Table) raise(3086);
            for (Source* s : scope.sources)
                if (iequals(s->alias, bi->alias.empty() ? bi->name : bi->alias)) target = s;
        }
        if (!target || target->baseTable.empty()) raise(3086);
        std::string where;
        if (st.where) {
            Ctx cx;
            cx.scope = &scope;
            R w = expr(*st.where, cx);
            if (w.agg) raise(3096);
            where = w.logical ? w.sql : "(" + val(w) + "<>0)";
        }
        checkMissing();
        bool simple = st.from.size() == 1 && st.from[0]->k == FromItem::K::Table && target->table;
        if (simple) {
            t.sql = "DELETE FROM " + quoteId(target->relName) +
                    (target->alias != target->relName ? " AS " + target->sqlAlias : "") +
                    (where.empty() ? "" : " WHERE " + where);
        } else {
            std::string rowid = target->table ? target->sqlAlias + ".rowid" : target->sqlAlias + ".\"__rowid\"";
            t.sql = "DELETE FROM " + quoteId(target->baseTable) + " WHERE rowid IN (SELECT " + rowid + " FROM " +
                    fromSql + (where.empty() ? "" : " WHERE " + where) + ")";
        }
        return t;
    }
};

Translation Compiler::run(Statement& st) {
    switch (st.kind) {
        case StatementKind::Select: {
            SelOut so = select(*st.select, nullptr, true, false);
            checkMissing();
            checkSelectListLength(so.cols.size());
            Translation t;
            t.kind = StatementKind::Select;
            t.sql = std::move(so.sql);
            t.baseTable = so.baseTable;
            t.hasRowid = so.hasRowid;
            for (auto& c : so.cols) {
                ResultColumn rc;
                rc.name = c.name;
                rc.type = toField(c.ty);
                rc.size = isTxt(c.ty) ? (c.size > 0 ? c.size : (c.ty == Ty::Memo ? 0 : 255)) : 0;
                rc.baseColumn = c.baseColumn;
                t.columns.push_back(std::move(rc));
            }
            return t;
        }
        case StatementKind::Insert: return insert(st);
        case StatementKind::Update: return update(st);
        case StatementKind::Delete: return del(st);
        case StatementKind::Ddl: {
            cacheable_ = false;
            Translation t;
            t.kind = StatementKind::Ddl;
            t.ddl = std::move(st.ddl);
            return t;
        }
    }
    return {};
}

// SQLite's parser stack holds about 100 levels of parentheses: deeper SQLite text is refused here
// as too complex an expression, before SQLite would refuse it.
constexpr int kMaxSqlNesting = 80;

int nesting(std::string_view sql) {
    int depth = 0, max = 0;
    char quote = 0;
    for (char c : sql) {
        if (quote) {
            if (c == quote) quote = 0;  // a doubled quote closes and reopens: same depth
            continue;
        }
        if (c == '\'' || c == '"') quote = c;
        else if (c == '(') max = std::max(max, ++depth);
        else if (c == ')') --depth;
    }
    return max;
}

// The literals of a text in storage form, in source order.
void literalValues(std::string_view text, const std::vector<Token>& toks, std::vector<Value>& out) {
    out.clear();
    for (const Token& t : toks) {
        if (t.lit < 0) continue;
        switch (literalKind(text, t)) {
            case 'S': out.push_back(Value::Text(stringValue(text, t))); break;
            case 'I': out.push_back(Value::Long(static_cast<std::int32_t>(parseNumberToken(text.substr(t.pos, t.len))))); break;
            case 'D': {
                double d = parseNumberToken(text.substr(t.pos, t.len));
                if (!std::isfinite(d)) raise(3075, std::string(text.substr(t.pos, t.len)));
                out.push_back(Value::Double(d));
                break;
            }
            case 'T': {
                auto d = ParseDateLiteral(dateBody(text, t));
                if (!d) raise(3075, std::string(text.substr(t.pos, t.len)));
                out.push_back(Value::Text(DateToIso(*d)));
                break;
            }
        }
    }
}

}  // namespace

// ---- the translator and its cache -------------------------------------------------------------
struct Translator::Impl {
    const Catalog& catalog;
    std::uint64_t version = 0;
    struct Entry {
        Translation t;
        int params = 0;
    };
    std::unordered_map<std::string, Entry> cache;
    std::vector<Token> toks;
    std::vector<Value> lits;
    std::string key;
    explicit Impl(const Catalog& c) : catalog(c), version(c.schemaVersion()) {}
};

Translator::Translator(const Catalog& catalog) : impl_(std::make_unique<Impl>(catalog)) {}
Translator::~Translator() = default;

std::size_t Translator::cacheSize() const { return impl_->cache.size(); }

Translation Translator::translate(std::string_view text, const Options& options) {
    Impl& m = *impl_;
    checkStatementLength(text);
    lex(text, m.toks);
    // key: the text with each literal replaced by its kind
    m.key.clear();
    m.key.push_back(options.inlineLiterals ? 'L' : 'P');
    std::size_t at = 0;
    for (const Token& t : m.toks) {
        if (t.lit < 0) continue;
        m.key.append(text.substr(at, t.pos - at));
        m.key.push_back('\x01');
        m.key.push_back(literalKind(text, t));
        at = t.pos + t.len;
    }
    m.key.append(text.substr(at));

    std::uint64_t v = m.catalog.schemaVersion();
    if (v != m.version) {
        m.cache.clear();
        m.version = v;
    }
    literalValues(text, m.toks, m.lits);
    if (!options.inlineLiterals) {
        auto it = m.cache.find(m.key);
        if (it != m.cache.end()) {
            Translation t = it->second.t;
            t.params.assign(m.lits.begin(), m.lits.begin() + it->second.params);
            return t;
        }
    }
    Statement st = parse(text, m.toks);
    Compiler comp(m.catalog, text, m.lits, options.inlineLiterals);
    Translation t = comp.run(st);
    if (nesting(t.sql) > kMaxSqlNesting) raiseNestingLimit(kMaxSqlNesting);
    checkSqliteDepth(t.sql);
    if (!options.inlineLiterals && t.kind != StatementKind::Ddl) {
        int n = comp.maxParam();
        t.params.clear();
        if (comp.cacheable()) {
            if (m.cache.size() >= 4096) m.cache.clear();
            m.cache.emplace(m.key, Impl::Entry{t, n});
        }
        t.params.assign(m.lits.begin(), m.lits.begin() + n);
    }
    return t;
}

}  // namespace store::sql
