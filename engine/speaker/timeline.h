// When each word of a piece is heard, from what espeak-ng tells of its own idea of words.

#pragma once

#include "engine/text/words.h"

#include <cstddef>
#include <vector>

namespace zqm::engine {

// A place in the text, as the synthesizer reports it, and the sample at which it is spoken.
struct Mark {
    std::size_t codePoint = 0;
    std::size_t sample = 0;
};

struct Marks {
    std::vector<Mark> words;           // as reported: some are missing, doubled, misplaced, or out of order
    std::vector<std::size_t> phonemes; // samples at which phonemes begin, pauses excepted, in order
    std::size_t end = 0;               // of the last phoneme, in samples
};

// The sample at which each word begins: never decreasing, none beyond the end. Words that the synthesizer
// reports believably have its time; the others stand between their neighbours, each at the beginning of a
// phoneme of its own, if there are enough.
std::vector<std::size_t> wordTimes(const std::vector<Word>& words, const Marks& marks);

} // namespace zqm::engine
