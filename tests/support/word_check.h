// What must hold of the words of any text, whatever its language. An independent judge of a segmenter:
// it looks at characters and grapheme clusters only and finds no words itself.

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::support {

// In UTF-16 units of the text.
struct WordRange {
    std::size_t position = 0;
    std::size_t length = 0;

    bool operator==(const WordRange&) const = default;
};

// Everything wrong with the words of a text, one line each; empty when nothing is:
// - a word is empty, goes beyond the end, or doesn't begin at or after the end of the one before it,
// - an end of a word parts a surrogate pair or a grapheme cluster (but that of a blank and a mark),
// - a word holds white space,
// - a letter or digit stands in no word.
std::vector<std::string> wordFaults(std::u16string_view text, std::span<const WordRange> words);

} // namespace zqm::support
