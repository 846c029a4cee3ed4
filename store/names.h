// Names and texts as they go into SQLite statements, and names compared the way the engine compares
// them: tables, fields, indexes, queries, aliases, functions and keywords ignore case in ASCII only.
#pragma once

#include <string>
#include <string_view>

namespace store::detail {

bool sameName(std::string_view a, std::string_view b);
std::string quoteIdent(std::string_view name);  // "name" with inner quotes doubled
std::string quoteText(std::string_view text);   // 'text' with inner quotes doubled

}  // namespace store::detail
