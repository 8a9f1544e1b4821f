#pragma once

#include <cstdint>

namespace zqm::cli {

// What this process has taken from the system and not given back.
struct ProcessUsage {
    std::int64_t heap = 0; // bytes that it asked for and hasn't freed
    std::int64_t descriptors = 0;
    // Its children, those that ended and weren't waited for included, and what they left to the parent of
    // this one, if that adopts orphans.
    std::int64_t processes = 0;
};

ProcessUsage processUsage();

} // namespace zqm::cli
