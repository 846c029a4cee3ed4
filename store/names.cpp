#include "store/names.h"

namespace store::detail {

namespace {
char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string quoted(std::string_view body, char quote) {
    std::string out;
    out.reserve(body.size() + 2);
    out += quote;
    for (char c : body) {
        if (c == quote) out += quote;
        out += c;
    }
    out += quote;
    return out;
}
}  // namespace

bool sameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (asciiLower(a[i]) != asciiLower(b[i])) return false;
    return true;
}

std::string quoteIdent(std::string_view name) { return quoted(name, '"'); }
std::string quoteText(std::string_view text) { return quoted(text, '\''); }

}  // namespace store::detail
