// Whether a phrase is the command that it is most like, or something else that was said.

#pragma once

#include "engine/listening/phrase_decoder.h"
#include "engine/listening/phrase_detector.h"

namespace zqm::engine {

// What tells a command from other speech. All but the times are per hundredth of a second, in units of
// PocketSphinx's scores.
struct Doubts {
    double whole = 0;        // how much better any sounds fit than the command, over its words
    double worstWord = 0;    // the same of its worst word
    double aside = 0;        // seconds, the longest part of the phrase between, before or behind its words
    double poorestWord = 0;  // how far the word that fits worst is from the best that the model knows
    double slowestPhone = 0; // seconds that each phone takes, in the slowest word
};

// Of two fits of the phrase.
Doubts doubtsOf(const Phrase& phrase, const Fit& command, const Fit& sounds);

bool isCommand(const Doubts& doubts);

} // namespace zqm::engine
