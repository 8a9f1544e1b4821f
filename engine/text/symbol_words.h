// What the words and sentences of a text in phoneme symbols are.

#pragma once

#include "engine/text/words.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zqm::engine {

// What stands between white space, with its marks, and is not silent.
std::vector<Word> symbolWords(std::u32string_view text);

// Where a sentence begins behind the end of another: code points, each the beginning of a word.
std::vector<std::size_t> symbolSentences(std::u32string_view text, const std::vector<Word>& words);

} // namespace zqm::engine
