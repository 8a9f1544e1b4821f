// Runs `zqmspeech`, any of its commands, as people and scripts do.

#pragma once

#include "tests/cli/say.h"
#include "tests/cli/terminal.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::tests {

inline support::ProcessResult zqmspeech(const std::vector<std::string>& arguments,
                                        const support::ProcessOptions& options = bareOptions()) {
    return support::runProcess(ZQMSPEECH_PROGRAM, arguments, options);
}

// What it writes to a terminal of so many columns.
inline std::string zqmspeechOnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                                       const std::map<std::string, std::optional<std::string>>& environment) {
    const Terminal terminal(columns);
    support::ProcessOptions options = bareOptions();
    for (const auto& [name, value] : environment) {
        options.environment[name] = value;
    }
    std::vector<std::string> all{"-c", "exec \"$0\" \"$@\" > " + terminal.path(), ZQMSPEECH_PROGRAM};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const support::ProcessResult result = support::runProcess("/bin/sh", all, options);
    EXPECT_TRUE(result.succeeded()) << result.errors;
    return terminal.written();
}

} // namespace zqm::tests
