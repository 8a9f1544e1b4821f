#pragma once

#include "cli/say/speech_timing.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zqm::cli {

// A word and what stands around it, as UTF-8: punctuation, and one blank in place of white space behind it.
struct CuePart {
    double begin; // seconds
    double end;
    std::string text;
    bool startsLine = false;
};

// What is shown at a time.
using Cue = std::vector<CuePart>; // never empty

// A cue for each sentence of which a word is heard, without the commands and control characters in it.
std::vector<Cue> sentenceCues(const SpeechTiming& timing);

// The same, those cut that don't fit into two lines of so many columns, and in lines. A word that is longer
// than a line becomes several parts, which share its time by their columns.
std::vector<Cue> shortCues(const SpeechTiming& timing, std::size_t columns);

} // namespace zqm::cli
