// Runs `zqmspeech` as people and scripts do.

#pragma once

#include "tests/support/process.h"

#include <string>
#include <vector>

namespace zqm::tests {

// Surroundings in which nothing is set but what a test sets: no locale, no sound server.
support::ProcessOptions bareOptions();

// `zqmspeech say` with these arguments.
support::ProcessResult say(const std::vector<std::string>& arguments,
                           const support::ProcessOptions& options = bareOptions());

// The same through a shell, which runs `script` with the command's path as $0 and the arguments as $@.
support::ProcessResult sayInShell(const std::string& script, const std::vector<std::string>& arguments,
                                  const support::ProcessOptions& options = bareOptions());

// "say" and the arguments.
std::vector<std::string> sayArguments(const std::vector<std::string>& arguments);

// The lines of --events without their times.
std::string withoutTimes(const std::string& lines);

} // namespace zqm::tests
