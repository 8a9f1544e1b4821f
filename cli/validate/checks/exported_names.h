#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zqm::cli {

struct ExportedName {
    std::string name;
    // Others may define it too, as they do the C++ library's templates: the loader then takes one for all.
    bool isShared;
};

// What a library exports that dlopen gave, but for what linkers add to every library, by their names; none:
// this system doesn't tell.
std::optional<std::vector<ExportedName>> exportedNames(void* library);

} // namespace zqm::cli
