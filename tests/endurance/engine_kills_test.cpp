// Engines that are killed in every state, many times: each is replaced, the host program is told once, and
// nothing is lost or left.

#include "tests/support/process.h"
#include "tests/support/sibling_library.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

// With the run beside the sibling library twice as many; scripts/soak has the long form.
#if defined(__SANITIZE_ADDRESS__)
constexpr const char* kKills = "30";
#else
constexpr const char* kKills = "500";
#endif
constexpr std::chrono::hours kPatience{24}; // the test's own time limit counts

TEST(EngineKills, LoseNothing) {
    const auto result = zqm::support::runProcess(
        ZQM_ENGINE_KILLS, {kKills, zqm::support::siblingLibrary() ? "2" : "1"}, {}, kPatience);
    std::cout << result.output;
    EXPECT_TRUE(result.succeeded()) << result.errors;
    std::istringstream table(result.output);
    std::string line;
    std::getline(table, line);
    std::size_t sum = 0;
    while (std::getline(table, line)) {
        const std::string state = line.substr(0, line.find('\t'));
        const std::size_t count = std::stoull(line.substr(state.size() + 1));
        EXPECT_GT(count, 0U) << state;
        sum += count;
    }
    EXPECT_GE(sum, std::stoull(kKills));
}

TEST(EngineKills, AreACountAndASeed) {
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{}, {"0"}, {"many"}, {"1", "x"}, {"1", "1", "1"}}) {
        const auto result = zqm::support::runProcess(ZQM_ENGINE_KILLS, arguments);
        EXPECT_EQ(result.exitCode, EXIT_FAILURE);
        EXPECT_EQ(result.errors, "usage: engine_kills KILLS [SEED]\n");
    }
}

} // namespace
