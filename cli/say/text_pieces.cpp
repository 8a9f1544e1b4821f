#include "cli/say/text_pieces.h"

#include "cli/text/sentences.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf16.h>

namespace zqm::cli {
namespace {

// What follows decides whether a sentence ends; so much of it is looked at.
constexpr std::size_t kLookAhead = 200;

void check(UErrorCode status) {
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU finds no words: ") + u_errorName(status));
    }
}

} // namespace

// Words as they are counted: letters, numbers, and symbols such as emoji.
struct TextPieces::Words {
    Words() {
        UErrorCode status = U_ZERO_ERROR;
        iterator.reset(icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
        check(status);
    }
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;
    ~Words() { utext_close(&units); }

    void setText(std::u16string_view rest) {
        UErrorCode status = U_ZERO_ERROR;
        text = rest;
        utext_openUChars(&units, rest.data(), static_cast<std::int64_t>(rest.size()), &status);
        iterator->setText(&units, status);
        check(status);
        segment = 0;
    }

    // Where the next word begins; none when no more follows.
    std::optional<std::size_t> next() {
        for (std::int32_t end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
            const std::size_t begin = std::exchange(segment, static_cast<std::size_t>(end));
            if (iterator->getRuleStatus() >= UBRK_WORD_NONE_LIMIT || isSymbol(begin)) {
                return begin;
            }
        }
        return std::nullopt;
    }

    bool isSymbol(std::size_t at) const {
        UChar32 codePoint = 0;
        U16_GET(text, 0, at, text.size(), codePoint);
        return (U_GET_GC_MASK(codePoint) & U_GC_S_MASK) != 0;
    }

    std::unique_ptr<icu::BreakIterator> iterator;
    UText units = UTEXT_INITIALIZER;
    std::u16string_view text;
    std::size_t segment = 0; // where the next one begins
};

TextPieces::TextPieces(std::u16string_view text, std::string language, std::size_t mostWords)
    : text_(text), language_(std::move(language)), mostWords_(mostWords), words_(std::make_unique<Words>()) {}

TextPieces::~TextPieces() = default;

std::optional<TextPiece> TextPieces::next() {
    if (position_ == text_.size()) {
        return std::nullopt;
    }
    const std::size_t begin = std::exchange(position_, endOfPiece());
    return TextPiece{begin, position_ - begin};
}

std::size_t TextPieces::endOfPiece() {
    words_->setText(text_.substr(position_));
    for (std::size_t count = 0; count < mostWords_; ++count) {
        if (!words_->next()) {
            return text_.size();
        }
    }
    const std::optional<std::size_t> word = words_->next();
    return word ? position_ + sentenceEndBefore(*word) : text_.size();
}

// The last one before this word of the rest, or the word itself where none is.
std::size_t TextPieces::sentenceEndBefore(std::size_t word) const {
    const std::vector<std::size_t> ends = sentenceEnds(text_.substr(position_, word + kLookAhead), language_);
    const auto behind = std::ranges::upper_bound(ends, word);
    return behind == ends.begin() ? word : *std::prev(behind);
}

bool hasCommands(std::string_view utf8) {
    return utf8.find("[[") != std::string_view::npos;
}

} // namespace zqm::cli
