// espeak-ng's phonemes for a text, in symbols.

#pragma once

#include "engine/phonemes/phoneme_set.h"

#include <string>

namespace zqm::engine {

// The text as phoneme symbols: words, their stress, and the punctuation at which the voice pauses; a full
// stop at the end when there is nothing else. The voice must have been set in espeak-ng, and the set be its.
// UTF-8 of characters that espeak-ng can read; phonemes of its own in [[ ]] are taken where it was told to
// take them when it spoke last.
std::string textPhonemes(const std::string& text, const PhonemeSet& set);

} // namespace zqm::engine
