#include "engine/listening/resampler.h"

#include "engine/listening/listening_rate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <samplerate.h>
#include <stdexcept>
#include <string>

namespace zqm::engine {

namespace {

constexpr std::size_t kPortion = 4096; // samples that are made at once

std::int16_t rounded(float sample) {
    constexpr float kFullScale = -static_cast<float>(std::numeric_limits<std::int16_t>::min());
    constexpr float kLargest = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::lrint(std::clamp(sample * kFullScale, -kFullScale, kLargest)));
}

} // namespace

Resampler::Resampler(int rate)
    : ratio_(static_cast<double>(kListeningRate) / rate), state_(nullptr, &src_delete), converted_(kPortion) {
    if (rate <= 0 || src_is_valid_ratio(ratio_) == 0) {
        throw std::runtime_error("it has " + std::to_string(rate) + " samples a second");
    }
    int error = 0;
    state_.reset(src_new(SRC_SINC_MEDIUM_QUALITY, 1, &error));
    if (!state_) {
        throw std::runtime_error(src_strerror(error));
    }
}

Resampler::~Resampler() = default;

std::span<const std::int16_t> Resampler::convert(std::span<const float> samples) {
    rounded_.clear();
    if (ratio_ == 1) {
        std::transform(samples.begin(), samples.end(), std::back_inserter(rounded_), rounded);
    } else {
        process(samples, false);
    }
    return rounded_;
}

std::span<const std::int16_t> Resampler::finish() {
    rounded_.clear();
    if (ratio_ != 1) {
        process({}, true);
    }
    return rounded_;
}

void Resampler::process(std::span<const float> samples, bool isLast) {
    static constexpr float kNothing = 0; // for a pointer where there are none
    SRC_DATA data{};
    data.src_ratio = ratio_;
    data.end_of_input = isLast ? 1 : 0;
    data.data_out = converted_.data();
    data.output_frames = static_cast<long>(converted_.size());
    do {
        data.data_in = samples.empty() ? &kNothing : samples.data();
        data.input_frames = static_cast<long>(samples.size());
        if (const int error = src_process(state_.get(), &data); error != 0) {
            throw std::runtime_error(src_strerror(error));
        }
        samples = samples.subspan(static_cast<std::size_t>(data.input_frames_used));
        std::transform(converted_.begin(), converted_.begin() + data.output_frames_gen,
                       std::back_inserter(rounded_), rounded);
    } while (!samples.empty() || data.output_frames_gen == data.output_frames);
}

} // namespace zqm::engine
