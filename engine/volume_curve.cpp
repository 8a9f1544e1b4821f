#include "engine/volume_curve.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zqm::engine {

namespace {

double valid(double volume) {
    return std::isnan(volume) ? 1.0 : std::clamp(volume, 0.0, 1.0);
}

void multiply(std::span<std::int16_t> samples, double volume) {
    if (volume < 1) {
        for (std::int16_t& sample : samples) {
            sample = static_cast<std::int16_t>(std::lround(sample * volume));
        }
    }
}

} // namespace

VolumeCurve::VolumeCurve(double volume) : volume_(valid(volume)) {}

void VolumeCurve::change(std::uint64_t sample, const Number& volume) {
    changes_.push_back({sample, volume, false});
}

void VolumeCurve::set(std::uint64_t sample, double volume) {
    const auto next = std::find_if(changes_.begin(), changes_.end(),
                                   [&](const Change& change) { return change.sample > sample; });
    changes_.insert(next, {sample, {valid(volume), Number::Kind::Absolute}, true});
}

void VolumeCurve::truncate(std::uint64_t end) {
    std::erase_if(changes_, [&](const Change& change) { return change.sample >= end && !change.byHost; });
}

void VolumeCurve::rewind(std::uint64_t sample) {
    std::optional<double> last;
    std::erase_if(changes_, [&](const Change& change) {
        const bool isMoved = change.byHost && change.sample > sample;
        if (isMoved) {
            last = change.volume.value;
        }
        return isMoved;
    });
    if (last) {
        set(sample, *last);
    }
}

void VolumeCurve::forgetBefore(std::uint64_t sample) {
    auto change = changes_.begin();
    for (; change != changes_.end() && change->sample < sample; ++change) {
        volume_ = valid(change->volume.appliedTo(volume_));
    }
    changes_.erase(changes_.begin(), change);
}

void VolumeCurve::scale(std::uint64_t from, std::span<std::int16_t> samples) const {
    double volume = volume_;
    for (const Change& change : changes_) {
        if (change.sample >= from + samples.size()) {
            break;
        }
        if (change.sample > from) {
            const auto count = static_cast<std::size_t>(change.sample - from);
            multiply(samples.first(count), volume);
            samples = samples.subspan(count);
            from = change.sample;
        }
        volume = valid(change.volume.appliedTo(volume));
    }
    multiply(samples, volume);
}

} // namespace zqm::engine
