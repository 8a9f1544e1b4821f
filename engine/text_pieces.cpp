#include "engine/text_pieces.h"

#include "engine/characters.h"

#include <algorithm>
#include <stdexcept>
#include <unicode/brkiter.h>
#include <unicode/filteredbrk.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <utility>

namespace zqm::engine {

// ---- sentences

// Where sentences end, by ICU's rules and its lists of abbreviations.
struct TextPieces::Sentences {
    explicit Sentences(const std::string& language) {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale locale = icu::Locale::forLanguageTag(language, status);
        if (U_SUCCESS(status)) {
            open(locale, status);
        }
        if (U_FAILURE(status)) {
            status = U_ZERO_ERROR;
            open(icu::Locale::getEnglish(), status);
        }
        if (U_FAILURE(status)) {
            throw std::runtime_error(std::string("ICU has no sentence data: ") + u_errorName(status));
        }
    }

    void open(const icu::Locale& locale, UErrorCode& status) {
        std::unique_ptr<icu::BreakIterator> plain(icu::BreakIterator::createSentenceInstance(locale, status));
        const std::unique_ptr<icu::FilteredBreakIteratorBuilder> abbreviations(
            icu::FilteredBreakIteratorBuilder::createInstance(locale, status));
        if (U_SUCCESS(status)) {
            iterator.reset(abbreviations->wrapIteratorWithFilter(plain.release(), status));
        }
    }

    std::unique_ptr<icu::BreakIterator> iterator;
};

struct TextPieces::Window {
    std::u32string text;
    std::vector<Word> words; // UTF-16 units count in the window
    bool reachesEnd = false;
};

Piece Piece::from(std::size_t word) const {
    const std::size_t start = words.at(word).codePoints.begin;
    Piece rest{text.substr(start), {}, endsSentence};
    for (std::size_t index = word; index < words.size(); ++index) {
        Word moved = words[index];
        moved.codePoints.begin -= start;
        moved.codePoints.end -= start;
        rest.words.push_back(moved);
    }
    return rest;
}

namespace {

std::size_t utf16Length(std::u32string_view text) {
    std::size_t units = 0;
    for (const char32_t character : text) {
        units += static_cast<std::size_t>(U16_LENGTH(character));
    }
    return units;
}

std::size_t utf8Length(std::u32string_view text) {
    std::size_t bytes = 0;
    for (const char32_t character : text) {
        bytes += static_cast<std::size_t>(U8_LENGTH(character));
    }
    return bytes;
}

bool isLineEnd(char32_t character) {
    return character == U'\n' || character == U'\u2029';
}

// Whether the blanks before a place hold an empty line.
bool followsParagraph(std::u32string_view text, std::size_t at) {
    std::size_t lineEnds = 0;
    while (at > 0 && isBlank(text[at - 1]) && lineEnds < 2) {
        lineEnds += text[at - 1] == U'\u2029' ? 2 : isLineEnd(text[at - 1]) ? 1 : 0;
        --at;
    }
    return lineEnds >= 2;
}

// A full stop before it may be an abbreviation's.
bool followsBlank(std::u32string_view text, std::size_t at) {
    const std::size_t start = at;
    while (at > 0 && isBlank(text[at - 1])) {
        --at;
    }
    return at < start && at > 0 && text[at - 1] != U'.';
}

bool followsClause(std::u32string_view text, std::size_t at) {
    constexpr std::u32string_view kClauseEnds = U",;:)\u2014\u2013\u3001\uFF0C\uFF1B\uFF1A\u060C\u061B";
    while (at > 0 && isBlank(text[at - 1])) {
        --at;
    }
    return at > 0 && kClauseEnds.find(text[at - 1]) != std::u32string_view::npos;
}

// An abbreviation that no list knows: up to three letters and a full stop.
bool followsShortWord(std::u32string_view text, const std::vector<Word>& words, std::size_t at) {
    while (at > 0 && isBlank(text[at - 1])) {
        --at;
    }
    const auto next = std::find_if(words.begin(), words.end(),
                                   [at](const Word& word) { return word.codePoints.end >= at; });
    constexpr std::size_t kShort = 3;
    return at > 0 && text[at - 1] == U'.' && next != words.begin() &&
           std::prev(next)->codePoints.end == at - 1 && std::prev(next)->codePoints.length() <= kShort;
}

bool isInsideWord(const std::vector<Word>& words, std::size_t at) {
    return std::any_of(words.begin(), words.end(), [at](const Word& word) {
        return word.codePoints.begin < at && at < word.codePoints.end;
    });
}

} // namespace

// ---- pieces

TextPieces::TextPieces(std::string text, const std::string& language)
    : text_(std::move(text)), sentences_(std::make_unique<Sentences>(language)) {}

TextPieces::~TextPieces() = default;

TextPieces::Window TextPieces::window(std::size_t codePoints) const {
    Window window;
    std::size_t at = byte_;
    while (at < text_.size() && window.text.size() < codePoints) {
        UChar32 character = 0;
        U8_NEXT_UNSAFE(text_, at, character);
        window.text.push_back(static_cast<char32_t>(character));
    }
    window.reachesEnd = at == text_.size();
    window.words = finder_.find(window.text);
    return window;
}

std::optional<Piece> TextPieces::next() {
    if (byte_ == text_.size()) {
        return std::nullopt;
    }
    if (insideWord_ > 0) {
        Window part = window(std::min(insideWord_, kLongest));
        part.words.clear();
        const std::size_t length = part.text.size();
        insideWord_ -= length;
        return take(part, {length, false});
    }
    Window window = this->window(kLongest);
    if (window.reachesEnd) {
        const std::size_t length = window.text.size();
        return take(window, {length, true});
    }
    const Cut cut = placeToCut(window);
    if (cut.at == 0) {
        return longWord();
    }
    return take(window, cut);
}

// The window is one word, or the beginning of one: finds its end, further on.
Piece TextPieces::longWord() {
    std::size_t length = kLongest;
    Range word;
    std::size_t units = 0;
    bool complete = false;
    while (!complete) {
        length *= 2;
        const Window wider = window(length);
        word = wider.words.front().codePoints;
        units = wider.words.front().utf16.length();
        complete = wider.reachesEnd || wider.words.size() > 1 || word.end + 1 < wider.text.size();
    }
    Window first = window(kLongest);
    const std::size_t start = utf16_;
    first.words.clear();
    Piece piece = take(first, {kLongest, false});
    piece.words = {{{0, std::min(word.end, kLongest)}, {start, start + units}}};
    insideWord_ = word.end - std::min(word.end, kLongest);
    return piece;
}

Piece TextPieces::take(const Window& window, Cut cut) {
    Piece piece;
    piece.text = window.text.substr(0, cut.at);
    piece.endsSentence = cut.endsSentence;
    for (Word word : window.words) {
        if (word.codePoints.begin >= cut.at) {
            break;
        }
        word.utf16.begin += utf16_;
        word.utf16.end += utf16_;
        piece.words.push_back(word);
    }
    byte_ += utf8Length(piece.text);
    utf16_ += utf16Length(piece.text);
    return piece;
}

// The best place in a window that the text goes beyond; 0 when it is all one word. Before the cut no word
// can look different for what follows the window: only the last one could.
TextPieces::Cut TextPieces::placeToCut(const Window& window) const {
    const std::u32string_view text = window.text;
    if (window.words.empty()) {
        const std::size_t blank = text.find_last_of(U" \n");
        return {blank == std::u32string_view::npos ? text.size() : blank + 1, false};
    }
    if (const std::size_t end = std::max(lastParagraph(window), lastSentence(window)); end > 0) {
        return {end, true};
    }
    if (const std::size_t start = lastWordAfter(window, followsClause); start > 0) {
        return {start, false};
    }
    if (const std::size_t start = lastWordAfter(window, followsBlank); start > 0) {
        return {start, false};
    }
    const Range& last = window.words.back().codePoints;
    constexpr std::size_t kLookAhead = 2; // what joins a word to more of it, and that
    return {last.begin > 0 || last.end + kLookAhead > text.size() ? last.begin : last.end, false};
}

std::size_t TextPieces::lastSentence(const Window& window) const {
    icu::UnicodeString units;
    std::vector<std::size_t> codePointAt;
    for (const char32_t character : window.text) {
        units.append(static_cast<UChar32>(character));
        codePointAt.resize(static_cast<std::size_t>(units.length()),
                           codePointAt.empty() ? 0 : codePointAt.back() + 1);
    }
    codePointAt.push_back(window.text.size());

    icu::BreakIterator& sentences = *sentences_->iterator;
    sentences.setText(units);
    std::size_t found = 0;
    for (std::int32_t unit = sentences.first(); unit != icu::BreakIterator::DONE; unit = sentences.next()) {
        const std::size_t at = codePointAt[static_cast<std::size_t>(unit)];
        if (at <= window.words.back().codePoints.begin && !isInsideWord(window.words, at) &&
            !followsShortWord(window.text, window.words, at)) {
            found = at;
        }
    }
    return found;
}

std::size_t TextPieces::lastParagraph(const Window& window) {
    return lastWordAfter(window, followsParagraph);
}

std::size_t TextPieces::lastWordAfter(const Window& window,
                                      bool (*follows)(std::u32string_view, std::size_t)) {
    const auto found = std::find_if(window.words.rbegin(), window.words.rend(), [&](const Word& word) {
        return word.codePoints.begin > 0 && follows(window.text, word.codePoints.begin);
    });
    return found == window.words.rend() ? 0 : found->codePoints.begin;
}

} // namespace zqm::engine
