#include "engine/track.h"

#include <algorithm>

namespace zqm::engine {

void Track::append(std::span<const std::int16_t> samples) {
    samples_.insert(samples_.end(), samples.begin(), samples.end());
}

std::vector<std::int16_t> Track::copy(std::uint64_t from, std::size_t count) const {
    const auto begin = samples_.begin() + static_cast<std::ptrdiff_t>(from - begin_);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

void Track::truncate(std::uint64_t end) {
    samples_.resize(static_cast<std::size_t>(end - begin_));
}

void Track::forgetBefore(std::uint64_t sample) {
    // Moving the rest costs what it holds, so not for every sample.
    constexpr std::size_t kWorthwhile = 16384;
    const auto count = static_cast<std::size_t>(std::clamp(sample, begin_, end()) - begin_);
    if (count == samples_.size() || (count >= kWorthwhile && count >= samples_.size() / 2)) {
        samples_.erase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(count));
        begin_ += count;
    }
}

} // namespace zqm::engine
