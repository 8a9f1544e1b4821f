#pragma once

#include "cli/inspect/inspected_library.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zqm::cli {

// For people to read, in lines of at most so many columns where a member can be broken; none: as long as
// they are.
std::string inspectionText(const InspectedLibrary& library, std::optional<std::size_t> columns);

} // namespace zqm::cli
