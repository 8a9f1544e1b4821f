// What is spoken character by character, or digit by digit, where a text is to be spoken literally.

#pragma once

#include "engine/protocol/manner.h"
#include "engine/text/words.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace zqm::engine {

enum class Spelling : std::uint8_t {
    Characters, // by their names
    Apart,      // by themselves: of scripts whose characters have no other names
    Digits
};

struct SpelledRun {
    Range codePoints; // of the text
    Spelling spelling = Spelling::Characters;

    bool operator==(const SpelledRun&) const = default;
};

struct SpellingModes {
    protocol::SpellingMode characters = protocol::SpellingMode::Normal;
    protocol::SpellingMode numbers = protocol::SpellingMode::Normal;
};

// The parts of a word that are spelled: all of it if it has letters and characters are literal, each number
// in it if numbers are. In order, none overlapping another.
std::vector<SpelledRun> spelledRuns(std::u32string_view text, const Range& word, const SpellingModes& modes);

} // namespace zqm::engine
