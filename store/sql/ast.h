// Internal to the translator: tokens, syntax tree, lexer and parser.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/sql/translator.h"

namespace store::sql::detail {

// ---- lexer -------------------------------------------------------------------------------------
enum class TokenKind : std::uint8_t { End, Ident, BIdent, String, Number, Date, Op };

struct Token {
    TokenKind kind = TokenKind::End;
    std::uint32_t pos = 0;  // byte offset in the text
    std::uint32_t len = 0;  // bytes of the raw token
    int lit = -1;           // literal index (String, Number, Date) in source order
    bool integer = false;   // Number: no '.', no exponent
    char op[3] = {0, 0, 0}; // Op: "<=", "(", ...
};

// Splits text into tokens. Throws JetError(3075) on a character that starts no token, an
// unclosed quote, bracket or #. Literal tokens get consecutive indexes.
void lex(std::string_view text, std::vector<Token>& out);

// The value of a literal token: text without quotes (doubled quotes undone), a number, a date.
std::string stringValue(std::string_view text, const Token& t);
std::string_view identValue(std::string_view text, const Token& t);  // without brackets
std::string_view dateBody(std::string_view text, const Token& t);
double numberTokenValue(std::string_view text, const Token& t);  // independent of the C locale

// The literal's kind as it enters the cache key and the binder: 'S' text, 'I' integer that fits a
// Long, 'D' any other number, 'T' date.
char literalKind(std::string_view text, const Token& t);

// ---- syntax tree -------------------------------------------------------------------------------
enum class Operator : std::uint8_t {
    Pow, Mul, Div, IDiv, Mod, Add, Sub, Cat,
    Eq, Ne, Lt, Gt, Le, Ge, Like,
    And, Or, Xor, Eqv, Imp,
    Neg, Pos, Not
};

struct Select;

struct Expr {
    enum class Kind : std::uint8_t {
        Lit,       // lit: 'S' 'I' 'D' 'T', or 'N' Null, 'B' True/False (num -1/0)
        Col,       // qual.name (qual may be empty)
        Unary,     // op, args[0]
        Binary,    // op, args[0], args[1]
        Func,      // name(args); star for Count(*); distinct for Count(Distinct x)
        IsNull,    // args[0] Is [Not] Null
        Between,   // args[0] [Not] Between args[1] And args[2]
        InList,    // args[0] [Not] In (args[1..])
        InSelect,  // args[0] [Not] In (sub)
        Exists,    // [Not] Exists (sub)
        SubQuery   // (sub) as a value
    };
    Kind kind = Kind::Lit;
    Operator op = Operator::Add;
    bool negated = false;
    bool star = false;
    char lit = 0;
    int litIndex = -1;
    double num = 0;           // 'I', 'D', 'B'
    std::string text;         // 'S' value; 'T' body; Col name; Func name
    std::string qual;         // Col qualifier
    std::uint32_t pos = 0, end = 0;  // source span
    int depth = 1;            // nesting, not counting the links of a chain of And, Or, &
    int chain = 1;            // terms of such a chain ending here
    std::vector<std::unique_ptr<Expr>> args;
    std::unique_ptr<Select> sub;
};
using ExprP = std::unique_ptr<Expr>;

struct FromItem {
    enum class Kind : std::uint8_t { Table, Derived, Join };
    Kind kind = Kind::Table;
    std::string name;   // Table
    std::string alias;  // Table, Derived
    std::unique_ptr<Select> sub;
    enum class JoinKind : std::uint8_t { Inner, Left, Right } join = JoinKind::Inner;
    std::unique_ptr<FromItem> left, right;
    ExprP on;
};
using FromP = std::unique_ptr<FromItem>;

struct SelItem {
    ExprP expr;         // null for '*' or 'T.*'
    std::string alias;
    std::string starQual;  // 'T.*': T; '*': ""
    bool star = false;
    bool aliasLiteral = false;  // AS 'text': the name comes from a literal
};

struct SelectCore {
    bool distinct = false;
    bool top = false, percent = false;
    double topN = 0;
    int topLit = -1;
    std::vector<SelItem> items;
    std::vector<FromP> from;  // comma list
    ExprP where;
    std::vector<ExprP> groupBy;
    ExprP having;
};

struct OrderItem {
    ExprP expr;
    bool desc = false;
};

struct Select {
    std::vector<SelectCore> cores;  // UNION of these
    std::vector<bool> unionAll;     // cores.size()-1 entries
    std::vector<OrderItem> orderBy;
};

struct Assignment {
    std::string qual, column;
    ExprP value;
};

struct Statement {
    StatementKind kind = StatementKind::Select;
    std::unique_ptr<Select> select;  // Select; Insert ... Select
    // Insert
    std::string table;
    std::vector<std::string> columns;
    std::vector<ExprP> values;
    // Update / Delete
    std::vector<FromP> from;   // Update: the table (and joins); Delete: the FROM list
    std::vector<Assignment> sets;
    ExprP where;
    std::string deleteQual;  // Delete T.* -> "T"
    // Ddl
    std::optional<DdlCommand> ddl;
};

// Parses one statement. Throws JetError with the platform's syntax error numbers.
Statement parse(std::string_view text, const std::vector<Token>& tokens);

}  // namespace store::sql::detail
