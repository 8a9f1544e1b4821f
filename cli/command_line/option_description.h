#pragma once

#include "cli/command_line/syntax.h"

#include <string>
#include <vector>

namespace zqm::cli {

// An option as its command line has it, for the help and what else tells of it.
struct OptionDescription {
    std::vector<std::string> names; // with their hyphens, the short one first
    std::string type;               // of its value, as FILE; empty: it takes none
    std::string range;              // which values it takes, as "0 to 1"; may be empty
    std::string summary;            // one line
};

std::vector<OptionDescription> describeOptions(const CLI::App& app);

} // namespace zqm::cli
