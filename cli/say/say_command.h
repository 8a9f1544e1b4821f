#pragma once

#include "cli/say/say_options.h"

namespace zqm::cli {

// Speaks as the options say. Answers the process's exit code: kDone, or kSignalled and the number of the
// signal that ended it. Throws Failure, or an error of the host runtime.
int say(const SayOptions& options);

} // namespace zqm::cli
