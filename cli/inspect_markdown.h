#pragma once

#include "cli/inspected_library.h"

#include <string>

namespace zqm::cli {

std::string inspectionMarkdown(const InspectedLibrary& library);

} // namespace zqm::cli
