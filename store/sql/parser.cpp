// Lexer and parser of the dialect: text -> tokens -> syntax tree.
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "store/errors.h"
#include "store/names.h"
#include "store/sql/ast.h"
#include "store/sql/limits.h"

namespace store::sql::detail {

using store::detail::sameName;

namespace {

bool identStart(unsigned char c) { return std::isalpha(c) || c == '_' || c >= 0x80; }
bool identChar(unsigned char c) { return std::isalnum(c) || c == '_' || c >= 0x80; }

[[noreturn]] void lexError(std::string_view text) {
    std::string d(text.substr(0, 200));
    for (auto& c : d)
        if (c == '\0') c = ' ';
    raise(err::SintassiEspressione, d);
}

// Reads the tokens of a text one by one; each scan function reads one kind of token from its start.
class Lexer {
public:
    Lexer(std::string_view text, std::vector<Token>& out) : text_(text), out_(out) {}

    void run() {
        while (i_ < text_.size()) {
            const unsigned char c = at(i_);
            if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
                ++i_;
                continue;
            }
            const std::size_t start = i_;
            if (identStart(c)) identifier(start);
            else if (c == '[') bracketedName(start);
            else if (c == '\'' || c == '"') quotedText(start, static_cast<char>(c));
            else if (startsNumber(c)) number(start);
            else if (c == '#') date(start);
            else op(start, c);
        }
        Token end;
        end.kind = TokenKind::End;
        end.pos = static_cast<std::uint32_t>(text_.size());
        out_.push_back(end);
    }

private:
    std::string_view text_;
    std::vector<Token>& out_;
    std::size_t i_ = 0;
    int literals_ = 0;  // literal tokens so far: the index of the next one

    unsigned char at(std::size_t i) const { return static_cast<unsigned char>(text_[i]); }
    bool digitAt(std::size_t i) const { return i < text_.size() && std::isdigit(at(i)); }
    void skipDigits() {
        while (digitAt(i_)) ++i_;
    }
    [[noreturn]] void error() const { lexError(text_); }

    Token* push(TokenKind kind, std::size_t start, std::size_t end) {
        Token t;
        t.kind = kind;
        t.pos = static_cast<std::uint32_t>(start);
        t.len = static_cast<std::uint32_t>(end - start);
        out_.push_back(t);
        return &out_.back();
    }
    Token* pushLiteral(TokenKind kind, std::size_t start) {
        Token* t = push(kind, start, i_);
        t->lit = literals_++;
        return t;
    }

    void identifier(std::size_t start) {
        while (i_ < text_.size() && identChar(at(i_))) ++i_;
        if (i_ + 1 < text_.size() && at(i_) == '$' && at(i_ + 1) == '(') ++i_;  // Left$(...): a function's text form
        push(TokenKind::Ident, start, i_);
    }

    // [name]: anything but brackets and NUL inside, not empty.
    void bracketedName(std::size_t start) {
        ++i_;
        while (i_ < text_.size() && text_[i_] != ']') {
            if (text_[i_] == '[' || text_[i_] == '\0') error();
            ++i_;
        }
        if (i_ >= text_.size()) error();
        ++i_;
        if (i_ - start <= 2) error();  // []
        push(TokenKind::BIdent, start, i_);
    }

    // 'text' or "text"; a doubled quote stands for one.
    void quotedText(std::size_t start, char quote) {
        ++i_;
        for (;;) {
            if (i_ >= text_.size()) error();
            if (text_[i_] == quote) {
                if (i_ + 1 < text_.size() && text_[i_ + 1] == quote) {
                    i_ += 2;
                    continue;
                }
                ++i_;
                break;
            }
            ++i_;
        }
        pushLiteral(TokenKind::String, start);
    }

    // A digit, or a point before a digit that does not follow a name or ')': after those the
    // point qualifies (T.5 is not T followed by 0.5).
    bool startsNumber(unsigned char c) const {
        if (std::isdigit(c)) return true;
        if (c != '.' || !digitAt(i_ + 1)) return false;
        if (out_.empty()) return true;
        const Token& last = out_.back();
        return last.kind != TokenKind::Ident && last.kind != TokenKind::BIdent &&
               !(last.kind == TokenKind::Op && last.op[0] == ')');
    }

    // digits [. digits] [e [+-] digits]; an 'e' without digits after it is not part of the number.
    void number(std::size_t start) {
        bool integer = true;
        skipDigits();
        if (i_ < text_.size() && text_[i_] == '.') {
            integer = false;
            ++i_;
            skipDigits();
        }
        if (i_ < text_.size() && (text_[i_] == 'e' || text_[i_] == 'E')) {
            std::size_t j = i_ + 1;
            if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) ++j;
            if (digitAt(j)) {
                integer = false;
                i_ = j;
                skipDigits();
            }
        }
        if (i_ < text_.size() && identStart(at(i_))) error();  // 12abc
        pushLiteral(TokenKind::Number, start)->integer = integer;
    }

    // #...# on one line.
    void date(std::size_t start) {
        ++i_;
        while (i_ < text_.size() && text_[i_] != '#' && text_[i_] != '\0' && text_[i_] != '\n') ++i_;
        if (i_ >= text_.size() || text_[i_] != '#') error();
        ++i_;
        pushLiteral(TokenKind::Date, start);
    }

    // <= >= <> or one of = < > + - * / \ ^ & ( ) , . ;
    void op(std::size_t start, unsigned char c) {
        const bool pair = (c == '<' || c == '>') && i_ + 1 < text_.size() &&
                          (text_[i_ + 1] == '=' || (c == '<' && text_[i_ + 1] == '>'));
        if (!pair && (c == '\0' || !std::strchr("=<>+-*/\\^&(),.;", c))) error();
        const std::size_t length = pair ? 2 : 1;
        Token* t = push(TokenKind::Op, start, start + length);
        t->op[0] = static_cast<char>(c);
        if (pair) t->op[1] = text_[i_ + 1];
        i_ += length;
    }
};

}  // namespace

void lex(std::string_view text, std::vector<Token>& out) {
    out.clear();
    if (text.size() > 0x7fffffff) lexError(text);
    Lexer(text, out).run();
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

namespace {
// The power of ten of a number token's leading digit (1 for "5", 3 for "120", 0 for "0.5", -1 for
// "0.05"), exponent included: whether a number out of a double's range is too large or too small.
long long decimalMagnitude(std::string_view digits) {
    long long magnitude = 0;
    bool significant = false, fraction = false;
    std::size_t i = 0;
    for (; i < digits.size() && digits[i] != 'e' && digits[i] != 'E'; ++i) {
        const char c = digits[i];
        if (c == '.') {
            fraction = true;
            continue;
        }
        if (!significant && c == '0') {
            if (fraction) --magnitude;
            continue;
        }
        significant = true;
        if (!fraction) ++magnitude;
    }
    if (i + 1 < digits.size()) {
        std::size_t from = i + 1 + (digits[i + 1] == '+');
        long long exponent = 0;
        auto [end, ec] = std::from_chars(digits.data() + from, digits.data() + digits.size(), exponent);
        if (ec == std::errc::result_out_of_range) exponent = digits[i + 1] == '-' ? -(1LL << 40) : 1LL << 40;
        magnitude += exponent;
    }
    return magnitude;
}
}  // namespace

// from_chars, not strtod: strtod reads the decimal separator of the C locale, so a program that set an
// Italian locale would read "1.5" as 1. Out of range gives what strtod gives: infinity or zero.
double numberTokenValue(std::string_view text, const Token& t) {
    std::string_view digits = text.substr(t.pos, t.len);
    double value = 0;
    auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (ec == std::errc::result_out_of_range) return decimalMagnitude(digits) > 0 ? HUGE_VAL : 0.0;
    return value;
}

std::string_view identValue(std::string_view text, const Token& t) {
    if (t.kind == TokenKind::BIdent) return text.substr(t.pos + 1, t.len - 2);
    return text.substr(t.pos, t.len);
}

std::string_view dateBody(std::string_view text, const Token& t) { return text.substr(t.pos + 1, t.len - 2); }

char literalKind(std::string_view text, const Token& t) {
    switch (t.kind) {
        case TokenKind::String: return 'S';
        case TokenKind::Date: return 'T';
        case TokenKind::Number: {
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
    Parser(std::string_view text, const std::vector<Token>& toks) : text_(text), tokens_(toks) {}

    Statement statement() {
        Statement st;
        if (isKw("select")) {
            err_ = err::SintassiSelect;
            st.kind = StatementKind::Select;
            st.select = select();
        } else if (isKw("insert")) {
            err_ = err::SintassiInsertInto;
            insert(st);
        } else if (isKw("update")) {
            err_ = err::SintassiUpdate;
            update(st);
        } else if (isKw("delete")) {
            err_ = err::SintassiEspressione;
            del(st);
        } else if (isKw("create")) {
            create(st);
        } else if (isKw("drop")) {
            err_ = err::SintassiDrop;
            drop(st);
        } else if (isKw("alter")) {
            err_ = err::SintassiAlterTable;
            alter(st);
        } else if (peek().kind == TokenKind::Op && peek().op[0] == '(' && lookSelectInParens()) {
            err_ = err::SintassiSelect;
            st.kind = StatementKind::Select;
            st.select = select();
        } else {
            raise(err::IstruzioneNonValida);
        }
        if (isOp(";")) {
            ++pos_;
            if (peek().kind != TokenKind::End) raise(err::CaratteriDopoIstruzione);  // characters after the end of the statement
        }
        if (peek().kind != TokenKind::End) {
            if (st.kind == StatementKind::Select) fail(pendingClauseErr());
            fail(err_);
        }
        return st;
    }

private:
    std::string_view text_;
    const std::vector<Token>& tokens_;
    std::size_t pos_ = 0;
    int err_ = err::SintassiEspressione;     // error number of the clause being read
    int depth_ = 0;
    std::uint32_t clauseStart_ = 0;

    // ---- token helpers
    const Token& peek(std::size_t k = 0) const {
        std::size_t i = pos_ + k;
        return i < tokens_.size() ? tokens_[i] : tokens_.back();
    }
    bool isKwAt(std::size_t k, const char* kw) const {
        const Token& t = peek(k);
        return t.kind == TokenKind::Ident && sameName(text_.substr(t.pos, t.len), kw);
    }
    bool isKw(const char* kw) const { return isKwAt(0, kw); }
    bool acceptKw(const char* kw) {
        if (isKw(kw)) {
            ++pos_;
            return true;
        }
        return false;
    }
    void expectKw(const char* kw, int e) {
        if (!acceptKw(kw)) fail(e);
    }
    bool isOp(const char* o) const {
        const Token& t = peek();
        return t.kind == TokenKind::Op && std::strncmp(t.op, o, 3) == 0;
    }
    bool acceptOp(const char* o) {
        if (isOp(o)) {
            ++pos_;
            return true;
        }
        return false;
    }
    void expectOp(const char* o, int e) {
        if (!acceptOp(o)) fail(e);
    }
    static bool reserved(std::string_view w) {
        for (const char* r : kReserved)
            if (sameName(w, r)) return true;
        return false;
    }
    bool isName(std::size_t k = 0) const {
        const Token& t = peek(k);
        if (t.kind == TokenKind::BIdent) return true;
        return t.kind == TokenKind::Ident && !reserved(text_.substr(t.pos, t.len));
    }
    std::string name(int e) {
        if (!isName()) fail(e);
        return std::string(identValue(text_, tokens_[pos_++]));
    }

    [[noreturn]] void fail(int e) {
        if (e == err::SintassiEspressione) {
            std::uint32_t from = clauseStart_;
            std::string d(text_.substr(std::min<std::size_t>(from, text_.size()), 200));
            for (auto& c : d)
                if (c == '\0') c = ' ';
            while (!d.empty() && d.back() == ' ') d.pop_back();
            raise(err::SintassiEspressione, d);
        }
        raise(e);
    }
    void enter() {
        if (++depth_ > kMaxDepth) raiseNestingLimit(kMaxDepth);
    }
    void leave() { --depth_; }

    bool lookSelectInParens() const {
        std::size_t k = 0;
        while (peek(k).kind == TokenKind::Op && peek(k).op[0] == '(') ++k;
        return isKwAt(k, "select");
    }

    // After a SELECT's last clause: the next token tells which clause is broken.
    int pendingClauseErr() const { return lastClauseErr_; }
    int lastClauseErr_ = err::SintassiSelect;

    // ---- SELECT
    std::unique_ptr<Select> select() {
        enter();
        auto sel = std::make_unique<Select>();
        sel->cores.push_back(core());
        while (isKw("union")) {
            ++pos_;
            bool all = acceptKw("all");
            sel->unionAll.push_back(all);
            bool paren = false;
            if (isOp("(") && lookSelectInParens()) {
                paren = true;
                ++pos_;
            }
            if (!isKw("select")) fail(err::SintassiUnione);
            sel->cores.push_back(core());
            if (paren) expectOp(")", err::SintassiUnione);
        }
        if (isKw("order")) {
            ++pos_;
            int saved = err_;
            err_ = err::SintassiOrderBy;
            lastClauseErr_ = err::SintassiOrderBy;
            expectKw("by", err::SintassiOrderBy);
            clauseStart_ = peek().pos;
            do {
                OrderItem oi;
                oi.expr = expr(err::SintassiOrderBy);
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
        expectKw("select", err::SintassiSelect);
        lastClauseErr_ = err::SintassiSelect;
        selectHead(c);
        clauseStart_ = peek().pos;
        do c.items.push_back(selectItem());
        while (acceptOp(","));
        if (acceptKw("into")) fail(err::SintassiSelect);  // SELECT INTO is not supported
        if (acceptKw("from")) fromClause(c);
        if (acceptKw("where")) c.where = condition();
        if (isKw("group")) {
            ++pos_;
            expectKw("by", err::SintassiEspressione);
            lastClauseErr_ = err::SintassiEspressione;
            clauseStart_ = peek().pos;
            do c.groupBy.push_back(expr(err::SintassiEspressione));
            while (acceptOp(","));
            if (!clauseEnd()) fail(err::SintassiEspressione);
        }
        if (acceptKw("having")) c.having = condition();
        if (c.from.empty() && (c.where || !c.groupBy.empty() || c.having)) fail(err::SintassiSelect);
        return c;
    }

    // [DISTINCT | DISTINCTROW | ALL] [TOP n [PERCENT]]
    void selectHead(SelectCore& c) {
        if (acceptKw("distinct")) c.distinct = true;
        else if (!acceptKw("distinctrow")) acceptKw("all");
        if (acceptKw("top")) {
            const Token& t = peek();
            if (t.kind != TokenKind::Number || !t.integer) fail(err::SintassiSelect);
            c.top = true;
            c.topLit = t.lit;
            c.topN = numberTokenValue(text_, t);
            ++pos_;
            if (acceptKw("percent")) c.percent = true;
        }
    }

    // *, T.*, or an expression [AS name | AS 'text'].
    SelItem selectItem() {
        SelItem it;
        if (isOp("*")) {
            ++pos_;
            it.star = true;
            return it;
        }
        if (isName() && peek(1).kind == TokenKind::Op && peek(1).op[0] == '.' && peek(2).kind == TokenKind::Op &&
            peek(2).op[0] == '*') {
            it.star = true;
            it.starQual = name(err::SintassiSelect);
            pos_ += 2;
            return it;
        }
        it.expr = expr(err::SintassiEspressione);
        if (acceptKw("as")) {
            if (peek().kind == TokenKind::String) {
                it.alias = stringValue(text_, tokens_[pos_++]);
                it.aliasLiteral = true;
            } else {
                it.alias = name(err::SintassiSelect);
            }
        } else if (isName()) {
            fail(err::SintassiSelect);  // missing operator or comma
        }
        return it;
    }

    void fromClause(SelectCore& c) {
        lastClauseErr_ = err::SintassiFrom;
        fromList(c.from);
        // What follows a FROM list must start a clause.
        if (peek().kind != TokenKind::End && !isOp(";") && !isOp(")") && !isKw("where") && !isKw("group") &&
            !isKw("having") && !isKw("order") && !isKw("union"))
            fail(err::SintassiFrom);
    }

    // The comma list of FROM items, read with the FROM clause's error number.
    void fromList(std::vector<FromP>& out) {
        int saved = err_;
        err_ = err::SintassiFrom;
        clauseStart_ = peek().pos;
        do out.push_back(fromItem());
        while (acceptOp(","));
        err_ = saved;
    }

    // The condition of WHERE or HAVING, which must end where a clause starts.
    ExprP condition() {
        lastClauseErr_ = err::SintassiEspressione;
        clauseStart_ = peek().pos;
        ExprP e = expr(err::SintassiEspressione);
        if (!clauseEnd()) fail(err::SintassiEspressione);
        return e;
    }

    bool clauseEnd() const {
        return peek().kind == TokenKind::End || isOp(";") || isOp(")") || isKw("group") || isKw("having") ||
               isKw("order") || isKw("union");
    }

    FromP fromItem() {
        enter();
        FromP left = fromPrimary();
        for (;;) {
            FromItem::JoinKind join;
            if (isKw("inner")) join = FromItem::JoinKind::Inner;
            else if (isKw("left")) join = FromItem::JoinKind::Left;
            else if (isKw("right")) join = FromItem::JoinKind::Right;
            else break;
            ++pos_;
            if (join != FromItem::JoinKind::Inner) acceptKw("outer");
            expectKw("join", err::SintassiFrom);
            auto jn = std::make_unique<FromItem>();
            jn->kind = FromItem::Kind::Join;
            jn->join = join;
            jn->left = std::move(left);
            jn->right = fromPrimary();
            expectKw("on", err::SintassiFrom);
            std::uint32_t cs = clauseStart_;
            clauseStart_ = peek().pos;
            jn->on = expr(err::SintassiEspressione);
            clauseStart_ = cs;
            left = std::move(jn);
        }
        leave();
        return left;
    }

    FromP fromPrimary() {
        if (isOp("(")) {
            if (lookSelectInParens()) {
                ++pos_;
                auto f = std::make_unique<FromItem>();
                f->kind = FromItem::Kind::Derived;
                int saved = err_;
                f->sub = select();
                err_ = saved;
                expectOp(")", err::SintassiFrom);
                alias(f->alias);
                return f;
            }
            ++pos_;
            enter();
            FromP inner = fromItem();
            leave();
            expectOp(")", err::SintassiFrom);
            if (inner->kind != FromItem::Kind::Join) {
                // "(T)" alone: allowed, as a table in parentheses
            }
            return inner;
        }
        auto f = std::make_unique<FromItem>();
        f->kind = FromItem::Kind::Table;
        f->name = name(err::SintassiFrom);
        alias(f->alias);
        return f;
    }

    void alias(std::string& a) {
        if (acceptKw("as")) {
            a = name(err::SintassiFrom);
        } else if (isName()) {
            a = name(err::SintassiFrom);
        }
    }

    // ---- expressions
    ExprP mk(Expr::Kind kind, std::uint32_t pos) {
        auto e = std::make_unique<Expr>();
        e->kind = kind;
        e->pos = pos;
        return e;
    }
    void finish(Expr& e) {
        e.end = pos_ > 0 ? tokens_[pos_ - 1].pos + tokens_[pos_ - 1].len : 0;
        int d = 0;
        bool chainOp = e.kind == Expr::Kind::Binary && (e.op == Operator::And || e.op == Operator::Or || e.op == Operator::Cat);
        for (std::size_t i = 0; i < e.args.size(); ++i) {
            const auto& a = e.args[i];
            if (!a) continue;
            int ad = a->depth;
            if (chainOp && i == 0 && a->kind == Expr::Kind::Binary && a->op == e.op) {
                ad -= 1;  // a link of the chain: written flat
                e.chain = a->chain + 1;
            }
            if (ad > d) d = ad;
        }
        e.depth = d + 1;
        if (e.depth > kMaxExprDepth) raiseNestingLimit(kMaxExprDepth);
        if (e.chain > kMaxChain) raiseChainLimit(kMaxChain);
    }
    ExprP binary(Operator op, ExprP l, ExprP r) {
        auto e = mk(Expr::Kind::Binary, l->pos);
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
        while (acceptKw("imp")) l = binary(Operator::Imp, std::move(l), parseEqv());
        return l;
    }
    ExprP parseEqv() {
        ExprP l = parseXor();
        while (acceptKw("eqv")) l = binary(Operator::Eqv, std::move(l), parseXor());
        return l;
    }
    ExprP parseXor() {
        ExprP l = parseOr();
        while (acceptKw("xor")) l = binary(Operator::Xor, std::move(l), parseOr());
        return l;
    }
    ExprP parseOr() {
        ExprP l = parseAnd();
        while (acceptKw("or")) l = binary(Operator::Or, std::move(l), parseAnd());
        return l;
    }
    ExprP parseAnd() {
        ExprP l = parseNot();
        while (acceptKw("and")) l = binary(Operator::And, std::move(l), parseNot());
        return l;
    }
    ExprP parseNot() {
        if (isKw("not")) {
            std::uint32_t pos = peek().pos;
            ++pos_;
            enter();
            ExprP a = parseNot();
            leave();
            return unaryNode(Operator::Not, pos, std::move(a));
        }
        return parseCmp();
    }
    // Comparisons and the predicates Like, Is [Not] Null, [Not] Between, [Not] In, left to right.
    ExprP parseCmp() {
        ExprP l = parseCat();
        for (;;) {
            if (peek().kind == TokenKind::Op) {
                std::optional<Operator> op = comparisonOperator();
                if (!op) break;
                ++pos_;
                l = binary(*op, std::move(l), parseCat());
                continue;
            }
            const std::size_t save = pos_;
            const bool negated = isKw("not") && (isKwAt(1, "like") || isKwAt(1, "in") || isKwAt(1, "between"));
            if (negated) ++pos_;
            if (acceptKw("like")) {
                l = binary(Operator::Like, std::move(l), parseCat());
                if (negated) l = wrapNot(std::move(l));
            } else if (acceptKw("is")) {
                l = isNullTest(std::move(l));
            } else if (acceptKw("between")) {
                l = between(std::move(l), negated);
            } else if (acceptKw("in")) {
                l = in(std::move(l), negated);
            } else {
                pos_ = save;
                break;
            }
        }
        return l;
    }

    std::optional<Operator> comparisonOperator() const {
        if (isOp("=")) return Operator::Eq;
        if (isOp("<>")) return Operator::Ne;
        if (isOp("<")) return Operator::Lt;
        if (isOp(">")) return Operator::Gt;
        if (isOp("<=")) return Operator::Le;
        if (isOp(">=")) return Operator::Ge;
        return std::nullopt;
    }

    ExprP isNullTest(ExprP tested) {
        bool negated = acceptKw("not");
        expectKw("null", err_);
        auto e = mk(Expr::Kind::IsNull, tested->pos);
        e->negated = negated;
        e->args.push_back(std::move(tested));
        finish(*e);
        return e;
    }

    ExprP between(ExprP tested, bool negated) {
        auto e = mk(Expr::Kind::Between, tested->pos);
        e->negated = negated;
        e->args.push_back(std::move(tested));
        e->args.push_back(parseCat());
        expectKw("and", err_);
        e->args.push_back(parseCat());
        finish(*e);
        return e;
    }

    // In (SELECT ...) or In (a, b, ...).
    ExprP in(ExprP tested, bool negated) {
        expectOp("(", err_);
        const bool subquery = isKw("select");
        auto e = mk(subquery ? Expr::Kind::InSelect : Expr::Kind::InList, tested->pos);
        e->negated = negated;
        e->args.push_back(std::move(tested));
        if (subquery) {
            subSelectThenClose(*e);
            return e;
        }
        do e->args.push_back(parseImp());
        while (acceptOp(","));
        expectOp(")", err_);
        finish(*e);
        return e;
    }

    ExprP unaryNode(Operator op, std::uint32_t pos, ExprP operand) {
        auto e = mk(Expr::Kind::Unary, pos);
        e->op = op;
        e->args.push_back(std::move(operand));
        finish(*e);
        return e;
    }
    ExprP wrapNot(ExprP a) {
        const std::uint32_t pos = a->pos;
        return unaryNode(Operator::Not, pos, std::move(a));
    }
    ExprP parseCat() {
        ExprP l = parseAdd();
        while (acceptOp("&")) l = binary(Operator::Cat, std::move(l), parseAdd());
        return l;
    }
    ExprP parseAdd() {
        ExprP l = parseMod();
        for (;;) {
            if (acceptOp("+")) l = binary(Operator::Add, std::move(l), parseMod());
            else if (acceptOp("-")) l = binary(Operator::Sub, std::move(l), parseMod());
            else break;
        }
        return l;
    }
    ExprP parseMod() {
        ExprP l = parseIDiv();
        while (acceptKw("mod")) l = binary(Operator::Mod, std::move(l), parseIDiv());
        return l;
    }
    ExprP parseIDiv() {
        ExprP l = parseMul();
        while (acceptOp("\\")) l = binary(Operator::IDiv, std::move(l), parseMul());
        return l;
    }
    ExprP parseMul() {
        ExprP l = parseNeg();
        for (;;) {
            if (acceptOp("*")) l = binary(Operator::Mul, std::move(l), parseNeg());
            else if (acceptOp("/")) l = binary(Operator::Div, std::move(l), parseNeg());
            else break;
        }
        return l;
    }
    ExprP parseNeg() {
        if (isOp("-") || isOp("+")) {
            std::uint32_t pos = peek().pos;
            Operator op = isOp("-") ? Operator::Neg : Operator::Pos;
            ++pos_;
            enter();
            ExprP a = parseNeg();
            leave();
            return unaryNode(op, pos, std::move(a));
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
                Operator op = isOp("-") ? Operator::Neg : Operator::Pos;
                ++pos_;
                r = unaryNode(op, pos, parsePrimary());
            } else {
                r = parsePrimary();
            }
            l = binary(Operator::Pow, std::move(l), std::move(r));
        }
        return l;
    }

    ExprP parsePrimary() {
        const Token& t = peek();
        switch (t.kind) {
            case TokenKind::String:
            case TokenKind::Number:
            case TokenKind::Date: return literal(t);
            case TokenKind::Op:
                if (t.op[0] == '(') return parenthesized();
                fail(err_);
            case TokenKind::Ident: return word(t);
            case TokenKind::BIdent: return column(t);
            case TokenKind::End:
            default: fail(err_);
        }
    }

    // A text, number or date literal.
    ExprP literal(const Token& t) {
        auto e = mk(Expr::Kind::Lit, t.pos);
        e->litIndex = t.lit;
        if (t.kind == TokenKind::String) {
            e->lit = 'S';
            e->text = stringValue(text_, t);
        } else if (t.kind == TokenKind::Number) {
            e->lit = literalKind(text_, t);
            e->num = numberTokenValue(text_, t);
        } else {
            e->lit = 'T';
            e->text = std::string(dateBody(text_, t));
        }
        ++pos_;
        finish(*e);
        return e;
    }

    // ( expression ) or ( SELECT ... ) as a value.
    ExprP parenthesized() {
        const std::uint32_t pos = peek().pos;
        ++pos_;
        if (isKw("select")) {
            auto e = mk(Expr::Kind::SubQuery, pos);
            subSelectThenClose(*e);
            return e;
        }
        enter();
        ExprP e = parseImp();
        leave();
        expectOp(")", err_);
        return e;
    }

    // The SELECT of a subquery, whose clauses have their own error numbers, and its ')'.
    void subSelectThenClose(Expr& e) {
        int saved = err_;
        e.sub = select();
        err_ = saved;
        expectOp(")", err_);
        finish(e);
    }

    // A word: Null, True, False, Exists (...), a function call, Now/Date/Time without
    // parentheses, or a column.
    ExprP word(const Token& t) {
        std::string_view w = text_.substr(t.pos, t.len);
        if (sameName(w, "null") || sameName(w, "true") || sameName(w, "false")) {
            auto e = mk(Expr::Kind::Lit, t.pos);
            e->lit = sameName(w, "null") ? 'N' : 'B';
            e->num = sameName(w, "true") ? -1 : 0;
            ++pos_;
            finish(*e);
            return e;
        }
        if (sameName(w, "exists")) return exists(t);
        // a function call: a plain name followed by '(' (Left and Right are also join words)
        if (peek(1).kind == TokenKind::Op && peek(1).op[0] == '(' &&
            (!reserved(w) || sameName(w, "left") || sameName(w, "right") || sameName(w, "asc")))
            return functionCall(t);
        if (reserved(w)) fail(err_);
        const bool qualified = peek(1).kind == TokenKind::Op && peek(1).op[0] == '.';
        if ((sameName(w, "now") || sameName(w, "date") || sameName(w, "time")) && !qualified) {
            auto e = mk(Expr::Kind::Func, t.pos);
            e->text = std::string(w);
            ++pos_;
            finish(*e);
            return e;
        }
        return column(t);
    }

    ExprP exists(const Token& t) {
        ++pos_;
        expectOp("(", err_);
        if (!isKw("select")) fail(err_);
        auto e = mk(Expr::Kind::Exists, t.pos);
        subSelectThenClose(*e);
        return e;
    }

    // name(), name(*), name(a, b, ...). Count(Distinct x) is not of the dialect and is refused.
    ExprP functionCall(const Token& t) {
        auto e = mk(Expr::Kind::Func, t.pos);
        e->text = std::string(text_.substr(t.pos, t.len));
        pos_ += 2;
        if (acceptOp(")")) {
            finish(*e);
            return e;
        }
        if (isOp("*")) {
            ++pos_;
            e->star = true;
            expectOp(")", err_);
            finish(*e);
            return e;
        }
        if (acceptKw("distinct")) fail(err_);
        enter();
        do e->args.push_back(parseImp());
        while (acceptOp(","));
        leave();
        expectOp(")", err_);
        finish(*e);
        return e;
    }

    // name or qual.name; a third part is refused.
    ExprP column(const Token& t) {
        auto e = mk(Expr::Kind::Col, t.pos);
        e->text = std::string(identValue(text_, t));
        ++pos_;
        if (isOp(".")) {
            ++pos_;
            if (!isName() && !(peek().kind == TokenKind::Ident)) fail(err_);
            e->qual = std::move(e->text);
            e->text = std::string(identValue(text_, tokens_[pos_]));
            ++pos_;
            if (isOp(".")) fail(err_);
        }
        finish(*e);
        return e;
    }

    // ---- INSERT
    void insert(Statement& st) {
        st.kind = StatementKind::Insert;
        ++pos_;
        expectKw("into", err::SintassiInsertInto);
        st.table = name(err::SintassiInsertInto);
        if (isOp("(") && !lookSelectInParens()) {
            ++pos_;
            do st.columns.push_back(name(err::SintassiInsertInto));
            while (acceptOp(","));
            expectOp(")", err::SintassiInsertInto);
        }
        if (acceptKw("values")) {
            expectOp("(", err::SintassiInsertInto);
            clauseStart_ = peek().pos;
            do st.values.push_back(expr(err::SintassiInsertInto));
            while (acceptOp(","));
            expectOp(")", err::SintassiInsertInto);
        } else if (isKw("select") || isOp("(")) {
            bool paren = acceptOp("(");
            int saved = err_;
            err_ = err::SintassiSelect;
            st.select = select();
            err_ = saved;
            if (paren) expectOp(")", err::SintassiInsertInto);
        } else {
            fail(err::SintassiInsertInto);
        }
    }

    // ---- UPDATE
    void update(Statement& st) {
        st.kind = StatementKind::Update;
        ++pos_;
        {
            int saved = err_;
            err_ = err::SintassiUpdate;
            st.from.push_back(fromItem());
            err_ = saved;
        }
        expectKw("set", err::SintassiUpdate);
        clauseStart_ = peek().pos;
        do {
            Assignment a;
            a.column = name(err::SintassiUpdate);
            if (acceptOp(".")) {
                a.qual = std::move(a.column);
                a.column = name(err::SintassiUpdate);
            }
            expectOp("=", err::SintassiUpdate);
            a.value = expr(err::SintassiUpdate);
            st.sets.push_back(std::move(a));
        } while (acceptOp(","));
        if (acceptKw("where")) {
            clauseStart_ = peek().pos;
            st.where = expr(err::SintassiEspressione);
        }
    }

    // ---- DELETE
    void del(Statement& st) {
        st.kind = StatementKind::Delete;
        ++pos_;
        if (acceptOp("*")) {
        } else if (isName() && peek(1).kind == TokenKind::Op && peek(1).op[0] == '.' && peek(2).kind == TokenKind::Op &&
                   peek(2).op[0] == '*') {
            st.deleteQual = name(err::SintassiEspressione);
            pos_ += 2;
        } else if (isName() && !isKw("from")) {
            st.deleteQual = name(err::SintassiEspressione);  // Delete T From T ...
        }
        expectKw("from", err::SintassiEspressione);
        fromList(st.from);
        if (peek().kind != TokenKind::End && !isOp(";") && !isKw("where")) fail(err::SintassiFrom);
        if (acceptKw("where")) {
            clauseStart_ = peek().pos;
            st.where = expr(err::SintassiEspressione);
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
        if (sameName(w, "counter") || sameName(w, "autoincrement") || sameName(w, "identity")) {
            counter = true;
            return FieldType::Long;
        }
        for (auto& x : words)
            if (sameName(w, x.w)) return x.t;
        ok = false;
        return FieldType::Text;
    }

    FieldSpec fieldSpec(int e) {
        FieldSpec f;
        f.name = name(e);
        if (peek().kind != TokenKind::Ident) fail(e);
        bool counter, ok;
        f.type = typeWord(text_.substr(peek().pos, peek().len), counter, ok);
        if (!ok) fail(e);
        f.counter = counter;
        ++pos_;
        if (acceptOp("(")) {
            const Token& t = peek();
            if (t.kind != TokenKind::Number || !t.integer) fail(e);
            double v = numberTokenValue(text_, t);
            ++pos_;
            if (acceptOp(",")) {  // COUNTER(seed, step)
                if (peek().kind != TokenKind::Number) fail(e);
                ++pos_;
            }
            expectOp(")", e);
            if (f.type == FieldType::Text) {
                if (v < 1 || v > 255) fail(e);
                f.size = static_cast<int>(v);
            }
        }
        for (;;) {
            if (isKw("not") && isKwAt(1, "null")) {
                pos_ += 2;
                f.notNull = true;
            } else if (acceptKw("null")) {
            } else if (isKw("primary")) {
                ++pos_;
                expectKw("key", e);
                f.primaryKey = true;
            } else if (acceptKw("unique")) {
                f.unique = true;
            } else if (acceptKw("constraint")) {
                name(e);
                if (isKw("primary")) {
                    ++pos_;
                    expectKw("key", e);
                    f.primaryKey = true;
                } else if (acceptKw("unique")) {
                    f.unique = true;
                } else if (isKw("not") && isKwAt(1, "null")) {
                    pos_ += 2;
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
        ++pos_;
        DdlCommand d;
        if (acceptKw("table")) {
            err_ = err::SintassiCreateTable;
            d.op = DdlCommand::Op::CreateTable;
            d.table = name(err::SintassiCreateTable);
            expectOp("(", err::SintassiCreateTable);
            do {
                if (isKw("constraint")) {
                    ++pos_;
                    name(err::SintassiCreateTable);
                    tableConstraint(d, err::SintassiCreateTable);
                } else if (isKw("primary") || isKw("unique")) {
                    tableConstraint(d, err::SintassiCreateTable);
                } else {
                    d.fields.push_back(fieldSpec(err::SintassiCreateTable));
                }
            } while (acceptOp(","));
            expectOp(")", err::SintassiCreateTable);
            if (d.fields.empty()) fail(err::SintassiCreateTable);
            for (std::size_t i = 0; i < d.fields.size(); ++i)
                for (std::size_t j = i + 1; j < d.fields.size(); ++j)
                    if (sameName(d.fields[i].name, d.fields[j].name)) raise(err::CampoDefinitoPiuVolte);
        } else {
            err_ = err::SintassiCreateTable;
            if (acceptKw("unique")) d.unique = true;
            expectKw("index", err::SintassiCreateTable);
            d.op = DdlCommand::Op::CreateIndex;
            d.index = name(err::SintassiCreateTable);
            expectKw("on", err::SintassiCreateTable);
            d.table = name(err::SintassiCreateTable);
            expectOp("(", err::SintassiCreateTable);
            do {
                d.indexFields.push_back(name(err::SintassiCreateTable));
                if (acceptKw("desc")) d.indexFields.back() = "-" + d.indexFields.back();
                else acceptKw("asc");
            } while (acceptOp(","));
            expectOp(")", err::SintassiCreateTable);
            if (acceptKw("with")) {
                do {
                    if (acceptKw("primary")) {
                        d.primary = true;
                        d.unique = true;
                    } else if (acceptKw("disallow") || acceptKw("ignore")) {
                        expectKw("null", err::SintassiCreateTable);
                    } else {
                        fail(err::SintassiCreateTable);
                    }
                } while (true && (isKw("primary") || isKw("disallow") || isKw("ignore")));
            }
        }
        st.ddl = std::move(d);
    }

    void tableConstraint(DdlCommand& d, int e) {
        bool primary = false;
        if (isKw("primary")) {
            ++pos_;
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
                if (sameName(f.name, cols[0])) {
                    (primary ? f.primaryKey : f.unique) = true;
                    return;
                }
            fail(e);
        }
        // A key on several fields: mark each (the DAO layer makes one index per field set).
        for (auto& c : cols) {
            bool found = false;
            for (auto& f : d.fields)
                if (sameName(f.name, c)) {
                    found = true;
                    if (primary) f.primaryKey = true;
                }
            if (!found) fail(e);
        }
    }

    void drop(Statement& st) {
        st.kind = StatementKind::Ddl;
        ++pos_;
        DdlCommand d;
        if (acceptKw("table")) {
            d.op = DdlCommand::Op::DropTable;
            d.table = name(err::SintassiDrop);
        } else if (acceptKw("index")) {
            d.op = DdlCommand::Op::DropIndex;
            d.index = name(err::SintassiDrop);
            expectKw("on", err::SintassiDrop);
            d.table = name(err::SintassiDrop);
        } else {
            fail(err::SintassiDrop);
        }
        st.ddl = std::move(d);
    }

    void alter(Statement& st) {
        st.kind = StatementKind::Ddl;
        ++pos_;
        expectKw("table", err::SintassiAlterTable);
        DdlCommand d;
        d.table = name(err::SintassiAlterTable);
        if (acceptKw("add")) {
            if (isKw("constraint") || isKw("primary") || isKw("unique")) {
                // ADD CONSTRAINT name PRIMARY KEY (c) / UNIQUE (c): an index
                std::string iname = "PrimaryKey";
                if (acceptKw("constraint")) iname = name(err::SintassiAlterTable);
                d.op = DdlCommand::Op::CreateIndex;
                d.index = iname;
                if (acceptKw("primary")) {
                    expectKw("key", err::SintassiAlterTable);
                    d.primary = d.unique = true;
                } else {
                    expectKw("unique", err::SintassiAlterTable);
                    d.unique = true;
                }
                expectOp("(", err::SintassiAlterTable);
                do d.indexFields.push_back(name(err::SintassiAlterTable));
                while (acceptOp(","));
                expectOp(")", err::SintassiAlterTable);
            } else {
                acceptKw("column");
                d.op = DdlCommand::Op::AddColumn;
                d.fields.push_back(fieldSpec(err::SintassiAlterTable));
            }
        } else if (acceptKw("alter")) {
            acceptKw("column");
            d.op = DdlCommand::Op::AlterColumn;
            d.fields.push_back(fieldSpec(err::SintassiAlterTable));
        } else if (acceptKw("drop")) {
            if (acceptKw("constraint")) {
                d.op = DdlCommand::Op::DropIndex;
                d.index = name(err::SintassiAlterTable);
            } else {
                acceptKw("column");
                d.op = DdlCommand::Op::DropColumn;
                FieldSpec f;
                f.name = name(err::SintassiAlterTable);
                d.fields.push_back(f);
            }
        } else {
            fail(err::SintassiAlterTable);
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
