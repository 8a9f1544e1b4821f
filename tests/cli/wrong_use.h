// Command lines that are refused, and with what words.

#pragma once

#include "cli/command_line/failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::cli {

struct WrongUse {
    std::vector<const char*> arguments;
    const char* complaint;
};

// The words in a line of their own.
template <typename Parse>
void expectComplaint(Parse parse, const WrongUse& use) {
    try {
        parse(use.arguments);
        FAIL() << "taken";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr(use.complaint));
        EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    }
}

} // namespace zqm::cli
