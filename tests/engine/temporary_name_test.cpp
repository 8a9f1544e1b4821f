#include "engine/protocol/temporary_name.h"

#include <gtest/gtest.h>
#include <limits>

using namespace zqm::protocol;

namespace {

TEST(TemporaryName, isHiddenAndTellsItsNumber) {
    EXPECT_EQ(temporaryName(0x1234abcdU), ".zqmspeech-000000001234abcd");
}

TEST(TemporaryName, isKnownAgain) {
    for (const std::uint64_t number : {std::uint64_t{0}, std::numeric_limits<std::uint64_t>::max()}) {
        EXPECT_TRUE(isTemporaryName(temporaryName(number))) << number;
    }
}

TEST(TemporaryName, isNoOther) {
    for (const char* const name :
         {"", ".", ".bashrc", ".zqmspeech", ".zqmspeech-", ".zqmspeech-000000001234abc",
          ".zqmspeech-000000001234abcde", ".zqmspeech-000000001234ABCD", ".zqmspeech-0x0000001234abcd",
          ".zqmspeech-/../../.profile", "zqmspeech-0000000001234abcd", ".zqmspeech+000000001234abcd"}) {
        EXPECT_FALSE(isTemporaryName(name)) << name;
    }
}

} // namespace
