#include "engine/listening/level_meter.h"

#include "engine/listening/listening_rate.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <span>
#include <vector>

using zqm::engine::kListeningRate;
using zqm::engine::LevelMeter;

namespace {

constexpr std::size_t kPeriod = kListeningRate / 10;

class LevelMeterTest : public testing::Test {
protected:
    std::vector<double> levels;
    LevelMeter meter{[this](double decibels) { levels.push_back(decibels); }};
};

std::vector<std::int16_t> sine(double amplitude, std::size_t count) {
    std::vector<std::int16_t> samples;
    for (std::size_t index = 0; index < count; ++index) {
        const double phase = 2 * std::numbers::pi * 100 * static_cast<double>(index) / kListeningRate;
        samples.push_back(static_cast<std::int16_t>(std::lround(amplitude * std::sin(phase))));
    }
    return samples;
}

TEST_F(LevelMeterTest, tellsTenASecond) {
    meter.take(std::vector<std::int16_t>(kListeningRate));
    EXPECT_EQ(levels, std::vector<double>(10, LevelMeter::kSilence));
}

TEST_F(LevelMeterTest, goesByFullScale) {
    meter.take(std::vector<std::int16_t>(kPeriod, 32767));
    meter.take(sine(32767, kPeriod));
    meter.take(sine(3276.7, kPeriod));
    meter.take(std::vector<std::int16_t>(kPeriod, 1));
    ASSERT_EQ(levels.size(), 4U);
    EXPECT_NEAR(levels[0], 0, 0.001);
    EXPECT_NEAR(levels[1], -3.01, 0.01);
    EXPECT_NEAR(levels[2], -23.01, 0.01);
    EXPECT_NEAR(levels[3], -90.3, 0.1);
}

TEST_F(LevelMeterTest, isTheSameHoweverTheSamplesCome) {
    const std::vector<std::int16_t> samples = sine(1000, 5 * kPeriod / 2);
    for (std::size_t begin = 0; begin < samples.size(); begin += 7) {
        meter.take(std::span(samples).subspan(begin, std::min<std::size_t>(7, samples.size() - begin)));
    }
    const std::vector<double> inPieces = levels;
    levels.clear();
    meter.reset(); // half a period was under way
    meter.take(samples);
    EXPECT_EQ(levels.size(), 2U);
    EXPECT_EQ(levels, inPieces);
}

} // namespace
