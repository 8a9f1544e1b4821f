// Whether a phrase is the command that it is most like, or something else that was said.

#pragma once

#include "engine/listening/phrase_decoder.h"

namespace zqm::engine {

// What tells a command from other speech. The first two are per hundredth of a second, in units of
// PocketSphinx's scores; 0: nothing fits better than the command.
struct Doubts {
    double whole = 0;     // how much better any sounds fit than the command, over its words
    double worstWord = 0; // the same of its worst word
    double aside = 0;     // seconds of speech where the command has silence
};

// Of two fits of one phrase.
Doubts doubtsOf(const Fit& command, const Fit& sounds);

bool isCommand(const Doubts& doubts);

} // namespace zqm::engine
