#include "engine/speaker/pitch.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace zqm::engine;

namespace {

constexpr VoicePitch kUsual{};

TEST(Pitch, ofAVoiceItselfNeedsNoParameters) {
    for (const VoicePitch& voice : {kUsual, VoicePitch{115, 130}, VoicePitch{95, 175}, VoicePitch{63, 120}}) {
        EXPECT_EQ(pitchParameters(voice, ownPitchBase(voice), kOwnPitchModulation), PitchParameters{});
    }
}

TEST(Pitch, ofAVoiceItselfIsThatOfAMan) {
    EXPECT_GT(ownPitchBase(kUsual), 35);
    EXPECT_LT(ownPitchBase(kUsual), 40);
    EXPECT_GT(ownPitchBase({115, 130}), ownPitchBase(kUsual));
}

TEST(Pitch, risesWithTheBase) {
    PitchParameters last = pitchParameters(kUsual, 30, 64);
    for (double base = 31; base < 62; ++base) {
        const PitchParameters next = pitchParameters(kUsual, base, 64);
        EXPECT_TRUE((next.higher && !last.higher) || (next.higher == last.higher && next.pitch > last.pitch))
            << base;
        last = next;
    }
}

TEST(Pitch, isWithinWhatCanBeSpoken) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double base : {-kInfinity, 0.0, 1.0, 25.0, 35.0, 60.0, 127.0, 1000.0, kInfinity}) {
        for (const double modulation : {-kInfinity, -1.0, 0.0, 64.0, 127.0, 128.0, kInfinity}) {
            for (const VoicePitch& voice : {kUsual, VoicePitch{115, 130}, VoicePitch{95, 175}}) {
                const PitchParameters parameters = pitchParameters(voice, base, modulation);
                EXPECT_GE(parameters.pitch, 0);
                EXPECT_LE(parameters.pitch, 99);
                EXPECT_GE(parameters.range, 0);
                EXPECT_LE(parameters.range, 100);
            }
        }
    }
}

// The lowest frequency (Hz) that espeak-ng makes of parameters; it reads beyond its tables at about 20.
double lowestFrequency(const VoicePitch& voice, const PitchParameters& parameters) {
    const double range = (voice.high - voice.low) * 108 / 4096;
    return (voice.low - 9) * std::exp2((parameters.pitch - 50) / 50.0) -
           18 * range * (parameters.range / 50.0 - 1);
}

TEST(Pitch, givesWayToItselfWhereModulationWouldMakeItTooLow) {
    for (const VoicePitch& voice : {kUsual, VoicePitch{115, 130}, VoicePitch{95, 175}, VoicePitch{63, 120}}) {
        for (double base = 1; base < 45; ++base) {
            const PitchParameters parameters = pitchParameters(voice, base, 127);
            ASSERT_FALSE(parameters.higher);
            EXPECT_GT(lowestFrequency(voice, parameters), 33) << base;
        }
    }
}

TEST(Pitch, isMonotoneWithoutModulation) {
    EXPECT_EQ(pitchParameters(kUsual, 40, 0).range, 0);
    EXPECT_EQ(pitchParameters(kUsual, 60, 0).range, 0);
    EXPECT_EQ(pitchParameters(kUsual, 60, 127).range, 100);
}

} // namespace
