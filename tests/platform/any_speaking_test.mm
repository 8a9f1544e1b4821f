// Whether anything speaks aloud, here or in another program.

#include "tests/engine/engine_process.h"
#include "tests/platform/speech_listener.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace zqm::platform::test;
using zqm::support::PulseServer;
using zqm::support::ScopedEnvironment;
using zqm::support::ScopedPulseServer;
using zqm::support::TemporaryFolder;

std::string longText() {
    std::string text;
    for (int count = 0; count < 500; ++count) {
        text += "Word after word goes by. ";
    }
    return text;
}

class AnySpeaking : public testing::Test {
protected:
    static bool isAnySpeaking() { return [NSSpeechSynthesizer isAnyApplicationSpeaking] == YES; }

    TemporaryFolder folder_;
    ScopedEnvironment runtime_{"XDG_RUNTIME_DIR", folder_.path().string()}; // only what speaks here
    PulseServer server_;
    ScopedPulseServer use_{server_};
};

TEST_F(AnySpeaking, IsSoFromTheStartToTheStop) {
    EXPECT_FALSE(isAnySpeaking());
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(longText())]);
    EXPECT_TRUE(isAnySpeaking());
    ASSERT_TRUE(runUntil([&] { return speaker.heard.words.size() > 1; }));
    EXPECT_TRUE(isAnySpeaking());
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(waitUntil([] { return !isAnySpeaking(); }));
}

TEST_F(AnySpeaking, IsOverWhenTheEndIsTold) {
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hi."]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_FALSE(isAnySpeaking());
}

TEST_F(AnySpeaking, CountsOtherPrograms) {
    zqm::test::EngineProcess other;
    other.send(zqm::test::speak(1, longText()));
    ASSERT_TRUE(other.next());
    EXPECT_TRUE(isAnySpeaking());
    ASSERT_EQ(0, ::kill(other.pid(), SIGKILL));
    EXPECT_TRUE(waitUntil([] { return !isAnySpeaking(); })) << "a killed program does not speak";
}

TEST_F(AnySpeaking, IsNotSoWhilePaused) {
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(longText())]);
    [speaker.synthesizer pauseSpeakingAtBoundary:NSSpeechImmediateBoundary];
    EXPECT_TRUE(waitUntil([] { return !isAnySpeaking(); }));
    EXPECT_TRUE([speaker.synthesizer isSpeaking]);
    [speaker.synthesizer continueSpeaking];
    EXPECT_TRUE(waitUntil([] { return isAnySpeaking(); }));
}

TEST_F(AnySpeaking, IsOverWithTheLastRelease) {
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(longText())]);
    EXPECT_TRUE(isAnySpeaking());
    speaker.release();
    EXPECT_TRUE(waitUntil([] { return !isAnySpeaking(); }));
}

} // namespace
