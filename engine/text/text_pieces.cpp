#include "engine/text/text_pieces.h"

#include "engine/text/characters.h"
#include "engine/text/symbol_words.h"
#include "text/sentence_iterator.h"

#include <algorithm>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <utility>

namespace zqm::engine {

// Where sentences end. A type of its own, which keeps ICU out of the header.
struct TextPieces::Sentences {
    explicit Sentences(const std::string& language) : iterator(zqm::text::sentenceIterator(language)) {}

    std::unique_ptr<icu::BreakIterator> iterator;
};

struct TextPieces::Window {
    std::u32string text;
    std::vector<Word> words;            // UTF-16 units count in the window
    std::vector<std::size_t> sentences; // where one begins, but for the beginning
    bool isLast = false;                // the text or what is allowed of it goes no further
};

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

// What may be an abbreviation that no list knows: a word of a few letters, and a full stop.
bool followsShortWord(std::u32string_view text, const std::vector<Word>& words, std::size_t at,
                      std::size_t longest) {
    while (at > 0 && isBlank(text[at - 1])) {
        --at;
    }
    const auto next = std::find_if(words.begin(), words.end(),
                                   [at](const Word& word) { return word.codePoints.end >= at; });
    return at > 0 && text[at - 1] == U'.' && next != words.begin() &&
           std::prev(next)->codePoints.end == at - 1 && std::prev(next)->codePoints.length() <= longest;
}

bool isInsideWord(const std::vector<Word>& words, std::size_t at) {
    return std::any_of(words.begin(), words.end(), [at](const Word& word) {
        return word.codePoints.begin < at && at < word.codePoints.end;
    });
}

// What stands before the word at such a place could look like part of it if the text began there.
std::size_t wordFrom(const std::vector<Word>& words, std::size_t at) {
    return std::find_if(words.begin(), words.end(),
                        [at](const Word& word) { return word.codePoints.begin >= at; })
        ->codePoints.begin;
}

// For ICU every line is a sentence; but lines are broken inside sentences too, and spoken as if they weren't.
icu::UnicodeString withoutLoneLineEnds(std::u32string_view text) {
    icu::UnicodeString units;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && isBlank(text[end])) {
            ++end;
        }
        for (const bool joinsLines = !followsParagraph(text, end); at < end; ++at) {
            units.append(joinsLines ? u' ' : static_cast<char16_t>(text[at]));
        }
        if (at < text.size()) {
            units.append(static_cast<UChar32>(text[at]));
            ++at;
        }
    }
    return units;
}

// Whether one of the places, which grow, is behind the one and not behind the other.
bool anyBetween(const std::vector<std::size_t>& places, std::size_t before, std::size_t last) {
    const auto next = std::upper_bound(places.begin(), places.end(), before);
    return next != places.end() && *next <= last;
}

} // namespace

Piece Piece::from(std::size_t word) const {
    const std::size_t start = words.at(word).codePoints.begin;
    Piece rest{text.substr(start), {}, endsSentence, {}, words[word].utf16.begin};
    for (std::size_t index = word; index < words.size(); ++index) {
        Word moved = words[index];
        moved.codePoints.begin -= start;
        moved.codePoints.end -= start;
        rest.words.push_back(moved);
    }
    for (const std::size_t index : sentenceStarts) {
        if (index >= word) {
            rest.sentenceStarts.push_back(index - word);
        }
    }
    return rest;
}

std::size_t Piece::utf16At(std::size_t codePoint) const {
    return begin + utf16Length(std::u32string_view(text).substr(0, codePoint));
}

TextPieces::TextPieces(std::string text, const std::string& language)
    : text_(std::move(text)), sentences_(std::make_unique<Sentences>(language)) {}

TextPieces::~TextPieces() = default;

TextPieces::Window TextPieces::window(std::size_t codePoints, std::size_t limit) const {
    Window window;
    std::size_t at = byte_;
    std::size_t unit = utf16_;
    while (at < text_.size() && unit < limit && window.text.size() < codePoints) {
        UChar32 character = 0;
        U8_NEXT_UNSAFE(text_, at, character);
        unit += static_cast<std::size_t>(U16_LENGTH(character));
        window.text.push_back(static_cast<char32_t>(character));
    }
    window.isLast = at == text_.size() || unit >= limit;
    window.words = input_ == protocol::InputMode::Text ? finder_.find(window.text) : symbolWords(window.text);
    return window;
}

std::optional<Piece> TextPieces::next(std::size_t limit) {
    if (byte_ == text_.size() || utf16_ >= limit) {
        return std::nullopt;
    }
    if (insideWord_ > 0) {
        Window part = window(std::min(insideWord_, kLongest), limit);
        part.words.clear();
        const std::size_t length = part.text.size();
        insideWord_ -= length;
        return take(part, {length, false}, part);
    }
    Window window = this->window(kLongest, limit);
    if (window.isLast) {
        // What stands behind a limit tells whether a sentence ends there.
        constexpr std::size_t kLookAhead = 100;
        const std::size_t length = window.text.size();
        Window around = this->window(length + kLookAhead, kNoLimit);
        findSentences(around);
        return take(window, {length, around.isLast && around.text.size() == length}, around);
    }
    findSentences(window);
    const Cut cut = placeToCut(window);
    if (cut.at == 0) {
        return longWord(limit);
    }
    return take(window, cut, window);
}

// The window is one word, or the beginning of one: finds its end, further on.
Piece TextPieces::longWord(std::size_t limit) {
    std::size_t length = kLongest;
    Range word;
    std::size_t units = 0;
    bool complete = false;
    while (!complete) {
        length *= 2;
        const Window wider = window(length, limit);
        word = wider.words.front().codePoints;
        units = wider.words.front().utf16.length();
        complete = wider.isLast || wider.words.size() > 1 || word.end + 1 < wider.text.size();
    }
    Window first = window(kLongest, limit);
    first.words = {{{0, std::min(word.end, kLongest)}, {0, units}}};
    insideWord_ = word.end - std::min(word.end, kLongest);
    return take(first, {kLongest, false}, first);
}

// The sentences are those of a window that may reach further than the one that is cut.
Piece TextPieces::take(const Window& window, Cut cut, const Window& around) {
    Piece piece;
    piece.text = window.text.substr(0, cut.at);
    std::size_t before = 0;
    for (Word word : window.words) {
        if (word.codePoints.begin >= cut.at) {
            break;
        }
        if (startsSentence_ || anyBetween(around.sentences, before, word.codePoints.begin)) {
            piece.sentenceStarts.push_back(piece.words.size());
        }
        startsSentence_ = false;
        before = word.codePoints.begin;
        word.utf16.begin += utf16_;
        word.utf16.end += utf16_;
        piece.words.push_back(word);
    }
    const auto next = std::find_if(around.words.begin(), around.words.end(),
                                   [&](const Word& word) { return word.codePoints.end > cut.at; });
    const bool nextStartsSentence =
        next != around.words.end() && anyBetween(around.sentences, before, next->codePoints.begin);
    piece.endsSentence = cut.endsSentence || nextStartsSentence;
    startsSentence_ = startsSentence_ || nextStartsSentence;
    piece.begin = utf16_;
    byte_ += utf8Length(piece.text);
    utf16_ += utf16Length(piece.text);
    return piece;
}

// The best place in a window that the text goes beyond; 0 when it is all one word. Before the cut no word
// can look different for what follows the window: only the last one could.
TextPieces::Cut TextPieces::placeToCut(const Window& window) {
    const std::u32string_view text = window.text;
    if (window.words.empty()) {
        const std::size_t blank = text.find_last_of(U" \n");
        return {blank == std::u32string_view::npos ? text.size() : blank + 1, false};
    }
    // There are sentences to choose from, so those count that surely end.
    constexpr std::size_t kLongestAbbreviation = 3;
    const auto sentence =
        std::find_if(window.sentences.rbegin(), window.sentences.rend(), [&](std::size_t at) {
            return followsParagraph(text, at) ||
                   !followsShortWord(text, window.words, at, kLongestAbbreviation);
        });
    if (sentence != window.sentences.rend()) {
        return {*sentence, true};
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

// Only those that what follows the window can't change.
void TextPieces::findSentences(Window& window) const {
    if (input_ == protocol::InputMode::Phonemes) {
        window.sentences = symbolSentences(window.text, window.words);
        return;
    }
    const icu::UnicodeString units = withoutLoneLineEnds(window.text);
    std::vector<std::size_t> codePointAt;
    for (std::size_t index = 0; index < window.text.size(); ++index) {
        codePointAt.resize(codePointAt.size() + static_cast<std::size_t>(U16_LENGTH(window.text[index])),
                           index);
    }
    codePointAt.push_back(window.text.size());

    const std::size_t last = window.words.empty() ? 0 : window.words.back().codePoints.begin;
    icu::BreakIterator& sentences = *sentences_->iterator;
    sentences.setText(units);
    sentences.first();
    for (std::int32_t unit = sentences.next(); unit != icu::BreakIterator::DONE; unit = sentences.next()) {
        const std::size_t at = codePointAt[static_cast<std::size_t>(unit)];
        const bool isInitial =
            followsShortWord(window.text, window.words, at, 1) && !followsParagraph(window.text, at);
        if (at <= last && !isInsideWord(window.words, at) && !isInitial) {
            window.sentences.push_back(isBlank(window.text[at - 1]) ? at : wordFrom(window.words, at));
        }
    }
}

std::size_t TextPieces::lastWordAfter(const Window& window,
                                      bool (*follows)(std::u32string_view, std::size_t)) {
    const auto found = std::find_if(window.words.rbegin(), window.words.rend(), [&](const Word& word) {
        return word.codePoints.begin > 0 && follows(window.text, word.codePoints.begin);
    });
    return found == window.words.rend() ? 0 : found->codePoints.begin;
}

} // namespace zqm::engine
