// The synthesizer with engines that misbehave. The library loaded here is a link in a folder of its own, with
// bad_engine.cpp beside it under the engine's name.

#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <CoreFoundation/CoreFoundation.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;
using zqm::support::ScopedEnvironment;
using zqm::support::TemporaryFolder;

class EngineFault : public testing::TestWithParam<const char*> {
protected:
    // What is counted here begins at none; the engines of earlier tests may take a moment to end.
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        ASSERT_TRUE(hasNoEngine());
    }

    static bool hasNoEngine() {
        if (zqm::support::childrenOfThisProcess().empty()) {
            return true; // and a process without a catalogue remains so
        }
        const Speaker other; // later calls reap
        return waitUntil([&] {
            [other.synthesizer isSpeaking];
            return zqm::support::childrenOfThisProcess().empty();
        });
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    bool isFolderEmpty() const { return std::filesystem::is_empty(folder_.path()); }

    TemporaryFolder folder_;
};

// ---- faults before the answer: the start is refused

class FaultAtTheStart : public EngineFault {};

TEST_P(FaultAtTheStart, IsARefusal) {
    Speaker speaker;
    {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", GetParam());
        EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
    }
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_TRUE(isFolderEmpty());
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
    if (std::string_view(GetParam()) != "refuse") { // that engine lives, and refuses for ever
        EXPECT_TRUE(speaker.say("Hello world", path("a.wav"))) << "a new engine";
        EXPECT_TRUE(speaker.runToEnd());
        EXPECT_TRUE(speaker.heard.finished.front());
    }
}

INSTANTIATE_TEST_SUITE_P(All, FaultAtTheStart,
                         testing::Values("close at once", "die on request", "garbage on request", "refuse",
                                         "finish a future utterance", "mute"));

// The next engine is given the same file, which holds nothing by then.
TEST_F(EngineFault, AFileThatAnEngineHadBegunIsBegunAnew) {
    Speaker speaker;
    {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", "die in a file");
        ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hello world"]);
        ASSERT_TRUE(speaker.runToEnd());
    }
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_TRUE(speaker.heard.finished.back());
}

TEST_F(EngineFault, AnEngineThatReadsNothingIsGivenUp) {
    Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "deaf");
    EXPECT_FALSE(speaker.say(std::string(10'000'000, 'a'), path("a.wav")));
    EXPECT_TRUE(isFolderEmpty());
    EXPECT_TRUE(hasNoEngine()) << "it is killed";
}

// ---- faults amid the speech: it ends with false

class FaultAmidSpeech : public EngineFault {};

TEST_P(FaultAmidSpeech, EndsTheSpeech) {
    Speaker speaker;
    {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", GetParam());
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
        ASSERT_TRUE(speaker.runToEnd());
    }
    runOut();
    EXPECT_EQ((std::vector<HeardWord>{{0, 5}}), speaker.heard.words);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    if (std::string_view(GetParam()) != "fail") { // that engine lives, and removes its own file
        EXPECT_TRUE(isFolderEmpty()) << "the temporary file is removed";
        EXPECT_TRUE(speaker.say("Hello world", path("a.wav"))) << "a new engine";
        EXPECT_TRUE(speaker.runToEnd(2));
        EXPECT_TRUE(speaker.heard.finished.back());
    }
}

INSTANTIATE_TEST_SUITE_P(All, FaultAmidSpeech,
                         testing::Values("die", "abort", "garbage", "overlong", "unfinished line",
                                         "word beyond the end", "word at a huge place", "word backwards",
                                         "word of no length", "word of a future utterance",
                                         "phoneme of a future utterance", "problem beyond the text",
                                         "pause of a future utterance", "going on unasked",
                                         "phonemes unasked", "start twice", "voices unasked", "fail"));

TEST_F(EngineFault, AnEngineThatDoesNotEndIsKilledInTheEnd) {
    pid_t engine = 0;
    {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", "stubborn");
        Speaker speaker;
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
        engine = zqm::support::childrenOfThisProcess().back();
    }
    EXPECT_TRUE(zqm::support::isAlive(engine)) << "letting go waits for nothing";
    EXPECT_TRUE(hasNoEngine());
}

TEST_F(EngineFault, AHostThatIgnoresItsChildrenLosesNothing) {
    ::signal(SIGCHLD, SIG_IGN);
    {
        Speaker speaker;
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd());
    }
    Speaker other;
    ASSERT_TRUE(other.say("Hello world", path("a.wav")) && other.runToEnd());
    EXPECT_TRUE(other.heard.finished.front());
    ::signal(SIGCHLD, SIG_DFL);
}

// Signals 32 and 33, which no program can set.
constexpr unsigned long long kOfTheCLibrary = 0x180000000;

TEST_F(EngineFault, OfTheHostAnEngineHasOnlyItsSocket) {
    const int leaked = ::dup(0); // not close-on-exec
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ::sigprocmask(SIG_BLOCK, &blocked, &before);
    ::signal(SIGPIPE, SIG_IGN);
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ::signal(SIGPIPE, SIG_DFL);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    ::close(leaked);

    const pid_t engine = zqm::support::childrenOfThisProcess().back();
    EXPECT_EQ(engine, ::getpgid(engine));
    const std::string folder = "/proc/" + std::to_string(engine);
    std::map<std::string, std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator(folder + "/fd")) {
        descriptors[entry.path().filename()] = std::filesystem::read_symlink(entry.path());
    }
    EXPECT_EQ("/dev/null", descriptors["0"]);
    EXPECT_EQ("/dev/null", descriptors["1"]);
    EXPECT_TRUE(descriptors["3"].starts_with("socket:")) << descriptors["3"];
    // This engine takes no descriptors out of the messages; those of the file and its folder wait beyond 3.
    for (const auto& [number, target] : descriptors) {
        EXPECT_TRUE(std::stoi(number) <= 3 || target.starts_with(folder_.path().string()))
            << number << ": " << target;
    }
    std::ifstream status(folder + "/status");
    int seen = 0;
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigBlk:") || line.starts_with("SigIgn:")) {
            ++seen;
            EXPECT_EQ(0U, std::stoull(line.substr(8), nullptr, 16) & ~kOfTheCLibrary) << line;
        }
    }
    EXPECT_EQ(2, seen);
}

// ---- faults of the catalogue, each in a process that has none yet

class CatalogueFault : public EngineFault {};

TEST_P(CatalogueFault, MeansNoVoicesAndIsNotRemembered) {
    EXPECT_EXIT(
        {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            int result = 0;
            {
                const ScopedEnvironment fault("ZQM_BAD_ENGINE", GetParam());
                result |= [[NSSpeechSynthesizer availableVoices] count] == 0 ? 0 : 1;
            }
            result |= [[NSSpeechSynthesizer availableVoices] count] == 2 ? 0 : 2;
            NSDictionary* const a = [NSSpeechSynthesizer attributesForVoice:@"test/a"];
            NSDictionary* const b = [NSSpeechSynthesizer attributesForVoice:@"test/b"];
            result |=
                [[a objectForKey:NSVoiceAge] intValue] == 33 && [b objectForKey:NSVoiceAge] == nil ? 0 : 4;
            result |= [[a objectForKey:NSVoiceGender] isEqual:NSVoiceGenderFemale] &&
                              [[b objectForKey:NSVoiceGender] isEqual:NSVoiceGenderNeuter]
                          ? 0
                          : 8;
            const ScopedEnvironment fault("ZQM_BAD_ENGINE", "garbage for voices");
            result |= [[NSSpeechSynthesizer availableVoices] count] == 2 ? 0 : 16; // but success is
            [pool drain];
            ::_exit(result);
        },
        testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(All, CatalogueFault,
                         testing::Values("close at once", "garbage for voices", "end instead of voices",
                                         "something else for voices", "no voices reply"));

TEST_F(EngineFault, WithoutVoicesThereIsNoSynthesizer) {
    EXPECT_EXIT(
        {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            const ScopedEnvironment fault("ZQM_BAD_ENGINE", "no voices");
            const bool right = [[NSSpeechSynthesizer availableVoices] count] == 0 &&
                               [NSSpeechSynthesizer defaultVoice] == nil &&
                               [[NSSpeechSynthesizer alloc] init] == nil &&
                               [[NSSpeechSynthesizer alloc] initWithVoice:@"test/a"] == nil;
            [pool drain];
            ::_exit(right ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
