#pragma once

#include "cli/inspect/inspected_library.h"

#include <string>

namespace zqm::cli {

// One JSON document; docs/inspect.schema.json describes it.
std::string inspectionJson(const InspectedLibrary& library);

} // namespace zqm::cli
