#pragma once

#include "cli/validate/validate_options.h"

namespace zqm::cli {

// Validates as the options say. Answers the process's exit code. Throws Failure.
int validate(const ValidateOptions& options);

} // namespace zqm::cli
