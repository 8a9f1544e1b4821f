// Which options make no sense together, so that none is given in vain.

#pragma once

#include "cli/command_line/command_line.h"

#include <span>

namespace zqm::cli {

struct Conflict {
    const char* one;
    const char* other;
    const char* reason; // why not both
};

struct Need {
    const char* option;
    const char* needed;
};

struct OptionRules {
    std::span<const Conflict> conflicts = {};
    std::span<const Need> needs = {};
    std::span<const char* const> lists = {}; // options that only print a list, and so stand alone
};

// Of a command line that was read. Throws UsageError.
void require(const OptionRules& rules, const CLI::App& app, const Words& words);

} // namespace zqm::cli
