#pragma once

#include "tests/support/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace zqm::tests {

// The command failed with this code and without output, and says why in one line, of which this is a part.
inline void expectOneLine(const support::ProcessResult& result, int exitCode, const std::string& part) {
    EXPECT_EQ(result.exitCode, exitCode);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, testing::StartsWith("zqmspeech: "));
    EXPECT_THAT(result.errors, testing::HasSubstr(part));
    EXPECT_THAT(result.errors, testing::EndsWith("\n"));
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
}

} // namespace zqm::tests
