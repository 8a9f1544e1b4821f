#include "tests/support/fundamental_frequency.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zqm::support {

namespace {

constexpr double kLowest = 40;
constexpr double kHighest = 700;

// How alike a stretch is to the one that begins `lag` samples later: 1 when they are the same.
double likeness(std::span<const float> samples, std::size_t length, std::size_t lag) {
    double product = 0;
    double first = 0;
    double second = 0;
    for (std::size_t index = 0; index < length; ++index) {
        const double here = samples[index];
        const double there = samples[index + lag];
        product += here * there;
        first += here * here;
        second += there * there;
    }
    const double energy = std::sqrt(first * second);
    return energy > 0 ? product / energy : 0;
}

// The shortest period at which the stretch is nearly as much like itself as at the best one, which may be a
// multiple of it; 0 for noise.
double period(std::span<const float> samples, std::size_t length, std::size_t shortest, std::size_t longest) {
    constexpr double kVoiced = 0.7;
    constexpr double kNearly = 0.9;
    std::vector<double> likenesses(longest + 2);
    for (std::size_t lag = shortest - 1; lag < likenesses.size(); ++lag) {
        likenesses[lag] = likeness(samples, length, lag);
    }
    const double best =
        *std::max_element(likenesses.begin() + static_cast<std::ptrdiff_t>(shortest), likenesses.end());
    if (best < kVoiced) {
        return 0;
    }
    for (std::size_t lag = shortest; lag <= longest; ++lag) {
        const double before = likenesses[lag - 1];
        const double here = likenesses[lag];
        const double after = likenesses[lag + 1];
        if (here >= kNearly * best && here >= before && here > after) {
            return static_cast<double>(lag) + 0.5 * (before - after) / (before - 2 * here + after);
        }
    }
    return 0;
}

double quantile(std::vector<double> values, double share) {
    const auto place =
        values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

} // namespace

std::vector<double> fundamentalFrequencies(std::span<const float> samples, int rate) {
    constexpr double kStretch = 0.040;
    constexpr double kQuiet = 0.02;
    const auto length = static_cast<std::size_t>(kStretch * rate);
    const auto shortest = static_cast<std::size_t>(rate / kHighest);
    const auto longest = static_cast<std::size_t>(rate / kLowest);
    std::vector<double> frequencies;
    for (std::size_t at = 0; at + length + longest + 2 <= samples.size(); at += length / 2) {
        const std::span<const float> stretch = samples.subspan(at);
        double energy = 0;
        for (std::size_t index = 0; index < length; ++index) {
            energy += static_cast<double>(stretch[index]) * stretch[index];
        }
        if (std::sqrt(energy / static_cast<double>(length)) < kQuiet) {
            continue;
        }
        if (const double found = period(stretch, length, shortest, longest); found > 0) {
            frequencies.push_back(rate / found);
        }
    }
    return frequencies;
}

double medianFrequency(std::span<const float> samples, int rate) {
    const std::vector<double> frequencies = fundamentalFrequencies(samples, rate);
    return frequencies.empty() ? 0 : quantile(frequencies, 0.5);
}

double frequencySpread(std::span<const float> samples, int rate) {
    const std::vector<double> frequencies = fundamentalFrequencies(samples, rate);
    constexpr double kSemitones = 12;
    return frequencies.empty()
               ? 0
               : kSemitones * std::log2(quantile(frequencies, 0.9) / quantile(frequencies, 0.1));
}

} // namespace zqm::support
