// Shared by the conversion and format tests.
#pragma once

#include "store/errors.h"

// The JetError number a call raises, 0 when it raises nothing.
inline int errorOf(const auto& call) {
    try {
        call();
    } catch (const store::JetError& e) {
        return e.number();
    }
    return 0;
}
