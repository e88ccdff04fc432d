#pragma once

#include "Tests/Support/Printers.h"

#include <iostream>
#include <string_view>

namespace quen::fuzz {

/// Says what does not hold and ends the process, which makes the input a finding.
[[noreturn]] void reportFinding(std::string_view what);

inline void require(bool holds, std::string_view what) {
    if (!holds) {
        reportFinding(what);
    }
}

void printOne(const auto& value) {
    if constexpr (requires { PrintTo(value, &std::cerr); }) {
        PrintTo(value, &std::cerr);
    } else {
        std::cerr << value;
    }
    std::cerr << '\n';
}

template <typename A, typename B> void requireEqual(const A& a, const B& b, std::string_view what) {
    if (!(a == b)) {
        printOne(a);
        printOne(b);
        reportFinding(what);
    }
}

} // namespace quen::fuzz
