// Binder and generator: the syntax tree resolved against the catalogue, typed, and written as
// SQLite text; and the cache of translations keyed on the text without its literals.
#include "store/sql/translator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "store/convert.h"
#include "store/errors.h"
#include "store/names.h"
#include "store/sql/ast.h"
#include "store/sql/calc.h"
#include "store/sql/functions.h"
#include "store/sql/limits.h"

namespace store::sql {

using namespace detail;
using store::detail::quoteIdent;
using store::detail::quoteText;
using store::detail::sameName;

namespace {

// ---- types -------------------------------------------------------------------------------------
enum class SqlType : std::uint8_t { Null, Bool, Byte, Int, Long, Cur, Sng, Dbl, Date, Text, Memo, Var };

bool isNumber(SqlType t) { return t >= SqlType::Bool && t <= SqlType::Dbl; }
bool isInteger(SqlType t) { return t >= SqlType::Bool && t <= SqlType::Long; }
bool isText(SqlType t) { return t == SqlType::Text || t == SqlType::Memo; }

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
    if (isNumber(t)) return 'n';
    if (t == SqlType::Date) return 'd';
    if (isText(t)) return 't';
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

// Double arithmetic done by SQLite gives infinity where the platform raises Overflow (6).
bool checksFinite(SqlType t) { return t == SqlType::Dbl || t == SqlType::Sng || t == SqlType::Cur; }
std::string finite(SqlType t, std::string sql) { return checksFinite(t) ? "jet_finite(" + sql + ")" : sql; }

// For each literal, the first literal of the statement with the same number (itself when none, and
// for a text or a date).
void firstEqualLiterals(const std::vector<Value>& lits, std::vector<std::size_t>& first) {
    auto isNumber = [](const Value& v) { return v.kind() == Value::Kind::Long || v.kind() == Value::Kind::Double; };
    auto same = [](const Value& a, const Value& b) {
        const double x = a.number(), y = b.number();
        return a.kind() == b.kind() && std::memcmp(&x, &y, sizeof x) == 0;
    };
    first.resize(lits.size());
    for (std::size_t i = 0; i < lits.size(); ++i) first[i] = i;
    if (lits.size() <= 32) {  // the usual statement: no table to build
        for (std::size_t i = 1; i < lits.size(); ++i)
            for (std::size_t j = 0; j < i && isNumber(lits[i]); ++j)
                if (same(lits[j], lits[i])) {
                    first[i] = j;
                    break;
                }
        return;
    }
    std::unordered_map<std::string, std::size_t> seen;
    for (std::size_t i = 0; i < lits.size(); ++i) {
        const Value& v = lits[i];
        if (!isNumber(v)) continue;
        const double x = v.number();
        std::string k(1, v.kind() == Value::Kind::Long ? 'l' : 'd');
        k.append(reinterpret_cast<const char*>(&x), sizeof x);
        first[i] = seen.emplace(std::move(k), i).first->second;
    }
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
    // DateValue of a stored Date column: that column's text; compared with a constant date it
    // becomes a range on the column (see dayRange).
    std::string dayOf;
    bool constantDate = false;  // DateValue of a literal
    int lit = -1;               // a literal's index among the statement's literals
    // + - * / over numeric columns and literals: the tree, for the operation above to extend (see calc.h)
    std::shared_ptr<const Calc> calc;
};

// The value form: what a select list shows, what functions and operators receive.
std::string val(const SqlExpr& r) { return r.logical ? "(- " + r.sql + ")" : r.sql; }

// The predicate form: what WHERE, ON, HAVING, CASE WHEN, AND and OR test. A value is true when it is
// not zero; an expression of type Null is unknown.
std::string predicate(const SqlExpr& r) {
    if (r.logical) return r.sql;
    if (r.type == SqlType::Null) return "NULL";
    return "(" + r.sql + "<>0)";
}

// A condition: a logical expression already in predicate form.
SqlExpr condition(std::string sql, bool agg) {
    SqlExpr r;
    r.sql = std::move(sql);
    r.type = SqlType::Bool;
    r.logical = true;
    r.agg = agg;
    return r;
}

// True for what And and Or combine as conditions rather than as bits.
bool isConditionLike(const SqlExpr& r) { return r.logical || r.type == SqlType::Bool || r.type == SqlType::Null; }

// The type of the value form (a logical expression is a Boolean).
SqlType valueType(const SqlExpr& r) { return r.logical ? SqlType::Bool : r.type; }

// The kind letter the SQL functions read their argument as.
char valueKind(const SqlExpr& r) { return kindChar(valueType(r)); }

std::string joined(const std::vector<std::string>& parts, const char* separator) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) out += (i ? separator : "") + parts[i];
    return out;
}

bool isAggregateName(std::string_view lowerName) {
    return lowerName == "sum" || lowerName == "avg" || lowerName == "min" || lowerName == "max" ||
           lowerName == "count";
}

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
    Compiler(const Catalog& cat, std::string_view text, const std::vector<Value>& lits,
             const std::vector<std::size_t>& firstEqual, bool inlineLits)
        : cat_(cat), text_(text), lits_(lits), firstEqual_(firstEqual), inline_(inlineLits) {}

    Translation run(Statement& st);
    bool cacheable() const { return cacheable_; }
    int maxParam() const { return maxParam_; }

private:
    const Catalog& cat_;
    std::string_view text_;
    const std::vector<Value>& lits_;
    const std::vector<std::size_t>& firstEqual_;  // see firstEqualLiterals
    bool inline_;
    bool cacheable_ = true;
    int maxParam_ = 0;
    int derivedCount_ = 0;
    std::vector<std::string> missing_;
    std::unordered_set<std::string> missingSeen_;  // missing_ in lower case
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
        r.lit = e.litIndex;
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
        if (isText(r.type) || r.type == SqlType::Null) return r.sql;
        return "jet_fn('cstrn','" + std::string(1, kindChar(r.type)) + "'," + val(r) + ")";
    }
    std::string asDate(const SqlExpr& r) {
        if (r.type == SqlType::Date || r.type == SqlType::Null) return r.sql;
        return "jet_fn('cdaten','" + std::string(1, kindChar(r.type)) + "'," + val(r) + ")";
    }
    std::string asNum(const SqlExpr& r) {
        if (isNumber(r.type) || r.type == SqlType::Null) return val(r);
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
        if (missingSeen_.insert(AsciiLower(name)).second) missing_.push_back(name);
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
        if (auto range = dayRange(op, a, b)) {
            r.sql = *range;
            return r;
        }
        std::string x = val(a), y = val(b);
        bool collate = false;
        if (isText(a.type) && isText(b.type)) collate = true;
        else if (a.type == SqlType::Date && b.type != SqlType::Date && b.type != SqlType::Var) y = asDate(b);
        else if (b.type == SqlType::Date && a.type != SqlType::Date && a.type != SqlType::Var) x = asDate(a);
        else if (isText(a.type) && isNumber(b.type)) x = asNum(a);
        else if (isNumber(a.type) && isText(b.type)) y = asNum(b);
        else if ((isText(a.type) && b.type == SqlType::Var) || (a.type == SqlType::Var && isText(b.type))) collate = true;
        r.sql = "(" + x + " " + o + " " + y + (collate ? " COLLATE JET)" : ")");
        return r;
    }

    // DateValue(column) compared with a constant date, as a range on the column itself, which an
    // index on it serves. A stored date is ISO text ("YYYY-MM-DD", with " HH:MM:SS" when it has a
    // time), so its text order is its time order and DateValue(column) >= D holds exactly when
    // column >= D's first midnight at or after it, DateValue(column) <= D when column < the midnight
    // after D's day. A Null column or constant leaves the comparison unknown, as before. The
    // constant is converted as the plain comparison converts it; jet_dayfrom and jet_dayafter give
    // the two midnights.
    std::optional<std::string> dayRange(Operator op, const SqlExpr& a, const SqlExpr& b) {
        const bool columnLeft = !a.dayOf.empty() && isConstantDate(b);
        if (!columnLeft && !(isConstantDate(a) && !b.dayOf.empty())) return std::nullopt;
        const SqlExpr& column = columnLeft ? a : b;
        const SqlExpr& constant = columnLeft ? b : a;
        if (!columnLeft) {  // D < DateValue(c) is DateValue(c) > D
            if (op == Operator::Lt) op = Operator::Gt;
            else if (op == Operator::Gt) op = Operator::Lt;
            else if (op == Operator::Le) op = Operator::Ge;
            else if (op == Operator::Ge) op = Operator::Le;
        }
        const std::string d = constant.type == SqlType::Date ? val(constant) : asDate(constant);
        const std::string& c = column.dayOf;
        const std::string from = c + " >= jet_dayfrom(" + d + ")", before = c + " < jet_dayfrom(" + d + ")";
        const std::string after = c + " >= jet_dayafter(" + d + ")", upTo = c + " < jet_dayafter(" + d + ")";
        switch (op) {
            case Operator::Ge: return "(" + from + ")";
            case Operator::Gt: return "(" + after + ")";
            case Operator::Le: return "(" + upTo + ")";
            case Operator::Lt: return "(" + before + ")";
            case Operator::Eq: return "(" + from + " AND " + upTo + ")";
            default: return "(" + before + " OR " + after + ")";
        }
    }

    static bool isConstantDate(const SqlExpr& r) {
        return r.constantDate || (r.literal && r.type != SqlType::Null);
    }

    // ---- expressions
    SqlExpr expr(const Expr& e, ExprContext& cx) {
        switch (e.kind) {
            case Expr::Kind::Lit: return literal(e);
            case Expr::Kind::Col: return column(e, cx);
            case Expr::Kind::Unary: return unary(e, cx);
            case Expr::Kind::Binary: return binary(e, cx);
            case Expr::Kind::Func: return func(e, cx);
            case Expr::Kind::IsNull: return isNullTest(e, cx);
            case Expr::Kind::Between: return between(e, cx);
            case Expr::Kind::InList: return inList(e, cx);
            case Expr::Kind::InSelect: return inSelect(e, cx);
            case Expr::Kind::Exists: return exists(e, cx);
            case Expr::Kind::SubQuery: return subQueryValue(e, cx);
        }
        exprError(e);
    }

    SqlExpr isNullTest(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx);
        return condition("(" + val(a) + (e.negated ? " IS NOT NULL)" : " IS NULL)"), a.agg);
    }

    // x Between lo And hi compares as x >= lo and x <= hi do, with their conversions.
    SqlExpr between(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx), lo = expr(*e.args[1], cx), hi = expr(*e.args[2], cx);
        std::string sql = "(" + predicate(compare(Operator::Ge, a, lo)) + " AND " +
                          predicate(compare(Operator::Le, a, hi)) + ")";
        if (e.negated) sql = "(NOT " + sql + ")";
        return condition(std::move(sql), a.agg || lo.agg || hi.agg);
    }

    // x In (a, b, ...): each item read as x's kind of value. A Null x is unknown whatever the items.
    SqlExpr inList(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx);
        if (a.type == SqlType::Null) return condition("(NULL)", a.agg);
        bool agg = a.agg;
        std::string items;
        checkInListLength(e.args.size() - 1);
        // A long list writes its literals into the text: SQLite looks numbered parameters up one by
        // one, which grows with the square of their count.
        const bool inlineItems = e.args.size() > kInlineInList + 1;
        if (inlineItems) cacheable_ = false;
        for (std::size_t i = 1; i < e.args.size(); ++i) {
            SqlExpr b = inlineItems && writableInline(*e.args[i]) ? inlineLiteral(*e.args[i]) : expr(*e.args[i], cx);
            agg = agg || b.agg;
            items += (i > 1 ? ", " : "") + inListItem(a.type, b);
        }
        std::string x = isText(a.type) ? val(a) + " COLLATE JET" : val(a);
        return condition("(" + x + (e.negated ? " NOT IN (" : " IN (") + items + "))", agg);
    }

    // A literal that can stand in the text as it is (a text holding a NUL stays a parameter).
    bool writableInline(const Expr& e) const {
        if (e.kind != Expr::Kind::Lit || e.litIndex < 0) return false;
        const Value& v = lits_.at(static_cast<std::size_t>(e.litIndex));
        return v.kind() != Value::Kind::Text || v.text().find('\0') == std::string::npos;
    }

    SqlExpr inlineLiteral(const Expr& e) {
        bool saved = inline_;
        inline_ = true;
        SqlExpr r = literal(e);
        inline_ = saved;
        return r;
    }

    std::string inListItem(SqlType tested, const SqlExpr& item) {
        if (tested == SqlType::Date) return asDate(item);
        if (item.type == SqlType::Var) return val(item);
        if (isNumber(tested) && !isNumber(item.type)) return asNum(item);
        if (isText(tested) && !isText(item.type)) return asText(item);
        return val(item);
    }

    SqlExpr inSelect(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx);
        SelectOutput so = subSelect(e, cx);
        if (so.cols.size() != 1) exprError(e);
        bool collate = isText(a.type) || isText(so.cols[0].type);
        return condition("(" + val(a) + (collate ? " COLLATE JET" : "") + (e.negated ? " NOT IN (" : " IN (") +
                             so.sql + "))",
                         a.agg);
    }

    SqlExpr exists(const Expr& e, ExprContext& cx) {
        SelectOutput so = subSelect(e, cx);
        return condition("(EXISTS (" + so.sql + "))", false);
    }

    // (SELECT x ...) as a value: its one column's type.
    SqlExpr subQueryValue(const Expr& e, ExprContext& cx) {
        SelectOutput so = subSelect(e, cx);
        if (so.cols.size() != 1) exprError(e);
        SqlExpr r;
        r.type = so.cols[0].type;
        r.size = so.cols[0].size;
        r.sql = "(" + so.sql + ")";
        return r;
    }

    SelectOutput subSelect(const Expr& e, ExprContext& cx) {
        if (cx.sawSub) *cx.sawSub = true;
        return select(*e.sub, cx.scope, false, false);
    }

    SqlExpr unary(const Expr& e, ExprContext& cx) {
        SqlExpr a = expr(*e.args[0], cx);
        if (e.op == Operator::Pos) return a;
        if (e.op == Operator::Neg) return negation(a);
        return logicalNot(a);
    }

    SqlExpr negation(const SqlExpr& a) {
        if (a.type == SqlType::Null) return a;
        SqlExpr r;
        r.agg = a.agg;
        if (isNumber(a.type)) {
            r.type = a.type == SqlType::Bool ? SqlType::Int : a.type;
            r.sql = "(- " + val(a) + ")";
        } else {
            r.type = a.type == SqlType::Date ? SqlType::Date : SqlType::Dbl;
            r.sql = "jet_arith('neg','" + std::string(1, kindChar(a.type)) + "'," + val(a) + ",NULL)";
        }
        return r;
    }

    // Not of a condition is a condition; Not of a number flips its bits.
    SqlExpr logicalNot(const SqlExpr& a) {
        SqlExpr r;
        r.agg = a.agg;
        if (a.logical) {
            r = a;
            r.sql = "(NOT " + a.sql + ")";
            r.literal = false;
            r.src = nullptr;
            r.col = nullptr;
            r.dayOf.clear();
            r.constantDate = false;
            return r;
        }
        if (a.type == SqlType::Null) return a;
        if (isInteger(a.type)) {
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
        if (e.op == Operator::Cat) return concatenation(e, cx);
        if ((e.op == Operator::And || e.op == Operator::Or) && e.chain > 2) {
            if (auto flat = conditionChain(e, cx)) return *flat;
        }
        SqlExpr a = expr(*e.args[0], cx);
        SqlExpr b = expr(*e.args[1], cx);
        switch (e.op) {
            case Operator::Eq: case Operator::Ne: case Operator::Lt:
            case Operator::Gt: case Operator::Le: case Operator::Ge:
                return compare(e.op, a, b);
            case Operator::Like: return condition("jet_like(" + asText(a) + "," + asText(b) + ")", a.agg || b.agg);
            case Operator::And: case Operator::Or: case Operator::Xor: case Operator::Eqv: case Operator::Imp:
                return logical(e.op, a, b);
            default: return arithmetic(e, a, b);
        }
    }

    // a & b & ...: one jet_cat call, flat however long the chain.
    SqlExpr concatenation(const Expr& e, ExprContext& cx) {
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
                kinds.push_back(valueKind(a));
                args += "," + val(a);
            }
            outerKinds.push_back('t');
            outerArgs += ",jet_cat('" + kinds + "'" + args + ")";
        }
        r.sql = parts.size() <= 100 ? outerArgs.substr(1) : "jet_cat('" + outerKinds + "'" + outerArgs + ")";
        return r;
    }

    // A chain of And (or Or) of conditions is written flat: (p1 AND p2 AND p3), so that a long
    // WHERE does not nest SQLite's parser too deep. Nothing when a term is a number: the chain is
    // then a bitwise operation, done pair by pair.
    std::optional<SqlExpr> conditionChain(const Expr& e, ExprContext& cx) {
        std::vector<const Expr*> parts;
        flattenChain(e, e.op, parts);
        std::vector<SqlExpr> terms;
        bool allConditions = true;
        for (const Expr* p : parts) {
            terms.push_back(expr(*p, cx));
            if (!isConditionLike(terms.back())) allConditions = false;
        }
        if (!allConditions) return std::nullopt;
        std::vector<std::string> sql;
        bool agg = false;
        for (const SqlExpr& t : terms) {
            agg = agg || t.agg;
            sql.push_back(predicate(t));
        }
        return condition("(" + joined(sql, e.op == Operator::And ? " AND " : " OR ") + ")", agg);
    }

    // And Or Xor Eqv Imp: of two conditions a condition, otherwise the bitwise operation.
    SqlExpr logical(Operator op, const SqlExpr& a, const SqlExpr& b) {
        if (!isConditionLike(a) || !isConditionLike(b)) {
            SqlExpr r = arithCall(logicalName(op), a, b);
            r.type = SqlType::Long;
            return r;
        }
        const std::string x = predicate(a), y = predicate(b);
        std::string sql;
        switch (op) {
            case Operator::And: sql = "(" + x + " AND " + y + ")"; break;
            case Operator::Or: sql = "(" + x + " OR " + y + ")"; break;
            case Operator::Xor: sql = "(" + x + " <> " + y + ")"; break;
            case Operator::Eqv: sql = "(" + x + " = " + y + ")"; break;
            default: sql = "((NOT " + x + ") OR " + y + ")"; break;
        }
        return condition(std::move(sql), a.agg || b.agg);
    }

    static const char* logicalName(Operator op) {
        switch (op) {
            case Operator::And: return "and";
            case Operator::Or: return "or";
            case Operator::Xor: return "xor";
            case Operator::Eqv: return "eqv";
            default: return "imp";
        }
    }

    // The SQL function that does an operation SQLite cannot do on the operands' kinds.
    static SqlExpr arithCall(const char* name, const SqlExpr& a, const SqlExpr& b) {
        SqlExpr r;
        r.agg = a.agg || b.agg;
        r.sql = std::string("jet_arith('") + name + "','" + valueKind(a) + valueKind(b) + "'," + val(a) + "," +
                val(b) + ")";
        return r;
    }

    // + - * / \ Mod ^: SQLite's own operator on two numbers, jet_arith on anything else.
    SqlExpr arithmetic(const Expr& e, const SqlExpr& a, const SqlExpr& b) {
        if (a.type == SqlType::Null || b.type == SqlType::Null) {
            SqlExpr r;
            r.agg = a.agg || b.agg;
            r.sql = "NULL";
            r.type = SqlType::Null;
            return r;
        }
        const bool numbers = isNumber(a.type) && isNumber(b.type);
        switch (e.op) {
            case Operator::Add:
                if (numbers) return nativeArith("+", widen(a.type, b.type), a, b);
                if (isText(a.type) && isText(b.type)) return textJoin(a, b);
                return typedArithCall("+", additionType(a.type, b.type), a, b);
            case Operator::Sub:
                if (numbers) return nativeArith("-", widen(a.type, b.type), a, b);
                return typedArithCall("-", subtractionType(a.type, b.type), a, b);
            case Operator::Mul:
                if (numbers) return nativeArith("*", widen(a.type, b.type), a, b);
                return typedArithCall("*", SqlType::Dbl, a, b);
            case Operator::Div:
                if (numbers) {
                    SqlExpr r;
                    r.agg = a.agg || b.agg;
                    r.type = SqlType::Dbl;
                    r.sql = "jet_div(" + val(a) + "," + val(b) + ")";
                    return joinCalc('/', false, a, b, std::move(r));
                }
                return typedArithCall("/", SqlType::Dbl, a, b);
            case Operator::IDiv: return typedArithCall("\\", SqlType::Long, a, b);
            case Operator::Mod: return typedArithCall("mod", SqlType::Long, a, b);
            case Operator::Pow: return typedArithCall("^", SqlType::Dbl, a, b);
            default: exprError(e);
        }
    }

    SqlExpr nativeArith(const char* op, SqlType type, const SqlExpr& a, const SqlExpr& b) {
        SqlExpr r;
        r.agg = a.agg || b.agg;
        r.type = type;
        r.sql = finite(type, "(" + val(a) + " " + op + " " + val(b) + ")");
        return joinCalc(op[0], checksFinite(type), a, b, std::move(r));
    }

    // The operation r, of a and b, as part of a tree of arithmetic; written as one jet_calc call
    // when operator by operator it would call functions more than once (see calc.h).
    SqlExpr joinCalc(char op, bool finite, const SqlExpr& a, const SqlExpr& b, SqlExpr r) {
        const auto x = operandCalc(a), y = operandCalc(b);
        // a tree of literals alone stays as it was: SQLite works it out once, before the first row
        if (!x || !y || (x->literalsOnly && y->literalsOnly)) return r;
        r.calc = CalcJoin(op, finite, *x, *y);
        if (r.calc->calls >= 2) r.sql = CalcSql(*r.calc);
        return r;
    }

    // An operand a tree may take: a tree already, a numeric column, a numeric literal. Anything
    // else (a function, an aggregate, a condition) stays SQLite's to evaluate, at its own time.
    std::shared_ptr<const Calc> operandCalc(const SqlExpr& e) const {
        if (e.calc) return e.calc;
        if (!isNumber(e.type) || e.logical || e.agg) return nullptr;
        if (e.col) return CalcOperand(e.sql, e.sql, false);
        if (!e.literal || e.lit < 0) return nullptr;
        // literals of the same value are one value: the cached translation serves only statements whose
        // literals are equal in the same places (see the cache key)
        if (inline_) return CalcOperand(e.sql, e.sql, true);
        return CalcOperand(e.sql, "?" + std::to_string(firstEqual_.at(static_cast<std::size_t>(e.lit)) + 1), true);
    }

    static SqlExpr typedArithCall(const char* name, SqlType type, const SqlExpr& a, const SqlExpr& b) {
        SqlExpr r = arithCall(name, a, b);
        r.type = type;
        return r;
    }

    // Text + text joins the texts (Null stays Null, unlike &).
    static SqlExpr textJoin(const SqlExpr& a, const SqlExpr& b) {
        SqlExpr r;
        r.agg = a.agg || b.agg;
        r.type = SqlType::Text;
        r.sql = "(" + a.sql + " || " + b.sql + ")";
        return r;
    }

    // A date plus a number (or a text read as one) is a date.
    static SqlType additionType(SqlType a, SqlType b) {
        if ((a == SqlType::Date && (isNumber(b) || isText(b))) || (b == SqlType::Date && (isNumber(a) || isText(a))))
            return SqlType::Date;
        if (a == SqlType::Var || b == SqlType::Var) return SqlType::Var;
        return SqlType::Dbl;
    }

    // Date - date is a number of days; date - number a date.
    static SqlType subtractionType(SqlType a, SqlType b) {
        if (a == SqlType::Date && b == SqlType::Date) return SqlType::Dbl;
        if (a == SqlType::Date) return SqlType::Date;
        if (a == SqlType::Var || b == SqlType::Var) return SqlType::Var;
        return SqlType::Dbl;
    }

    SqlExpr func(const Expr& e, ExprContext& cx) {
        std::string name = AsciiLower(e.text);
        if (name.ends_with('$')) name = textFormName(name, e.text);
        if (isAggregateName(name)) return aggregate(e, name, cx);
        if (e.star) exprError(e);
        if (name == "iif") return iif(e, cx);
        if (name == "isnull") return isNullCall(e, cx);
        return functionCall(e, name, cx);
    }

    // "Left$" is Left giving a text; only a function that gives a text has such a form.
    static std::string textFormName(std::string lower, const std::string& written) {
        lower.pop_back();
        const FnInfo* fi = findFunction(lower);
        if (!fi || fi->result != 't') raise(err::FunzioneNonDefinita, written);
        return lower;
    }

    // Sum Avg Min Max Count, of an expression without aggregates; only where aggregates may stand.
    SqlExpr aggregate(const Expr& e, const std::string& name, ExprContext& cx) {
        if (!cx.allowAgg) raise(err::AggregazioneInWhere);
        SqlExpr r;
        r.agg = true;
        if (name == "count" && e.star) {
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
        if (name == "count") {
            r.type = SqlType::Long;
            r.sql = "COUNT(" + val(a) + ")";
        } else if (name == "sum" || name == "avg") {
            std::string x = a.type == SqlType::Date ? "jet_fn('cdbl','d'," + a.sql + ")" : asNum(a);
            r.type = name == "avg" ? averageType(a.type) : sumType(a.type);
            r.sql = finite(r.type, (name == "sum" ? "SUM(" : "AVG(") + x + ")");
        } else {
            r.type = valueType(a);
            r.size = a.size;
            r.sql = (name == "min" ? "MIN(" : "MAX(") + val(a) + (isText(a.type) ? " COLLATE JET)" : ")");
        }
        return r;
    }

    static SqlType sumType(SqlType of) {
        if (isInteger(of)) return SqlType::Long;
        if (of == SqlType::Cur) return SqlType::Cur;
        return SqlType::Dbl;
    }

    static SqlType averageType(SqlType of) { return of == SqlType::Cur ? SqlType::Cur : SqlType::Dbl; }

    // IIf(c, a, b) evaluates only the branch it takes, as CASE does.
    SqlExpr iif(const Expr& e, ExprContext& cx) {
        if (e.args.size() != 3) exprError(e);
        SqlExpr c = expr(*e.args[0], cx), a = expr(*e.args[1], cx), b = expr(*e.args[2], cx);
        SqlExpr r;
        r.agg = c.agg || a.agg || b.agg;
        const SqlType ta = valueType(a), tb = valueType(b);
        std::string x = val(a), y = val(b);
        if (ta == tb) r.type = ta;
        else if (ta == SqlType::Null) r.type = tb;
        else if (tb == SqlType::Null) r.type = ta;
        else if (isNumber(ta) && isNumber(tb)) r.type = (isInteger(ta) && isInteger(tb)) ? SqlType::Long : SqlType::Dbl;
        else if (isText(ta) && isText(tb)) r.type = SqlType::Memo;
        else if (isText(ta) || isText(tb)) {
            r.type = SqlType::Text;
            x = asText(a);
            y = asText(b);
        } else r.type = SqlType::Var;
        r.sql = "(CASE WHEN " + predicate(c) + " THEN " + x + " ELSE " + y + " END)";
        r.size = std::max(a.size, b.size);
        return r;
    }

    SqlExpr isNullCall(const Expr& e, ExprContext& cx) {
        if (e.args.size() != 1) exprError(e);
        SqlExpr a = expr(*e.args[0], cx);
        return condition("(" + val(a) + " IS NULL)", a.agg);
    }

    // Any other function: jet_fn with the arguments' kinds, so that it converts them as the
    // platform does; Now, Date and Time have their own functions (the clock of the statement).
    SqlExpr functionCall(const Expr& e, const std::string& name, ExprContext& cx) {
        const FnInfo* fi = findFunction(name);
        if (!fi) raise(err::FunzioneNonDefinita, e.text);
        if (static_cast<int>(e.args.size()) < fi->minArgs || static_cast<int>(e.args.size()) > fi->maxArgs)
            exprError(e);
        SqlExpr r;
        std::string kinds, args;
        std::optional<SqlType> firstType;
        for (auto& ap : e.args) {
            SqlExpr a = expr(*ap, cx);
            r.agg = r.agg || a.agg;
            kinds.push_back(valueKind(a));
            args += "," + val(a);
            if (!firstType) firstType = a.type;
            if (name == "datevalue") markDay(r, a);
        }
        r.type = resultType(fi->result, firstType);
        if (fi->result == 't') r.size = 255;
        if (name == "now" || name == "date" || name == "time") {
            r.sql = "jet_" + name + "()";
            return r;
        }
        r.sql = "jet_fn('" + name + "','" + kinds + "'" + args + ")";
        return r;
    }

    // DateValue's argument: a Date column of a table, or of a query showing a table's column
    // unchanged, holds what the engine stored; a literal is a constant.
    static void markDay(SqlExpr& r, const SqlExpr& argument) {
        if (argument.col && argument.type == SqlType::Date && !argument.col->baseColumn.empty()) r.dayOf = argument.sql;
        r.constantDate = argument.literal && argument.type != SqlType::Null;
    }

    // The result letter of a function: d date, i Integer, l Long, f Double, t text, b Boolean,
    // a the numeric type of the first argument; anything else a Variant.
    static SqlType resultType(char result, std::optional<SqlType> firstArgument) {
        switch (result) {
            case 'd': return SqlType::Date;
            case 'i': return SqlType::Int;
            case 'l': return SqlType::Long;
            case 'f': return SqlType::Dbl;
            case 't': return SqlType::Text;
            case 'b': return SqlType::Bool;
            case 'a':
                if (!firstArgument || !isNumber(*firstArgument)) return SqlType::Dbl;
                return *firstArgument == SqlType::Bool ? SqlType::Int : *firstArgument;
            default: return SqlType::Var;
        }
    }

    // ---- FROM
    Source* newSource() {
        pool_.push_back(std::make_unique<Source>());
        return pool_.back().get();
    }

    // Writes the FROM item's SQL, adding its sources to scope (in order).
    std::string from(FromItem& f, Scope& scope, Scope* outer) {
        switch (f.kind) {
            case FromItem::Kind::Table: return tableSource(f, scope);
            case FromItem::Kind::Derived: return derivedSource(f, scope, outer);
            case FromItem::Kind::Join: return join(f, scope, outer);
        }
        return {};
    }

    std::string tableSource(const FromItem& f, Scope& scope) {
        const RelationInfo* rel = cat_.findRelation(f.name);
        if (!rel) raise(err::TabellaOQueryNonTrovata, f.name);
        Source* s = newSource();
        s->alias = f.alias.empty() ? f.name : f.alias;
        s->sqlAlias = quoteIdent(s->alias);
        s->relName = rel->name;
        s->table = !rel->isQuery;
        s->baseTable = rel->isQuery ? rel->baseTable : rel->name;
        for (auto& c : rel->columns) s->cols.push_back({c.name, fromField(c.type), c.size, {}});
        setBaseColumns(*rel, *s);
        scope.sources.push_back(s);
        std::string sql = quoteIdent(rel->name);
        if (s->alias != rel->name) sql += " AS " + s->sqlAlias;
        return sql;
    }

    // The column of the base table each column shows: a table's own; a writable query's as the
    // catalogue records it, or, when it records none, the base table's column of the same name.
    void setBaseColumns(const RelationInfo& rel, Source& s) {
        if (!rel.isQuery) {
            for (auto& sc : s.cols) sc.baseColumn = sc.name;
            return;
        }
        if (rel.baseTable.empty()) return;
        const bool recorded = std::any_of(rel.columns.begin(), rel.columns.end(),
                                          [](const ColumnInfo& c) { return !c.baseColumn.empty(); });
        const RelationInfo* base = recorded ? nullptr : cat_.findRelation(rel.baseTable);
        for (std::size_t i = 0; i < rel.columns.size(); ++i) {
            if (recorded) {
                if (!rel.columns[i].baseColumn.empty()) s.cols[i].baseColumn = rel.columns[i].baseColumn;
            } else if (base) {
                for (auto& bc : base->columns)
                    if (sameName(bc.name, rel.columns[i].name)) s.cols[i].baseColumn = bc.name;
            }
        }
    }

    std::string derivedSource(FromItem& f, Scope& scope, Scope* outer) {
        SelectOutput so = select(*f.sub, outer, false, false);
        Source* s = newSource();
        s->alias = f.alias.empty() ? "__d" + std::to_string(++derivedCount_) : f.alias;
        s->sqlAlias = quoteIdent(s->alias);
        for (auto& c : so.cols) s->cols.push_back({c.name, c.type, c.size, {}});
        scope.sources.push_back(s);
        return "(" + so.sql + ") AS " + s->sqlAlias;
    }

    std::string join(FromItem& f, Scope& scope, Scope* outer) {
        std::string left = from(*f.left, scope, outer);
        std::string right = from(*f.right, scope, outer);
        if (f.right->kind == FromItem::Kind::Join) right = "(" + right + ")";
        ExprContext cx;
        cx.scope = &scope;
        SqlExpr on = expr(*f.on, cx);
        if (on.agg) raise(err::AggregazioneInWhere);
        const char* kind = f.join == FromItem::JoinKind::Left    ? " LEFT JOIN "
                           : f.join == FromItem::JoinKind::Right ? " RIGHT JOIN "
                                                                 : " JOIN ";
        return left + kind + right + " ON " + predicate(on);
    }

    // The source whose rows the FROM item's rows are: the leftmost of a chain of LEFT JOINs.
    static const FromItem* baseItem(const FromItem& f) {
        if (f.kind == FromItem::Kind::Table) return &f;
        if (f.kind == FromItem::Kind::Join && f.join == FromItem::JoinKind::Left) return baseItem(*f.left);
        return nullptr;
    }

    // The name the statement gives a table of its FROM list.
    static const std::string& itemAlias(const FromItem& f) { return f.alias.empty() ? f.name : f.alias; }

    static bool hasAggregate(const Expr& e) {
        if (e.kind == Expr::Kind::Func && isAggregateName(AsciiLower(e.text))) return true;
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
                mergeUnionTypes(out.cols, c.cols);
                sql += s.unionAll[i - 1] ? " UNION ALL " : " UNION ";
            }
            sql += c.sql;
        }
        if (!s.orderBy.empty()) sql = orderedUnion(sql, out.cols, s.orderBy, outer);
        out.sql = std::move(sql);
        return out;
    }

private:
    // A column of a union takes the type that holds the values of every SELECT's column.
    static void mergeUnionTypes(std::vector<OutputColumn>& cols, const std::vector<OutputColumn>& next) {
        if (next.size() != cols.size()) raise(err::ColonneUnioneDiverse);
        for (std::size_t k = 0; k < next.size(); ++k) {
            SqlType& t = cols[k].type;
            SqlType u = next[k].type;
            if (t == u) continue;
            if (t == SqlType::Null) t = u;
            else if (isNumber(t) && isNumber(u)) t = widen(t, u);
            else if (u != SqlType::Null) t = isText(t) || isText(u) ? SqlType::Text : SqlType::Var;
        }
    }

    // The ORDER BY of a union names the union's columns: the union is wrapped as source "__u".
    std::string orderedUnion(const std::string& unionSql, const std::vector<OutputColumn>& cols,
                             std::vector<OrderItem>& orderBy, Scope* outer) {
        Source* u = newSource();
        u->alias = "__u";
        u->sqlAlias = quoteIdent("__u");
        for (auto& c : cols) u->cols.push_back({c.name, c.type, c.size, {}});
        Scope sc;
        sc.sources.push_back(u);
        sc.parent = outer;
        ExprContext cx;
        cx.scope = &sc;
        std::vector<std::string> terms = orderTerms(orderBy, cx);
        return "SELECT * FROM (" + unionSql + ") AS \"__u\"" + (terms.empty() ? "" : " ORDER BY " + joined(terms, ", "));
    }

    // ORDER BY terms; a literal orders nothing and is left out.
    std::vector<std::string> orderTerms(std::vector<OrderItem>& orderBy, ExprContext& cx) {
        std::vector<std::string> terms;
        for (auto& oi : orderBy) {
            SqlExpr r = expr(*oi.expr, cx);
            if (r.literal) continue;
            terms.push_back(val(r) + (isText(r.type) ? " COLLATE JET" : "") + (oi.desc ? " DESC" : ""));
        }
        return terms;
    }

    // The clauses of one SELECT as SQLite text, worked out in the order the statement reads.
    struct CoreParts {
        std::vector<std::string> from, items, where, groupBy, having, orderBy;
        std::vector<std::pair<std::string, SqlExpr>> aliases;  // the select list's, for ORDER BY
        const Source* base = nullptr;  // the table whose rowid the rows carry (updatable)
        bool grouped = false;
        bool aggregate = false;
    };

    SelectOutput core(SelectCore& c, std::vector<OrderItem>* orderBy, Scope* outer, bool wantRowid, bool positional,
                      bool inUnion) {
        SelectOutput out;
        CoreParts parts;
        Scope scope;
        scope.parent = outer;
        for (auto& f : c.from) parts.from.push_back(from(*f, scope, outer));
        parts.grouped = !c.groupBy.empty() || (c.having && hasAggregate(*c.having));
        parts.aggregate = parts.grouped || std::any_of(c.items.begin(), c.items.end(),
                                                       [](const SelItem& it) { return it.expr && hasAggregate(*it.expr); });
        if (wantRowid && !parts.aggregate && !c.distinct && c.from.size() == 1 && !inUnion)
            parts.base = updatableBase(*c.from[0], scope);
        selectList(c, scope, parts, out);
        qualifyClashingNames(out.cols);
        if (c.where) parts.where.push_back(wherePredicate(*c.where, scope));
        std::vector<const SourceColumn*> groupCols = groupBy(c, scope, parts);
        if (c.having) having(c.having, scope, groupCols, parts);
        if (orderBy) {
            ExprContext ox;
            ox.scope = &scope;
            ox.allowAgg = parts.aggregate;
            ox.aliases = &parts.aliases;
            parts.orderBy = orderTerms(*orderBy, ox);
        }
        assemble(c, parts, positional, inUnion, out);
        return out;
    }

    // The source of a single FROM item whose rows a recordset can edit: a table, or a writable
    // query, at the left of LEFT JOINs.
    static const Source* updatableBase(const FromItem& item, const Scope& scope) {
        const FromItem* bi = baseItem(item);
        if (!bi) return nullptr;
        for (Source* src : scope.sources)
            if (sameName(src->alias, itemAlias(*bi))) return src->baseTable.empty() ? nullptr : src;
        return nullptr;
    }

    void selectList(SelectCore& c, Scope& scope, CoreParts& parts, SelectOutput& out) {
        ExprContext cx;
        cx.scope = &scope;
        cx.allowAgg = true;
        cx.aliases = &parts.aliases;
        int exprNo = 0;
        for (auto& it : c.items) {
            if (it.star) starItem(it, scope, parts, out);
            else exprItem(it, cx, exprNo, parts, out);
        }
    }

    // * or T.*: every column of every source (or of T), in order.
    void starItem(const SelItem& it, const Scope& scope, CoreParts& parts, SelectOutput& out) {
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
                if (parts.base == src) oc.baseColumn = col.baseColumn;
                out.cols.push_back(oc);
                parts.items.push_back(src->sqlAlias + "." + quoteIdent(col.name));
            }
        }
        // T.* of no source: the platform asks for it as a parameter
        if (!it.starQual.empty() && !any) missing(it.starQual + ".*");
        if (it.starQual.empty() && scope.sources.empty()) raise(err::SintassiSelect);
    }

    // An expression of the select list: named by its alias, else by its column, else Expr1000, ...
    void exprItem(const SelItem& it, ExprContext& cx, int& exprNo, CoreParts& parts, SelectOutput& out) {
        SqlExpr r = expr(*it.expr, cx);
        if (it.aliasLiteral) cacheable_ = false;
        OutputColumn oc;
        oc.type = valueType(r);
        oc.size = r.size;
        if (!it.alias.empty()) {
            oc.name = it.alias;
            if (r.col && r.src == parts.base) oc.baseColumn = r.col->baseColumn;
            parts.aliases.emplace_back(it.alias, r);
        } else if (r.col) {
            oc.name = r.col->name;
            oc.fromColumn = true;
            oc.srcAlias = r.src->alias;
            if (r.src == parts.base) oc.baseColumn = r.col->baseColumn;
        } else {
            oc.name = "Expr" + std::to_string(1000 + exprNo++);
        }
        out.cols.push_back(oc);
        parts.items.push_back(val(r));
    }

    // Two columns of the same name from different sources are both named "T.Col".
    static void qualifyClashingNames(std::vector<OutputColumn>& cols) {
        for (std::size_t i = 0; i < cols.size(); ++i) {
            if (!cols[i].fromColumn) continue;
            for (std::size_t j = 0; j < cols.size(); ++j)
                if (i != j && cols[j].fromColumn && sameName(cols[i].name, cols[j].name) &&
                    !sameName(cols[i].srcAlias, cols[j].srcAlias)) {
                    const std::string clash = cols[i].name;
                    for (auto& col : cols)
                        if (col.fromColumn && sameName(col.name, clash) && col.name.find('.') == std::string::npos)
                            col.name = col.srcAlias + "." + col.name;
                    break;
                }
        }
    }

    std::string wherePredicate(const Expr& where, Scope& scope) {
        ExprContext wx;
        wx.scope = &scope;
        return predicate(expr(where, wx));
    }

    // GROUP BY terms (a literal groups nothing); returns the columns grouped on.
    std::vector<const SourceColumn*> groupBy(SelectCore& c, Scope& scope, CoreParts& parts) {
        std::vector<const SourceColumn*> groupCols;
        for (auto& g : c.groupBy) {
            ExprContext gx;
            gx.scope = &scope;
            SqlExpr r = expr(*g, gx);
            if (r.col) groupCols.push_back(r.col);
            if (r.literal) continue;
            parts.groupBy.push_back(val(r) + (isText(r.type) ? " COLLATE JET" : ""));
        }
        return groupCols;
    }

    // HAVING, term by term: a term on grouped columns only, without aggregates or subqueries,
    // filters the rows before grouping, so it goes to WHERE where SQLite can use an index. On a
    // query that neither groups nor aggregates, HAVING is only a filter on the rows: all of it
    // goes to WHERE.
    void having(ExprP& havingExpr, Scope& scope, const std::vector<const SourceColumn*>& groupCols,
                CoreParts& parts) {
        std::vector<ExprP*> terms;
        conjuncts(havingExpr, terms);
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
            bool movable = !parts.aggregate ||
                           (parts.grouped && !r.agg && !sub && !refs.empty() && missing_.size() == missingBefore);
            for (const SourceColumn* rc : refs)
                if (parts.aggregate && std::find(groupCols.begin(), groupCols.end(), rc) == groupCols.end())
                    movable = false;
            (movable ? parts.where : parts.having).push_back(predicate(r));
        }
    }

    // The SELECT's text from its parts. TOP n with ORDER BY keeps ties (RANK over the order) and
    // TOP n PERCENT counts the rows: both filter a window column in an outer SELECT.
    void assemble(const SelectCore& c, const CoreParts& parts, bool positional, bool inUnion, SelectOutput& out) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < out.cols.size(); ++i)
            names.push_back(positional ? "_c" + std::to_string(i) : out.cols[i].name);
        const bool ties = c.top && !parts.orderBy.empty() && !c.distinct;
        std::string sel = selectClause(c, parts, names, ties, c.distinct || inUnion, out);
        const std::string topN = c.top ? topCount(c) : std::string();
        if (ties) {
            sel += ", RANK() OVER (ORDER BY " + joined(parts.orderBy, ", ") + ") AS \"__rk\"";
            if (c.percent) sel += ", COUNT(*) OVER () AS \"__cnt\"";
        } else if (c.top && c.percent) {
            sel += ", ROW_NUMBER() OVER () AS \"__rk\", COUNT(*) OVER () AS \"__cnt\"";
        }
        const std::string body = clauses(c, parts);
        if (ties || (c.top && c.percent)) {
            std::string outerSel = "SELECT ";
            for (std::size_t i = 0; i < out.cols.size(); ++i)
                outerSel += (i ? ", " : "") + quoteIdent(ties ? "_c" + std::to_string(i) : names[i]) +
                            (ties ? " AS " + quoteIdent(names[i]) : "");
            if (parts.base) outerSel += (out.cols.empty() ? "" : ", ") + std::string("\"__rowid\"");
            std::string cond = c.percent ? "\"__rk\" <= (" + topN + " * \"__cnt\" + 99) / 100" : "\"__rk\" <= " + topN;
            out.sql = outerSel + " FROM (" + sel + body + ") WHERE " + cond + " ORDER BY \"__rk\"";
        } else {
            out.sql = sel + body;
            if (!parts.orderBy.empty()) out.sql += " ORDER BY " + joined(parts.orderBy, ", ");
            if (c.top) out.sql += " LIMIT " + topN;
        }
        if (positional)
            for (std::size_t i = 0; i < out.cols.size(); ++i) out.cols[i].name = names[i];
    }

    // SELECT [DISTINCT] items AS names [, rowid AS "__rowid"]. Under ties the items are named by
    // position, renamed by the outer SELECT.
    std::string selectClause(const SelectCore& c, const CoreParts& parts, const std::vector<std::string>& names,
                             bool ties, bool collateOut, SelectOutput& out) {
        std::string sel = c.distinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t i = 0; i < out.cols.size(); ++i) {
            if (i) sel += ", ";
            sel += parts.items[i];
            if (collateOut && isText(out.cols[i].type)) sel += " COLLATE JET";
            sel += " AS " + quoteIdent(ties ? "_c" + std::to_string(i) : names[i]);
        }
        if (parts.base) {
            const Source& base = *parts.base;
            std::string rowid = base.table ? base.sqlAlias + ".rowid" : base.sqlAlias + "." + quoteIdent("__rowid");
            sel += (out.cols.empty() ? "" : ", ") + rowid + " AS \"__rowid\"";
            out.baseTable = base.baseTable;
            out.hasRowid = true;
        }
        return sel;
    }

    // TOP's count: inline, or the parameter of its literal.
    std::string topCount(const SelectCore& c) {
        if (inline_) return std::to_string(static_cast<long long>(c.topN));
        maxParam_ = std::max(maxParam_, c.topLit + 1);
        return "?" + std::to_string(c.topLit + 1);
    }

    // FROM, WHERE, GROUP BY and HAVING. Grouping on literals only still groups: GROUP BY NULL.
    static std::string clauses(const SelectCore& c, const CoreParts& parts) {
        std::string body;
        if (!parts.from.empty()) body += " FROM " + joined(parts.from, ", ");
        if (!parts.where.empty()) body += " WHERE " + joined(parts.where, " AND ");
        if (!parts.groupBy.empty()) body += " GROUP BY " + joined(parts.groupBy, ", ");
        else if (parts.grouped && !c.groupBy.empty()) body += " GROUP BY NULL";
        if (!parts.having.empty()) body += " HAVING " + joined(parts.having, " AND ");
        return body;
    }

    // ---- storage conversion for INSERT and UPDATE
    std::string store(const SqlExpr& r, const ColumnInfo& col) {
        SqlType t = fromField(col.type);
        SqlType s = valueType(r);
        if (s == SqlType::Null) return "NULL";
        bool same = false;
        switch (t) {
            case SqlType::Long: same = s == SqlType::Long || s == SqlType::Int || s == SqlType::Byte; break;
            case SqlType::Int: same = s == SqlType::Int || s == SqlType::Byte; break;
            case SqlType::Byte: same = s == SqlType::Byte; break;
            case SqlType::Dbl: same = isNumber(s) && s != SqlType::Bool; break;
            case SqlType::Sng: case SqlType::Cur: same = isNumber(s) && s != SqlType::Bool; break;
            case SqlType::Bool: same = s == SqlType::Bool; break;
            case SqlType::Date: same = s == SqlType::Date; break;
            case SqlType::Memo: same = isText(s); break;
            case SqlType::Text: same = isText(s) && col.size <= 0; break;
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
        Source* target = updateTarget(st, scope);
        if (!target) checkMissing();
        if (!target || !target->table) raise(err::RecordsetNonAggiornabile);
        const RelationInfo& rel = targetTable(target->relName);
        const bool throughJoin = st.from[0]->kind == FromItem::Kind::Join;
        ExprContext cx;
        cx.scope = &scope;
        std::string sets;
        for (auto& a : st.sets) {
            if (!a.qual.empty() && !sameName(a.qual, target->alias)) raise(err::SintassiUpdate);
            const ColumnInfo* col = findColumn(rel, a.column);
            SqlExpr r = expr(*a.value, cx);
            if (r.agg) raise(err::AggregazioneInWhere);
            if (!col) {
                missing(a.column);
                continue;
            }
            // A joined update reads each new value from the join's row of the updated row.
            std::string v = store(r, *col);
            if (throughJoin)
                v = "(SELECT " + v + " FROM " + fromSql + " WHERE " + target->sqlAlias + ".rowid = \"__upd\".rowid)";
            sets += (sets.empty() ? "" : ", ") + quoteIdent(col->name) + " = " + v;
        }
        std::string where = st.where ? actionWhere(*st.where, cx) : std::string();
        checkMissing();
        if (throughJoin) {
            t.sql = "UPDATE " + quoteIdent(rel.name) + " AS \"__upd\" SET " + sets + " WHERE \"__upd\".rowid IN (SELECT " +
                    target->sqlAlias + ".rowid FROM " + fromSql + (where.empty() ? "" : " WHERE " + where) + ")";
        } else {
            t.sql = "UPDATE " + quoteIdent(rel.name) + (target->alias != rel.name ? " AS " + target->sqlAlias : "") +
                    " SET " + sets + (where.empty() ? "" : " WHERE " + where);
        }
        return t;
    }

    // The table an UPDATE writes: the source named by the SET columns' qualifier, else the leftmost
    // table of the FROM item.
    Source* updateTarget(const Statement& st, Scope& scope) {
        for (auto& a : st.sets) {
            if (a.qual.empty()) continue;
            if (Source* named = findSource(&scope, a.qual, nullptr)) return named;
            missing(a.qual + "." + a.column);
            break;
        }
        return leftmostTable(*st.from[0], scope, err::SintassiUpdate);
    }

    // The source of the leftmost table of a FROM item (nullptr if none matches); `error` when the
    // leftmost item is no table.
    static Source* leftmostTable(const FromItem& item, const Scope& scope, int error) {
        const FromItem* bi = &item;
        while (bi->kind == FromItem::Kind::Join) bi = bi->left.get();
        if (bi->kind != FromItem::Kind::Table) raise(error);
        Source* found = nullptr;
        for (Source* s : scope.sources)
            if (sameName(s->alias, itemAlias(*bi))) found = s;
        return found;
    }

    // The WHERE of an UPDATE or DELETE, where no aggregate may stand.
    std::string actionWhere(const Expr& where, ExprContext& cx) {
        SqlExpr w = expr(where, cx);
        if (w.agg) raise(err::AggregazioneInWhere);
        return predicate(w);
    }

    Translation del(Statement& st) {
        Translation t;
        t.kind = StatementKind::Delete;
        Scope scope;
        std::vector<std::string> fromItems;
        for (auto& f : st.from) fromItems.push_back(from(*f, scope, nullptr));
        const std::string fromSql = joined(fromItems, ", ");
        Source* target = nullptr;
        if (!st.deleteQual.empty()) {
            target = findSource(&scope, st.deleteQual, nullptr);
            if (!target) raise(err::TabellaOQueryNonTrovata, st.deleteQual);
        } else {
            target = leftmostTable(*st.from[0], scope, err::EliminazioneImpossibile);
        }
        if (!target || target->baseTable.empty()) raise(err::EliminazioneImpossibile);
        std::string where;
        if (st.where) {
            ExprContext cx;
            cx.scope = &scope;
            where = actionWhere(*st.where, cx);
        }
        checkMissing();
        bool simple = st.from.size() == 1 && st.from[0]->kind == FromItem::Kind::Table && target->table;
        if (simple) {
            t.sql = "DELETE FROM " + quoteIdent(target->relName) +
                    (target->alias != target->relName ? " AS " + target->sqlAlias : "") +
                    (where.empty() ? "" : " WHERE " + where);
        } else {
            // Through a join or a query: the rows of the base table whose rowids the FROM yields.
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
            checkSelectListLength(so.cols.size());
            Translation t;
            t.kind = StatementKind::Select;
            t.sql = std::move(so.sql);
            t.baseTable = so.baseTable;
            t.hasRowid = so.hasRowid;
            for (auto& c : so.cols) {
                ResultColumn rc;
                rc.name = c.name;
                rc.type = toField(c.type);
                rc.size = isText(c.type) ? (c.size > 0 ? c.size : (c.type == SqlType::Memo ? 0 : 255)) : 0;
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
                if (!std::isfinite(d)) raise(err::Overflow);  // a number too large for a Double
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
    std::vector<std::size_t> firstEqual;
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
    // equal numbers are shared by the arithmetic written as one call, so they are part of the shape
    firstEqualLiterals(m.lits, m.firstEqual);
    for (std::size_t i = 0; i < m.lits.size(); ++i)
        if (m.firstEqual[i] != i) m.key += "\x02" + std::to_string(i) + "=" + std::to_string(m.firstEqual[i]);
    if (!options.inlineLiterals) {
        auto it = m.cache.find(m.key);
        if (it != m.cache.end()) {
            Translation t = it->second.t;
            t.params.assign(m.lits.begin(), m.lits.begin() + it->second.params);
            return t;
        }
    }
    Statement st = parse(text, m.toks);
    Compiler comp(m.catalog, text, m.lits, m.firstEqual, options.inlineLiterals);
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
