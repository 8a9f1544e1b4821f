// A long text, piece by piece: each piece is spoken in one go, so positions can't drift and memory doesn't
// grow with the text.

#pragma once

#include "engine/protocol/manner.h"
#include "engine/text/words.h"

#include <cstddef>
#include <limits>
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
    std::vector<std::size_t> sentenceStarts{}; // indices of the words that begin a sentence
    std::size_t begin = 0;                     // UTF-16 unit of the whole text

    // The UTF-16 unit of the whole text at which a code point of the piece stands.
    [[nodiscard]] std::size_t utf16At(std::size_t codePoint) const;

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

    // What the text is from the next piece on, which decides what its words and sentences are.
    void setInput(protocol::InputMode input) { input_ = input; }

    static constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

    // The next piece, cut at the end of a paragraph or sentence if there is one, and never inside a word;
    // but a word longer than a piece goes through several, and only the first lists it. No piece goes beyond
    // the limit, a UTF-16 unit of the text, wherever that is. None at the end, or at the limit.
    std::optional<Piece> next(std::size_t limit = kNoLimit);

private:
    struct Window;
    struct Sentences;
    struct Cut {
        std::size_t at = 0;
        bool endsSentence = true;
    };

    [[nodiscard]] Window window(std::size_t codePoints, std::size_t limit) const;
    [[nodiscard]] Piece longWord(std::size_t limit);
    Piece take(const Window& window, Cut cut, const Window& around);
    [[nodiscard]] static Cut placeToCut(const Window& window);
    void findSentences(Window& window) const;
    static std::size_t lastWordAfter(const Window& window, bool (*follows)(std::u32string_view, std::size_t));

    std::string text_;
    std::size_t byte_ = 0;       // of text_, where the next piece begins
    std::size_t utf16_ = 0;      // the same place
    std::size_t insideWord_ = 0; // code points of a long word that are still to come
    bool startsSentence_ = true; // the next word does
    protocol::InputMode input_ = protocol::InputMode::Text;
    WordFinder finder_;
    std::unique_ptr<Sentences> sentences_;
};

} // namespace zqm::engine
