// Engine errors carry the platform's number and an Italian text; screens show both.
#pragma once

#include <stdexcept>
#include <string>

namespace store {

class JetError : public std::runtime_error {
public:
    JetError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
    int number() const { return number_; }

private:
    int number_;
};

// The Italian text of an error number ("" for a number the engine never raises).
std::string errorText(int number);

// Throws JetError(number) with its standard text; a non-empty detail is put where the platform
// names the item (a table, a field, a function) or appended after a colon.
[[noreturn]] void raise(int number, const std::string& detail = {});

}  // namespace store
