#pragma once

#include "cli/listen_options.h"

namespace zqm::cli {

// Listens as the options say. Answers the process's exit code: 0, kNothingRecognized, or 128 and the number
// of the signal that ended it. Throws Failure, or an error of the host runtime.
int listen(const ListenOptions& options);

// The time was over or the file ended before any command was recognised.
inline constexpr int kNothingRecognized = 3;

} // namespace zqm::cli
