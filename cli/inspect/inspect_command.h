#pragma once

#include "cli/inspect/inspect_options.h"

namespace zqm::cli {

// Inspects as the options say. Answers the process's exit code. Throws an error of the host runtime.
int inspect(const InspectOptions& options);

} // namespace zqm::cli
