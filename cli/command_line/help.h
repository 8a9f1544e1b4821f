#pragma once

#include "cli/command_line/option_description.h"
#include "cli/command_line/syntax.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace zqm::cli {

// The help's columns: those of the terminal, if standard output is one, but no wider than is good to read.
std::size_t helpColumns();

// The help of a command with these options.
std::string helpText(const Syntax& syntax, const std::vector<OptionDescription>& options,
                     std::size_t columns);

// Names on the left and what they mean on the right, or below them where there is no room.
std::string nameList(const std::vector<std::pair<std::string, std::string>>& entries, std::size_t columns);

// Each exit code and what it means, those that all commands have included.
std::vector<std::pair<std::string, std::string>> exitCodes(const Syntax& syntax);

// "-f,--file FILE"
std::string nameOf(const OptionDescription& option);

// "say [OPTIONS] [TEXT...]"
std::string usageOf(const Syntax& syntax);

} // namespace zqm::cli
