#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zqm::support {

// A stretch of a recording in which something is heard.
struct SoundedPart {
    std::size_t begin = 0; // samples; both ends are loud
    std::size_t end = 0;

    bool operator==(const SoundedPart&) const = default;
};

// The parts of a recording that are parted by silences of at least that many samples. What stays below
// the threshold is silence.
std::vector<SoundedPart> soundedParts(std::span<const float> samples, std::size_t silence,
                                      float threshold = 0.003F);

// Seconds from the first sound to the last one; 0 for silence.
double heardSeconds(std::span<const float> samples, int rate);

} // namespace zqm::support
