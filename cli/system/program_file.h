#pragma once

#include <string>

namespace zqm::cli {

// The path of this program's own file, with all links resolved. Throws Failure.
std::string programFile();

} // namespace zqm::cli
