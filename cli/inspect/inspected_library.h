#pragma once

#include <zqmhost/class_description.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zqm::cli {

// A plugin library and what it declares.
struct InspectedLibrary {
    std::string name;
    std::optional<std::int32_t> revision; // of the plugin interface, as it announced
    std::vector<host::ClassDescription> classes;
};

} // namespace zqm::cli
