#include "cli/timeline/waveform.h"

#include <gtest/gtest.h>

#include <vector>

namespace zqm::cli {
namespace {

constexpr int kRate = 8000;

TEST(Waveform, OfNothingIsSilent) {
    const Waveform sound(kRate);
    EXPECT_EQ(sound.duration(), 0);
    EXPECT_EQ(sound.loudest(), 0);
    EXPECT_EQ(sound.between(0, 10).high, 0);
}

TEST(Waveform, TellsHowFarTheSoundSwings) {
    std::vector<float> samples(kRate, 0.125F);
    samples[4000] = 0.5F;
    samples[4001] = -0.75F;
    Waveform sound(kRate);
    sound.add(std::span(samples).first(4001));
    sound.add(std::span(samples).subspan(4001));
    EXPECT_EQ(sound.duration(), 1);
    EXPECT_EQ(sound.loudest(), 0.75F);
    EXPECT_EQ(sound.between(0, 0.5).high, 0.125F);
    EXPECT_EQ(sound.between(0, 0.5).low, 0.125F);
    EXPECT_EQ(sound.between(0.5, 0.501).high, 0.5F);
    EXPECT_EQ(sound.between(0.4, 0.6).low, -0.75F);
    EXPECT_EQ(sound.between(0.502, 1).low, 0.125F);
}

TEST(Waveform, IsSilentBeyondItsEnd) {
    Waveform sound(kRate);
    sound.add(std::vector<float>(kRate, 0.5F));
    EXPECT_EQ(sound.between(0.9, 5).high, 0.5F);
    EXPECT_EQ(sound.between(1.5, 5).high, 0);
    EXPECT_EQ(sound.between(-5, -1).high, 0);
    EXPECT_EQ(sound.between(3, 2).high, 0);
}

TEST(Waveform, IsOfAnyRate) {
    for (const int rate : {1, 500, 22050, 192000}) {
        Waveform sound(rate);
        std::vector<float> samples(static_cast<std::size_t>(rate) * 2, 0.25F);
        samples.back() = 1;
        sound.add(samples);
        EXPECT_EQ(sound.duration(), 2) << rate;
        EXPECT_EQ(sound.between(1.99, 2).high, 1) << rate;
        EXPECT_EQ(sound.between(0, 0.5).high, 0.25F) << rate;
    }
}

} // namespace
} // namespace zqm::cli
