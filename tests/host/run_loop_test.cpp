#include "entries.h"

#include "zqmhost/zqmhost.h"

#include <gtest/gtest.h>

namespace zqm::host::test {
namespace {

TEST(RunLoop, EndsAtOnceWhenThePredicateIsTrue) {
    Runtime runtime;
    EXPECT_TRUE(runtime.runUntil([] { return true; }, Seconds(3600)));
    EXPECT_TRUE(runtime.runUntil([] { return true; }, Seconds(0)));
}

TEST(RunLoop, AsksThePredicateAgainAndAgain) {
    Runtime runtime;
    int asked = 0;
    EXPECT_TRUE(runtime.runUntil([&] { return ++asked == 3; }, Seconds(3600)));
    EXPECT_EQ(asked, 3);
}

TEST(RunLoop, AnswersFalseWhenTheTimeIsOver) {
    Runtime runtime;
    EXPECT_FALSE(runtime.runUntil([] { return false; }, Seconds(0.01)));
    EXPECT_FALSE(runtime.runUntil([] { return false; }, Seconds(-1)));
    const auto start = std::chrono::steady_clock::now();
    runtime.runFor(Seconds(0.12));
    EXPECT_GE(std::chrono::steady_clock::now() - start, Seconds(0.12));
}

TEST(RunLoop, LetsThePredicateThrow) {
    Runtime runtime;
    EXPECT_THROW(runtime.runUntil([]() -> bool { throw std::runtime_error("x"); }, Seconds(1)),
                 std::runtime_error);
}

} // namespace
} // namespace zqm::host::test
