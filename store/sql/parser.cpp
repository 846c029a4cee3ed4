// Lexer and parser of the dialect: text -> tokens -> syntax tree.
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "store/errors.h"
#include "store/sql/ast.h"
#include "store/sql/limits.h"

namespace store::sql::detail {

bool iequals(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if (x != y && std::tolower(x) != std::tolower(y)) return false;
    }
    return true;
}

namespace {

bool identStart(unsigned char c) { return std::isalpha(c) || c == '_' || c >= 0x80; }
bool identChar(unsigned char c) { return std::isalnum(c) || c == '_' || c >= 0x80; }

[[noreturn]] void lexError(std::string_view text) {
    std::string d(text.substr(0, 200));
    for (auto& c : d)
        if (c == '\0') c = ' ';
    raise(3075, d);
}

}  // namespace

void lex(std::string_view text, std::vector<Token>& out) {
    out.clear();
    if (text.size() > 0x7fffffff) lexError(text);
    std::size_t i = 0, n = text.size();
    int lit = 0;
    auto push = [&](Tok k, std::size_t start, std::size_t end) {
        Token t;
        t.kind = k;
        t.pos = static_cast<std::uint32_t>(start);
        t.len = static_cast<std::uint32_t>(end - start);
        out.push_back(t);
        return &out.back();
    };
    while (i < n) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
            ++i;
            continue;
        }
        std::size_t start = i;
        if (identStart(c)) {
            while (i < n && identChar(static_cast<unsigned char>(text[i]))) ++i;
            if (i + 1 < n && text[i] == '$' && text[i + 1] == '(') ++i;  // Left$(...): a function's text form
            push(Tok::Ident, start, i);
        } else if (c == '[') {
            ++i;
            while (i < n && text[i] != ']') {
                if (text[i] == '[' || text[i] == '\0') lexError(text);
                ++i;
            }
            if (i >= n) lexError(text);
            ++i;
            if (i - start <= 2) lexError(text);  // []
            push(Tok::BIdent, start, i);
        } else if (c == '\'' || c == '"') {
            char q = static_cast<char>(c);
            ++i;
            for (;;) {
                if (i >= n) lexError(text);
                if (text[i] == q) {
                    if (i + 1 < n && text[i + 1] == q) {
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                ++i;
            }
            push(Tok::String, start, i)->lit = lit++;
        } else if (std::isdigit(c) ||
                   (c == '.' && i + 1 < n && std::isdigit(static_cast<unsigned char>(text[i + 1])) &&
                    (out.empty() || (out.back().kind != Tok::Ident && out.back().kind != Tok::BIdent &&
                                     !(out.back().kind == Tok::Op && out.back().op[0] == ')'))))) {
            bool integer = true;
            while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
            if (i < n && text[i] == '.') {
                integer = false;
                ++i;
                while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
            }
            if (i < n && (text[i] == 'e' || text[i] == 'E')) {
                std::size_t j = i + 1;
                if (j < n && (text[j] == '+' || text[j] == '-')) ++j;
                if (j < n && std::isdigit(static_cast<unsigned char>(text[j]))) {
                    integer = false;
                    i = j;
                    while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
                }
            }
            if (i < n && identStart(static_cast<unsigned char>(text[i]))) lexError(text);  // 12abc
            Token* t = push(Tok::Number, start, i);
            t->lit = lit++;
            t->integer = integer;
        } else if (c == '#') {
            ++i;
            while (i < n && text[i] != '#' && text[i] != '\0' && text[i] != '\n') ++i;
            if (i >= n || text[i] != '#') lexError(text);
            ++i;
            push(Tok::Date, start, i)->lit = lit++;
        } else {
            Token* t = nullptr;
            if ((c == '<' || c == '>') && i + 1 < n && (text[i + 1] == '=' || (c == '<' && text[i + 1] == '>'))) {
                t = push(Tok::Op, start, i + 2);
                t->op[0] = static_cast<char>(c);
                t->op[1] = text[i + 1];
                i += 2;
                continue;
            }
            if (std::strchr("=<>+-*/\\^&(),.;", c) && c != '\0') {
                t = push(Tok::Op, start, i + 1);
                t->op[0] = static_cast<char>(c);
                ++i;
                continue;
            }
            lexError(text);
        }
    }
    Token e;
    e.kind = Tok::End;
    e.pos = static_cast<std::uint32_t>(n);
    out.push_back(e);
}

std::string stringValue(std::string_view text, const Token& t) {
    std::string_view raw = text.substr(t.pos + 1, t.len - 2);
    char q = text[t.pos];
    std::string s;
    s.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        s.push_back(raw[i]);
        if (raw[i] == q) ++i;  // doubled quote
    }
    return s;
}

std::string_view identValue(std::string_view text, const Token& t) {
    if (t.kind == Tok::BIdent) return text.substr(t.pos + 1, t.len - 2);
    return text.substr(t.pos, t.len);
}

std::string_view dateBody(std::string_view text, const Token& t) { return text.substr(t.pos + 1, t.len - 2); }

char literalKind(std::string_view text, const Token& t) {
    switch (t.kind) {
        case Tok::String: return 'S';
        case Tok::Date: return 'T';
        case Tok::Number: {
            if (!t.integer || t.len > 10) return 'D';
            long long v = 0;
            for (std::size_t i = 0; i < t.len; ++i) v = v * 10 + (text[t.pos + i] - '0');
            return v <= 2147483647LL ? 'I' : 'D';
        }
        default: return 0;
    }
}

// ---- parser ------------------------------------------------------------------------------------
namespace {

constexpr int kMaxDepth = 200;      // recursion of the parser
constexpr int kMaxExprDepth = 40;   // nesting of an expression (SQLite's parser takes about 90 levels)
constexpr int kMaxChain = 800;      // terms of one And / Or / & chain (SQLite's expression depth is 1000)

const char* const kReserved[] = {
    "select", "from", "where", "group", "by", "having", "order", "union", "and", "or", "not", "xor",
    "eqv", "imp", "mod", "like", "is", "null", "true", "false", "in", "between", "as", "on", "join",
    "left", "right", "inner", "outer", "distinct", "distinctrow", "top", "percent", "asc", "desc",
    "into", "values", "set", "update", "delete", "insert", "exists", "all", "with", "create", "drop",
    "alter", "table", "index"};

class Parser {
public:
    Parser(std::string_view text, const std::vector<Token>& toks) : s_(text), t_(toks) {}

    Statement statement() {
        Statement st;
        if (isKw("select")) {
            err_ = 3141;
            st.kind = StatementKind::Select;
            st.select = select(true);
        } else if (isKw("insert")) {
            err_ = 3134;
            insert(st);
        } else if (isKw("update")) {
            err_ = 3144;
            update(st);
        } else if (isKw("delete")) {
            err_ = 3075;
            del(st);
        } else if (isKw("create")) {
            create(st);
        } else if (isKw("drop")) {
            err_ = 3295;
            drop(st);
        } else if (isKw("alter")) {
            err_ = 3293;
            alter(st);
        } else if (peek().kind == Tok::Op && peek().op[0] == '(' && lookSelectInParens()) {
            err_ = 3141;
            st.kind = StatementKind::Select;
            st.select = select(true);
        } else {
            raise(3129);
        }
        if (isOp(";")) {
            ++p_;
            if (peek().kind != Tok::End) raise(3142);  // characters after the end of the statement
        }
        if (peek().kind != Tok::End) {
            if (st.kind == StatementKind::Select) fail(pendingClauseErr());
            fail(err_);
        }
        return st;
    }

private:
    std::string_view s_;
    const std::vector<Token>& t_;
    std::size_t p_ = 0;
    int err_ = 3075;     // error number of the clause being read
    int depth_ = 0;
    std::uint32_t clauseStart_ = 0;

    // ---- token helpers
    const Token& peek(std::size_t k = 0) const {
        std::size_t i = p_ + k;
        return i < t_.size() ? t_[i] : t_.back();
    }
    bool isKwAt(std::size_t k, const char* kw) const {
        const Token& t = peek(k);
        return t.kind == Tok::Ident && iequals(s_.substr(t.pos, t.len), kw);
    }
    bool isKw(const char* kw) const { return isKwAt(0, kw); }
    bool acceptKw(const char* kw) {
        if (isKw(kw)) {
            ++p_;
            return true;
        }
        return false;
    }
    void expectKw(const char* kw, int e) {
        if (!acceptKw(kw)) fail(e);
    }
    bool isOp(const char* o) const {
        const Token& t = peek();
        return t.kind == Tok::Op && std::strncmp(t.op, o, 3) == 0;
    }
    bool acceptOp(const char* o) {
        if (isOp(o)) {
            ++p_;
            return true;
        }
        return false;
    }
    void expectOp(const char* o, int e) {
        if (!acceptOp(o)) fail(e);
    }
    static bool reserved(std::string_view w) {
        for (const char* r : kReserved)
            if (iequals(w, r)) return true;
        return false;
    }
    bool isName(std::size_t k = 0) const {
        const Token& t = peek(k);
        if (t.kind == Tok::BIdent) return true;
        return t.kind == Tok::Ident && !reserved(s_.substr(t.pos, t.len));
    }
    std::string name(int e) {
        if (!isName()) fail(e);
        return std::string(identValue(s_, t_[p_++]));
    }

    [[noreturn]] void fail(int e) {
        if (e == 3075) {
            std::uint32_t from = clauseStart_;
            std::string d(s_.substr(std::min<std::size_t>(from, s_.size()), 200));
            for (auto& c : d)
                if (c == '\0') c = ' ';
            while (!d.empty() && d.back() == ' ') d.pop_back();
            raise(3075, d);
        }
        raise(e);
    }
    void enter() {
        if (++depth_ > kMaxDepth) raiseNestingLimit(kMaxDepth);
    }
    void leave() { --depth_; }

    bool lookSelectInParens() const {
        std::size_t k = 0;
        while (peek(k).kind == Tok::Op && peek(k).op[0] == '(') ++k;
        return isKwAt(k, "select");
    }

    // After a SELECT's last clause: the next token tells which clause is broken.
    int pendingClauseErr() const { return lastClauseErr_; }
    int lastClauseErr_ = 3141;

    // ---- SELECT
    std::unique_ptr<Select> select(bool topLevel) {
        enter();
        auto sel = std::make_unique<Select>();
        sel->cores.push_back(core());
        while (isKw("union")) {
            ++p_;
            bool all = acceptKw("all");
            sel->unionAll.push_back(all);
            bool paren = false;
            if (isOp("(") && lookSelectInParens()) {
                paren = true;
                ++p_;
            }
            if (!isKw("select")) fail(3319);
            sel->cores.push_back(core());
            if (paren) expectOp(")", 3319);
        }
        if (isKw("order")) {
            ++p_;
            int saved = err_;
            err_ = 3138;
            lastClauseErr_ = 3138;
            expectKw("by", 3138);
            clauseStart_ = peek().pos;
            do {
                OrderItem oi;
                oi.e = expr(3138);
                if (acceptKw("desc")) oi.desc = true;
                else acceptKw("asc");
                sel->orderBy.push_back(std::move(oi));
            } while (acceptOp(","));
            err_ = saved;
        }
        leave();
        return sel;
    }

    SelectCore core() {
        SelectCore c;
        expectKw("select", 3141);
        lastClauseErr_ = 3141;
        if (acceptKw("distinct")) c.distinct = true;
        else if (acceptKw("distinctrow")) {
        } else acceptKw("all");
        if (acceptKw("top")) {
            const Token& t = peek();
            if (t.kind != Tok::Number || !t.integer) fail(3141);
            c.top = true;
            c.topLit = t.lit;
            c.topN = std::strtod(std::string(s_.substr(t.pos, t.len)).c_str(), nullptr);
            ++p_;
            if (acceptKw("percent")) c.percent = true;
        }
        clauseStart_ = peek().pos;
        do {
            SelItem it;
            if (isOp("*")) {
                ++p_;
                it.star = true;
            } else if (isName() && peek(1).kind == Tok::Op && peek(1).op[0] == '.' && peek(2).kind == Tok::Op &&
                       peek(2).op[0] == '*') {
                it.star = true;
                it.starQual = name(3141);
                p_ += 2;
            } else {
                it.e = expr(3075);
                if (acceptKw("as")) {
                    if (!isName() && peek().kind != Tok::String) fail(3141);
                    if (peek().kind == Tok::String) {
                        it.alias = stringValue(s_, t_[p_++]);
                        it.aliasLiteral = true;
                    }
                    else it.alias = name(3141);
                } else if (isName()) {
                    fail(3141);  // missing operator or comma
                }
            }
            c.items.push_back(std::move(it));
        } while (acceptOp(","));
        if (acceptKw("into")) fail(3141);  // SELECT INTO is not supported
        if (acceptKw("from")) {
            lastClauseErr_ = 3131;
            int saved = err_;
            err_ = 3131;
            clauseStart_ = peek().pos;
            do c.from.push_back(fromItem());
            while (acceptOp(","));
            err_ = saved;
            // What follows a FROM list must start a clause.
            if (peek().kind != Tok::End && !isOp(";") && !isOp(")") && !isKw("where") && !isKw("group") &&
                !isKw("having") && !isKw("order") && !isKw("union"))
                fail(3131);
        }
        if (acceptKw("where")) {
            lastClauseErr_ = 3075;
            clauseStart_ = peek().pos;
            c.where = expr(3075);
            if (!clauseEnd()) fail(3075);
        }
        if (isKw("group")) {
            ++p_;
            expectKw("by", 3075);
            lastClauseErr_ = 3075;
            clauseStart_ = peek().pos;
            do c.groupBy.push_back(expr(3075));
            while (acceptOp(","));
            if (!clauseEnd()) fail(3075);
        }
        if (acceptKw("having")) {
            lastClauseErr_ = 3075;
            clauseStart_ = peek().pos;
            c.having = expr(3075);
            if (!clauseEnd()) fail(3075);
        }
        if (c.from.empty() && (c.where || !c.groupBy.empty() || c.having)) fail(3141);
        return c;
    }

    bool clauseEnd() const {
        return peek().kind == Tok::End || isOp(";") || isOp(")") || isKw("group") || isKw("having") ||
               isKw("order") || isKw("union");
    }

    FromP fromItem() {
        enter();
        FromP left = fromPrimary();
        for (;;) {
            FromItem::J j;
            if (isKw("inner")) j = FromItem::J::Inner;
            else if (isKw("left")) j = FromItem::J::Left;
            else if (isKw("right")) j = FromItem::J::Right;
            else break;
            ++p_;
            if (j != FromItem::J::Inner) acceptKw("outer");
            expectKw("join", 3131);
            auto jn = std::make_unique<FromItem>();
            jn->k = FromItem::K::Join;
            jn->join = j;
            jn->left = std::move(left);
            jn->right = fromPrimary();
            expectKw("on", 3131);
            std::uint32_t cs = clauseStart_;
            clauseStart_ = peek().pos;
            jn->on = expr(3075);
            clauseStart_ = cs;
            left = std::move(jn);
        }
        leave();
        return left;
    }

    FromP fromPrimary() {
        if (isOp("(")) {
            if (lookSelectInParens()) {
                ++p_;
                auto f = std::make_unique<FromItem>();
                f->k = FromItem::K::Derived;
                int saved = err_;
                f->sub = select(false);
                err_ = saved;
                expectOp(")", 3131);
                alias(f->alias);
                return f;
            }
            ++p_;
            enter();
            FromP inner = fromItem();
            leave();
            expectOp(")", 3131);
            if (inner->k != FromItem::K::Join) {
                // "(T)" alone: allowed, as a table in parentheses
            }
            return inner;
        }
        auto f = std::make_unique<FromItem>();
        f->k = FromItem::K::Table;
        f->name = name(3131);
        alias(f->alias);
        return f;
    }

    void alias(std::string& a) {
        if (acceptKw("as")) {
            a = name(3131);
        } else if (isName()) {
            a = name(3131);
        }
    }

    // ---- expressions
    ExprP mk(Expr::K k, std::uint32_t pos) {
        auto e = std::make_unique<Expr>();
        e->k = k;
        e->pos = pos;
        return e;
    }
    void finish(Expr& e) {
        e.end = p_ > 0 ? t_[p_ - 1].pos + t_[p_ - 1].len : 0;
        int d = 0;
        bool chainOp = e.k == Expr::K::Binary && (e.op == Op::And || e.op == Op::Or || e.op == Op::Cat);
        for (std::size_t i = 0; i < e.args.size(); ++i) {
            const auto& a = e.args[i];
            if (!a) continue;
            int ad = a->depth;
            if (chainOp && i == 0 && a->k == Expr::K::Binary && a->op == e.op) {
                ad -= 1;  // a link of the chain: written flat
                e.chain = a->chain + 1;
            }
            if (ad > d) d = ad;
        }
        e.depth = d + 1;
        if (e.depth > kMaxExprDepth) raiseNestingLimit(kMaxExprDepth);
        if (e.chain > kMaxChain) raiseChainLimit(kMaxChain);
    }
    ExprP binary(Op op, ExprP l, ExprP r) {
        auto e = mk(Expr::K::Binary, l->pos);
        e->op = op;
        e->args.push_back(std::move(l));
        e->args.push_back(std::move(r));
        finish(*e);
        return e;
    }

    ExprP expr(int e) {
        int saved = err_;
        err_ = e;
        enter();
        ExprP r = parseImp();
        leave();
        err_ = saved;
        return r;
    }
    ExprP parseImp() {
        ExprP l = parseEqv();
        while (acceptKw("imp")) l = binary(Op::Imp, std::move(l), parseEqv());
        return l;
    }
    ExprP parseEqv() {
        ExprP l = parseXor();
        while (acceptKw("eqv")) l = binary(Op::Eqv, std::move(l), parseXor());
        return l;
    }
    ExprP parseXor() {
        ExprP l = parseOr();
        while (acceptKw("xor")) l = binary(Op::Xor, std::move(l), parseOr());
        return l;
    }
    ExprP parseOr() {
        ExprP l = parseAnd();
        while (acceptKw("or")) l = binary(Op::Or, std::move(l), parseAnd());
        return l;
    }
    ExprP parseAnd() {
        ExprP l = parseNot();
        while (acceptKw("and")) l = binary(Op::And, std::move(l), parseNot());
        return l;
    }
    ExprP parseNot() {
        if (isKw("not")) {
            std::uint32_t pos = peek().pos;
            ++p_;
            enter();
            ExprP a = parseNot();
            leave();
            auto e = mk(Expr::K::Unary, pos);
            e->op = Op::Not;
            e->args.push_back(std::move(a));
            finish(*e);
            return e;
        }
        return parseCmp();
    }
    ExprP parseCmp() {
        ExprP l = parseCat();
        for (;;) {
            const Token& t = peek();
            Op op;
            if (t.kind == Tok::Op) {
                if (isOp("=")) op = Op::Eq;
                else if (isOp("<>")) op = Op::Ne;
                else if (isOp("<")) op = Op::Lt;
                else if (isOp(">")) op = Op::Gt;
                else if (isOp("<=")) op = Op::Le;
                else if (isOp(">=")) op = Op::Ge;
                else break;
                ++p_;
                l = binary(op, std::move(l), parseCat());
                continue;
            }
            bool neg = false;
            std::size_t save = p_;
            if (isKw("not") && (isKwAt(1, "like") || isKwAt(1, "in") || isKwAt(1, "between"))) {
                neg = true;
                ++p_;
            }
            if (acceptKw("like")) {
                l = binary(Op::Like, std::move(l), parseCat());
                if (neg) l = wrapNot(std::move(l));
                continue;
            }
            if (acceptKw("is")) {
                bool n = acceptKw("not");
                expectKw("null", err_);
                auto e = mk(Expr::K::IsNull, l->pos);
                e->negated = n;
                e->args.push_back(std::move(l));
                finish(*e);
                l = std::move(e);
                continue;
            }
            if (acceptKw("between")) {
                auto e = mk(Expr::K::Between, l->pos);
                e->negated = neg;
                e->args.push_back(std::move(l));
                e->args.push_back(parseCat());
                expectKw("and", err_);
                e->args.push_back(parseCat());
                finish(*e);
                l = std::move(e);
                continue;
            }
            if (acceptKw("in")) {
                expectOp("(", err_);
                if (isKw("select")) {
                    auto e = mk(Expr::K::InSelect, l->pos);
                    e->negated = neg;
                    e->args.push_back(std::move(l));
                    int saved = err_;
                    e->sub = select(false);
                    err_ = saved;
                    expectOp(")", err_);
                    finish(*e);
                    l = std::move(e);
                } else {
                    auto e = mk(Expr::K::InList, l->pos);
                    e->negated = neg;
                    e->args.push_back(std::move(l));
                    do e->args.push_back(parseImp());
                    while (acceptOp(","));
                    expectOp(")", err_);
                    finish(*e);
                    l = std::move(e);
                }
                continue;
            }
            p_ = save;
            break;
        }
        return l;
    }
    ExprP wrapNot(ExprP a) {
        auto e = mk(Expr::K::Unary, a->pos);
        e->op = Op::Not;
        e->args.push_back(std::move(a));
        finish(*e);
        return e;
    }
    ExprP parseCat() {
        ExprP l = parseAdd();
        while (acceptOp("&")) l = binary(Op::Cat, std::move(l), parseAdd());
        return l;
    }
    ExprP parseAdd() {
        ExprP l = parseMod();
        for (;;) {
            if (acceptOp("+")) l = binary(Op::Add, std::move(l), parseMod());
            else if (acceptOp("-")) l = binary(Op::Sub, std::move(l), parseMod());
            else break;
        }
        return l;
    }
    ExprP parseMod() {
        ExprP l = parseIDiv();
        while (acceptKw("mod")) l = binary(Op::Mod, std::move(l), parseIDiv());
        return l;
    }
    ExprP parseIDiv() {
        ExprP l = parseMul();
        while (acceptOp("\\")) l = binary(Op::IDiv, std::move(l), parseMul());
        return l;
    }
    ExprP parseMul() {
        ExprP l = parseNeg();
        for (;;) {
            if (acceptOp("*")) l = binary(Op::Mul, std::move(l), parseNeg());
            else if (acceptOp("/")) l = binary(Op::Div, std::move(l), parseNeg());
            else break;
        }
        return l;
    }
    ExprP parseNeg() {
        if (isOp("-") || isOp("+")) {
            std::uint32_t pos = peek().pos;
            Op op = isOp("-") ? Op::Neg : Op::Pos;
            ++p_;
            enter();
            ExprP a = parseNeg();
            leave();
            auto e = mk(Expr::K::Unary, pos);
            e->op = op;
            e->args.push_back(std::move(a));
            finish(*e);
            return e;
        }
        return parsePow();
    }
    ExprP parsePow() {
        ExprP l = parsePrimary();
        while (acceptOp("^")) {
            // the exponent may carry its own sign: 2^-1
            ExprP r;
            if (isOp("-") || isOp("+")) {
                std::uint32_t pos = peek().pos;
                Op op = isOp("-") ? Op::Neg : Op::Pos;
                ++p_;
                auto e = mk(Expr::K::Unary, pos);
                e->op = op;
                e->args.push_back(parsePrimary());
                finish(*e);
                r = std::move(e);
            } else {
                r = parsePrimary();
            }
            l = binary(Op::Pow, std::move(l), std::move(r));
        }
        return l;
    }

    ExprP parsePrimary() {
        const Token& t = peek();
        std::uint32_t pos = t.pos;
        switch (t.kind) {
            case Tok::String: {
                auto e = mk(Expr::K::Lit, pos);
                e->lit = 'S';
                e->litIndex = t.lit;
                e->text = stringValue(s_, t);
                ++p_;
                finish(*e);
                return e;
            }
            case Tok::Number: {
                auto e = mk(Expr::K::Lit, pos);
                e->lit = literalKind(s_, t);
                e->litIndex = t.lit;
                e->num = std::strtod(std::string(s_.substr(t.pos, t.len)).c_str(), nullptr);
                ++p_;
                finish(*e);
                return e;
            }
            case Tok::Date: {
                auto e = mk(Expr::K::Lit, pos);
                e->lit = 'T';
                e->litIndex = t.lit;
                e->text = std::string(dateBody(s_, t));
                ++p_;
                finish(*e);
                return e;
            }
            case Tok::Op: {
                if (t.op[0] == '(') {
                    ++p_;
                    if (isKw("select")) {
                        auto e = mk(Expr::K::SubQuery, pos);
                        int saved = err_;
                        e->sub = select(false);
                        err_ = saved;
                        expectOp(")", err_);
                        finish(*e);
                        return e;
                    }
                    enter();
                    ExprP e = parseImp();
                    leave();
                    expectOp(")", err_);
                    return e;
                }
                fail(err_);
            }
            case Tok::Ident:
            case Tok::BIdent: {
                std::string_view w = s_.substr(t.pos, t.len);
                if (t.kind == Tok::Ident) {
                    if (iequals(w, "null") || iequals(w, "true") || iequals(w, "false")) {
                        auto e = mk(Expr::K::Lit, pos);
                        e->lit = iequals(w, "null") ? 'N' : 'B';
                        e->num = iequals(w, "true") ? -1 : 0;
                        ++p_;
                        finish(*e);
                        return e;
                    }
                    if (iequals(w, "exists")) {
                        ++p_;
                        expectOp("(", err_);
                        if (!isKw("select")) fail(err_);
                        auto e = mk(Expr::K::Exists, pos);
                        int saved = err_;
                        e->sub = select(false);
                        err_ = saved;
                        expectOp(")", err_);
                        finish(*e);
                        return e;
                    }
                    // function call: a plain name followed by '('
                    if (peek(1).kind == Tok::Op && peek(1).op[0] == '(' &&
                        (!reserved(w) || iequals(w, "left") || iequals(w, "right") || iequals(w, "asc"))) {
                        auto e = mk(Expr::K::Func, pos);
                        e->text = std::string(w);
                        p_ += 2;
                        if (acceptOp(")")) {
                            finish(*e);
                            return e;
                        }
                        if (isOp("*")) {
                            ++p_;
                            e->star = true;
                            expectOp(")", err_);
                            finish(*e);
                            return e;
                        }
                        if (acceptKw("distinct")) e->negated = true;  // Count(Distinct x): not Jet, refused
                        if (e->negated) fail(err_);
                        enter();
                        do e->args.push_back(parseImp());
                        while (acceptOp(","));
                        leave();
                        expectOp(")", err_);
                        finish(*e);
                        return e;
                    }
                    if (reserved(w)) fail(err_);
                    // Functions without parentheses
                    if (iequals(w, "now") || iequals(w, "date") || iequals(w, "time")) {
                        if (!(peek(1).kind == Tok::Op && peek(1).op[0] == '.')) {
                            auto e = mk(Expr::K::Func, pos);
                            e->text = std::string(w);
                            ++p_;
                            finish(*e);
                            return e;
                        }
                    }
                }
                auto e = mk(Expr::K::Col, pos);
                e->text = std::string(identValue(s_, t));
                ++p_;
                if (isOp(".")) {
                    ++p_;
                    if (!isName() && !(peek().kind == Tok::Ident)) fail(err_);
                    e->qual = std::move(e->text);
                    e->text = std::string(identValue(s_, t_[p_]));
                    ++p_;
                    if (isOp(".")) fail(err_);
                }
                finish(*e);
                return e;
            }
            case Tok::End:
            default:
                fail(err_);
        }
    }

    // ---- INSERT
    void insert(Statement& st) {
        st.kind = StatementKind::Insert;
        ++p_;
        expectKw("into", 3134);
        st.table = name(3134);
        if (isOp("(") && !lookSelectInParens()) {
            ++p_;
            do st.columns.push_back(name(3134));
            while (acceptOp(","));
            expectOp(")", 3134);
        }
        if (acceptKw("values")) {
            expectOp("(", 3134);
            clauseStart_ = peek().pos;
            do st.values.push_back(expr(3134));
            while (acceptOp(","));
            expectOp(")", 3134);
        } else if (isKw("select") || isOp("(")) {
            bool paren = acceptOp("(");
            int saved = err_;
            err_ = 3141;
            st.select = select(false);
            err_ = saved;
            if (paren) expectOp(")", 3134);
        } else {
            fail(3134);
        }
    }

    // ---- UPDATE
    void update(Statement& st) {
        st.kind = StatementKind::Update;
        ++p_;
        {
            int saved = err_;
            err_ = 3144;
            st.from.push_back(fromItem());
            err_ = saved;
        }
        expectKw("set", 3144);
        clauseStart_ = peek().pos;
        do {
            Assignment a;
            a.column = name(3144);
            if (acceptOp(".")) {
                a.qual = std::move(a.column);
                a.column = name(3144);
            }
            expectOp("=", 3144);
            a.value = expr(3144);
            st.sets.push_back(std::move(a));
        } while (acceptOp(","));
        if (acceptKw("where")) {
            clauseStart_ = peek().pos;
            st.where = expr(3075);
        }
    }

    // ---- DELETE
    void del(Statement& st) {
        st.kind = StatementKind::Delete;
        ++p_;
        if (acceptOp("*")) {
        } else if (isName() && peek(1).kind == Tok::Op && peek(1).op[0] == '.' && peek(2).kind == Tok::Op &&
                   peek(2).op[0] == '*') {
            st.deleteQual = name(3075);
            p_ += 2;
        } else if (isName() && !isKw("from")) {
            st.deleteQual = name(3075);  // Delete T From T ...
        }
        expectKw("from", 3075);
        {
            int saved = err_;
            err_ = 3131;
            clauseStart_ = peek().pos;
            do st.from.push_back(fromItem());
            while (acceptOp(","));
            err_ = saved;
        }
        if (peek().kind != Tok::End && !isOp(";") && !isKw("where")) fail(3131);
        if (acceptKw("where")) {
            clauseStart_ = peek().pos;
            st.where = expr(3075);
        }
    }

    // ---- DDL
    static FieldType typeWord(std::string_view w, bool& counter, bool& ok) {
        ok = true;
        counter = false;
        static const struct { const char* w; FieldType t; } words[] = {
            {"long", FieldType::Long}, {"integer", FieldType::Long}, {"int", FieldType::Long},
            {"int4", FieldType::Long}, {"short", FieldType::Integer}, {"smallint", FieldType::Integer},
            {"integer2", FieldType::Integer}, {"int2", FieldType::Integer}, {"byte", FieldType::Byte},
            {"tinyint", FieldType::Byte}, {"integer1", FieldType::Byte}, {"single", FieldType::Single},
            {"real", FieldType::Single}, {"float4", FieldType::Single}, {"ieeesingle", FieldType::Single},
            {"double", FieldType::Double}, {"float", FieldType::Double}, {"float8", FieldType::Double},
            {"number", FieldType::Double}, {"numeric", FieldType::Double}, {"ieeedouble", FieldType::Double},
            {"currency", FieldType::Currency}, {"money", FieldType::Currency},
            {"text", FieldType::Text}, {"varchar", FieldType::Text}, {"char", FieldType::Text},
            {"string", FieldType::Text}, {"alphanumeric", FieldType::Text}, {"nvarchar", FieldType::Text},
            {"memo", FieldType::Memo}, {"longtext", FieldType::Memo}, {"longchar", FieldType::Memo},
            {"note", FieldType::Memo}, {"ntext", FieldType::Memo},
            {"datetime", FieldType::Date}, {"date", FieldType::Date}, {"time", FieldType::Date},
            {"timestamp", FieldType::Date},
            {"yesno", FieldType::Boolean}, {"bit", FieldType::Boolean}, {"logical", FieldType::Boolean},
            {"boolean", FieldType::Boolean}, {"logical1", FieldType::Boolean},
        };
        if (iequals(w, "counter") || iequals(w, "autoincrement") || iequals(w, "identity")) {
            counter = true;
            return FieldType::Long;
        }
        for (auto& x : words)
            if (iequals(w, x.w)) return x.t;
        ok = false;
        return FieldType::Text;
    }

    FieldSpec fieldSpec(int e) {
        FieldSpec f;
        f.name = name(e);
        if (peek().kind != Tok::Ident) fail(e);
        bool counter, ok;
        f.type = typeWord(s_.substr(peek().pos, peek().len), counter, ok);
        if (!ok) fail(e);
        f.counter = counter;
        ++p_;
        if (acceptOp("(")) {
            const Token& t = peek();
            if (t.kind != Tok::Number || !t.integer) fail(e);
            double v = std::strtod(std::string(s_.substr(t.pos, t.len)).c_str(), nullptr);
            ++p_;
            if (acceptOp(",")) {  // COUNTER(seed, step)
                if (peek().kind != Tok::Number) fail(e);
                ++p_;
            }
            expectOp(")", e);
            if (f.type == FieldType::Text) {
                if (v < 1 || v > 255) fail(e);
                f.size = static_cast<int>(v);
            }
        }
        for (;;) {
            if (isKw("not") && isKwAt(1, "null")) {
                p_ += 2;
                f.notNull = true;
            } else if (acceptKw("null")) {
            } else if (isKw("primary")) {
                ++p_;
                expectKw("key", e);
                f.primaryKey = true;
            } else if (acceptKw("unique")) {
                f.unique = true;
            } else if (acceptKw("constraint")) {
                name(e);
                if (isKw("primary")) {
                    ++p_;
                    expectKw("key", e);
                    f.primaryKey = true;
                } else if (acceptKw("unique")) {
                    f.unique = true;
                } else if (isKw("not") && isKwAt(1, "null")) {
                    p_ += 2;
                    f.notNull = true;
                } else {
                    fail(e);
                }
            } else {
                break;
            }
        }
        return f;
    }

    void create(Statement& st) {
        st.kind = StatementKind::Ddl;
        ++p_;
        DdlCommand d;
        if (acceptKw("table")) {
            err_ = 3290;
            d.op = DdlCommand::Op::CreateTable;
            d.table = name(3290);
            expectOp("(", 3290);
            do {
                if (isKw("constraint")) {
                    ++p_;
                    name(3290);
                    tableConstraint(d, 3290);
                } else if (isKw("primary") || isKw("unique")) {
                    tableConstraint(d, 3290);
                } else {
                    d.fields.push_back(fieldSpec(3290));
                }
            } while (acceptOp(","));
            expectOp(")", 3290);
            if (d.fields.empty()) fail(3290);
            for (std::size_t i = 0; i < d.fields.size(); ++i)
                for (std::size_t j = i + 1; j < d.fields.size(); ++j)
                    if (iequals(d.fields[i].name, d.fields[j].name)) raise(3191);
        } else {
            err_ = 3290;
            if (acceptKw("unique")) d.unique = true;
            expectKw("index", 3290);
            d.op = DdlCommand::Op::CreateIndex;
            d.index = name(3290);
            expectKw("on", 3290);
            d.table = name(3290);
            expectOp("(", 3290);
            do {
                d.indexFields.push_back(name(3290));
                if (acceptKw("desc")) d.indexFields.back() = "-" + d.indexFields.back();
                else acceptKw("asc");
            } while (acceptOp(","));
            expectOp(")", 3290);
            if (acceptKw("with")) {
                do {
                    if (acceptKw("primary")) {
                        d.primary = true;
                        d.unique = true;
                    } else if (acceptKw("disallow") || acceptKw("ignore")) {
                        expectKw("null", 3290);
                    } else {
                        fail(3290);
                    }
                } while (true && (isKw("primary") || isKw("disallow") || isKw("ignore")));
            }
        }
        st.ddl = std::move(d);
    }

    void tableConstraint(DdlCommand& d, int e) {
        bool primary = false;
        if (isKw("primary")) {
            ++p_;
            expectKw("key", e);
            primary = true;
        } else {
            expectKw("unique", e);
        }
        expectOp("(", e);
        std::vector<std::string> cols;
        do cols.push_back(name(e));
        while (acceptOp(","));
        expectOp(")", e);
        if (cols.size() == 1) {
            for (auto& f : d.fields)
                if (iequals(f.name, cols[0])) {
                    (primary ? f.primaryKey : f.unique) = true;
                    return;
                }
            fail(e);
        }
        // A key on several fields: mark each (the DAO layer makes one index per field set).
        for (auto& c : cols) {
            bool found = false;
            for (auto& f : d.fields)
                if (iequals(f.name, c)) {
                    found = true;
                    if (primary) f.primaryKey = true;
                }
            if (!found) fail(e);
        }
    }

    void drop(Statement& st) {
        st.kind = StatementKind::Ddl;
        ++p_;
        DdlCommand d;
        if (acceptKw("table")) {
            d.op = DdlCommand::Op::DropTable;
            d.table = name(3295);
        } else if (acceptKw("index")) {
            d.op = DdlCommand::Op::DropIndex;
            d.index = name(3295);
            expectKw("on", 3295);
            d.table = name(3295);
        } else {
            fail(3295);
        }
        st.ddl = std::move(d);
    }

    void alter(Statement& st) {
        st.kind = StatementKind::Ddl;
        ++p_;
        expectKw("table", 3293);
        DdlCommand d;
        d.table = name(3293);
        if (acceptKw("add")) {
            if (isKw("constraint") || isKw("primary") || isKw("unique")) {
                // ADD CONSTRAINT name PRIMARY KEY (c) / UNIQUE (c): an index
                std::string iname = "PrimaryKey";
                if (acceptKw("constraint")) iname = name(3293);
                d.op = DdlCommand::Op::CreateIndex;
                d.index = iname;
                if (acceptKw("primary")) {
                    expectKw("key", 3293);
                    d.primary = d.unique = true;
                } else {
                    expectKw("unique", 3293);
                    d.unique = true;
                }
                expectOp("(", 3293);
                do d.indexFields.push_back(name(3293));
                while (acceptOp(","));
                expectOp(")", 3293);
            } else {
                acceptKw("column");
                d.op = DdlCommand::Op::AddColumn;
                d.fields.push_back(fieldSpec(3293));
            }
        } else if (acceptKw("alter")) {
            acceptKw("column");
            d.op = DdlCommand::Op::AlterColumn;
            d.fields.push_back(fieldSpec(3293));
        } else if (acceptKw("drop")) {
            if (acceptKw("constraint")) {
                d.op = DdlCommand::Op::DropIndex;
                d.index = name(3293);
            } else {
                acceptKw("column");
                d.op = DdlCommand::Op::DropColumn;
                FieldSpec f;
                f.name = name(3293);
                d.fields.push_back(f);
            }
        } else {
            fail(3293);
        }
        st.ddl = std::move(d);
    }
};

}  // namespace

Statement parse(std::string_view text, const std::vector<Token>& tokens) {
    Parser p(text, tokens);
    return p.statement();
}

}  // namespace store::sql::detail
