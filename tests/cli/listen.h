// Runs `zqmspeech listen` as people and scripts do.

#pragma once

#include "tests/cli/say.h"

#include <string>
#include <vector>

namespace zqm::tests {

// "listen" and the arguments.
std::vector<std::string> listenArguments(const std::vector<std::string>& arguments);

support::ProcessResult listen(const std::vector<std::string>& arguments,
                              const support::ProcessOptions& options = bareOptions());

} // namespace zqm::tests
