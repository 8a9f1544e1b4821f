#pragma once

#include "cli/sound/sound_formats.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

struct sf_private_tag;

namespace zqm::cli {

// Reads a sound file of one channel.
class SoundReader {
public:
    // Both throw Failure when it is none.
    explicit SoundReader(const std::string& path);
    SoundReader(int descriptor, const SoundFormat& format); // from its beginning; the descriptor stays open

    int rate() const { return rate_; }
    std::int64_t frames() const { return frames_; }
    // The next samples: how many there were. 0 at the end.
    std::size_t read(std::span<std::int16_t> samples);
    std::size_t read(std::span<float> samples); // from -1 to 1

private:
    std::unique_ptr<sf_private_tag, int (*)(sf_private_tag*)> sound_;
    int rate_ = 0;
    std::int64_t frames_ = 0;
};

} // namespace zqm::cli
