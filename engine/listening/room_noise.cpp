#include "engine/listening/room_noise.h"

#include <algorithm>
#include <limits>

namespace zqm::engine {

namespace {

constexpr int kAmplitude = 40; // about -63 dBFS: no louder than a microphone's own

} // namespace

void RoomNoise::addTo(std::span<std::int16_t> samples) {
    std::uniform_int_distribution<int> noise(-kAmplitude, kAmplitude);
    for (std::int16_t& sample : samples) {
        constexpr int kLeast = std::numeric_limits<std::int16_t>::min();
        constexpr int kMost = std::numeric_limits<std::int16_t>::max();
        sample = static_cast<std::int16_t>(std::clamp(sample + noise(generator_), kLeast, kMost));
    }
}

} // namespace zqm::engine
