// Every test of the plugin runs in a host that has a sibling library of the family, and in one that has none:
// ctest starts each program both ways, and its environment says which (zqm_add_test, WITH_SIBLING).

#pragma once

#include "zqmhost/zqmhost.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace zqm::support {

// The sibling that stands beside the plugin in this run.
inline std::optional<std::string> siblingLibrary() {
    const char* library = std::getenv("ZQM_SIBLING_LIBRARY");
    return library != nullptr && *library != '\0' ? std::optional<std::string>(library) : std::nullopt;
}

// Loads it, where there is one.
inline void loadSibling(host::Runtime& runtime) {
    if (const auto library = siblingLibrary()) {
        runtime.load(*library);
    }
}

// Loads it, and then the plugin of this path.
inline void loadPlugin(host::Runtime& runtime, const std::string& plugin) {
    loadSibling(runtime);
    runtime.load(plugin);
}

} // namespace zqm::support
