#include "tests/support/log_lines.h"

#include <cstdio>
#include <gmock/gmock.h>

namespace zqm::support {
namespace {

TEST(LogLines, LoseWhatStandsBeforeThem) {
    const auto lines =
        logged([] { std::fputs("2026-01-31 12:00:00.000 program[12:34] a: [b] c\nplain\n\n", stderr); });
    EXPECT_THAT(lines, testing::ElementsAre("a: [b] c", "plain", ""));
}

TEST(LogLines, AreNoneWhereNothingIsLogged) {
    EXPECT_THAT(logged([] {}), testing::IsEmpty());
}

} // namespace
} // namespace zqm::support
