// A long text, piece by piece: each piece is spoken in one go, so positions can't drift and memory doesn't
// grow with the text.

#pragma once

#include "engine/words.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

struct Piece {
    std::u32string text;
    std::vector<Word> words;  // code points count in the piece, UTF-16 units in the whole text
    bool endsSentence = true; // a pause belongs behind it

    // What is left from a word on, as a piece of its own.
    [[nodiscard]] Piece from(std::size_t word) const;
};

class TextPieces {
public:
    // The longest piece, in code points.
    static constexpr std::size_t kLongest = 400;

    // Of valid UTF-8. The language (BCP 47) tells abbreviations from ends of sentences.
    TextPieces(std::string text, const std::string& language);
    ~TextPieces();
    TextPieces(const TextPieces&) = delete;
    TextPieces& operator=(const TextPieces&) = delete;

    // The next piece, cut at the end of a paragraph or sentence if there is one, and never inside a word;
    // but a word longer than a piece goes through several, and only the first lists it. None at the end.
    std::optional<Piece> next();

private:
    struct Window;
    struct Sentences;
    struct Cut {
        std::size_t at = 0;
        bool endsSentence = true;
    };

    [[nodiscard]] Window window(std::size_t codePoints) const;
    Piece longWord();
    Piece take(const Window& window, Cut cut);
    [[nodiscard]] Cut placeToCut(const Window& window) const;
    [[nodiscard]] std::size_t lastSentence(const Window& window) const;
    static std::size_t lastParagraph(const Window& window);
    static std::size_t lastWordAfter(const Window& window, bool (*follows)(std::u32string_view, std::size_t));

    std::string text_;
    std::size_t byte_ = 0;       // of text_, where the next piece begins
    std::size_t utf16_ = 0;      // the same place
    std::size_t insideWord_ = 0; // code points of a long word that are still to come
    WordFinder finder_;
    std::unique_ptr<Sentences> sentences_;
};

} // namespace zqm::engine
