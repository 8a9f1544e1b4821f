#pragma once

#include <string>
#include <vector>

namespace zqm::cli {

// The commands in this file ("-" is standard input), one a line: without blank lines, and without white space
// around them. Throws Failure when it can't be read or is no UTF-8, telling the line.
std::vector<std::string> readCommands(const std::string& path);

} // namespace zqm::cli
