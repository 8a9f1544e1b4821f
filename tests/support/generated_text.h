#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace zqm::support {

// Random texts for property tests: words of many scripts, numbers, addresses, emoji, punctuation, blanks,
// combining marks, lone surrogates, mixed without any sense. The same seed gives the same texts.
class TextGenerator {
public:
    explicit TextGenerator(std::uint64_t seed) : random_(seed) {}

    // A text of at least that many UTF-16 units, and a few more at most.
    std::u16string next(std::size_t length);

    // A number from 0 to the limit, without it.
    std::size_t below(std::size_t limit);

private:
    void appendPiece(std::u16string& text);

    std::mt19937_64 random_;
};

} // namespace zqm::support
