// The life of the engine beside its object and its host.

#include "tests/platform/speech_fixture.h"
#include "tests/support/process_table.h"

#include <CoreFoundation/CoreFoundation.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;

TEST_F(Speech, AKilledEngineEndsTheSpeechAndTheNextStartBringsANewOne) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(100'000), path("a.wav")));
    const auto engines = zqm::support::childrenOfThisProcess();
    ASSERT_FALSE(engines.empty());
    ::kill(engines.back(), SIGKILL);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_EQ(0U, filesIn(folder_)) << "the temporary file is removed";
    speaker.heard.words.clear();
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
    EXPECT_TRUE(speaker.heard.finished.back());
}

TEST_F(Speech, AnIdleEngineMayDie) {
    Speaker speaker;
    for (std::size_t round = 1; round <= 3; ++round) {
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
        ASSERT_TRUE(speaker.runToEnd(round));
        EXPECT_TRUE(speaker.heard.finished.back());
        for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
            ::kill(engine, SIGKILL);
        }
    }
}

TEST_F(Speech, NothingIsHeardAfterTheLastRelease) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    speaker.release();
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(Speech, NoEngineOutlivesItsObject) {
    {
        Speaker speaker;
        ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    }
    Speaker other; // later calls reap
    EXPECT_TRUE(waitUntil([&] {
        [other.synthesizer isSpeaking];
        return zqm::support::childrenOfThisProcess().empty();
    }));
}

TEST_F(Speech, AForkLeavesTheParentsSpeechAlone) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(5000 / kSlowness), path("a.wav")));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool dead = ![speaker.synthesizer isSpeaking] && !speaker.say("a", path("b.wav"));
        [speaker.synthesizer stopSpeaking];
        [speaker.synthesizer setRate:300];
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.1, 0);
        const bool silent = speaker.heard.order.empty();
        speaker.release();
        Speaker own; // an object of its own works
        const bool works =
            own.say("Hello world", path("child.wav")) && own.runToEnd() && own.heard.finished.front();
        ::_exit((dead ? 0 : 1) + (silent ? 0 : 2) + (works ? 0 : 4));
    }
    int status = -1;
    ASSERT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(5000U / kSlowness, speaker.heard.words.size());
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
    EXPECT_FALSE(std::filesystem::exists(path("b.wav")));
}

TEST_F(Speech, NoEngineOutlivesItsHost) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const std::string note = path("engine");
    EXPECT_EXIT(
        {
            Speaker speaker;
            speaker.say(manyWords(50000), path("a.wav"));
            std::ofstream(note) << zqm::support::childrenOfThisProcess().back();
            ::_exit(0);
        },
        testing::ExitedWithCode(0), "");
    pid_t engine = 0;
    std::ifstream(note) >> engine;
    ASSERT_GT(engine, 0);
    EXPECT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine); }));
    std::filesystem::remove(note);
    EXPECT_TRUE(waitUntil([&] { return filesIn(folder_) == 0; })) << "nor does its half-written file";
}

} // namespace
