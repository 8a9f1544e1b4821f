// Speech to a sound server.

#include "tests/platform/speech_fixture.h"
#include "tests/support/pulse_server.h"

namespace {

using namespace zqm::platform::test;

TEST_F(Speech, IsHeardThroughASoundServer) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(Speech, IsRefusedWithoutASoundServer) {
    const zqm::support::ScopedPulseServer use(zqm::support::ScopedPulseServer::unreachableAddress());
    Speaker speaker;
    EXPECT_FALSE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(Speech, IsStoppedAmidTheSound) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    Speaker speaker;
    speaker.heard.onWord = [](NSSpeechSynthesizer* sender) {
        EXPECT_TRUE([sender isSpeaking]);
        [sender stopSpeaking];
    };
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(manyWords(1000))]);
    EXPECT_TRUE([speaker.synthesizer isSpeaking]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
}

} // namespace
