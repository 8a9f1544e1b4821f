#include "engine/listening/level_meter.h"

#include "engine/listening/listening_rate.h"

#include <cmath>
#include <limits>

namespace zqm::engine {

namespace {

constexpr std::size_t kPeriod = kListeningRate / 10;
constexpr double kFullScale = std::numeric_limits<std::int16_t>::max();

double decibels(double meanSquare) {
    constexpr double kPerDecade = 10; // of power
    return meanSquare > 0 ? kPerDecade * std::log10(meanSquare / (kFullScale * kFullScale))
                          : LevelMeter::kSilence;
}

} // namespace

void LevelMeter::take(std::span<const std::int16_t> samples) {
    for (const std::int16_t sample : samples) {
        sum_ += static_cast<double>(sample) * sample;
        if (++count_ == kPeriod) {
            const double level = decibels(sum_ / kPeriod);
            reset();
            handler_(level);
        }
    }
}

void LevelMeter::reset() {
    count_ = 0;
    sum_ = 0;
}

} // namespace zqm::engine
