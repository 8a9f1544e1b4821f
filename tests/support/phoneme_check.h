// What must hold of the phonemes told of any text, whatever its language.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zqm::support {

struct ToldPhoneme {
    std::int64_t opcode = 0;
    std::size_t word = 0; // words told before it

    bool operator==(const ToldPhoneme&) const = default;
};

// Everything wrong with the phonemes of one whole utterance of these words, one line each; empty when nothing
// is:
// - it doesn't begin and end in silence,
// - an opcode is none,
// - a word with a letter or digit has no phoneme (of symbols a voice need not know a name).
std::vector<std::string> phonemeFaults(std::span<const std::string> words,
                                       std::span<const ToldPhoneme> phonemes);

} // namespace zqm::support
