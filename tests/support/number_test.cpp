#include "tests/support/number.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace zqm::support {
namespace {

TEST(Number, IsTheWholeText) {
    EXPECT_EQ(numberOf<std::uint64_t>("0"), 0U);
    EXPECT_EQ(numberOf<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(numberOf<int>("-7"), -7);
    EXPECT_EQ(numberOf<double>("0.25"), 0.25);
    for (const char* const text : {"", "x", "1x", " 1", "1 ", "-1", "18446744073709551616"}) {
        EXPECT_EQ(numberOf<std::uint64_t>(text), std::nullopt) << text;
    }
    EXPECT_EQ(numberOf<double>("0.25s"), std::nullopt);
}

} // namespace
} // namespace zqm::support
