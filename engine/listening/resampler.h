// Brings sound to the rate that is listened at.

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct SRC_STATE_tag;

namespace zqm::engine {

class Resampler {
public:
    // Throws std::runtime_error for a rate that is out of all proportion.
    explicit Resampler(int rate);
    ~Resampler();

    // What can be told of the sound so far, valid until the next call. Of samples from -1 to 1, one channel;
    // what lies beyond is cut off.
    std::span<const std::int16_t> convert(std::span<const float> samples);
    // The rest.
    std::span<const std::int16_t> finish();

private:
    void process(std::span<const float> samples, bool isLast);

    double ratio_;
    std::unique_ptr<SRC_STATE_tag, SRC_STATE_tag* (*)(SRC_STATE_tag*)> state_;
    std::vector<float> converted_;
    std::vector<std::int16_t> rounded_;
};

} // namespace zqm::engine
