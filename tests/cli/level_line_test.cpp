#include "cli/listen/level_line.h"

#include "tests/cli/terminal.h"
#include "tests/support/scoped_environment.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

namespace zqm::cli {
namespace {

using support::ScopedEnvironment;
using tests::Terminal;

TEST(LevelText, IsABarAndAState) {
    EXPECT_EQ(levelText(-30, "listening", 79, false), "[###############---------------]  listening");
    EXPECT_EQ(levelText(-60, "listening", 79, false), "[------------------------------]  listening");
    EXPECT_EQ(levelText(0, "listening", 79, false), "[##############################]  listening");
}

TEST(LevelText, KeepsLevelsBeyondTheBarWithinIt) {
    const std::string empty = "[------------------------------]  x";
    const std::string full = "[##############################]  x";
    EXPECT_EQ(levelText(-200, "x", 79, false), empty);
    EXPECT_EQ(levelText(-std::numeric_limits<double>::infinity(), "x", 79, false), empty);
    EXPECT_EQ(levelText(std::numeric_limits<double>::quiet_NaN(), "x", 79, false), empty);
    EXPECT_EQ(levelText(3, "x", 79, false), full);
    EXPECT_EQ(levelText(std::numeric_limits<double>::infinity(), "x", 79, false), full);
}

TEST(LevelText, EndsWhereTheColumnsEnd) {
    EXPECT_EQ(levelText(-30, "listening", 40, false), "[#########---------]  listening");
    EXPECT_EQ(levelText(-30, "Open the door", 28, false), "[######------]  Open the doo");
    EXPECT_EQ(levelText(-30, "listening", 12, false), "[##--]  list");
    EXPECT_EQ(levelText(-30, "listening", 11, false), "listening");
    EXPECT_EQ(levelText(-30, "listening", 5, false), "liste");
    EXPECT_EQ(levelText(-30, "listening", 0, false), "");
}

TEST(LevelText, LeavesOutWhatWouldSpoilTheTerminal) {
    EXPECT_EQ(levelText(-30, "a\x1b[31mb\n\xFF\u202Ec", 8, false), "a[31mbc");
}

TEST(LevelText, TellsLoudFromQuietByColours) {
    EXPECT_EQ(levelText(-60, "x", 79, true), "[------------------------------]  x");
    EXPECT_EQ(levelText(-40, "x", 79, true), "[\x1b[32m##########\x1b[0m--------------------]  x");
    EXPECT_EQ(levelText(-10, "x", 79, true), "[\x1b[32m####################\x1b[33m#####\x1b[0m-----]  x");
    EXPECT_EQ(levelText(0, "x", 79, true),
              "[\x1b[32m####################\x1b[33m#######\x1b[31m###\x1b[0m]  x");
}

class LevelLineColours : public testing::TestWithParam<std::optional<std::string>> {};

TEST_P(LevelLineColours, AreAPersonsChoice) {
    const ScopedEnvironment kind("TERM", "xterm");
    const ScopedEnvironment colours("NO_COLOR", GetParam());
    const Terminal terminal(25);
    LevelLine line(terminal.descriptor());
    line.show(-30, "listening");
    const bool isPlain = !GetParam().value_or("").empty();
    EXPECT_EQ(terminal.written(),
              isPlain ? "\r\x1b[K[#####-----]  listening" : "\r\x1b[K[\x1b[32m#####\x1b[0m-----]  listening");
}

INSTANTIATE_TEST_SUITE_P(All, LevelLineColours,
                         testing::Values(std::nullopt, std::string(), std::string("1"), std::string("0")));

TEST(LevelLine, IsNotDrawnOnADumbTerminal) {
    const ScopedEnvironment kind("TERM", "dumb");
    const Terminal terminal(25);
    {
        LevelLine line(terminal.descriptor());
        EXPECT_FALSE(line.isPossible());
        line.show(-30, "listening");
    }
    EXPECT_EQ(terminal.written(), "");
}

} // namespace
} // namespace zqm::cli
