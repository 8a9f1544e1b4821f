#include "cli/timeline/waveform.h"

#include <algorithm>
#include <cmath>

namespace zqm::cli {

Waveform::Waveform(int rate)
    : rate_(rate), samplesPerSwing_(static_cast<std::size_t>(std::max(1, rate / 1000))) {}

void Waveform::add(std::span<const float> samples) {
    for (const float sample : samples) {
        if (samples_ % samplesPerSwing_ == 0) {
            swings_.push_back({sample, sample});
        }
        Swing& swing = swings_.back();
        swing.low = std::min(swing.low, sample);
        swing.high = std::max(swing.high, sample);
        ++samples_;
    }
}

double Waveform::duration() const {
    return static_cast<double>(samples_) / rate_;
}

float Waveform::loudest() const {
    float loudest = 0;
    for (const Swing& swing : swings_) {
        loudest = std::max({loudest, -swing.low, swing.high});
    }
    return loudest;
}

Waveform::Swing Waveform::between(double begin, double end) const {
    const double swingsPerSecond = rate_ / static_cast<double>(samplesPerSwing_);
    const auto index = [&](double swing) {
        return static_cast<std::size_t>(std::clamp(swing, 0.0, static_cast<double>(swings_.size())));
    };
    const std::size_t first = index(std::floor(begin * swingsPerSecond));
    const std::size_t last = index(std::ceil(end * swingsPerSecond));
    Swing whole;
    for (std::size_t at = first; at < last; ++at) {
        whole.low = at == first ? swings_[at].low : std::min(whole.low, swings_[at].low);
        whole.high = at == first ? swings_[at].high : std::max(whole.high, swings_[at].high);
    }
    return whole;
}

} // namespace zqm::cli
