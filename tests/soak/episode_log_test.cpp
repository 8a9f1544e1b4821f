#include "tests/soak/episode_log.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::soak {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(EpisodeLog, IsWithoutPropertiesAndTheirValues) {
    EXPECT_THAT(withoutProperties({"k: NSSpeechRateProperty", "v: 180 7f0012", "e: (null)", "v: (", "    a,",
                                   "    {", "        a = b;", "    }", ") 7f0012", "v: {", "    a = b;",
                                   "} 7f0012", "Something else"}),
                ElementsAre("Something else"));
}

TEST(EpisodeLog, HasRefusalsAtAnyTime) {
    EXPECT_THAT(
        unexplained({"Speech can't be started: /nonexistent/folder/a.wav: No such file or directory"}, false),
        IsEmpty());
}

TEST(EpisodeLog, HasSearchesForLeaksThatWereInterrupted) {
    EXPECT_THAT(unexplained({"==15982==Unable to get registers from thread 15978."}, false), IsEmpty());
    const std::vector<std::string> lines{"==15982==ERROR: LeakSanitizer: detected memory leaks",
                                         "==15982==LeakSanitizer has encountered a fatal error."};
    EXPECT_EQ(unexplained(lines, true), lines);
}

TEST(EpisodeLog, HasEndsOfEnginesOnlyWhereOneWasKilled) {
    const std::vector<std::string> lines{
        "Speech ended early: the speech engine ended unexpectedly",
        "the speech engine ended unexpectedly; another one goes on listening"};
    EXPECT_THAT(unexplained(lines, true), IsEmpty());
    EXPECT_EQ(unexplained(lines, false), lines);
    EXPECT_TRUE(std::ranges::all_of(lines, tellsEndOfEngine));
    EXPECT_FALSE(tellsEndOfEngine("Speech ended early: the disk is full"));
}

TEST(EpisodeLog, HasNothingElse) {
    const std::vector<std::string> lines{
        "NSInvalidArgumentException: nil argument", "zqmspeech-engine: it is broken",
        "Speech ended early: the speech engine said something that makes no sense",
        "Speech can't be started: the speech engine does not answer",
        "*** stack smashing detected ***: terminated"};
    EXPECT_EQ(unexplained(lines, true), lines);
}

} // namespace
} // namespace zqm::soak
