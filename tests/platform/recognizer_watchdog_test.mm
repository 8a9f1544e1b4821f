// Engines that say nothing while a recognizer listens: those that stand still are replaced, and no others.

#include "tests/platform/recognizer_fixture.h"
#include "tests/platform/waiting.h"

#include <chrono>
#include <poll.h>
#include <thread>

extern "C" int ZQMPlatformEventDescriptor(void);

namespace {

using namespace zqm::platform::test;
using zqm::protocol::Pong;
using zqm::support::logged;

using Clock = std::chrono::steady_clock;

// What an engine has for an answer. It is asked when it was silent for half of that.
constexpr std::chrono::seconds kDeadline{10};

// The rest is for a machine that has much else to do.
constexpr std::chrono::seconds kLongestWait = kDeadline * 3 / 2 + std::chrono::seconds(5);

constexpr const char* kReplaced = "the speech engine does not answer; another one goes on listening";

class RecognizerWatchdog : public Recognition {
protected:
    // Lets it listen until its engine was asked whether it lives.
    std::unique_ptr<PlayedEngine> startUntilAsked(const Listener& listener, std::uint64_t session = 1) {
        auto engine = start(listener, session);
        waitForPing(*engine);
        return engine;
    }

    static void waitForPing(PlayedEngine& engine) {
        ASSERT_TRUE(runUntil([&] { return engine.hasMessage(); }));
        engine.hearPing();
    }

    static void runFor(std::chrono::seconds time) {
        const auto end = Clock::now() + time;
        runUntil([&] { return Clock::now() >= end; });
    }

    // It is the one that the recognizer listens by.
    void expectInUse(PlayedEngine& engine, Listener& listener) {
        const std::size_t heard = listener.heard.texts.size();
        ASSERT_FALSE(stage_.hasNext());
        engine.say(phrase(1, 1, 0));
        EXPECT_TRUE(runUntil([&] { return listener.heard.texts.size() > heard || stage_.hasNext(); }));
        EXPECT_FALSE(stage_.hasNext());
    }

    // What an engine says after it has wanted a new one has it kept.
    void expectToBeKeptBy(const Listening& state) {
        Listener listener(Texts{"open"});
        logged([&] {
            auto engine = start(listener);
            engine->say(Listening{1, "no sound server answers", true});
            engine->say(state);
            runFor(kDeadline * 12 / 10);
            expectInUse(*engine, listener);
        });
    }
};

TEST_F(RecognizerWatchdog, AnEngineThatDoesNotAnswerIsReplaced) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = startUntilAsked(listener);
        const auto asked = Clock::now();
        ASSERT_TRUE(runUntil([&] { return stage_.hasNext(); }));
        EXPECT_GE(Clock::now() - asked, kDeadline * 8 / 10);
        EXPECT_LT(Clock::now() - asked, kLongestWait);
        EXPECT_TRUE(engine->isLeft());
        engine = stage_.next();
        engine->hear<SetCommands>();
        engine->hear<Listen>();
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, ElementsAre(kReplaced));
}

TEST_F(RecognizerWatchdog, AnEngineThatAnswersIsKept) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = startUntilAsked(listener);
        engine->say(Pong{});
        waitForPing(*engine);
        engine->say(Pong{});
        waitForPing(*engine);
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(RecognizerWatchdog, AnEngineAtWorkIsKept) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = startUntilAsked(listener);
        engine->beginWork();
        runFor(kDeadline * 2);
        ASSERT_FALSE(stage_.hasNext());
        engine->endWork();
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, IsEmpty());
}

// The host does not run its run loop while the engine answers.
TEST_F(RecognizerWatchdog, AnEngineIsNotBlamedForAHostThatDoesNotLook) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = startUntilAsked(listener);
        engine->say(Pong{});
        std::this_thread::sleep_for(kDeadline * 2);
        runOut();
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, IsEmpty());
}

// Both are suspended, and the host is the first to go on.
TEST_F(RecognizerWatchdog, AnEngineThatStoodStillWithItsHostIsKept) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = startUntilAsked(listener);
        std::this_thread::sleep_for(kDeadline * 2);
        runFor(std::chrono::seconds(1));
        engine->say(Pong{});
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(RecognizerWatchdog, NobodyIsWokenWhileNothingListens) {
    Listener listener(Texts{"open"});
    auto engine = startUntilAsked(listener);
    [listener.recognizer stopListening];
    engine->hear<StopListening>();
    runOut();
    const auto milliseconds = std::chrono::milliseconds(kDeadline * 12 / 10).count();
    pollfd watched{ZQMPlatformEventDescriptor(), POLLIN, 0};
    EXPECT_EQ(0, ::poll(&watched, 1, static_cast<int>(milliseconds)));
    EXPECT_FALSE(engine->hasMessage());
    [listener.recognizer startListening];
    EXPECT_EQ(2U, engine->hear<Listen>().session);
    waitForPing(*engine);
}

// Where it began before there was a sound server, it may never reach that.
TEST_F(RecognizerWatchdog, AnEngineThatWantsANewOneIsReplaced) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = start(listener);
        engine->say(Listening{1, "no sound server answers", true});
        ASSERT_TRUE(runUntil([&] { return stage_.hasNext(); }));
        EXPECT_TRUE(engine->isLeft());
        engine = stage_.next();
        engine->hear<SetCommands>();
        engine->hear<Listen>();
        engine->say(Listening{1, ""});
        expectInUse(*engine, listener);
    });
    EXPECT_THAT(log, ElementsAre("Nothing can be heard: no sound server answers"));
}

TEST_F(RecognizerWatchdog, AnEngineThatHasItsMicrophoneAgainIsKept) {
    expectToBeKeptBy(Listening{1, ""});
}

// A new one would hear no more, and first have all commands to learn.
TEST_F(RecognizerWatchdog, AnEngineWhoseMicrophoneIsMuteIsKept) {
    expectToBeKeptBy(Listening{1, "the microphone gives no sound"});
}

TEST_F(RecognizerWatchdog, AnAnswerThatNobodyAskedForMakesNoSense) {
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = start(listener);
        engine->say(Pong{});
        ASSERT_TRUE(runUntil([&] { return stage_.hasNext(); }));
    });
    EXPECT_THAT(log, ElementsAre("the speech engine said something that makes no sense; another one goes on "
                                 "listening"));
}

} // namespace
