#pragma once

#include "cli/validate/findings.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {

// A breach of the interface that the host noticed is a failure.
void addReport(const host::Report& report, Findings& findings);

// The same of all that the host noticed, which it then forgets.
void addReports(host::Runtime& runtime, Findings& findings);

} // namespace zqm::cli
