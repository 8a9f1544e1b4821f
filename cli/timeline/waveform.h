#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zqm::cli {

// How far a sound swings from when to when, to the millisecond; so an hour takes a few megabytes.
class Waveform {
public:
    struct Swing {
        float low = 0;
        float high = 0;
    };

    explicit Waveform(int rate); // samples a second

    void add(std::span<const float> samples); // one channel, what comes next

    double duration() const; // seconds
    float loudest() const;   // the largest magnitude
    // Within these seconds; silence beyond the sound's end.
    Swing between(double begin, double end) const;

private:
    int rate_;
    std::size_t samples_ = 0;
    std::size_t samplesPerSwing_;
    std::vector<Swing> swings_;
};

} // namespace zqm::cli
