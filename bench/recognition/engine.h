#pragma once

#include "tests/support/process_table.h"

#include <stdexcept>

namespace zqm::recognition {

// The process that listens for this one. Throws std::runtime_error when there isn't just one.
inline pid_t theEngine() {
    const auto engines = support::childrenThatRun("zqmspeech-engine");
    if (engines.size() != 1) {
        throw std::runtime_error("the engine is gone");
    }
    return engines.front();
}

} // namespace zqm::recognition
