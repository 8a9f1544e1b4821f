// What a word of a text is: what a listener would underline as it is spoken.

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace zqm::engine {

struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] std::size_t length() const { return end - begin; }
    bool operator==(const Range&) const = default;
};

struct Word {
    Range codePoints; // of the text given
    Range utf16;      // the same place in UTF-16 units

    bool operator==(const Word&) const = default;
};

// Finds words with Unicode's properties, and with ICU's dictionaries in scripts that part words without
// blanks. Keeps ICU's iterators, so one instance serves many texts.
class WordFinder {
public:
    WordFinder();
    ~WordFinder();
    WordFinder(const WordFinder&) = delete;
    WordFinder& operator=(const WordFinder&) = delete;

    // The words in order, none overlapping another. No word holds white space, so a text may be cut at any
    // and its parts searched one by one. The text holds no surrogates.
    [[nodiscard]] std::vector<Word> find(std::u32string_view text) const;

private:
    struct Iterators;
    std::unique_ptr<Iterators> iterators_;
};

} // namespace zqm::engine
