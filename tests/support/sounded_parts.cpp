#include "tests/support/sounded_parts.h"

#include <cmath>

namespace zqm::support {

std::vector<SoundedPart> soundedParts(std::span<const float> samples, std::size_t silence, float threshold) {
    std::vector<SoundedPart> parts;
    for (std::size_t at = 0; at < samples.size(); ++at) {
        if (std::abs(samples[at]) < threshold) {
            continue;
        }
        if (parts.empty() || at - parts.back().end >= silence) {
            parts.push_back({.begin = at, .end = at + 1});
        } else {
            parts.back().end = at + 1;
        }
    }
    return parts;
}

double heardSeconds(std::span<const float> samples, int rate) {
    const std::vector<SoundedPart> whole = soundedParts(samples, samples.size() + 1);
    return whole.empty() ? 0 : static_cast<double>(whole.front().end - whole.front().begin) / rate;
}

} // namespace zqm::support
