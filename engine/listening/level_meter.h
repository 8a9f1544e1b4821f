// How loud what is listened to is.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace zqm::engine {

// Of the root of the mean square: a square wave of full scale has 0 dB, a sine -3 dB.
class LevelMeter {
public:
    static constexpr double kSilence = -120; // decibels of no sound at all, which is endlessly far down

    // Told ten times a second of audio.
    explicit LevelMeter(std::function<void(double decibels)> handler) : handler_(std::move(handler)) {}

    void take(std::span<const std::int16_t> samples);
    void reset();

private:
    std::function<void(double)> handler_;
    std::size_t count_ = 0;
    double sum_ = 0; // of squares
};

} // namespace zqm::engine
