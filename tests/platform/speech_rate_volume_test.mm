// Rate and volume.

#include "tests/platform/speech_fixture.h"
#include "tests/support/sound_file.h"

#include <fstream>
#include <limits>
#include <string>

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

TEST_F(Speech, RateAndVolumeAreKeptAsGiven) {
    Speaker speaker;
    EXPECT_EQ(1.0F, [speaker.synthesizer volume]);
    EXPECT_GT([speaker.synthesizer rate], 100.0F);
    [speaker.synthesizer setVolume:0.1F];
    [speaker.synthesizer setRate:321.5F];
    EXPECT_EQ(0.1F, [speaker.synthesizer volume]);
    EXPECT_EQ(321.5F, [speaker.synthesizer rate]);
    EXPECT_FALSE([speaker.synthesizer usesFeedbackWindow]);
    [speaker.synthesizer setUsesFeedbackWindow:YES];
    EXPECT_TRUE([speaker.synthesizer usesFeedbackWindow]);
}

TEST_F(Speech, RateAndVolumeAreHeard) {
    Speaker speaker;
    const std::string text = "A sentence of some length, to be compared.";
    ASSERT_TRUE(speaker.say(text, path("normal.wav")) && speaker.runToEnd(1));
    [speaker.synthesizer setRate:350];
    ASSERT_TRUE(speaker.say(text, path("fast.wav")) && speaker.runToEnd(2));
    [speaker.synthesizer setRate:175];
    [speaker.synthesizer setVolume:0.25F];
    ASSERT_TRUE(speaker.say(text, path("low.wav")) && speaker.runToEnd(3));
    const SoundFile normal(path("normal.wav"));
    const SoundFile low(path("low.wav"));
    EXPECT_LT(SoundFile(path("fast.wav")).seconds(), normal.seconds() * 0.75);
    EXPECT_NEAR(0.25, zqm::support::rms(low.samples) / zqm::support::rms(normal.samples), 0.03);
}

TEST_F(Speech, ARateChangesWhileSpeaking) {
    const UnreadPipe pipe(path("pipe.ogg"));
    ASSERT_TRUE(pipe.isMade());
    Speaker speaker;
    const std::string text = manyWords(500);
    ASSERT_TRUE(speaker.say(text, path("normal.wav")) && speaker.runToEnd(1));
    ASSERT_TRUE(speaker.say(text, path("pipe.ogg")));
    ASSERT_TRUE(pipe.fillsUp());
    [speaker.synthesizer setRate:350];
    std::string bytes;
    ASSERT_TRUE(runUntil([&] {
        bytes += pipe.read();
        return speaker.heard.finished.size() == 2;
    }));
    bytes += pipe.read();
    std::ofstream(path("fast.ogg"), std::ios::binary) << bytes;
    EXPECT_LT(SoundFile(path("fast.ogg")).seconds(), SoundFile(path("normal.wav")).seconds() * 0.9);
}

TEST_F(Speech, TakesAnyNumberForRateAndVolume) {
    for (const float value : {0.0F, -1.0F, 1.0e30F, std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()}) {
        Speaker speaker;
        [speaker.synthesizer setRate:value];
        [speaker.synthesizer setVolume:value];
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav"))) << value;
        [speaker.synthesizer setRate:value];
        ASSERT_TRUE(speaker.runToEnd()) << value;
        EXPECT_TRUE(speaker.heard.finished.front()) << value;
    }
}

} // namespace
