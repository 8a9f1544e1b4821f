#pragma once

#include "cli/listen/listen_options.h"

namespace zqm::cli {

// Listens as the options say. Answers the process's exit code: kDone, kFruitless, or kSignalled and the
// number of the signal that ended it. Throws Failure, or an error of the host runtime.
int listen(const ListenOptions& options);

} // namespace zqm::cli
