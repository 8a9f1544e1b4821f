#pragma once

#include "cli/validate/findings.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {

// Makes an object of each class that is registered, without any "Constructor", and drops it.
void makeOneOfEach(host::Runtime& runtime, Findings& findings);

} // namespace zqm::cli
