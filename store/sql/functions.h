// Internal to the translator: the dialect's functions as the binder knows them.
#pragma once

#include <string_view>

namespace store::sql {

struct FnInfo {
    const char* name;  // lower case, as written in SQL
    int minArgs, maxArgs;
    // Result: 'd' Date, 'i' Integer, 'l' Long, 'f' Double, 't' Text, 'b' Yes/No,
    // 'a' the numeric type of the first argument, 'v' variant.
    char result;
};

// A function the program may call by name in SQL; nullptr for an unknown one (error 3085).
const FnInfo* findFunction(std::string_view lowerName);

}  // namespace store::sql
