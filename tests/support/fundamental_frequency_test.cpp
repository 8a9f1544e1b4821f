#include "tests/support/fundamental_frequency.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

using namespace zqm::support;

namespace {

constexpr int kRate = 22050;

// A tone with overtones, which glides from one frequency to another.
std::vector<float> tone(double from, double to, double seconds = 1) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * kRate));
    double phase = 0;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const double share = static_cast<double>(index) / static_cast<double>(samples.size());
        phase += 2 * std::numbers::pi * (from * std::pow(to / from, share)) / kRate;
        samples[index] =
            static_cast<float>(0.2 * std::sin(phase) + 0.2 * std::sin(2 * phase) + 0.1 * std::sin(5 * phase));
    }
    return samples;
}

class FundamentalFrequency : public testing::TestWithParam<double> {};

TEST_P(FundamentalFrequency, isThatOfATone) {
    const std::vector<float> samples = tone(GetParam(), GetParam());
    EXPECT_NEAR(medianFrequency(samples, kRate), GetParam(), 0.01 * GetParam());
    EXPECT_LT(frequencySpread(samples, kRate), 0.1);
}

INSTANTIATE_TEST_SUITE_P(Tones, FundamentalFrequency, testing::Values(50, 90, 127.3, 220, 300, 450, 600));

TEST(FundamentalFrequencies, spreadAsFarAsAToneGlides) {
    EXPECT_NEAR(frequencySpread(tone(100, 200, 5), kRate), 0.8 * 12, 0.5);
}

TEST(FundamentalFrequencies, areNotFoundInNoiseOrSilence) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> noise(-0.5F, 0.5F);
    std::vector<float> samples(kRate);
    for (float& sample : samples) {
        sample = noise(random);
    }
    EXPECT_EQ(medianFrequency(samples, kRate), 0);
    EXPECT_EQ(medianFrequency(std::vector<float>(kRate), kRate), 0);
    EXPECT_EQ(medianFrequency({}, kRate), 0);
}

} // namespace
