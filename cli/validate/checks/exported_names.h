#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zqm::cli {

// What a library exports that dlopen gave, but for what linkers add to every library; none: this system
// doesn't tell.
std::optional<std::vector<std::string>> exportedNames(void* library);

} // namespace zqm::cli
