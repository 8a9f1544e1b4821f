#pragma once

#include <cstdint>

namespace zqm::cli {

// What this process has taken from the system and not given back.
struct ProcessUsage {
    std::int64_t heap = 0; // bytes that it asked for and hasn't freed
    std::int64_t descriptors = 0;
    std::int64_t processes = 0; // its children, those that ended and weren't waited for included
};

ProcessUsage processUsage();

} // namespace zqm::cli
