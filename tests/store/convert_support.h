// The error a call raises, for any test of the engine or of what reports its errors.
#pragma once

#include <string>
#include <utility>

#include "store/errors.h"

// The number and text of the JetError a call raises; 0 and "" when it raises nothing.
inline std::pair<int, std::string> jetErrorOf(const auto& call) {
    try {
        call();
    } catch (const store::JetError& e) {
        return {e.number(), e.what()};
    }
    return {0, ""};
}

inline int errorOf(const auto& call) { return jetErrorOf(call).first; }
