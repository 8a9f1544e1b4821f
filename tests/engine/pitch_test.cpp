#include "engine/pitch.h"

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

TEST(Pitch, isMonotoneWithoutModulation) {
    EXPECT_EQ(pitchParameters(kUsual, 40, 0).range, 0);
    EXPECT_EQ(pitchParameters(kUsual, 60, 0).range, 0);
    EXPECT_EQ(pitchParameters(kUsual, 60, 127).range, 100);
}

} // namespace
