#include "tests/support/sound_file.h"

#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

namespace zqm::support {
namespace {

// A header of 44 bytes, then 16-bit samples, little-endian.
std::string wave(std::uint16_t channels, std::uint32_t rate, const std::vector<std::int16_t>& samples) {
    std::string bytes;
    const auto number = [&bytes](std::uint32_t value, int count) {
        for (; count > 0; --count, value >>= 8) {
            bytes += static_cast<char>(value & 0xFF);
        }
    };
    const auto dataSize = static_cast<std::uint32_t>(samples.size() * 2);
    bytes += "RIFF";
    number(36 + dataSize, 4);
    bytes += "WAVEfmt ";
    number(16, 4);
    number(1, 2);
    number(channels, 2);
    number(rate, 4);
    number(rate * channels * 2, 4);
    number(channels * 2U, 2);
    number(16, 2);
    bytes += "data";
    number(dataSize, 4);
    for (const std::int16_t sample : samples) {
        number(static_cast<std::uint16_t>(sample), 2);
    }
    return bytes;
}

TEST(SoundFile, ReadsFormatRateLengthAndSamples) {
    const TemporaryFolder folder;
    std::ofstream(folder / "a.wav", std::ios::binary)
        << wave(2, 8000, {16384, -16384, 16384, 16384, 0, 0, 0, -16384});
    const SoundFile file(folder / "a.wav");
    EXPECT_NE(file.format.find("WAV"), std::string::npos);
    EXPECT_EQ(file.rate, 8000);
    EXPECT_EQ(file.channels, 2);
    EXPECT_EQ(file.frames(), 4U);
    EXPECT_DOUBLE_EQ(file.seconds(), 4.0 / 8000);
    EXPECT_EQ(file.samples, (std::vector<float>{0, 0.5F, 0, -0.25F}));
}

TEST(SoundFile, RefusesWhatIsNone) {
    const TemporaryFolder folder;
    const auto reading = [&folder](const char* name) { return SoundFile(folder / name).frames(); };
    std::ofstream(folder / "text.wav") << "no sound";
    EXPECT_THROW(reading("text.wav"), std::runtime_error);
    EXPECT_THROW(reading("absent.wav"), std::runtime_error);
    std::ofstream(folder / "empty.wav");
    EXPECT_THROW(reading("empty.wav"), std::runtime_error);
}

TEST(SoundFile, MeasuresLoudnessAndSilence) {
    const std::vector<float> samples = {0, 0, 1, -1, 0, 0.005F, 0, 0, 1};
    EXPECT_DOUBLE_EQ(longestSilence(samples, 2), 2.0);
    EXPECT_DOUBLE_EQ(longestSilence({}, 2), 0);
    EXPECT_DOUBLE_EQ(rms(std::vector<float>{1, -1, 1, -1}), 1);
    EXPECT_DOUBLE_EQ(rms({}), 0);
}

TEST(SoundFile, IsPartedAtSilences) {
    const std::vector<float> samples = {0, 0, 1, 0, -1, 0, 0, 2, 0, 0, 0, 3, 0, 0};
    EXPECT_EQ(partsBetweenSilences(samples, 1, 3), (std::vector<Samples>{{1, 0, -1, 0, 0, 2}, {3}}));
    EXPECT_EQ(partsBetweenSilences(samples, 2, 1), (std::vector<Samples>{{1, 0, -1}, {2}, {3}}));
    EXPECT_EQ(partsBetweenSilences(samples, 1, 4), (std::vector<Samples>{{1, 0, -1, 0, 0, 2, 0, 0, 0, 3}}));
    EXPECT_TRUE(partsBetweenSilences(std::vector<float>(9), 1, 1).empty());
}

TEST(SoundFile, IsReadAsItWasWritten) {
    const TemporaryFolder folder;
    writeSoundFile(folder / "a.wav", Samples{0.5F, -0.25F, 0}, 22050);
    const SoundFile file(folder / "a.wav");
    EXPECT_EQ(file.rate, 22050);
    EXPECT_EQ(file.channels, 1);
    ASSERT_EQ(file.frames(), 3U);
    EXPECT_NEAR(file.samples[0], 0.5, 0.001);
    EXPECT_NEAR(file.samples[1], -0.25, 0.001);
    EXPECT_EQ(file.samples[2], 0);
    EXPECT_THROW(writeSoundFile(folder / "absent" / "a.wav", Samples{0}, 22050), std::runtime_error);
}

} // namespace
} // namespace zqm::support
