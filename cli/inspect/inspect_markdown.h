#pragma once

#include "cli/inspect/inspected_library.h"

#include <string>

namespace zqm::cli {

std::string inspectionMarkdown(const InspectedLibrary& library);

} // namespace zqm::cli
