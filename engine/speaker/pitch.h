// Pitch, as a host gives it and as espeak-ng takes it.

#pragma once

namespace zqm::engine {

// What a voice's file says of its pitch: the lowest and the highest, in a unit of espeak-ng's near to Hz.
struct VoicePitch {
    double low = 82; // espeak-ng's own, for a file that says nothing
    double high = 118;
};

// Parameters of espeak-ng, 0 to 100 (50: the voice's own), for the voice or for its higher variant.
struct PitchParameters {
    bool higher = false;
    int pitch = 50;
    int range = 50;

    bool operator==(const PitchParameters&) const = default;
};

// A variant of every voice, which goes on where the voice itself can't speak higher.
inline constexpr const char* kHigherVariant = "+f2";

// The modulation that every voice has by itself.
inline constexpr double kOwnPitchModulation = 64;

// Where on the scale of 1 to 127 a voice speaks by itself.
double ownPitchBase(const VoicePitch& voice);

// For a base of 1 to 127 and a modulation of 0 to 127, each taken to the nearest that can be spoken.
PitchParameters pitchParameters(const VoicePitch& voice, double base, double modulation);

} // namespace zqm::engine
