// The sound of a file, as it is listened to.

#pragma once

#include "engine/listening/resampler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct sf_private_tag;

namespace zqm::engine {

// Anything that libsndfile reads, of any rate; its channels are mixed.
class SoundDecoder {
public:
    // Reads from the descriptor, which it doesn't own. Throws std::runtime_error when that is no sound file.
    explicit SoundDecoder(int descriptor);

    // The next samples, a fraction of a second of them, valid until the next call; none at the end. Throws
    // std::runtime_error where the file can't be read any further.
    std::optional<std::span<const std::int16_t>> next();

private:
    std::unique_ptr<sf_private_tag, int (*)(sf_private_tag*)> file_;
    std::size_t channels_ = 0;
    std::int64_t missing_ = 0; // frames that are announced and were not read yet
    bool isAtEnd_ = false;
    std::vector<float> interleaved_;
    std::vector<float> mixed_;
    std::optional<Resampler> resampler_;
};

} // namespace zqm::engine
