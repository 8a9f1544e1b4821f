#pragma once

#include <string>
#include <string_view>

namespace zqm::cli {

// The descriptor is a terminal that knows colours, and NO_COLOR is not set.
bool areColoursWanted(int descriptor);

std::string bold(std::string_view text, bool isColoured);

} // namespace zqm::cli
