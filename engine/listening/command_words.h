// What a command sounds like: its text as words, and each word as phones of the recognizer's model.

#pragma once

#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/transcriber.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zqm::engine {

struct CommandWord {
    std::string text;                        // words of the same text have the same pronunciations
    std::vector<std::string> pronunciations; // phones parted by single blanks; never none, each once

    bool operator==(const CommandWord&) const = default;
};

// Or why the command can't be listened for, for people.
using CommandWords = std::variant<std::vector<CommandWord>, std::string>;

class CommandReader {
public:
    CommandReader(const PronunciationDictionary& dictionary, Transcriber transcriber)
        : dictionary_(dictionary), transcriber_(std::move(transcriber)) {}

    // Of valid UTF-8. Letter case and punctuation make no difference. Never an empty list of words. What may
    // be said in several ways (1066, 3.5) is one word with as many pronunciations.
    [[nodiscard]] CommandWords wordsOf(const std::string& command) const;

private:
    const PronunciationDictionary& dictionary_;
    Transcriber transcriber_;
};

} // namespace zqm::engine
