// Commands that stand in a text and say how the rest of it is spoken: "Now [[rate 250; emph +]]quickly."
//
// A list of commands stands between two delimiters; semicolons part its commands. Names and modes count in
// either case, white space around them doesn't count. A comment goes on to the next known command.

#pragma once

#include "engine/protocol/manner.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace zqm::engine {

// What can be wrong with a command.
inline constexpr int kBadParameter = -245;
inline constexpr int kBadCommandText = -246;
inline constexpr int kUnimplementedCommand = -247;
inline constexpr int kBadParameterCount = -252;

// A value, or by how much to raise or lower the present one.
struct Number {
    enum class Kind : std::uint8_t { Absolute, Plus, Minus };

    double value = 0; // never below 0
    Kind kind = Kind::Absolute;

    // What it makes of the present value; it may lead out of the range.
    [[nodiscard]] double appliedTo(double present) const;

    bool operator==(const Number&) const = default;
};

struct SetRate {
    Number wordsPerMinute;
    bool operator==(const SetRate&) const = default;
};

struct SetPitchBase {
    Number pitch; // 1 to 127
    bool operator==(const SetPitchBase&) const = default;
};

struct SetPitchModulation {
    Number modulation; // 0 to 127
    bool operator==(const SetPitchModulation&) const = default;
};

struct SetVolume {
    Number volume; // 0 to 1
    bool operator==(const SetVolume&) const = default;
};

struct Silence {
    std::uint32_t milliseconds = 0;
    bool operator==(const Silence&) const = default;
};

// To be told as the next word begins.
struct SyncMessage {
    std::uint32_t message = 0;
    bool operator==(const SyncMessage&) const = default;
};

// Of the next word.
struct Emphasis {
    bool more = true;
    bool operator==(const Emphasis&) const = default;
};

struct SetCharacters {
    protocol::SpellingMode mode = protocol::SpellingMode::Normal;
    bool operator==(const SetCharacters&) const = default;
};

struct SetNumbers {
    protocol::SpellingMode mode = protocol::SpellingMode::Normal;
    bool operator==(const SetNumbers&) const = default;
};

struct SetInput {
    protocol::InputMode mode = protocol::InputMode::Text;
    bool operator==(const SetInput&) const = default;
};

// Back to how the utterance began, but for the delimiters.
struct Reset {
    bool operator==(const Reset&) const = default;
};

struct Mistake {
    int code = 0;
    std::string message; // for people
    bool operator==(const Mistake&) const = default;
};

using Command = std::variant<SetRate, SetPitchBase, SetPitchModulation, SetVolume, Silence, SyncMessage,
                             Emphasis, SetCharacters, SetNumbers, SetInput, Reset, Mistake>;

struct PlacedCommand {
    std::size_t at = 0;       // acts before that UTF-16 unit of what is spoken
    std::size_t original = 0; // UTF-16 unit of the whole text: the command, or what is wrong with it
    Command command;

    bool operator==(const PlacedCommand&) const = default;
};

// A text without its commands. Where taking them out would join two words, a blank stands for them.
class EmbeddedText {
public:
    std::string text;                    // UTF-8
    std::vector<PlacedCommand> commands; // in their order
    protocol::Delimiters delimiters;     // as they are behind the text

    // Where a UTF-16 unit of the text stands in the whole text, commands included.
    [[nodiscard]] std::size_t originalPosition(std::size_t unit) const;

    // The text goes on at a unit as the whole text does at another. Units grow from call to call.
    void continueAt(std::size_t unit, std::size_t original);

private:
    struct Run {
        std::size_t unit = 0;
        std::size_t original = 0;
    };
    std::vector<Run> runs_;
};

// Of valid UTF-8. A list of commands that doesn't end is a mistake, and is spoken as it stands.
EmbeddedText parseEmbeddedText(std::string text, const protocol::Delimiters& delimiters);

} // namespace zqm::engine
