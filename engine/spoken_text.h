// What espeak-ng is given for a piece of text that is spoken in a certain manner.

#pragma once

#include "engine/espeak_text.h"
#include "engine/literal_spelling.h"
#include "engine/text_pieces.h"

#include <optional>

namespace zqm::engine {

struct SpokenManner {
    SpellingModes spelling{};
    std::optional<bool> emphasis{}; // of the first word: more or less
    int rate = 0;                   // words a minute, which emphasis departs from
};

EspeakText spokenText(const Piece& piece, const SpokenManner& manner);

} // namespace zqm::engine
