#pragma once

#include "cli/say/speech_timing.h"
#include "cli/timeline/waveform.h"

#include <string>

namespace zqm::cli {

// A picture of a speech, as SVG: the sound, below it the words and the phonemes where they are heard, and a
// scale in seconds. What is longer than a row goes on in the next one, where a word begins. It is dark where
// its viewer prefers that.
std::string timelineSvg(const SpeechTiming& timing, const Waveform& sound);

} // namespace zqm::cli
