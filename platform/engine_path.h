// Where the engine program is.

#pragma once

#include <string>

namespace zqm::platform {

// Beside this library, else in the folder fixed when it was built; empty when it is in neither.
std::string enginePath();

} // namespace zqm::platform
