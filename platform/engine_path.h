// Where the engine program is.

#pragma once

#include <string>

namespace zqm::platform {

// Beside this library, as it is built, else where an installation has it, seen from the library's folder;
// empty when it is in neither.
std::string enginePath();

} // namespace zqm::platform
