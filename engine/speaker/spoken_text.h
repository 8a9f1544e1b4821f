// What espeak-ng is given for a piece of text that is spoken in a certain manner.

#pragma once

#include "engine/phonemes/phoneme_text.h"
#include "engine/speaker/espeak_text.h"
#include "engine/speaker/lexicon.h"
#include "engine/text/literal_spelling.h"
#include "engine/text/text_pieces.h"

#include <optional>
#include <vector>

namespace zqm::engine {

struct SpokenManner {
    SpellingModes spelling{};
    std::optional<bool> emphasis{}; // of the first word: more or less
    int rate = 0;                   // words a minute, which emphasis departs from
};

// A piece of words.
EspeakText spokenText(const Piece& piece, const SpokenManner& manner, const Lexicon& lexicon);

// A piece of phoneme symbols. Answers the mistakes in it too.
EspeakText spokenSymbols(const Piece& piece, const SpokenManner& manner, const PhonemeSet& set,
                         std::vector<SymbolMistake>& mistakes);

} // namespace zqm::engine
