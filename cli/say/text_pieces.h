// A long text in pieces that are spoken one after the other, so that neither sound nor memory of one grows
// with the text.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::cli {

// In UTF-16 units of the whole text.
struct TextPiece {
    std::size_t position = 0;
    std::size_t length = 0;

    bool operator==(const TextPiece&) const = default;
};

class TextPieces {
public:
    static constexpr std::size_t kMostWords = 2000;

    // Of a text that outlives this. The language (BCP 47) tells abbreviations from ends of sentences.
    TextPieces(std::u16string_view text, std::string language, std::size_t mostWords = kMostWords);
    ~TextPieces();
    TextPieces(const TextPieces&) = delete;
    TextPieces& operator=(const TextPieces&) = delete;

    // The next piece: so many words at most, up to the end of a sentence; of a longer sentence up to a word.
    // All of them together are the text. None at its end.
    std::optional<TextPiece> next();

private:
    struct Words;

    std::size_t endOfPiece();
    std::size_t sentenceEndBefore(std::size_t word) const;

    std::u16string_view text_;
    std::string language_;
    std::size_t mostWords_;
    std::size_t position_ = 0;
    std::unique_ptr<Words> words_;
};

// Whether the text may be parted at all: the commands of one piece would not count in the next.
bool hasCommands(std::string_view utf8);

} // namespace zqm::cli
