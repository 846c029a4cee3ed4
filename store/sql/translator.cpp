// Binder and generator: the syntax tree resolved against the catalogue, typed, and written as
// SQLite text; and the cache of translations keyed on the text without its literals.
#include "store/sql/translator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unordered_map>

#include "store/convert.h"
#include "store/errors.h"
#include "store/names.h"
#include "store/sql/ast.h"
#include "store/sql/functions.h"

namespace store::sql {

using namespace detail;
using store::detail::quoteIdent;
using store::detail::quoteText;
using store::detail::sameName;

namespace {

// ---- types -------------------------------------------------------------------------------------
enum class SqlType : std::uint8_t { Null, Bool, Byte, Int, Long, Cur, Sng, Dbl, Date, Text, Memo, Var };

bool isNum(SqlType t) { return t >= SqlType::Bool && t <= SqlType::Dbl; }
bool isIntTy(SqlType t) { return t >= SqlType::Bool && t <= SqlType::Long; }
bool isTxt(SqlType t) { return t == SqlType::Text || t == SqlType::Memo; }

SqlType fromField(FieldType f) {
    switch (f) {
        case FieldType::Boolean: return SqlType::Bool;
        case FieldType::Byte: return SqlType::Byte;
        case FieldType::Integer: return SqlType::Int;
        case FieldType::Long: return SqlType::Long;
        case FieldType::Currency: return SqlType::Cur;
        case FieldType::Single: return SqlType::Sng;
        case FieldType::Double: return SqlType::Dbl;
        case FieldType::Date: return SqlType::Date;
        case FieldType::Memo: return SqlType::Memo;
        case FieldType::Text: default: return SqlType::Text;
    }
}

FieldType toField(SqlType t) {
    switch (t) {
        case SqlType::Bool: return FieldType::Boolean;
        case SqlType::Byte: return FieldType::Byte;
        case SqlType::Int: return FieldType::Integer;
        case SqlType::Long: return FieldType::Long;
        case SqlType::Cur: return FieldType::Currency;
        case SqlType::Sng: return FieldType::Single;
        case SqlType::Dbl: return FieldType::Double;
        case SqlType::Date: return FieldType::Date;
        case SqlType::Memo: return FieldType::Memo;
        default: return FieldType::Text;
    }
}

char kindChar(SqlType t) {
    if (t == SqlType::Bool) return 'b';
    if (isNum(t)) return 'n';
    if (t == SqlType::Date) return 'd';
    if (isTxt(t)) return 't';
    return 'v';
}

// The wider of two numeric types for + - *.
SqlType widen(SqlType a, SqlType b) {
    if (a == SqlType::Dbl || b == SqlType::Dbl || a == SqlType::Sng || b == SqlType::Sng) return SqlType::Dbl;
    if (a == SqlType::Cur || b == SqlType::Cur) return SqlType::Cur;
    return SqlType::Long;
}

std::string numText(double d) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, d);
    std::string s(buf, res.ptr);
    if (s.find_first_of(".eE") == std::string::npos && !std::isfinite(d)) return "NULL";
    return s;
}

// ---- scopes ------------------------------------------------------------------------------------
struct SourceColumn {
    std::string name;
    SqlType type = SqlType::Text;
    int size = 0;
    std::string baseColumn;  // the column of the source's base table it shows; "" when computed
};

struct Source {
    std::string alias;     // as the statement names it
    std::string sqlAlias;  // quoted
    std::vector<SourceColumn> cols;
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
struct SqlExpr {
    std::string sql;
    SqlType type = SqlType::Var;
    bool logical = false;
    bool agg = false;
    bool literal = false;  // a literal or Null/True/False
    int size = 0;
    const Source* src = nullptr;  // plain column
    const SourceColumn* col = nullptr;
};

std::string val(const SqlExpr& r) { return r.logical ? "(- " + r.sql + ")" : r.sql; }
std::string pred(const SqlExpr& r) { return r.sql; }

struct OutputColumn {
    std::string name;
    SqlType type = SqlType::Text;
    int size = 0;
    std::string baseColumn;
    bool fromColumn = false;  // named after a column (may be renamed "T.Col" on a clash)
    std::string srcAlias;
};

struct SelectOutput {
    std::string sql;
    std::vector<OutputColumn> cols;
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
    std::vector<std::unique_ptr<Source>> pool_;

    // per-expression context
    struct ExprContext {
        Scope* scope = nullptr;
        bool allowAgg = false;
        const std::vector<std::pair<std::string, SqlExpr>>* aliases = nullptr;
        std::vector<const SourceColumn*>* refs = nullptr;  // columns read (for HAVING -> WHERE)
        bool* sawSub = nullptr;
    };

    [[noreturn]] void exprError(const Expr& e) {
        std::string d(text_.substr(std::min<std::size_t>(e.pos, text_.size()),
                                   e.end > e.pos ? e.end - e.pos : 0));
        for (auto& c : d)
            if (c == '\0') c = ' ';
        raise(err::SintassiEspressione, d);
    }

    // ---- literals
    SqlExpr literal(const Expr& e) {
        SqlExpr r;
        r.literal = true;
        switch (e.lit) {
            case 'N': r.sql = "NULL"; r.type = SqlType::Null; return r;
            case 'B': r.sql = e.num != 0 ? "-1" : "0"; r.type = SqlType::Bool; return r;
            case 'S': r.type = SqlType::Text; break;
            case 'I': r.type = SqlType::Long; break;
            case 'D': r.type = SqlType::Dbl; break;
            case 'T': r.type = SqlType::Date; break;
        }
        if (inline_) {
            const Value& v = lits_.at(static_cast<std::size_t>(e.litIndex));
            if (v.kind() == Value::Kind::Text) {
                if (v.text().find('\0') != std::string::npos) exprError(e);
                r.sql = quoteText(v.text());
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

    // ---- conversions between representations
    std::string asText(const SqlExpr& r) {
        if (isTxt(r.type) || r.type == SqlType::Null) return r.sql;
        return "jet_fn('cstrn','" + std::string(1, kindChar(r.type)) + "'," + val(r) + ")";
    }
    std::string asDate(const SqlExpr& r) {
        if (r.type == SqlType::Date || r.type == SqlType::Null) return r.sql;
        return "jet_fn('cdaten','" + std::string(1, kindChar(r.type)) + "'," + val(r) + ")";
    }
    std::string asNum(const SqlExpr& r) {
        if (isNum(r.type) || r.type == SqlType::Null) return val(r);
        return "jet_fn('cdbln','" + std::string(1, kindChar(r.type)) + "'," + val(r) + ")";
    }

    // ---- names
    Source* findSource(Scope* sc, std::string_view alias, Scope** where) {
        for (Scope* s = sc; s; s = s->parent)
            for (Source* src : s->sources)
                if (sameName(src->alias, alias)) {
                    if (where) *where = s;
                    return src;
                }
        return nullptr;
    }

    SqlExpr column(const Expr& e, ExprContext& cx) {
        SqlExpr r;
        if (!e.qual.empty()) {
            Source* src = findSource(cx.scope, e.qual, nullptr);
            if (src) {
                for (const SourceColumn& c : src->cols)
                    if (sameName(c.name, e.text)) return colRef(*src, c, cx);
            }
            // The platform merges a saved query into the statement, so a field of the query's base
            // table may be named with that table: "Spese.Numero" selecting from qrSpese.
            if (!src) {
                for (Scope* s = cx.scope; s; s = s->parent)
                    for (Source* q : s->sources) {
                        if (q->table || !sameName(q->baseTable, e.qual)) continue;
                        for (const SourceColumn& c : q->cols)
                            if (sameName(c.baseColumn, e.text)) return colRef(*q, c, cx);
                    }
            }
            return missing(e.qual + "." + e.text);
        }
        for (Scope* s = cx.scope; s; s = s->parent) {
            const Source* found = nullptr;
            const SourceColumn* fc = nullptr;
            for (Source* src : s->sources)
                for (const SourceColumn& c : src->cols)
                    if (sameName(c.name, e.text)) {
                        if (found && found != src) raise(err::CampoAmbiguo, e.text);
                        if (!found) {
                            found = src;
                            fc = &c;
                        }
                    }
            if (found) return colRef(*found, *fc, cx);
            if (s == cx.scope && cx.aliases) {
                for (auto& [n, ar] : *cx.aliases)
                    if (sameName(n, e.text)) return ar;
            }
        }
        return missing(e.text);
    }

    SqlExpr colRef(const Source& src, const SourceColumn& c, ExprContext& cx) {
        SqlExpr r;
        r.sql = src.sqlAlias + "." + quoteIdent(c.name);
        r.type = c.type;
        r.size = c.size;
        r.src = &src;
        r.col = &c;
        if (cx.refs) cx.refs->push_back(&c);
        return r;
    }

    SqlExpr missing(const std::string& name) {
        bool seen = false;
        for (auto& m : missing_)
            if (sameName(m, name)) seen = true;
        if (!seen) missing_.push_back(name);
        SqlExpr r;
        r.sql = "NULL";
        r.type = SqlType::Var;
        return r;
    }

    // ---- comparison
    SqlExpr compare(Operator op, const SqlExpr& a, const SqlExpr& b) {
        static const char* ops[] = {"=", "<>", "<", ">", "<=", ">="};
        const char* o = ops[static_cast<int>(op) - static_cast<int>(Operator::Eq)];
        SqlExpr r;
        r.type = SqlType::Bool;
        r.logical = true;
        r.agg = a.agg || b.agg;
        if (a.type == SqlType::Null || b.type == SqlType::Null) {
            r.sql = "(NULL)";
            r.logical = false;
            r.type = SqlType::Null;
            return r;
        }
        std::string x = val(a), y = val(b);
        bool collate = false;
        if (isTxt(a.type) && isTxt(b.type)) collate = true;
        else if (a.type == SqlType::Date && b.type != SqlType::Date && b.type != SqlType::Var) y = asDate(b);
        else if (b.type == SqlType::Date && a.type != SqlType::Date && a.type != SqlType::Var) x = asDate(a);
        else if (isTxt(a.type) && isNum(b.type)) x = asNum(a);
        else if (isNum(a.type) && isTxt(b.type)) y = asNum(b);
        else if ((isTxt(a.type) && b.type == SqlType::Var) || (a.type == SqlType::Var && isTxt(b.type))) collate = true;
        r.sql = "(" + x + " " + o + " " + y + (collate ? " COLLATE JET)" : ")");
        return r;
    }

    // ---- expressions
    SqlExpr expr(const Expr& e, ExprContext& cx) {
        switch (e.kind) {
            case Expr::Kind::Lit: return literal(e);
            case Expr::Kind::Col: return column(e, cx);
            case Expr::Kind::Unary: return unary(e, cx);
            case Expr::Kind::Binary: return binary(e, cx);
            case Expr::Kind::Func: return func(e, cx);
            case Expr::Kind::IsNull: {
                SqlExpr a = expr(*e.args[0], cx);
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.agg = a.agg;
                r.sql = "(" + val(a) + (e.negated ? " IS NOT NULL)" : " IS NULL)");
                return r;
            }
            case Expr::Kind::Between: {
                SqlExpr a = expr(*e.args[0], cx), lo = expr(*e.args[1], cx), hi = expr(*e.args[2], cx);
                SqlExpr c1 = compare(Operator::Ge, a, lo), c2 = compare(Operator::Le, a, hi);
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.agg = a.agg || lo.agg || hi.agg;
                r.sql = "(" + pred(c1) + " AND " + pred(c2) + ")";
                if (e.negated) r.sql = "(NOT " + r.sql + ")";
                return r;
            }
            case Expr::Kind::InList: {
                // x In (a, b, ...): each item read as x's kind of value
                SqlExpr a = expr(*e.args[0], cx);
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.agg = a.agg;
                if (a.type == SqlType::Null) {
                    r.sql = "(NULL)";
                    return r;
                }
                std::string items;
                for (std::size_t i = 1; i < e.args.size(); ++i) {
                    SqlExpr b = expr(*e.args[i], cx);
                    r.agg = r.agg || b.agg;
                    std::string y = val(b);
                    if (a.type == SqlType::Date) y = asDate(b);
                    else if (isNum(a.type) && !isNum(b.type) && b.type != SqlType::Var) y = asNum(b);
                    else if (isTxt(a.type) && !isTxt(b.type) && b.type != SqlType::Var) y = asText(b);
                    items += (i > 1 ? ", " : "") + y;
                }
                std::string x = isTxt(a.type) ? val(a) + " COLLATE JET" : val(a);
                r.sql = "(" + x + (e.negated ? " NOT IN (" : " IN (") + items + "))";
                return r;
            }
            case Expr::Kind::InSelect: {
                SqlExpr a = expr(*e.args[0], cx);
                if (cx.sawSub) *cx.sawSub = true;
                SelectOutput so = select(*e.sub, cx.scope, false, false);
                if (so.cols.size() != 1) exprError(e);
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.agg = a.agg;
                std::string x = val(a);
                if (a.type == SqlType::Date && so.cols[0].type != SqlType::Date) x = val(a);
                bool collate = isTxt(a.type) || isTxt(so.cols[0].type);
                r.sql = "(" + x + (collate ? " COLLATE JET" : "") + (e.negated ? " NOT IN (" : " IN (") + so.sql + "))";
                return r;
            }
            case Expr::Kind::Exists: {
                if (cx.sawSub) *cx.sawSub = true;
                SelectOutput so = select(*e.sub, cx.scope, false, false);
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.sql = "(EXISTS (" + so.sql + "))";
                return r;
            }
            case Expr::Kind::SubQuery: {
                if (cx.sawSub) *cx.sawSub = true;
                SelectOutput so = select(*e.sub, cx.scope, false, false);
                if (so.cols.size() != 1) exprError(e);
                SqlExpr r;
                r.type = so.cols[0].type;
                r.size = so.cols[0].size;
                r.sql = "(" + so.sql + ")";
                return r;
            }
        }
        exprError(e);
    }

    SqlExpr unary(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx);
        SqlExpr r;
        r.agg = a.agg;
        if (e.op == Operator::Pos) return a;
        if (e.op == Operator::Neg) {
            if (a.type == SqlType::Null) return a;
            if (isNum(a.type)) {
                r.type = a.type == SqlType::Bool ? SqlType::Int : a.type;
                r.sql = "(- " + val(a) + ")";
            } else {
                r.type = a.type == SqlType::Date ? SqlType::Date : SqlType::Dbl;
                r.sql = "jet_arith('neg','" + std::string(1, kindChar(a.type)) + "'," + val(a) + ",NULL)";
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
        if (a.type == SqlType::Null) return a;
        if (isIntTy(a.type)) {
            r.type = a.type == SqlType::Bool ? SqlType::Bool : SqlType::Long;
            r.sql = "(~" + val(a) + ")";
            return r;
        }
        r.type = SqlType::Long;
        r.sql = "jet_arith('not','" + std::string(1, kindChar(a.type)) + "'," + val(a) + ",NULL)";
        return r;
    }

    // The terms of a left-deep chain of one operator (a & b & c), in order, without recursion.
    static void flattenChain(const Expr& e, Operator op, std::vector<const Expr*>& out) {
        std::vector<const Expr*> rights;
        const Expr* cur = &e;
        while (cur->kind == Expr::Kind::Binary && cur->op == op) {
            rights.push_back(cur->args[1].get());
            cur = cur->args[0].get();
        }
        out.push_back(cur);
        for (auto it = rights.rbegin(); it != rights.rend(); ++it) out.push_back(*it);
    }

    SqlExpr binary(const Expr& e, ExprContext& cx) {
        if (e.op == Operator::Cat) {
            std::vector<const Expr*> parts;
            flattenChain(e, Operator::Cat, parts);
            SqlExpr r;
            r.type = SqlType::Text;
            r.size = 255;
            // SQLite takes at most 127 arguments: a long chain joins groups of 100
            std::string outerKinds, outerArgs;
            for (std::size_t g = 0; g < parts.size(); g += 100) {
                std::string kinds, args;
                for (std::size_t i = g; i < parts.size() && i < g + 100; ++i) {
                    SqlExpr a = expr(*parts[i], cx);
                    r.agg = r.agg || a.agg;
                    kinds.push_back(a.logical ? 'b' : kindChar(a.type));
                    args += "," + val(a);
                }
                outerKinds.push_back('t');
                outerArgs += ",jet_cat('" + kinds + "'" + args + ")";
            }
            r.sql = parts.size() <= 100 ? outerArgs.substr(1) : "jet_cat('" + outerKinds + "'" + outerArgs + ")";
            return r;
        }
        if ((e.op == Operator::And || e.op == Operator::Or) && e.chain > 2) {
            // a chain of And (or Or) of conditions is written flat: (p1 AND p2 AND p3)
            std::vector<const Expr*> parts;
            flattenChain(e, e.op, parts);
            std::vector<SqlExpr> rs;
            bool logical = true;
            for (const Expr* p : parts) {
                rs.push_back(expr(*p, cx));
                const SqlExpr& x = rs.back();
                if (!(x.logical || x.type == SqlType::Bool || x.type == SqlType::Null)) logical = false;
            }
            if (logical) {
                SqlExpr r;
                r.type = SqlType::Bool;
                r.logical = true;
                r.sql = "(";
                for (std::size_t i = 0; i < rs.size(); ++i) {
                    const SqlExpr& x = rs[i];
                    r.agg = r.agg || x.agg;
                    if (i) r.sql += e.op == Operator::And ? " AND " : " OR ";
                    r.sql += x.type == SqlType::Null ? "NULL" : x.logical ? x.sql : "(" + x.sql + "<>0)";
                }
                r.sql += ")";
                return r;
            }
        }
        SqlExpr a = expr(*e.args[0], cx);
        SqlExpr b = expr(*e.args[1], cx);
        SqlExpr r;
        r.agg = a.agg || b.agg;
        switch (e.op) {
            case Operator::Eq: case Operator::Ne: case Operator::Lt: case Operator::Gt: case Operator::Le: case Operator::Ge:
                return compare(e.op, a, b);
            case Operator::Like: {
                r.type = SqlType::Bool;
                r.logical = true;
                r.sql = "jet_like(" + asText(a) + "," + asText(b) + ")";
                return r;
            }
            case Operator::And: case Operator::Or: case Operator::Xor: case Operator::Eqv: case Operator::Imp: {
                bool la = a.logical || a.type == SqlType::Bool || a.type == SqlType::Null;
                bool lb = b.logical || b.type == SqlType::Bool || b.type == SqlType::Null;
                if (la && lb) {
                    r.type = SqlType::Bool;
                    r.logical = true;
                    std::string x = a.logical ? a.sql : "(" + a.sql + "<>0)";
                    std::string y = b.logical ? b.sql : "(" + b.sql + "<>0)";
                    if (a.type == SqlType::Null) x = "NULL";
                    if (b.type == SqlType::Null) y = "NULL";
                    switch (e.op) {
                        case Operator::And: r.sql = "(" + x + " AND " + y + ")"; break;
                        case Operator::Or: r.sql = "(" + x + " OR " + y + ")"; break;
                        case Operator::Xor: r.sql = "(" + x + " <> " + y + ")"; break;
                        case Operator::Eqv: r.sql = "(" + x + " = " + y + ")"; break;
                        default: r.sql = "((NOT " + x + ") OR " + y + ")"; break;
                    }
                    return r;
                }
                r.type = SqlType::Long;
                const char* name = e.op == Operator::And ? "and" : e.op == Operator::Or ? "or" : e.op == Operator::Xor ? "xor"
                                 : e.op == Operator::Eqv ? "eqv" : "imp";
                r.sql = std::string("jet_arith('") + name + "','" + kindChar(a.logical ? SqlType::Bool : a.type) +
                        kindChar(b.logical ? SqlType::Bool : b.type) + "'," + val(a) + "," + val(b) + ")";
                return r;
            }
            default: break;
        }
        // arithmetic
        if (a.type == SqlType::Null || b.type == SqlType::Null) {
            r.sql = "NULL";
            r.type = SqlType::Null;
            return r;
        }
        bool na = isNum(a.type), nb = isNum(b.type);
        const char* opname = nullptr;
        switch (e.op) {
            case Operator::Add:
                if (na && nb) { r.type = widen(a.type, b.type); r.sql = "(" + val(a) + " + " + val(b) + ")"; return r; }
                if (isTxt(a.type) && isTxt(b.type)) { r.type = SqlType::Text; r.sql = "(" + a.sql + " || " + b.sql + ")"; return r; }
                if ((a.type == SqlType::Date && (nb || isTxt(b.type))) || (b.type == SqlType::Date && (na || isTxt(a.type)))) r.type = SqlType::Date;
                else if (a.type == SqlType::Var || b.type == SqlType::Var) r.type = SqlType::Var;
                else r.type = SqlType::Dbl;
                opname = "+";
                break;
            case Operator::Sub:
                if (na && nb) { r.type = widen(a.type, b.type); r.sql = "(" + val(a) + " - " + val(b) + ")"; return r; }
                if (a.type == SqlType::Date && b.type == SqlType::Date) r.type = SqlType::Dbl;
                else if (a.type == SqlType::Date) r.type = SqlType::Date;
                else if (a.type == SqlType::Var || b.type == SqlType::Var) r.type = SqlType::Var;
                else r.type = SqlType::Dbl;
                opname = "-";
                break;
            case Operator::Mul:
                if (na && nb) { r.type = widen(a.type, b.type); r.sql = "(" + val(a) + " * " + val(b) + ")"; return r; }
                r.type = SqlType::Dbl;
                opname = "*";
                break;
            case Operator::Div:
                r.type = SqlType::Dbl;
                if (na && nb) { r.sql = "jet_div(" + val(a) + "," + val(b) + ")"; return r; }
                opname = "/";
                break;
            case Operator::IDiv: r.type = SqlType::Long; opname = "\\"; break;
            case Operator::Mod: r.type = SqlType::Long; opname = "mod"; break;
            case Operator::Pow: r.type = SqlType::Dbl; opname = "^"; break;
            default: exprError(e);
        }
        r.sql = std::string("jet_arith('") + opname + "','" + kindChar(a.logical ? SqlType::Bool : a.type) +
                kindChar(b.logical ? SqlType::Bool : b.type) + "'," + val(a) + "," + val(b) + ")";
        return r;
    }

    SqlExpr func(const Expr& e, ExprContext& cx) {
        std::string n = AsciiLower(e.text);
        // aggregates
        static const char* aggs[] = {"sum", "avg", "min", "max", "count"};
        for (const char* ag : aggs) {
            if (n != ag) continue;
            if (!cx.allowAgg) raise(err::AggregazioneInWhere);
            SqlExpr r;
            r.agg = true;
            if (n == "count" && e.star) {
                if (!e.args.empty()) exprError(e);
                r.sql = "COUNT(*)";
                r.type = SqlType::Long;
                return r;
            }
            if (e.args.size() != 1 || e.star) exprError(e);
            ExprContext inner = cx;
            inner.allowAgg = false;
            SqlExpr a = expr(*e.args[0], inner);
            if (a.agg) exprError(e);
            if (n == "count") {
                r.type = SqlType::Long;
                r.sql = "COUNT(" + val(a) + ")";
            } else if (n == "sum" || n == "avg") {
                std::string x = a.type == SqlType::Date ? "jet_fn('cdbl','d'," + a.sql + ")" : asNum(a);
                if (n == "avg") r.type = a.type == SqlType::Cur ? SqlType::Cur : SqlType::Dbl;
                else if (isIntTy(a.type)) r.type = SqlType::Long;
                else if (a.type == SqlType::Cur) r.type = SqlType::Cur;
                else r.type = SqlType::Dbl;
                r.sql = (n == "sum" ? "SUM(" : "AVG(") + x + ")";
            } else {
                r.type = a.logical ? SqlType::Bool : a.type;
                r.size = a.size;
                r.sql = (n == "min" ? "MIN(" : "MAX(") + val(a) + (isTxt(a.type) ? " COLLATE JET)" : ")");
            }
            return r;
        }
        if (e.star) exprError(e);
        if (n == "iif") {
            if (e.args.size() != 3) exprError(e);
            SqlExpr c = expr(*e.args[0], cx), a = expr(*e.args[1], cx), b = expr(*e.args[2], cx);
            SqlExpr r;
            r.agg = c.agg || a.agg || b.agg;
            SqlType ta = a.logical ? SqlType::Bool : a.type, tb = b.logical ? SqlType::Bool : b.type;
            std::string x = val(a), y = val(b);
            if (ta == tb) r.type = ta;
            else if (ta == SqlType::Null) r.type = tb;
            else if (tb == SqlType::Null) r.type = ta;
            else if (isNum(ta) && isNum(tb)) r.type = (isIntTy(ta) && isIntTy(tb)) ? SqlType::Long : SqlType::Dbl;
            else if (isTxt(ta) && isTxt(tb)) r.type = SqlType::Memo;
            else if (isTxt(ta) || isTxt(tb)) {
                r.type = SqlType::Text;
                x = asText(a);
                y = asText(b);
            } else r.type = SqlType::Var;
            std::string cond = c.logical ? c.sql : "(" + val(c) + "<>0)";
            if (c.type == SqlType::Null) cond = "NULL";
            r.sql = "(CASE WHEN " + cond + " THEN " + x + " ELSE " + y + " END)";
            r.size = std::max(a.size, b.size);
            return r;
        }
        if (n == "isnull") {
            if (e.args.size() != 1) exprError(e);
            SqlExpr a = expr(*e.args[0], cx);
            SqlExpr r;
            r.type = SqlType::Bool;
            r.logical = true;
            r.agg = a.agg;
            r.sql = "(" + val(a) + " IS NULL)";
            return r;
        }
        const FnInfo* fi = findFunction(n);
        if (!fi) raise(err::FunzioneNonDefinita, e.text);
        if (static_cast<int>(e.args.size()) < fi->minArgs || static_cast<int>(e.args.size()) > fi->maxArgs)
            exprError(e);
        SqlExpr r;
        std::string kinds, args;
        std::vector<SqlExpr> as;
        for (auto& ap : e.args) {
            SqlExpr a = expr(*ap, cx);
            r.agg = r.agg || a.agg;
            kinds.push_back(a.logical ? 'b' : kindChar(a.type));
            args += "," + val(a);
            as.push_back(std::move(a));
        }
        switch (fi->result) {
            case 'd': r.type = SqlType::Date; break;
            case 'i': r.type = SqlType::Int; break;
            case 'l': r.type = SqlType::Long; break;
            case 'f': r.type = SqlType::Dbl; break;
            case 't': r.type = SqlType::Text; r.size = 255; break;
            case 'b': r.type = SqlType::Bool; break;
            case 'a': r.type = (!as.empty() && isNum(as[0].type)) ? (as[0].type == SqlType::Bool ? SqlType::Int : as[0].type) : SqlType::Dbl; break;
            default: r.type = SqlType::Var; break;
        }
        if (n == "now" || n == "date" || n == "time") {
            r.sql = "jet_" + n + "()";
            return r;
        }
        r.sql = "jet_fn('" + n + "','" + kinds + "'" + args + ")";
        return r;
    }

    // ---- FROM
    Source* newSource() {
        pool_.push_back(std::make_unique<Source>());
        return pool_.back().get();
    }

    // Writes the FROM item's SQL, adding its sources to scope (in order).
    std::string from(FromItem& f, Scope& scope, Scope* outer) {
        switch (f.kind) {
            case FromItem::Kind::Table: {
                const RelationInfo* rel = cat_.findRelation(f.name);
                if (!rel) raise(err::TabellaOQueryNonTrovata, f.name);
                Source* s = newSource();
                s->alias = f.alias.empty() ? f.name : f.alias;
                s->sqlAlias = quoteIdent(s->alias);
                s->relName = rel->name;
                s->table = !rel->isQuery;
                s->baseTable = rel->isQuery ? rel->baseTable : rel->name;
                const RelationInfo* base = nullptr;
                bool anyBase = false;
                for (auto& c : rel->columns) anyBase = anyBase || !c.baseColumn.empty();
                if (rel->isQuery && !rel->baseTable.empty() && !anyBase) base = cat_.findRelation(rel->baseTable);
                for (auto& c : rel->columns) {
                    SourceColumn sc{c.name, fromField(c.type), c.size, {}};
                    if (!rel->isQuery) sc.baseColumn = c.name;
                    else if (!rel->baseTable.empty()) {
                        if (!c.baseColumn.empty()) sc.baseColumn = c.baseColumn;
                        else if (base)
                            for (auto& bc : base->columns)
                                if (sameName(bc.name, c.name)) sc.baseColumn = bc.name;
                    }
                    s->cols.push_back(std::move(sc));
                }
                scope.sources.push_back(s);
                std::string r = quoteIdent(rel->name);
                if (!sameName(s->alias, rel->name) || s->alias != rel->name) r += " AS " + s->sqlAlias;
                return r;
            }
            case FromItem::Kind::Derived: {
                SelectOutput so = select(*f.sub, outer, false, false);
                Source* s = newSource();
                s->alias = f.alias.empty() ? "__d" + std::to_string(++derivedCount_) : f.alias;
                s->sqlAlias = quoteIdent(s->alias);
                for (auto& c : so.cols) s->cols.push_back({c.name, c.type, c.size, {}});
                scope.sources.push_back(s);
                return "(" + so.sql + ") AS " + s->sqlAlias;
            }
            case FromItem::Kind::Join: {
                std::string l = from(*f.left, scope, outer);
                std::string r = from(*f.right, scope, outer);
                if (f.right->kind == FromItem::Kind::Join) r = "(" + r + ")";
                ExprContext cx;
                cx.scope = &scope;
                SqlExpr on = expr(*f.on, cx);
                if (on.agg) raise(err::AggregazioneInWhere);
                const char* j = f.join == FromItem::JoinKind::Left ? " LEFT JOIN " : f.join == FromItem::JoinKind::Right ? " RIGHT JOIN " : " JOIN ";
                return l + j + r + " ON " + (on.logical ? on.sql : "(" + val(on) + "<>0)");
            }
        }
        return {};
    }

    // The source whose rows the FROM item's rows are: the leftmost of a chain of LEFT JOINs.
    static const FromItem* baseItem(const FromItem& f) {
        if (f.kind == FromItem::Kind::Table) return &f;
        if (f.kind == FromItem::Kind::Join && f.join == FromItem::JoinKind::Left) return baseItem(*f.left);
        return nullptr;
    }

    static bool hasAggregate(const Expr& e) {
        if (e.kind == Expr::Kind::Func) {
            std::string n = AsciiLower(e.text);
            if (n == "sum" || n == "avg" || n == "min" || n == "max" || n == "count") return true;
        }
        for (auto& a : e.args)
            if (a && hasAggregate(*a)) return true;
        return false;
    }

    static void conjuncts(ExprP& e, std::vector<ExprP*>& out) {
        if (e->kind == Expr::Kind::Binary && e->op == Operator::And) {
            conjuncts(e->args[0], out);
            conjuncts(e->args[1], out);
        } else {
            out.push_back(&e);
        }
    }

public:
    // ---- SELECT
    SelectOutput select(Select& s, Scope* outer, bool wantRowid, bool positional) {
        if (s.cores.size() == 1) return core(s.cores[0], &s.orderBy, outer, wantRowid, positional, false);
        SelectOutput out;
        std::string sql;
        for (std::size_t i = 0; i < s.cores.size(); ++i) {
            SelectOutput c = core(s.cores[i], nullptr, outer, false, positional && i == 0, true);
            if (i == 0) out.cols = c.cols;
            else {
                if (c.cols.size() != out.cols.size()) raise(err::ColonneUnioneDiverse);
                for (std::size_t k = 0; k < c.cols.size(); ++k) {
                    SqlType& t = out.cols[k].type;
                    SqlType u = c.cols[k].type;
                    if (t == u) continue;
                    if (t == SqlType::Null) t = u;
                    else if (isNum(t) && isNum(u)) t = widen(t, u);
                    else if (u != SqlType::Null) t = isTxt(t) || isTxt(u) ? SqlType::Text : SqlType::Var;
                }
                sql += s.unionAll[i - 1] ? " UNION ALL " : " UNION ";
            }
            sql += c.sql;
        }
        if (!s.orderBy.empty()) {
            // ORDER BY names the union's columns
            Source* u = newSource();
            u->alias = "__u";
            u->sqlAlias = quoteIdent("__u");
            for (auto& c : out.cols) u->cols.push_back({c.name, c.type, c.size, {}});
            Scope sc;
            sc.sources.push_back(u);
            sc.parent = outer;
            ExprContext cx;
            cx.scope = &sc;
            std::string ob;
            for (auto& oi : s.orderBy) {
                SqlExpr r = expr(*oi.e, cx);
                if (r.literal) continue;
                if (!ob.empty()) ob += ", ";
                ob += val(r) + (isTxt(r.type) ? " COLLATE JET" : "") + (oi.desc ? " DESC" : "");
            }
            sql = "SELECT * FROM (" + sql + ") AS \"__u\"" + (ob.empty() ? "" : " ORDER BY " + ob);
        }
        out.sql = std::move(sql);
        return out;
    }

private:
    SelectOutput core(SelectCore& c, std::vector<OrderItem>* orderBy, Scope* outer, bool wantRowid, bool positional,
                bool inUnion) {
        SelectOutput out;
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
                    if (sameName(src->alias, bi->alias.empty() ? bi->name : bi->alias)) {
                        if (!src->baseTable.empty()) base = src;
                        break;
                    }
            }
        }

        // select list
        ExprContext cx;
        cx.scope = &scope;
        cx.allowAgg = true;
        std::vector<std::pair<std::string, SqlExpr>> aliases;
        cx.aliases = &aliases;
        std::vector<std::string> itemSql;
        int exprNo = 0;
        for (auto& it : c.items) {
            if (it.star) {
                bool any = false;
                for (Source* src : scope.sources) {
                    if (!it.starQual.empty() && !sameName(src->alias, it.starQual)) continue;
                    any = true;
                    for (const SourceColumn& col : src->cols) {
                        OutputColumn oc;
                        oc.name = col.name;
                        oc.type = col.type;
                        oc.size = col.size;
                        oc.fromColumn = true;
                        oc.srcAlias = src->alias;
                        if (base == src) oc.baseColumn = col.baseColumn;
                        out.cols.push_back(oc);
                        itemSql.push_back(src->sqlAlias + "." + quoteIdent(col.name));
                    }
                }
                if (!it.starQual.empty() && !any) {
                    // T.* of no source: the platform asks for it as a parameter
                    missing(it.starQual + ".*");
                }
                if (it.starQual.empty() && scope.sources.empty()) raise(err::SintassiSelect);
                continue;
            }
            SqlExpr r = expr(*it.e, cx);
            if (it.aliasLiteral) cacheable_ = false;
            OutputColumn oc;
            oc.type = r.logical ? SqlType::Bool : r.type;
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
                if (i != j && out.cols[j].fromColumn && sameName(out.cols[i].name, out.cols[j].name) &&
                    !sameName(out.cols[i].srcAlias, out.cols[j].srcAlias)) {
                    const std::string clash = out.cols[i].name;
                    for (std::size_t k = 0; k < out.cols.size(); ++k)
                        if (out.cols[k].fromColumn && sameName(out.cols[k].name, clash) &&
                            out.cols[k].name.find('.') == std::string::npos)
                            out.cols[k].name = out.cols[k].srcAlias + "." + out.cols[k].name;
                    break;
                }
        }

        // WHERE, and HAVING terms on grouped columns moved to WHERE
        std::vector<std::string> whereTerms, havingTerms;
        if (c.where) {
            ExprContext wx;
            wx.scope = &scope;
            SqlExpr w = expr(*c.where, wx);
            whereTerms.push_back(w.logical ? w.sql : "(" + val(w) + "<>0)");
        }
        std::vector<const SourceColumn*> groupCols;
        std::vector<std::string> groupSql;
        for (auto& g : c.groupBy) {
            ExprContext gx;
            gx.scope = &scope;
            SqlExpr r = expr(*g, gx);
            if (r.col) groupCols.push_back(r.col);
            if (r.literal) continue;
            groupSql.push_back(val(r) + (isTxt(r.type) ? " COLLATE JET" : ""));
        }
        if (c.having) {
            std::vector<ExprP*> terms;
            conjuncts(c.having, terms);
            for (ExprP* t : terms) {
                std::vector<const SourceColumn*> refs;
                bool sub = false;
                ExprContext hx;
                hx.scope = &scope;
                hx.allowAgg = true;
                hx.refs = &refs;
                hx.sawSub = &sub;
                std::size_t missingBefore = missing_.size();
                SqlExpr r = expr(**t, hx);
                bool movable = grouped && !r.agg && !sub && !refs.empty() && missing_.size() == missingBefore;
                for (const SourceColumn* rc : refs)
                    if (std::find(groupCols.begin(), groupCols.end(), rc) == groupCols.end()) movable = false;
                std::string p = r.logical ? r.sql : "(" + val(r) + "<>0)";
                (movable ? whereTerms : havingTerms).push_back(p);
            }
        }

        // ORDER BY (a single SELECT: its sources, and the select list's aliases)
        std::vector<std::string> orderSql;
        if (orderBy) {
            ExprContext ox;
            ox.scope = &scope;
            ox.allowAgg = aggregate;
            ox.aliases = &aliases;
            for (auto& oi : *orderBy) {
                SqlExpr r = expr(*oi.e, ox);
                if (r.literal) continue;
                orderSql.push_back(val(r) + (isTxt(r.type) ? " COLLATE JET" : "") + (oi.desc ? " DESC" : ""));
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
            if (collateOut && isTxt(out.cols[i].type)) sel += " COLLATE JET";
            sel += " AS " + quoteIdent(ties ? "_c" + std::to_string(i) : names[i]);
        }
        std::string rowid;
        if (base) {
            rowid = base->table ? base->sqlAlias + ".rowid" : base->sqlAlias + "." + quoteIdent("__rowid");
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
                outerSel += (i ? ", " : "") + quoteIdent(ties ? "_c" + std::to_string(i) : names[i]) +
                            (ties ? " AS " + quoteIdent(names[i]) : "");
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
    std::string store(const SqlExpr& r, const ColumnInfo& col) {
        SqlType t = fromField(col.type);
        SqlType s = r.logical ? SqlType::Bool : r.type;
        if (s == SqlType::Null) return "NULL";
        bool same = false;
        switch (t) {
            case SqlType::Long: same = s == SqlType::Long || s == SqlType::Int || s == SqlType::Byte; break;
            case SqlType::Int: same = s == SqlType::Int || s == SqlType::Byte; break;
            case SqlType::Byte: same = s == SqlType::Byte; break;
            case SqlType::Dbl: same = isNum(s) && s != SqlType::Bool; break;
            case SqlType::Sng: case SqlType::Cur: same = isNum(s) && s != SqlType::Bool; break;
            case SqlType::Bool: same = s == SqlType::Bool; break;
            case SqlType::Date: same = s == SqlType::Date; break;
            case SqlType::Memo: same = isTxt(s); break;
            case SqlType::Text: same = isTxt(s) && col.size <= 0; break;
            default: break;
        }
        if (same) return val(r);
        return "jet_store('" + std::string(1, kindChar(s)) + "'," + val(r) + "," +
               std::to_string(static_cast<int>(col.type)) + "," + std::to_string(col.size) + ")";
    }

    const RelationInfo& targetTable(const std::string& name) {
        const RelationInfo* rel = cat_.findRelation(name);
        if (!rel) raise(err::TabellaOQueryNonTrovata, name);
        return *rel;
    }

    const ColumnInfo* findColumn(const RelationInfo& rel, std::string_view name) {
        for (auto& c : rel.columns)
            if (sameName(c.name, name)) return &c;
        return nullptr;
    }

    void checkMissing() {
        if (!missing_.empty()) raise(err::ParametriInsufficienti, std::to_string(missing_.size()));
    }

    Translation insert(Statement& st) {
        Translation t;
        t.kind = StatementKind::Insert;
        const RelationInfo& rel = targetTable(st.table);
        if (rel.isQuery) raise(err::RecordsetNonAggiornabile);
        std::vector<const ColumnInfo*> cols;
        if (st.columns.empty()) {
            for (auto& c : rel.columns) cols.push_back(&c);
        } else {
            for (auto& n : st.columns) {
                const ColumnInfo* c = findColumn(rel, n);
                if (!c) raise(err::CampoDestinazioneSconosciuto, n);
                for (auto* p : cols)
                    if (p == c) raise(err::CampoDefinitoPiuVolte);
                cols.push_back(c);
            }
        }
        std::string sql = "INSERT INTO " + quoteIdent(rel.name) + " (";
        for (std::size_t i = 0; i < cols.size(); ++i) sql += (i ? ", " : "") + quoteIdent(cols[i]->name);
        sql += ") ";
        if (st.select) {
            SelectOutput so = select(*st.select, nullptr, false, true);
            if (so.cols.size() != cols.size()) raise(err::NumeroValoriDiverso);
            sql += "SELECT ";
            for (std::size_t i = 0; i < cols.size(); ++i) {
                SqlExpr r;
                r.type = so.cols[i].type;
                r.sql = "\"__s\"." + quoteIdent(so.cols[i].name);
                sql += (i ? ", " : "") + store(r, *cols[i]);
            }
            sql += " FROM (" + so.sql + ") AS \"__s\"";
        } else {
            if (st.values.size() != cols.size()) raise(err::NumeroValoriDiverso);
            Scope empty;
            ExprContext cx;
            cx.scope = &empty;
            sql += "VALUES (";
            for (std::size_t i = 0; i < cols.size(); ++i) {
                SqlExpr r = expr(*st.values[i], cx);
                if (r.agg) raise(err::AggregazioneInWhere);
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
            while (bi->kind == FromItem::Kind::Join) bi = bi->left.get();
            if (bi->kind != FromItem::Kind::Table) raise(err::SintassiUpdate);
            for (Source* s : scope.sources)
                if (sameName(s->alias, bi->alias.empty() ? bi->name : bi->alias)) target = s;
        }
        if (!target) checkMissing();
        if (!target || !target->table) raise(err::RecordsetNonAggiornabile);
        const RelationInfo& rel = targetTable(target->relName);
        bool joined = st.from[0]->kind == FromItem::Kind::Join;
        ExprContext cx;
        cx.scope = &scope;
        std::string sets;
        std::vector<std::string> setCols;
        for (auto& a : st.sets) {
            if (!a.qual.empty() && !sameName(a.qual, target->alias)) raise(err::SintassiUpdate);
            const ColumnInfo* col = findColumn(rel, a.column);
            SqlExpr r = expr(*a.value, cx);
            if (r.agg) raise(err::AggregazioneInWhere);
            if (!col) {
                missing(a.column);
                continue;
            }
            std::string v = store(r, *col);
            if (joined)
                v = "(SELECT " + v + " FROM " + fromSql + " WHERE " + target->sqlAlias + ".rowid = \"__upd\".rowid)";
            sets += (sets.empty() ? "" : ", ") + quoteIdent(col->name) + " = " + v;
        }
        std::string where;
        if (st.where) {
            SqlExpr w = expr(*st.where, cx);
            if (w.agg) raise(err::AggregazioneInWhere);
            where = w.logical ? w.sql : "(" + val(w) + "<>0)";
        }
        checkMissing();
        if (joined) {
            t.sql = "UPDATE " + quoteIdent(rel.name) + " AS \"__upd\" SET " + sets + " WHERE \"__upd\".rowid IN (SELECT " +
                    target->sqlAlias + ".rowid FROM " + fromSql + (where.empty() ? "" : " WHERE " + where) + ")";
        } else {
            t.sql = "UPDATE " + quoteIdent(rel.name) + (target->alias != rel.name ? " AS " + target->sqlAlias : "") +
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
            if (!target) raise(err::TabellaOQueryNonTrovata, st.deleteQual);
        } else {
            const FromItem* bi = st.from[0].get();
            while (bi->kind == FromItem::Kind::Join) bi = bi->left.get();
            if (bi->kind != FromItem::Kind::Table) raise(err::EliminazioneImpossibile);
            for (Source* s : scope.sources)
                if (sameName(s->alias, bi->alias.empty() ? bi->name : bi->alias)) target = s;
        }
        if (!target || target->baseTable.empty()) raise(err::EliminazioneImpossibile);
        std::string where;
        if (st.where) {
            ExprContext cx;
            cx.scope = &scope;
            SqlExpr w = expr(*st.where, cx);
            if (w.agg) raise(err::AggregazioneInWhere);
            where = w.logical ? w.sql : "(" + val(w) + "<>0)";
        }
        checkMissing();
        bool simple = st.from.size() == 1 && st.from[0]->kind == FromItem::Kind::Table && target->table;
        if (simple) {
            t.sql = "DELETE FROM " + quoteIdent(target->relName) +
                    (target->alias != target->relName ? " AS " + target->sqlAlias : "") +
                    (where.empty() ? "" : " WHERE " + where);
        } else {
            std::string rowid = target->table ? target->sqlAlias + ".rowid" : target->sqlAlias + ".\"__rowid\"";
            t.sql = "DELETE FROM " + quoteIdent(target->baseTable) + " WHERE rowid IN (SELECT " + rowid + " FROM " +
                    fromSql + (where.empty() ? "" : " WHERE " + where) + ")";
        }
        return t;
    }
};

Translation Compiler::run(Statement& st) {
    switch (st.kind) {
        case StatementKind::Select: {
            SelectOutput so = select(*st.select, nullptr, true, false);
            checkMissing();
            Translation t;
            t.kind = StatementKind::Select;
            t.sql = std::move(so.sql);
            t.baseTable = so.baseTable;
            t.hasRowid = so.hasRowid;
            for (auto& c : so.cols) {
                ResultColumn rc;
                rc.name = c.name;
                rc.type = toField(c.type);
                rc.size = isTxt(c.type) ? (c.size > 0 ? c.size : (c.type == SqlType::Memo ? 0 : 255)) : 0;
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
            case 'I': out.push_back(Value::Long(static_cast<std::int32_t>(numberTokenValue(text, t)))); break;
            case 'D': {
                double d = numberTokenValue(text, t);
                if (!std::isfinite(d)) raise(err::SintassiEspressione, std::string(text.substr(t.pos, t.len)));
                out.push_back(Value::Double(d));
                break;
            }
            case 'T': {
                auto d = ParseDateLiteral(dateBody(text, t));
                if (!d) raise(err::SintassiEspressione, std::string(text.substr(t.pos, t.len)));
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
    if (nesting(t.sql) > kMaxSqlNesting) raise(err::SintassiEspressione, std::string(text.substr(0, 200)));
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
