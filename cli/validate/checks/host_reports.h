#pragma once

#include "cli/validate/findings.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {

// Each breach of the interface that the host noticed is a failure; it then forgets them.
void addReports(host::Runtime& runtime, Findings& findings);

} // namespace zqm::cli
