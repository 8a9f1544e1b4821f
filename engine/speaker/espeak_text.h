// A text as espeak-ng gets it, with marks of its own kind in it, and where each of its characters comes from.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

class EspeakText {
public:
    // The parameter of a command within a text.
    enum class Command : char { Amplitude = 'A', Rate = 'S', SayAs = 'Y' };

    // A character of the text given, to be read as nothing but itself.
    void add(char32_t character, std::size_t origin);

    // What espeak-ng is to do from here on. It takes the place of the command for that of what follows, so
    // that is its origin.
    void addCommand(Command command, int value, std::size_t origin);

    // A word in espeak-ng's mnemonics.
    void addPhonemes(std::string_view mnemonics, std::size_t origin);

    [[nodiscard]] const std::string& text() const { return text_; } // UTF-8
    [[nodiscard]] const std::vector<std::size_t>& origins() const { return origins_; }

private:
    void append(char32_t character, std::size_t origin);
    void append(std::string_view ascii, std::size_t origin);

    std::string text_;
    std::vector<std::size_t> origins_; // of each code point
    char32_t last_ = U' ';
    char32_t lastLetter_ = U' '; // since the last blank
    bool afterPhonemes_ = false;
};

} // namespace zqm::engine
