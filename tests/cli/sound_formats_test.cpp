#include "cli/sound/sound_formats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace zqm::cli {
namespace {

using testing::Contains;
using testing::Field;
using testing::HasSubstr;
using testing::StartsWith;

TEST(SoundFormats, AreFoundByExtensionInWhateverCase) {
    for (const char* extension : {"wav", "WAV", "Wav"}) {
        const auto format = findSoundFormat(extension);
        ASSERT_TRUE(format) << extension;
        EXPECT_THAT(format->description, StartsWith("WAV (Microsoft)"));
        EXPECT_EQ(format->extension, "wav");
        EXPECT_EQ(format->rate, kUsualRate);
    }
    EXPECT_THAT(findSoundFormat("")->description, StartsWith("AIFF"));
}

TEST(SoundFormats, ThatAreUnknownAreNone) {
    for (const char* extension : {"text", "wa", "wavv", ".wav", "wav ", "ogg\n"}) {
        EXPECT_FALSE(findSoundFormat(extension)) << extension;
    }
}

TEST(SoundFormats, HaveOtherRatesWhereTheyMust) {
    EXPECT_EQ(findSoundFormat("opus")->rate, 24000);
    EXPECT_EQ(findSoundFormat("opus", 48000)->rate, 48000);
    EXPECT_THAT(findSoundFormat("opus")->description, HasSubstr("24000 Hz"));
    EXPECT_EQ(findSoundFormat("flac", 16000)->rate, 16000);
}

TEST(SoundFormats, AreAllOfLibsndfileThatMakeOneFile) {
    const auto formats = soundFormats();
    for (const char* extension :
         {"aiff", "au", "caf", "flac", "mp3", "ogg", "opus", "raw", "rf64", "voc", "w64", "wav", "wve"}) {
        EXPECT_THAT(formats, Contains(Field(&SoundFormat::extension, extension)));
    }
    EXPECT_THAT(formats, testing::Not(Contains(Field(&SoundFormat::extension, "sd2"))));
    EXPECT_GE(formats.size(), 28U);
}

} // namespace
} // namespace zqm::cli
