// The synthesizer with engines that misbehave. The library loaded here is a link in a folder of its own, with
// bad_engine.cpp beside it under the engine's name.

#include "tests/platform/engine_fault_fixture.h"
#include "tests/support/few_descriptors.h"
#include "tests/support/log_lines.h"

#include <CoreFoundation/CoreFoundation.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace zqm::platform::test;
using zqm::support::FewDescriptors;
using zqm::support::ScopedEnvironment;

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

// Unlike a file, sound takes what an engine may have to be new for, as the folder of a sound server.
TEST_F(EngineFault, AnEngineThatCanNotBeHeardIsReplacedByTheNextStart) {
    Speaker speaker;
    {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", "refuse");
        EXPECT_FALSE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    }
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    EXPECT_TRUE(speaker.runToEnd());
    EXPECT_TRUE(speaker.heard.finished.front());
}

// The one that told of the voices may be ending yet, and is reaped by a call.
bool waitForOnlyEngineOf(Speaker& speaker) {
    return waitUntil([&] {
        [speaker.synthesizer isSpeaking];
        return zqm::support::childrenOfThisProcess().size() == 1;
    });
}

TEST_F(EngineFault, AnEngineThatRefusesAFileIsKept) {
    Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "refuse");
    EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(waitForOnlyEngineOf(speaker));
    const auto engines = zqm::support::childrenOfThisProcess();
    EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
    EXPECT_EQ(engines, zqm::support::childrenOfThisProcess());
}

TEST_F(EngineFault, AHostWithoutDescriptorsForTheFileKeepsItsEngine) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd());
    ASSERT_TRUE(waitForOnlyEngineOf(speaker));
    const auto engines = zqm::support::childrenOfThisProcess();
    bool isStarted = false;
    std::vector<std::string> log;
    for (rlim_t spare = 0; !isStarted; ++spare) {
        log = zqm::support::logged([&] {
            const FewDescriptors limit(spare);
            isStarted = speaker.say("Hello world", path("b.wav"));
        });
        EXPECT_EQ(engines, zqm::support::childrenOfThisProcess()) << spare;
        if (!isStarted) {
            ASSERT_EQ(1U, log.size());
            EXPECT_TRUE(log[0].ends_with("Too many open files")) << log[0];
        }
    }
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ((std::vector<bool>{true, true}), speaker.heard.finished);
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
    EXPECT_TRUE(isFolderEmpty()) << "the temporary file is removed";
    if (std::string_view(GetParam()) != "fail") { // that engine lives, and fails for ever
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

TEST_F(EngineFault, PhonemesThatAreNoneAreNotTold) {
    Speaker speaker;
    const auto log = zqm::support::logged([&] {
        const ScopedEnvironment fault("ZQM_BAD_ENGINE", "something else for phonemes");
        EXPECT_EQ([speaker.synthesizer phonemesFromText:@"dog"], nil);
    });
    EXPECT_EQ(log, std::vector<std::string>{
                       "Phonemes can't be told: the speech engine said something that makes no sense"});
    EXPECT_TRUE([[speaker.synthesizer phonemesFromText:@"dog"] isEqual:@"_d1AOg."]) << "of a new engine";
}

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

// The delegate hears of nothing until both are over.
TEST_F(EngineFault, AReasonIsToldWithTheEndThatItIsOf) {
    Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "fail once");
    for (const char* name : {"a.wav", "b.wav"}) {
        ASSERT_TRUE(speaker.say("Hello world", path(name)));
        ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    }
    const auto log = zqm::support::logged([&] { ASSERT_TRUE(speaker.runToEnd(2)); });
    EXPECT_EQ((std::vector<bool>{false, true}), speaker.heard.finished);
    EXPECT_EQ(std::vector<std::string>{"Speech ended early: the disk is full"}, log);
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
