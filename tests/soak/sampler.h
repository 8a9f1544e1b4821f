// What a host program and its engines hold, as lines of comma-separated values.

#pragma once

#include "zqmhost/zqmhost.h"

#include <chrono>
#include <cstddef>
#include <ostream>
#include <sys/types.h>

namespace zqm::soak {

// Samples are comparable where as much is alive at each.
struct Alive {
    pid_t speaking;  // an engine that lives as long as the program
    pid_t listening; // another one
    std::size_t processes;
    std::size_t episodes; // so far
};

class Sampler {
public:
    // Writes the names of the columns. scripts/soaking/measures.py knows them.
    Sampler(std::ostream& out, const host::Runtime& runtime);

    void sample(const Alive& alive);

private:
    std::ostream& out_;
    const host::Runtime& runtime_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

} // namespace zqm::soak
