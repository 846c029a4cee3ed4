// Arithmetic of + - * / over numeric columns and literals, written as one call of jet_calc.
//
// SQLite evaluates an expression as often as it is written: a discount applied four times in a row
// writes the line's amount sixteen times, and every Double operation is a function call of its own
// (jet_finite, jet_div). A tree of such operations is sent instead as one program of its distinct
// parts, evaluated once per row with the same rules: SQLite's for + - * (Null in, Null out; whole
// numbers stay whole until they overflow; NaN is Null), overflow (6) where a Double, Single or
// Currency result is not finite, and jet_div's for / (division by zero 11, overflow 6). The parts
// run in the order SQLite would have run them, so the first error is the same error.
#pragma once

#include <memory>
#include <string>
#include <vector>

struct sqlite3;

namespace store::sql {

struct Calc {
    struct Node {
        char op = '$';  // '$' an argument, or + - * /
        int a = -1;     // '$': the argument's index; otherwise the operands' node indexes
        int b = -1;
        bool finite = false;  // + - *: a result that is not a finite number is overflow
    };
    std::vector<Node> nodes;        // in evaluation order; the last is the result
    std::vector<std::string> args;  // SQL of each argument
    std::vector<std::string> keys;  // what makes two arguments the same value; "" for never
    int calls = 0;                  // function calls the same tree written operator by operator makes
    bool literalsOnly = false;      // every argument a literal
};

// One operand: its SQL, its identity for sharing (a column's SQL, a literal's value), and whether
// it is a literal.
std::shared_ptr<const Calc> CalcOperand(std::string sql, std::string key, bool literal);

// a op b, with what a and b already share counted once.
std::shared_ptr<const Calc> CalcJoin(char op, bool finite, const Calc& a, const Calc& b);

// jet_calc('program', arguments...).
std::string CalcSql(const Calc& c);

void registerCalcFunction(sqlite3* db);

}  // namespace store::sql
