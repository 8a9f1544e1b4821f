#pragma once

#include "cli/validate/validation.h"

#include <string>

namespace zqm::cli {

// One JSON document; docs/validate.schema.json describes it.
std::string validationJson(const Validation& validation);

} // namespace zqm::cli
