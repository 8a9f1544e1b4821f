#include "engine/text/words.h"

#include "engine/text/characters.h"
#include "engine/text/dictionary_words.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <unicode/brkiter.h>
#include <unicode/unistr.h>

namespace zqm::engine {

namespace {

// An address has to come to an end; longer ones than mail allows are no addresses.
constexpr std::size_t kLongestMailName = 64;

bool isAsciiLetter(char32_t character) {
    return (character >= U'a' && character <= U'z') || (character >= U'A' && character <= U'Z');
}

bool isOneOf(char32_t character, std::u32string_view set) {
    return set.find(character) != std::u32string_view::npos;
}

} // namespace

struct WordFinder::Iterators {
    std::unique_ptr<icu::BreakIterator> clusters;
    std::unique_ptr<icu::BreakIterator> dictionary;
};

namespace {

class Search {
public:
    Search(std::u32string_view text, icu::BreakIterator& clusters, icu::BreakIterator& dictionary)
        : text_(text), utf16_(text.size() + 1), isClusterStart_(text.size() + 1),
          isDictionaryStart_(text.size() + 1) {
        icu::UnicodeString units;
        for (std::size_t index = 0; index < text.size(); ++index) {
            utf16_[index] = static_cast<std::size_t>(units.length());
            units.append(static_cast<UChar32>(text[index]));
        }
        utf16_[text.size()] = static_cast<std::size_t>(units.length());
        mark(clusters, units, isClusterStart_);
        if (std::any_of(text.begin(), text.end(), isOfDictionaryScript)) {
            mark(dictionary, units, isDictionaryStart_);
            correctDictionaryWords(text, isDictionaryStart_);
        }
    }

    std::vector<Word> words() {
        std::size_t at = 0;
        while (at < text_.size()) {
            const std::size_t end = wordAt(at);
            if (end == at) {
                ++at;
                continue;
            }
            at = add({at, end});
        }
        return std::move(words_);
    }

private:
    void mark(icu::BreakIterator& iterator, const icu::UnicodeString& units, std::vector<bool>& starts) {
        iterator.setText(units);
        std::size_t index = 0;
        for (std::int32_t unit = iterator.first(); unit != icu::BreakIterator::DONE; unit = iterator.next()) {
            while (utf16_[index] < static_cast<std::size_t>(unit)) {
                ++index;
            }
            starts[index] = utf16_[index] == static_cast<std::size_t>(unit);
        }
    }

    // A word is made of whole grapheme clusters, whatever marks a text puts where. Answers its end.
    std::size_t add(Range range) {
        const std::size_t before = words_.empty() ? 0 : words_.back().codePoints.end;
        while (!isClusterStart_[range.begin] && range.begin > before && !isBlank(text_[range.begin - 1])) {
            --range.begin;
        }
        while (!isClusterStart_[range.end]) {
            ++range.end;
        }
        words_.push_back({range, {utf16_[range.begin], utf16_[range.end]}});
        return range.end;
    }

    [[nodiscard]] char32_t character(std::size_t at) const { return at < text_.size() ? text_[at] : U'\0'; }

    [[nodiscard]] bool followsBlank(std::size_t at) const { return at == 0 || isBlank(text_[at - 1]); }

    [[nodiscard]] bool followsWord(std::size_t at) const {
        return at > 0 && !words_.empty() && words_.back().codePoints.end == at;
    }

    [[nodiscard]] std::size_t clusterEnd(std::size_t at) const {
        do {
            ++at;
        } while (!isClusterStart_[at]);
        return at;
    }

    // A letter or number that stands for itself: neither a keycap nor of a dictionary's script.
    [[nodiscard]] bool isPlain(std::size_t at) const {
        return isLetterOrNumber(character(at)) && !isOfDictionaryScript(text_[at]) && !isEmoji(at);
    }

    [[nodiscard]] bool isEmoji(std::size_t at) const {
        constexpr char32_t kEmojiSelector = U'\uFE0F';
        constexpr char32_t kKeycap = U'\u20E3';
        const char32_t first = character(at);
        const char32_t second = character(at + 1);
        if (isPictograph(first)) {
            return isSpokenSymbol(first) || second == kEmojiSelector;
        }
        if (isDigit(first) || isOneOf(first, U"#*")) {
            return second == kKeycap || (second == kEmojiSelector && character(at + 2) == kKeycap);
        }
        return isRegionalIndicator(first);
    }

    // The end of the word that begins here; the same place when none does.
    [[nodiscard]] std::size_t wordAt(std::size_t at) const {
        const char32_t first = text_[at];
        if (isBlank(first) || isMark(first)) {
            return at;
        }
        if (isEmoji(at)) {
            return emojiAt(at);
        }
        if (isOfDictionaryScript(first)) {
            return dictionaryWordAt(at);
        }
        if (!followsWord(at)) {
            if (const std::size_t end = addressAt(at); end > at) {
                return end;
            }
        }
        if (isPlain(at)) {
            return runAt(at);
        }
        if (const std::size_t start = prefixedStart(at); start > at) {
            return runAt(start);
        }
        return isSpokenSymbol(first) && standsAlone(at) ? clusterEnd(at) : at;
    }

    [[nodiscard]] std::size_t emojiAt(std::size_t at) const { return clusterEnd(at); }

    [[nodiscard]] std::size_t dictionaryWordAt(std::size_t at) const {
        std::size_t end = at + 1;
        while (end < text_.size() && !isDictionaryStart_[end] &&
               (isOfDictionaryScript(text_[end]) || isMark(text_[end]) || isInvisible(text_[end]))) {
            ++end;
        }
        return withoutInvisibleEnd(at, end);
    }

    // Where the letters and numbers of a word begin after a sign that belongs to it: #tag, @name, $25, -5.
    [[nodiscard]] std::size_t prefixedStart(std::size_t at) const {
        if (isOneOf(text_[at], U"#@") && !followsWord(at)) {
            const std::size_t start = at + 1;
            return isPlain(start) || isOfDictionaryScript(character(start)) ? start : at;
        }
        std::size_t start = at;
        if (isSign(text_[start]) && followsBlank(start)) {
            ++start;
        }
        if (isCurrency(character(start)) || isOneOf(character(start), U"%\u2030\u00B0")) {
            ++start;
        }
        return start > at && isDigit(character(start)) && isPlain(start) ? start : at;
    }

    // Letters, numbers and marks, with what joins them.
    [[nodiscard]] std::size_t runAt(std::size_t at) const {
        if (isOfDictionaryScript(text_[at])) {
            return dictionaryWordAt(at);
        }
        std::size_t end = at;
        while (end < text_.size()) {
            char32_t last = U'\0';
            while (end < text_.size() && (isPlain(end) || isMark(text_[end]) || isInvisible(text_[end]))) {
                last = isPlain(end) ? text_[end] : last;
                ++end;
            }
            std::size_t next = end;
            while (character(next) == U'_') {
                ++next;
            }
            if (next == end && end < text_.size()) {
                ++next;
            }
            if (!isPlain(next) || !joins(last, character(end), text_[next])) {
                return withSuffix(withoutInvisibleEnd(at, end), last);
            }
            end = next;
        }
        return end;
    }

    // A soft hyphen or direction mark behind the last letter isn't the word's; a joiner is part of a cluster.
    [[nodiscard]] std::size_t withoutInvisibleEnd(std::size_t begin, std::size_t end) const {
        while (end > begin + 1 && isInvisible(text_[end - 1]) && isClusterStart_[end - 1]) {
            --end;
        }
        return end;
    }

    // C++, C#, 25%, 25€, 25°
    [[nodiscard]] std::size_t withSuffix(std::size_t end, char32_t last) const {
        if (isDigit(last)) {
            const char32_t sign = character(end);
            return isCurrency(sign) || isOneOf(sign, U"%\u2030\u00B0") ? end + 1 : end;
        }
        std::size_t longer = end;
        while (isOneOf(character(longer), U"+#") && !isEmoji(longer)) {
            ++longer;
        }
        return longer > end && isPlain(longer) ? end : longer;
    }

    [[nodiscard]] bool standsAlone(std::size_t at) const {
        const std::size_t end = clusterEnd(at);
        const auto parts = [this](std::size_t place) { return isBlank(text_[place]); };
        return followsBlank(at) && (end >= text_.size() || parts(end));
    }

    // ---- addresses

    [[nodiscard]] std::size_t addressAt(std::size_t at) const {
        const std::size_t rest = schemeEnd(at);
        return rest > at ? webAddressEnd(at, rest) : mailAddressEnd(at);
    }

    [[nodiscard]] bool startsWith(std::size_t at, std::u32string_view lowerCase) const {
        for (std::size_t index = 0; index < lowerCase.size(); ++index) {
            const char32_t letter = character(at + index);
            const char32_t lower = letter >= U'A' && letter <= U'Z' ? letter + (U'a' - U'A') : letter;
            if (lower != lowerCase[index]) {
                return false;
            }
        }
        return true;
    }

    // Behind "https://" or "www." or "mailto:".
    [[nodiscard]] std::size_t schemeEnd(std::size_t at) const {
        for (const std::u32string_view start : {U"www.", U"mailto:"}) {
            if (startsWith(at, start)) {
                return at + start.size();
            }
        }
        if (!isAsciiLetter(text_[at])) {
            return at;
        }
        constexpr std::size_t kLongestScheme = 32;
        std::size_t end = at;
        while (end - at < kLongestScheme &&
               (isAsciiLetter(character(end)) || isOneOf(character(end), U"0123456789+.-"))) {
            ++end;
        }
        return startsWith(end, U"://") ? end + 3 : at;
    }

    [[nodiscard]] bool mayStandInWebAddress(std::size_t at) const {
        return isPlain(at) || isMark(character(at)) || isOneOf(character(at), U"-._~:/?#[]@!$&'()*+,;=%");
    }

    [[nodiscard]] std::size_t webAddressEnd(std::size_t at, std::size_t rest) const {
        std::size_t end = rest;
        while (end < text_.size() && mayStandInWebAddress(end)) {
            ++end;
        }
        while (end > rest && endsSentence(at, end)) {
            --end;
        }
        return end > rest && std::any_of(text_.begin() + static_cast<std::ptrdiff_t>(rest),
                                         text_.begin() + static_cast<std::ptrdiff_t>(end), isLetterOrNumber)
                   ? end
                   : at;
    }

    // Whether the last character belongs to the sentence around an address rather than to it.
    [[nodiscard]] bool endsSentence(std::size_t begin, std::size_t end) const {
        const char32_t last = text_[end - 1];
        const auto count = [&](char32_t wanted) {
            return std::count(text_.begin() + static_cast<std::ptrdiff_t>(begin),
                              text_.begin() + static_cast<std::ptrdiff_t>(end), wanted);
        };
        if (last == U')') {
            return count(U')') > count(U'(');
        }
        if (last == U']') {
            return count(U']') > count(U'[');
        }
        return isOneOf(last, U".,;:!?'*([");
    }

    [[nodiscard]] std::size_t mailAddressEnd(std::size_t at) const {
        std::size_t end = at;
        while (end - at <= kLongestMailName &&
               (isPlain(end) || isMark(character(end)) || (end > at && isOneOf(character(end), U"._%+-'")))) {
            ++end;
        }
        if (end == at || end - at > kLongestMailName || character(end) != U'@' || !isPlain(end + 1)) {
            return at;
        }
        ++end;
        while (isPlain(end) || isMark(character(end)) ||
               (isOneOf(character(end), U".-") && isPlain(end + 1))) {
            ++end;
        }
        return end;
    }

    std::u32string_view text_;
    std::vector<std::size_t> utf16_; // the place of each character, and the end
    std::vector<bool> isClusterStart_;
    std::vector<bool> isDictionaryStart_;
    std::vector<Word> words_;
};

std::unique_ptr<icu::BreakIterator> require(icu::BreakIterator* iterator, UErrorCode status) {
    std::unique_ptr<icu::BreakIterator> owned(iterator);
    if (U_FAILURE(status) || !owned) {
        throw std::runtime_error(std::string("ICU has no word data: ") + u_errorName(status));
    }
    return owned;
}

} // namespace

WordFinder::WordFinder() : iterators_(std::make_unique<Iterators>()) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale& root = icu::Locale::getRoot();
    iterators_->clusters = require(icu::BreakIterator::createCharacterInstance(root, status), status);
    iterators_->dictionary = require(icu::BreakIterator::createWordInstance(root, status), status);
}

WordFinder::~WordFinder() = default;

std::vector<Word> WordFinder::find(std::u32string_view text) const {
    return Search(text, *iterators_->clusters, *iterators_->dictionary).words();
}

} // namespace zqm::engine
