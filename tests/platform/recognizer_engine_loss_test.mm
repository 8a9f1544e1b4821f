// Engines that end, or talk nonsense, or aren't there, while a recognizer listens.

#include "tests/platform/observed_listening.h"
#include "tests/platform/recognizer_fixture.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace zqm::platform::test;
using zqm::protocol::CommandProblem;
using zqm::support::logged;

constexpr const char* kReplaced = "; another one goes on listening";
constexpr const char* kEnded = "the speech engine ended unexpectedly";
constexpr const char* kNonsense = "the speech engine said something that makes no sense";

class RecognizerEngineLoss : public Recognition {
protected:
    // The next engine is told the same, as it comes from the run loop.
    std::unique_ptr<PlayedEngine> replacement(std::uint64_t session = 1) {
        EXPECT_TRUE(runUntil([&] { return stage_.hasNext(); }));
        auto engine = stage_.next();
        const auto list = engine->hear<SetCommands>();
        EXPECT_EQ(session, engine->hear<Listen>().session);
        engine->say(CommandsSet{list.list, {}});
        engine->say(Listening{session, ""});
        return engine;
    }
};

TEST_F(RecognizerEngineLoss, IsMadeUpFor) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    const auto log = logged([&] {
        engine->kill();
        engine = replacement();
        engine->say(phrase(1, 1, 1));
        ASSERT_TRUE(listener.runUntilHeard(2));
    });
    EXPECT_THAT(log, ElementsAre(std::string(kEnded) + kReplaced));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
}

TEST_F(RecognizerEngineLoss, IsToldEverythingThatWasSet) {
    Listener listener(Texts{"old"});
    auto engine = start(listener);
    [listener.recognizer setBlocksOtherRecognizers:YES];
    [listener.recognizer setCommands:arrayOf({"new"})];
    engine->kill();
    ASSERT_TRUE(runUntil([&] { return stage_.hasNext(); }));
    engine = stage_.next();
    EXPECT_TRUE(engine->hear<BlockOthers>().blocks);
    EXPECT_EQ((SetCommands{2, {"new"}}), engine->hear<SetCommands>());
    engine->hear<Listen>();
    engine->say(phrase(1, 2, 0));
    EXPECT_TRUE(listener.runUntilHeard(1));
}

TEST_F(RecognizerEngineLoss, WhatWasHeardBeforeIsTold) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    engine->say(phrase(1, 1, 1));
    engine.reset(); // it ends when it has handed on all of that
    engine = replacement();
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
}

TEST_F(RecognizerEngineLoss, MayComeBeforeTheFirstAnswer) {
    Listener listener(Texts{"open"});
    [listener.recognizer startListening];
    auto engine = stage_.next();
    engine->kill();
    engine = replacement();
    engine->say(phrase(1, 1, 0));
    EXPECT_TRUE(listener.runUntilHeard(1));
}

TEST_F(RecognizerEngineLoss, MayComeBetweenARequestAndItsAnswer) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    [listener.recognizer setCommands:arrayOf({"close"})];
    engine->hear<SetCommands>();
    engine->kill();
    [listener.recognizer setCommands:arrayOf({"stop"})];
    engine = replacement();
    engine->say(phrase(1, 3, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("stop"));
}

TEST_F(RecognizerEngineLoss, MayHappenAgainAndAgain) {
    Observed observed;
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    ASSERT_TRUE(observed.runUntil(ZQMListeningBegan));
    const auto log = logged([&] {
        for (std::size_t loss = 1; loss <= 4; ++loss) {
            engine->kill();
            engine = replacement();
            ASSERT_TRUE(observed.runUntil(ZQMListeningBegan, loss + 1));
        }
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(listener.runUntilHeard(1));
        engine->kill();
        engine = replacement();
    });
    const std::string replaced = std::string(kEnded) + kReplaced;
    const std::string failed = std::string("Nothing can be heard: ") + kEnded;
    EXPECT_THAT(log, ElementsAre(replaced, failed, failed, failed, replaced)) << "one line each";
}

TEST_F(RecognizerEngineLoss, AfterTheStopIsOfNoInterest) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    const auto log = logged([&] {
        [listener.recognizer stopListening];
        engine->kill();
        waitForNoEngine(listener);
    });
    EXPECT_THAT(log, IsEmpty());
    EXPECT_FALSE(stage_.hasNext());
    [listener.recognizer startListening];
    engine = replacement(2);
}

// Whether the engine is gone by then, or only soon.
TEST_F(RecognizerEngineLoss, ThatIsNotNoticedYetDoesNotKeepFromStoppingOrStarting) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    engine->kill();
    [listener.recognizer stopListening];
    [listener.recognizer startListening];
    engine = replacement(2);
    engine->say(phrase(2, 1, 0));
    EXPECT_TRUE(listener.runUntilHeard(1));
}

TEST_F(RecognizerEngineLoss, ThatIsNoticedByTheStopIsNotMadeUpFor) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    const auto log = logged([&] {
        engine->kill();
        ASSERT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine->process()); }));
        [listener.recognizer stopListening];
        EXPECT_TRUE(zqm::support::childrenOfThisProcess().empty());
        [listener.recognizer startListening];
        engine = replacement(2);
    });
    EXPECT_THAT(log, IsEmpty());
}

// Its turn comes while nobody looks; then the recognizer is stopped.
TEST_F(RecognizerEngineLoss, WhoseReplacementIsDueAtTheStopIsNotMadeUpFor) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    for (int losses = 0; losses < 2; ++losses) {
        engine->kill();
        ASSERT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine->process()); }));
        [listener.recognizer setCommands:[listener.recognizer commands]]; // it is noticed
        if (losses == 0) {
            engine = replacement();
        }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // longer than the first pause
    [listener.recognizer stopListening];
    EXPECT_TRUE(zqm::support::childrenOfThisProcess().empty());
    EXPECT_FALSE(stage_.hasNext());
}

TEST_F(RecognizerEngineLoss, TellsOfRefusedCommandsOnce) {
    Listener listener(Texts{"open", "!", "?"});
    const auto log = logged([&] {
        [listener.recognizer startListening];
        auto engine = stage_.next();
        const CommandsSet refusal{1, {CommandProblem{1, "it has no words"}}, 2};
        engine->say(refusal);
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(listener.runUntilHeard(1));
        engine->kill();
        ASSERT_TRUE(runUntil([&] { return stage_.hasNext(); }));
        engine = stage_.next();
        engine->say(refusal);
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(listener.runUntilHeard(2));
    });
    EXPECT_THAT(log,
                ElementsAre("\"!\" can't be listened for: it has no words",
                            "1 more of the commands can't be listened for", std::string(kEnded) + kReplaced));
}

// ---- engines that can't be relied on

class RecognizerNonsense : public RecognizerEngineLoss, public testing::WithParamInterface<std::string> {};

TEST_P(RecognizerNonsense, IsTheEndOfItsEngine) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    const auto log = logged([&] {
        engine->sayLine(GetParam());
        engine = replacement();
    });
    engine->say(phrase(1, 1, 1));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close"));
    EXPECT_THAT(log, ElementsAre(testing::AnyOf(std::string(kEnded) + kReplaced,
                                                std::string(kNonsense) + kReplaced)));
}

INSTANTIATE_TEST_SUITE_P(
    All, RecognizerNonsense,
    testing::Values("no message\n", zqm::protocol::encode(zqm::protocol::Event(phrase(1, 2, 0))),
                    zqm::protocol::encode(zqm::protocol::Event(phrase(1, 1, 2))),
                    zqm::protocol::encode(zqm::protocol::Event(phrase(2, 1, 0))),
                    zqm::protocol::encode(zqm::protocol::Event(Rejected{2, 0, 1})),
                    zqm::protocol::encode(zqm::protocol::Event(Listening{2, ""})),
                    zqm::protocol::encode(zqm::protocol::Event(EndOfInput{1})),
                    zqm::protocol::encode(zqm::protocol::Event(CommandsSet{2, {}})),
                    zqm::protocol::encode(zqm::protocol::Event(CommandsSet{1, {{2, "why"}}, 1})),
                    zqm::protocol::encode(zqm::protocol::Event(CommandsSet{1, {}, 3})),
                    zqm::protocol::encode(zqm::protocol::Event(zqm::protocol::Started{1, ""})),
                    zqm::protocol::encode(zqm::protocol::Event(zqm::protocol::Voices{}))));

TEST_F(RecognizerEngineLoss, OfAListThatIsOutOfUseNothingCanBeHeard) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    [listener.recognizer setCommands:arrayOf({"close"})];
    engine->hear<SetCommands>();
    engine->say(CommandsSet{2, {}});
    engine->say(phrase(1, 1, 0));
    engine = replacement();
    engine->say(phrase(1, 2, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close"));
}

// ---- files

class RecognizerFileLoss : public RecognizerEngineLoss {
protected:
    void SetUp() override {
        RecognizerEngineLoss::SetUp();
        std::ofstream(file_) << "sound";
        ZQMPlatformListenToFile(file_.c_str());
    }
    void TearDown() override { ZQMPlatformListenToFile(nullptr); }

    zqm::support::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "a.wav";
};

TEST_F(RecognizerFileLoss, WhatWasToldOfAFileIsNotToldAgain) {
    Observed observed;
    Listener listener(Texts{"open", "close", "stop"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0, 1, 2));
    engine->say(Rejected{1, 3, 4});
    ASSERT_TRUE(observed.runUntil(ZQMListeningRejected));
    engine->kill();
    engine = replacement();
    engine->say(phrase(1, 1, 0, 1, 2));
    engine->say(Rejected{1, 3, 4});
    engine->say(phrase(1, 1, 1, 5, 6));
    engine->say(EndOfInput{1});
    ASSERT_TRUE(observed.runUntil(ZQMListeningEnded));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
    EXPECT_THAT(observed.kinds(), ElementsAre(ZQMListeningBegan, ZQMListeningRecognized, ZQMListeningRejected,
                                              ZQMListeningRecognized, ZQMListeningEnded));
}

TEST_F(RecognizerFileLoss, AfterTheEndIsOfNoInterest) {
    Observed observed;
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    engine->say(EndOfInput{1});
    ASSERT_TRUE(observed.runUntil(ZQMListeningEnded));
    const auto log = logged([&] {
        engine->kill();
        waitForNoEngine(listener);
    });
    EXPECT_THAT(log, IsEmpty());
    EXPECT_FALSE(stage_.hasNext());
}

TEST_F(RecognizerFileLoss, AFileThatEndsEngineAfterEngineIsGivenUp) {
    Observed observed;
    Listener listener(Texts{"open"});
    [listener.recognizer startListening];
    const std::string reason = file_.string() + ": " + kEnded + " again and again";
    const auto isGivenUp = [&] {
        const auto failures = observed.of(ZQMListeningFailed);
        return !failures.empty() && failures.back().reason == reason;
    };
    for (int engines = 0; !isGivenUp(); ++engines) {
        ASSERT_LT(engines, 20);
        ASSERT_TRUE(runUntil([&] { return stage_.hasNext() || isGivenUp(); }));
        if (stage_.hasNext()) {
            stage_.next()->kill();
        }
    }
    waitForNoEngine(listener);
    // From then on it is as if it had ended.
    [listener.recognizer stopListening];
    ZQMPlatformListenToFile(nullptr);
    [listener.recognizer startListening];
    auto engine = stage_.next();
    engine->hear<SetCommands>();
    EXPECT_EQ((Listen{.session = 2, .reportsLevel = true, .fromFile = false}), engine->hear<Listen>());
}

// ---- no engine

class HiddenEngine {
public:
    HiddenEngine() { std::filesystem::rename(engine_, hidden_); }
    HiddenEngine(const HiddenEngine&) = delete;
    HiddenEngine& operator=(const HiddenEngine&) = delete;
    ~HiddenEngine() { std::filesystem::rename(hidden_, engine_); }

private:
    const std::filesystem::path engine_ = ZQM_ENGINE_PATH;
    const std::filesystem::path hidden_ = engine_.string() + ".hidden";
};

TEST_F(RecognizerEngineLoss, AnEngineThatIsNotThereIsTriedAgain) {
    Observed observed;
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        {
            const HiddenEngine hidden;
            ASSERT_NE(nil, listener.recognizer);
            [listener.recognizer startListening];
            ASSERT_TRUE(observed.runUntil(ZQMListeningFailed));
        }
        auto engine = replacement();
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(listener.runUntilHeard(1));
    });
    EXPECT_THAT(observed.kinds(), ElementsAre(ZQMListeningFailed, ZQMListeningBegan, ZQMListeningRecognized));
    EXPECT_THAT(log,
                ElementsAre("Nothing can be heard: there is no speech engine beside the platform library"));
}

TEST_F(RecognizerEngineLoss, StoppingEndsTheTries) {
    Listener listener(Texts{"open"});
    Listener other(Texts{"close"});
    {
        const HiddenEngine hidden;
        [listener.recognizer startListening];
        [listener.recognizer stopListening];
        [other.recognizer startListening];
    }
    // The other one's try comes after the one that would have been the first one's.
    auto engine = replacement();
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(other.runUntilHeard(1));
    EXPECT_FALSE(stage_.hasNext());
}

} // namespace
