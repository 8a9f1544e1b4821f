#include "tests/support/word_check.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf16.h>

#include "tests/support/utf16.h"

namespace zqm::support {

namespace {

class Check {
public:
    explicit Check(std::u16string_view text) : text_(text), isBoundary_(text.size() + 1) {
        UErrorCode status = U_ZERO_ERROR;
        const icu::UnicodeString readOnly(false, text.data(), static_cast<std::int32_t>(text.size()));
        const std::unique_ptr<icu::BreakIterator> clusters(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status)) {
            throw std::runtime_error(u_errorName(status));
        }
        clusters->setText(readOnly);
        for (std::int32_t at = clusters->first(); at != icu::BreakIterator::DONE; at = clusters->next()) {
            isBoundary_[static_cast<std::size_t>(at)] = true;
        }
    }

    std::vector<std::string> faults(std::span<const WordRange> words) {
        std::size_t covered = 0;
        for (const WordRange& word : words) {
            if (word.length == 0) {
                add("an empty word", word.position);
                continue;
            }
            if (word.position < covered) {
                add("a word that begins before the end of the last one", word.position);
                continue;
            }
            if (word.position > text_.size() || word.length > text_.size() - word.position) {
                add("a word that goes beyond the end of the text", word.position);
                continue;
            }
            checkGap(covered, word.position);
            checkWord(word);
            covered = word.position + word.length;
        }
        checkGap(covered, text_.size());
        return std::move(faults_);
    }

private:
    void add(const std::string& what, std::size_t position) {
        const std::size_t from = position < 10 ? 0 : std::min(position - 10, text_.size());
        faults_.push_back(what + " at " + std::to_string(position) + ", near \"" +
                          toUtf8(text_.substr(from, 25)) + "\"");
    }

    // A blank and a mark after it make up a cluster, but no word holds a blank.
    bool followsBlank(std::size_t position) const {
        return position > 0 && u_isUWhiteSpace(text_[position - 1]) != 0;
    }

    template <typename Visit>
    void forEachCharacter(std::size_t from, std::size_t to, Visit visit) const {
        for (std::size_t at = from; at < to;) {
            const std::size_t start = at;
            UChar32 character = 0;
            U16_NEXT(text_, at, to, character);
            visit(start, character);
        }
    }

    void checkGap(std::size_t from, std::size_t to) {
        forEachCharacter(from, to, [this](std::size_t at, UChar32 character) {
            if (u_isalnum(character)) {
                add("a letter or digit outside every word", at);
            }
        });
    }

    void checkWord(const WordRange& word) {
        for (const std::size_t end : {word.position, word.position + word.length}) {
            if (partsSurrogatePair(text_, end)) {
                add("a word that parts a surrogate pair", end);
            } else if (!isBoundary_[end] && !followsBlank(end)) {
                add("a word that parts a grapheme cluster", end);
            }
        }
        forEachCharacter(word.position, word.position + word.length,
                         [this](std::size_t at, UChar32 character) {
                             if (u_isUWhiteSpace(character)) {
                                 add("white space inside a word", at);
                             }
                         });
    }

    std::u16string_view text_;
    std::vector<bool> isBoundary_; // of grapheme clusters
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> wordFaults(std::u16string_view text, std::span<const WordRange> words) {
    return Check(text).faults(words);
}

} // namespace zqm::support
