#include "engine/listening/sound_decoder.h"

#include <cmath>
#include <limits>
#include <sndfile.h>
#include <stdexcept>
#include <string>

namespace zqm::engine {

namespace {

constexpr std::size_t kPortion = 4096; // frames

// Files of floating point may hold anything, and what is no number would never leave the resampler again.
float usable(float sample) {
    return std::isfinite(sample) ? sample : 0;
}

} // namespace

SoundDecoder::SoundDecoder(int descriptor) : file_(nullptr, &sf_close) {
    SF_INFO info{};
    file_.reset(sf_open_fd(descriptor, SFM_READ, &info, SF_FALSE));
    if (!file_) {
        throw std::runtime_error(sf_strerror(nullptr));
    }
    channels_ = static_cast<std::size_t>(info.channels);
    missing_ = info.frames == std::numeric_limits<sf_count_t>::max() ? 0 : info.frames;
    resampler_.emplace(info.samplerate);
    interleaved_.resize(kPortion * channels_);
}

std::optional<std::span<const std::int16_t>> SoundDecoder::next() {
    if (isAtEnd_) {
        return std::nullopt;
    }
    const sf_count_t frames = sf_readf_float(file_.get(), interleaved_.data(), kPortion);
    missing_ -= frames;
    if (frames == 0) {
        isAtEnd_ = true;
        if (sf_error(file_.get()) != SF_ERR_NO_ERROR) {
            throw std::runtime_error(sf_strerror(file_.get()));
        }
        if (missing_ > 0) {
            throw std::runtime_error("it ends before its header says");
        }
        return resampler_->finish();
    }
    mixed_.clear();
    for (std::size_t frame = 0; frame < static_cast<std::size_t>(frames); ++frame) {
        float sum = 0;
        for (std::size_t channel = 0; channel < channels_; ++channel) {
            sum += usable(interleaved_[frame * channels_ + channel]);
        }
        mixed_.push_back(sum / static_cast<float>(channels_));
    }
    return resampler_->convert(mixed_);
}

} // namespace zqm::engine
