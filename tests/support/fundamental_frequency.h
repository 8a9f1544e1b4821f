// How high a voice speaks, measured.

#pragma once

#include <span>
#include <vector>

namespace zqm::support {

// The fundamental frequency (Hz) of each stretch of 40 ms that has one, between 40 and 700 Hz.
std::vector<double> fundamentalFrequencies(std::span<const float> samples, int rate);

// The one in the middle of them; 0 when there is none.
double medianFrequency(std::span<const float> samples, int rate);

// How far apart those lie between which eight tenths of them are, in semitones.
double frequencySpread(std::span<const float> samples, int rate);

} // namespace zqm::support
