// What a check is, and all that there are.

#pragma once

#include "cli/validate/findings.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zqm::cli {

// What is validated, and how.
struct Subject {
    std::string library; // its path
    std::uint64_t seed;  // of all that is chosen by chance, so that a run can be repeated
    std::string folder;  // for what the plugin writes
};

// It runs in a process of its own, into which nothing was loaded before. Without a finding it has passed;
// what it throws is a failure.
struct Check {
    std::string_view name;
    std::string_view summary; // what a plugin does that passes, as "registers its classes"
    void (*run)(const Subject& subject, Findings& findings);
    // The check, before this one, without whose success this one says nothing; empty: none.
    std::string_view needs = {};
};

// In the order in which they run.
std::span<const Check> checks();

} // namespace zqm::cli
