#include "engine/speaker/pitch.h"

#include <algorithm>
#include <cmath>

namespace zqm::engine {

namespace {

// The scale: two places on it, and the frequencies (Hz) that are heard there.
constexpr double kLowBase = 35;
constexpr double kLowFrequency = 90;
constexpr double kHighBase = 60;
constexpr double kHighFrequency = 300;

constexpr VoicePitch kHigherPitch{142, 220}; // of the variant's file

// espeak-ng's parameter goes up to 100, but nothing changes beyond this.
constexpr int kHighestParameter = 99;
constexpr int kOwnParameter = 50;
constexpr double kLargestModulation = 127;
constexpr double kLargestRange = 100;

// espeak-ng speaks a syllable between `floor` and so many times `range` above it; both are in Hz. A wider
// range lowers the floor. Below the lowest floor it reads beyond its tables.
constexpr double kLowestFloor = 36;
constexpr double kLowering = 18;
constexpr double kTypical = 32.4; // where half of the speech lies, measured
constexpr double kLowestFrequency = 60;

struct Tone {
    double floor = 0;
    double range = 0;

    [[nodiscard]] double frequency() const { return floor + kTypical * range; }
};

Tone toneOf(const VoicePitch& voice) {
    constexpr double kBelowLow = 9;
    constexpr double kRangeUnit = 108.0 / 4096;
    return {voice.low - kBelowLow, (voice.high - voice.low) * kRangeUnit};
}

// What the parameter has to be so that the voice is heard at a frequency: it doubles the floor every 50
// steps.
double pitchParameter(const Tone& own, double frequency, double range) {
    const double floor = frequency - kTypical * range + kLowering * (range - own.range);
    return kOwnParameter + kOwnParameter * std::log2(std::max(floor, 1.0) / own.floor);
}

} // namespace

double ownPitchBase(const VoicePitch& voice) {
    return kLowBase + (kHighBase - kLowBase) * std::log(toneOf(voice).frequency() / kLowFrequency) /
                          std::log(kHighFrequency / kLowFrequency);
}

PitchParameters pitchParameters(const VoicePitch& voice, double base, double modulation) {
    const double octaves = (std::clamp(base, 1.0, 127.0) - kLowBase) / (kHighBase - kLowBase);
    const double frequency =
        std::max(kLowFrequency * std::pow(kHighFrequency / kLowFrequency, octaves), kLowestFrequency);
    const double wanted =
        kLargestRange * std::clamp(modulation, 0.0, kLargestModulation) / kLargestModulation;

    PitchParameters parameters;
    double pitch = 0;
    for (const VoicePitch& candidate : {voice, kHigherPitch}) {
        const Tone own = toneOf(candidate);
        const double widest = (frequency - kLowestFloor) / kTypical;
        const double range = std::min(own.range * wanted / kOwnParameter, widest);
        parameters.range = static_cast<int>(std::lround(range / own.range * kOwnParameter));
        pitch = pitchParameter(own, frequency, range);
        if (pitch <= kHighestParameter) {
            break;
        }
        parameters.higher = true;
    }
    parameters.pitch = static_cast<int>(std::lround(std::clamp<double>(pitch, 0, kHighestParameter)));
    return parameters;
}

} // namespace zqm::engine
