// The functions of the checks, a source for each.

#pragma once

#include "cli/validate/check.h"

namespace zqm::cli {

void checkLoading(const Subject& subject, Findings& findings);
void checkStart(const Subject& subject, Findings& findings);

} // namespace zqm::cli
