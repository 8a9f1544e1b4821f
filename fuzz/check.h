// What must hold of an input.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace zqm::fuzz {

// Ends the program, which is how libFuzzer learns of it, and says what does not hold.
inline void check(bool holds, const char* promise, const std::string& found = {}) {
    if (!holds) {
        std::fprintf(stderr, "DOES NOT HOLD: %s%s%s\n", promise, found.empty() ? "" : ": ", found.c_str());
        std::abort();
    }
}

} // namespace zqm::fuzz
