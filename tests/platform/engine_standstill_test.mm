// Engines that stand still, of which the host hears by its run loop alone, and what is left of those that
// ended.

#include "engine/protocol/protocol.h"
#include "tests/platform/babble.h"
#include "tests/platform/engine_fault_fixture.h"
#include "tests/platform/named_files.h"
#include "tests/support/log_lines.h"

#include <chrono>
#include <csignal>
#include <vector>

namespace {

using namespace zqm::platform::test;
using zqm::support::childrenOfThisProcess;
using zqm::support::ScopedEnvironment;

using Clock = std::chrono::steady_clock;

// The rest is for a machine that has much else to do.
constexpr std::chrono::seconds inTime(std::chrono::seconds promised) {
    return promised * 3 / 2 + std::chrono::seconds(5);
}

// What an engine has that stands still, and one that is to end.
constexpr std::chrono::seconds kStandstill = inTime(std::chrono::seconds(20));
constexpr std::chrono::seconds kEnd = inTime(std::chrono::seconds(10));

class EngineStandstill : public EngineFault {
protected:
    // Begins a speech that goes on for ever. Its engine.
    pid_t begin(const Speaker& speaker) const {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", "never finish");
        EXPECT_TRUE(speaker.say("Hello world", path("a.wav")));
        return childrenOfThisProcess().back();
    }

    static void pause(const Speaker& speaker) {
        [speaker.synthesizer pauseSpeakingAtBoundary:NSSpeechImmediateBoundary];
        ASSERT_TRUE(runUntil([&] {
            NSDictionary* const status = [speaker.synthesizer objectForProperty:NSSpeechStatusProperty
                                                                          error:nullptr];
            return [[status objectForKey:NSSpeechStatusOutputPaused] boolValue] != NO;
        }));
    }

    // By the run loop, without any call.
    static void expectEndInTime(const Speaker& speaker) {
        const auto start = Clock::now();
        const auto log = zqm::support::logged([&] { ASSERT_TRUE(speaker.runToEnd()); });
        EXPECT_LT(Clock::now() - start, kStandstill);
        EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
        EXPECT_EQ(std::vector<std::string>{"Speech ended early: the speech engine does not answer"}, log);
    }

    static void expectNoEngineInTime() {
        const auto start = Clock::now();
        EXPECT_TRUE(runUntil([] { return childrenOfThisProcess().empty(); }));
        EXPECT_LT(Clock::now() - start, kEnd);
    }
};

TEST_F(EngineStandstill, IsNoticedWhenAPauseIsOver) {
    const Speaker speaker;
    const pid_t engine = begin(speaker);
    pause(speaker);
    ::kill(engine, SIGSTOP);
    [speaker.synthesizer continueSpeaking];
    expectEndInTime(speaker);
}

TEST_F(EngineStandstill, IsNoticedWhenAPausedSpeechIsToStop) {
    const Speaker speaker;
    const pid_t engine = begin(speaker);
    pause(speaker);
    ::kill(engine, SIGSTOP);
    [speaker.synthesizer stopSpeakingAtBoundary:NSSpeechWordBoundary];
    expectEndInTime(speaker);
}

// Whoever dropped its object only runs its run loop.
TEST_F(EngineStandstill, IsOverWhenItsObjectIsGone) {
    Speaker speaker;
    ::kill(begin(speaker), SIGSTOP);
    speaker.release();
    EXPECT_FALSE(childrenOfThisProcess().empty()) << "letting go waits for nothing";
    expectNoEngineInTime();
}

TEST_F(EngineStandstill, LeavesNoFile) {
    const NamedFilesOnly names;
    Speaker speaker;
    ::kill(begin(speaker), SIGSTOP);
    EXPECT_FALSE(isFolderEmpty());
    speaker.release();
    expectNoEngineInTime();
    EXPECT_TRUE(isFolderEmpty());
}

// Its host always has something to read.
TEST_F(EngineFault, AnEngineThatOnlyTalksOfOtherThingsIsGivenUp) {
    const Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "mute");
    const Babble babble(zqm::protocol::encode(zqm::protocol::Phoneme{1, 1, 0}));
    const auto start = Clock::now();
    EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
    EXPECT_LT(Clock::now() - start, kEnd);
}

TEST_F(EngineFault, AnEngineThatFailedLeavesNoFile) {
    const NamedFilesOnly names;
    const Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "fail");
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_TRUE(isFolderEmpty());
}

TEST_F(EngineFault, AnEngineThatEndedIsReapedByTheRunLoop) {
    {
        const Speaker speaker;
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd());
    }
    EXPECT_TRUE(runUntil([] { return childrenOfThisProcess().empty(); }));
}

} // namespace
