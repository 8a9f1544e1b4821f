// How a text is spoken, and where speech may be interrupted.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zqm::protocol {

enum class InputMode : std::uint8_t { Text, Phonemes };
enum class SpellingMode : std::uint8_t { Normal, Literal }; // literal: one character or digit at a time
enum class Boundary : std::uint8_t { Immediate, Word, Sentence };

// What stands around commands in a text, in UTF-8; with one of them empty there are no commands.
struct Delimiters {
    std::string prefix = "[[";
    std::string suffix = "]]";

    bool operator==(const Delimiters&) const = default;
};

// What is not given stays as it is, or is the voice's own where nothing was before; a number that is none is
// the voice's own.
struct Manner {
    std::optional<double> rate{};      // words a minute
    std::optional<double> volume{};    // 0 to 1, linear
    std::optional<double> pitchBase{}; // 1 to 127, 12 to the octave: 30 to 40 about 90 Hz, 55 to 65 about 300
    std::optional<double> pitchModulation{}; // 0, monotone, to 127
    std::optional<InputMode> input{};
    std::optional<SpellingMode> characters{};
    std::optional<SpellingMode> numbers{};

    bool operator==(const Manner&) const = default;
};

} // namespace zqm::protocol
