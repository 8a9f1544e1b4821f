#include "engine/listening/resampler.h"

#include "engine/listening/listening_rate.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <stdexcept>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

std::vector<float> sine(double frequency, int rate, double seconds) {
    std::vector<float> samples;
    for (int index = 0; index < static_cast<int>(seconds * rate); ++index) {
        samples.push_back(
            static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * frequency * index / rate)));
    }
    return samples;
}

std::vector<std::int16_t> converted(int rate, std::span<const float> samples, std::size_t portion) {
    Resampler resampler(rate);
    std::vector<std::int16_t> result;
    const auto append = [&](std::span<const std::int16_t> part) {
        result.insert(result.end(), part.begin(), part.end());
    };
    for (; !samples.empty(); samples = samples.subspan(std::min(portion, samples.size()))) {
        append(resampler.convert(samples.first(std::min(portion, samples.size()))));
    }
    append(resampler.finish());
    return result;
}

class ResamplerOf : public testing::TestWithParam<int> {};

TEST_P(ResamplerOf, keepsTheWaveInItsPlace) {
    constexpr double kFrequency = 440;
    const int rate = GetParam();
    const std::vector<std::int16_t> result = converted(rate, sine(kFrequency, rate, 2), 1000);
    EXPECT_NEAR(static_cast<double>(result.size()), 2 * kListeningRate, 2);
    double worst = 0;
    // But for where it begins and ends suddenly.
    for (std::size_t index = 1000; index + 1000 < result.size(); ++index) {
        const double phase = 2 * std::numbers::pi * kFrequency * static_cast<double>(index) / kListeningRate;
        worst = std::max(worst, std::abs(result[index] / 32768.0 - 0.5 * std::sin(phase)));
    }
    EXPECT_LT(worst, 0.01);
}

INSTANTIATE_TEST_SUITE_P(Rates, ResamplerOf,
                         testing::Values(4000, 8000, 11025, 16000, 22050, 44100, 48000, 96000, 192000));

TEST(Resampler, isTheSameHoweverTheSamplesCome) {
    const std::vector<float> samples = sine(300, 44100, 1);
    EXPECT_EQ(converted(44100, samples, 1), converted(44100, samples, samples.size()));
}

TEST(Resampler, leavesOutWhatTheRateCannotHold) {
    const std::vector<std::int16_t> result = converted(48000, sine(12000, 48000, 1), 4096);
    const auto middle = std::span(result).subspan(1000, result.size() - 2000);
    EXPECT_LT(*std::max_element(middle.begin(), middle.end()), 20);
}

TEST(Resampler, cutsOffWhatIsTooLoud) {
    Resampler resampler(kListeningRate);
    const auto samples = resampler.convert(std::vector<float>{0, 0.5, 1, 2, 1e30F, -1, -3});
    EXPECT_THAT(std::vector(samples.begin(), samples.end()),
                ElementsAre(0, 16384, 32767, 32767, 32767, -32768, -32768));
}

TEST(Resampler, makesNothingOfNothing) {
    EXPECT_TRUE(converted(44100, {}, 1).empty());
    EXPECT_TRUE(converted(kListeningRate, {}, 1).empty());
}

TEST(Resampler, refusesRatesThatAreNone) {
    for (const int rate : {0, -44100, 1, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(Resampler{rate}, std::runtime_error) << rate;
    }
}

} // namespace
