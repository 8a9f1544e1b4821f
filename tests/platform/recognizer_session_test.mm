// What a recognizer's engine is told, and when what it says is delivered.

#include "tests/platform/observed_listening.h"
#include "tests/platform/recognizer_fixture.h"

#include <atomic>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern "C" int ZQMPlatformEventDescriptor(void);

namespace {

using namespace zqm::platform::test;

class RecognizerSession : public Recognition {};

// So that what its engine said is there to be read.
void waitForMessages() {
    pollfd watched{ZQMPlatformEventDescriptor(), POLLIN, 0};
    EXPECT_EQ(1, ::poll(&watched, 1, 300'000));
}

TEST_F(RecognizerSession, NoEngineRunsBeforeItListens) {
    {
        Listener listener(Texts{"open"});
        [listener.recognizer setBlocksOtherRecognizers:YES];
        [listener.recognizer stopListening];
        EXPECT_THAT(zqm::support::childrenOfThisProcess(), IsEmpty());
    }
    EXPECT_THAT(zqm::support::childrenOfThisProcess(), IsEmpty());
}

TEST_F(RecognizerSession, BeginsWithWhatWasSet) {
    Listener listener(Texts{"old"});
    [listener.recognizer setCommands:arrayOf({"Open the door!", "42"})];
    [listener.recognizer setBlocksOtherRecognizers:YES];
    [listener.recognizer startListening];
    auto engine = stage_.next();
    EXPECT_TRUE(engine->hear<BlockOthers>().blocks);
    EXPECT_EQ((Texts{"Open the door!", "42"}), engine->hear<SetCommands>().commands);
    EXPECT_EQ((Listen{.session = 1, .reportsLevel = false, .fromFile = false}), engine->hear<Listen>());
    listener.release();
    EXPECT_TRUE(engine->isLeft());
}

TEST_F(RecognizerSession, WithoutCommandsItListensAllTheSame) {
    Listener listener;
    [listener.recognizer startListening];
    EXPECT_EQ(1U, stage_.next()->hear<Listen>().session);
}

TEST_F(RecognizerSession, TellsTheDelegate) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 1));
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close", "open"));
}

TEST_F(RecognizerSession, StartingTwiceIsOneListening) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    [listener.recognizer startListening];
    [listener.recognizer stopListening];
    EXPECT_EQ(1U, engine->hear<StopListening>().session);
    EXPECT_FALSE(stage_.hasNext());
}

TEST_F(RecognizerSession, TheEngineStaysForTheNextListening) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    for (std::uint64_t session = 1; session < 4; ++session) {
        [listener.recognizer stopListening];
        [listener.recognizer stopListening];
        [listener.recognizer startListening];
        EXPECT_EQ(session, engine->hear<StopListening>().session);
        EXPECT_EQ(session + 1, engine->hear<Listen>().session);
    }
    engine->say(phrase(4, 1, 0));
    EXPECT_TRUE(listener.runUntilHeard(1));
}

TEST_F(RecognizerSession, DeliversFromTheRunLoopOnly) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    for (int index = 0; index < 10; ++index) {
        engine->say(phrase(1, 1, 0));
        waitForMessages();
        [listener.recognizer setCommands:arrayOf({"open"})];
        [listener.recognizer startListening];
        EXPECT_THAT(listener.heard.texts, IsEmpty());
    }
    EXPECT_TRUE(listener.runUntilHeard(10));
}

TEST_F(RecognizerSession, NothingSaidBeforeTheStopIsTold) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    for (int index = 0; index < 3; ++index) {
        engine->say(phrase(1, 1, 0));
    }
    ASSERT_TRUE(listener.runUntilHeard(1));
    [listener.recognizer stopListening];
    [listener.recognizer startListening];
    engine->say(phrase(1, 1, 0)); // it had not heard of the stop
    engine->say(phrase(2, 1, 1));
    ASSERT_TRUE(
        runUntil([&] { return !listener.heard.texts.empty() && listener.heard.texts.back() == "close"; }));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
}

TEST_F(RecognizerSession, NothingComesOfAnObjectThatIsGone) {
    Listener other(Texts{"other"});
    auto others = start(other);
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    waitForMessages();
    listener.release();
    EXPECT_EQ(std::nullopt, engine->hearAny());
    others->say(phrase(1, 1, 0));
    ASSERT_TRUE(other.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, IsEmpty());
}

TEST_F(RecognizerSession, TheDelegateIsAskedEachTime) {
    Observed observed;
    Listener listener(Texts{"one", "two", "three"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    listener.heard.wantsCommands = false;
    engine->say(phrase(1, 1, 1));
    engine->say(Rejected{1, 2, 3}); // told after that
    ASSERT_TRUE(observed.runUntil(ZQMListeningRejected));
    listener.heard.wantsCommands = true;
    engine->say(phrase(1, 1, 2));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("one", "three"));
}

TEST_F(RecognizerSession, WithoutADelegateNothingHappens) {
    Observed observed;
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    id const delegate = [listener.recognizer delegate];
    [listener.recognizer setDelegate:nil];
    engine->say(phrase(1, 1, 0));
    engine->say(Rejected{1, 2, 3}); // told after that
    ASSERT_TRUE(observed.runUntil(ZQMListeningRejected));
    [listener.recognizer setDelegate:delegate];
    engine->say(phrase(1, 1, 1));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close"));
}

TEST_F(RecognizerSession, TwoListenIndependently) {
    Listener first(Texts{"open"});
    Listener second(Texts{"open", "close"});
    auto engineOfFirst = start(first);
    auto engineOfSecond = start(second);
    engineOfSecond->say(phrase(1, 1, 1));
    ASSERT_TRUE(second.runUntilHeard(1));
    [second.recognizer stopListening];
    engineOfFirst->say(phrase(1, 1, 0));
    ASSERT_TRUE(first.runUntilHeard(1));
    EXPECT_THAT(first.heard.texts, ElementsAre("open"));
    EXPECT_THAT(second.heard.texts, ElementsAre("close"));
}

TEST_F(RecognizerSession, TellsWhetherItBlocksOthersWhenThatChanges) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    for (const BOOL flag : {NO, YES, YES, NO, NO}) {
        [listener.recognizer setBlocksOtherRecognizers:flag];
    }
    [listener.recognizer stopListening];
    EXPECT_TRUE(engine->hear<BlockOthers>().blocks);
    EXPECT_FALSE(engine->hear<BlockOthers>().blocks);
    engine->hear<StopListening>();
}

// It can't be waited for: all of it is sent as soon as the engine reads.
TEST_F(RecognizerSession, AnEngineThatReadsNothingHoldsUpNothing) {
    Listener listener;
    [listener.recognizer startListening];
    auto engine = stage_.next();
    Texts texts;
    for (int index = 0; index < 20'000; ++index) {
        texts.push_back(std::string(100, 'a') + std::to_string(index));
    }
    [listener.recognizer setCommands:arrayOf(texts)];
    [listener.recognizer stopListening];
    engine->hear<Listen>();
    // The host's run loop sends the rest while the engine reads.
    std::atomic<bool> isRead = false;
    std::thread reader([&] {
        EXPECT_EQ(texts, engine->hear<SetCommands>().commands);
        engine->hear<StopListening>();
        isRead = true;
    });
    EXPECT_TRUE(runUntil([&] { return isRead.load(); }));
    reader.join();
}

TEST_F(RecognizerSession, AForkLeavesTheParentsListeningAlone) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    waitForMessages();
    const pid_t child = ::fork();
    if (child == 0) {
        const auto log = zqm::support::logged([&] {
            [listener.recognizer stopListening];
            [listener.recognizer startListening];
        });
        [listener.recognizer setBlocksOtherRecognizers:YES];
        [listener.recognizer setCommands:arrayOf({"close"})];
        runOut();
        const bool silent = listener.heard.texts.empty();
        listener.release();
        // An object of its own works.
        Listener own(Texts{"own"});
        auto ownEngine = start(own);
        ownEngine->say(phrase(1, 1, 0));
        const bool works = own.runUntilHeard(1);
        ::_exit((log.size() == 1 ? 0 : 1) + (silent ? 0 : 2) + (works ? 0 : 4));
    }
    int status = -1;
    ASSERT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status));
    ASSERT_TRUE(listener.runUntilHeard(1));
    [listener.recognizer setCommands:arrayOf({"parent"})];
    EXPECT_EQ((SetCommands{2, {"parent"}}), engine->hear<SetCommands>()) << "the child has said nothing";
    [listener.recognizer stopListening];
    engine->hear<StopListening>();
}

} // namespace
