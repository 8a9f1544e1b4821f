#include "engine/speaker/lexicon.h"

#include "engine/phonemes/phoneme_text.h"
#include "engine/protocol/modification_date.h"
#include "engine/text/characters.h"
#include "engine/text/utf8.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <utility>

namespace zqm::engine {

namespace {

// A spelling for comparison: composed, with one blank where there are any.
icu::UnicodeString comparable(std::u32string_view spelling) {
    icu::UnicodeString units;
    bool afterBlank = false;
    for (const char32_t character : spelling) {
        if (!isBlank(character)) {
            units.append(static_cast<UChar32>(character));
        } else if (!afterBlank) {
            units.append(u' ');
        }
        afterBlank = isBlank(character);
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const composer = icu::Normalizer2::getNFCInstance(status);
    return U_SUCCESS(status) ? composer->normalize(units, status) : units;
}

std::string bytes(const icu::UnicodeString& units) {
    std::string text;
    return units.toUTF8String(text);
}

std::string folded(icu::UnicodeString units) {
    return bytes(units.foldCase());
}

bool isInSmallLetters(const icu::UnicodeString& units) {
    icu::UnicodeString lower(units);
    return lower.toLower(icu::Locale::getRoot()) == units;
}

std::u32string_view withoutBlanks(std::u32string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The words of a spelling, and whether a full stop belongs to it.
struct Spelling {
    Spelling(const std::string& given, const WordFinder& finder) : text(fromUtf8(given)) {
        std::u32string_view rest = withoutBlanks(text);
        endsInStop = rest.ends_with(U'.');
        if (endsInStop) {
            rest.remove_suffix(1);
        }
        text = rest;
        const std::vector<Word> found = finder.find(text);
        isRight = !found.empty() && found.front().codePoints.begin == 0 &&
                  found.back().codePoints.end == text.size();
        words = found.size();
    }

    std::u32string text;
    std::size_t words = 0;
    bool endsInStop = false;
    bool isRight = false;
};

// Punctuation has no place within a sentence.
PhonemeInput phonemesOf(const protocol::LexiconEntry& entry, const PhonemeSet& set) {
    std::u32string symbols = fromUtf8(entry.phonemes);
    std::erase_if(symbols, [](char32_t character) { return punctuationFor(character) != '\0'; });
    return phonemeInput(symbols, set);
}

std::vector<std::string> mnemonics(const PhonemeInput& phonemes) {
    std::vector<std::string> words;
    for (const PhonemeWord& word : phonemes.words) {
        words.push_back(word.mnemonics);
    }
    return words;
}

// What is wrong with an entry; empty when nothing is.
std::string mistakeIn(const protocol::LexiconEntry& entry, const Spelling& spelling,
                      const PhonemeInput& phonemes) {
    if (!spelling.isRight) {
        return "\"" + entry.spelling + "\" is not a word.";
    }
    if (!phonemes.mistakes.empty()) {
        return "\"" + entry.phonemes + "\", for \"" + entry.spelling +
               "\": " + phonemes.mistakes.front().message;
    }
    return phonemes.words.empty() ? "There are no phonemes for \"" + entry.spelling + "\"." : std::string();
}

std::string languageOf(const std::string& locale) {
    return locale.substr(0, locale.find_first_of("-_"));
}

bool isFor(const protocol::LexiconDictionary& dictionary, const std::string& language) {
    const std::string own = languageOf(dictionary.locale);
    const std::string wanted = languageOf(language);
    return own.empty() ||
           folded(icu::UnicodeString::fromUTF8(own)) == folded(icu::UnicodeString::fromUTF8(wanted));
}

// The indices of dictionaries, the oldest first.
std::vector<std::size_t> byAge(const std::vector<protocol::LexiconDictionary>& dictionaries) {
    std::vector<std::int64_t> dates;
    dates.reserve(dictionaries.size());
    for (const protocol::LexiconDictionary& dictionary : dictionaries) {
        dates.push_back(protocol::parseModificationDate(dictionary.modificationDate)
                            .value_or(std::numeric_limits<std::int64_t>::min()));
    }
    std::vector<std::size_t> order(dictionaries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t left, std::size_t right) { return dates[left] < dates[right]; });
    return order;
}

} // namespace

Lexicon::Lexicon(const std::vector<protocol::LexiconDictionary>& dictionaries, const std::string& language,
                 const PhonemeSet& set) {
    const WordFinder finder;
    std::size_t rank = 0;
    for (const std::size_t index : byAge(dictionaries)) {
        const protocol::LexiconDictionary& dictionary = dictionaries[index];
        if (!isFor(dictionary, language)) {
            continue;
        }
        for (const auto* const entries : {&dictionary.pronunciations, &dictionary.abbreviations}) {
            for (const protocol::LexiconEntry& entry : *entries) {
                const Spelling spelling(entry.spelling, finder);
                const PhonemeInput phonemes = phonemesOf(entry, set);
                if (!mistakeIn(entry, spelling, phonemes).empty()) {
                    continue;
                }
                const bool takesStop = spelling.endsInStop || entries == &dictionary.abbreviations;
                const icu::UnicodeString key = comparable(spelling.text);
                const Entry made{++rank, takesStop, mnemonics(phonemes)};
                exact_.insert_or_assign(bytes(key), made);
                if (isInSmallLetters(key)) {
                    anyCase_.insert_or_assign(folded(key), made);
                }
                longest_ = std::max(longest_, spelling.words);
            }
        }
    }
}

std::optional<Lexicon::Match> Lexicon::find(const Piece& piece, std::size_t word) const {
    const std::size_t begin = piece.words[word].codePoints.begin;
    for (std::size_t count = std::min(longest_, piece.words.size() - word); count > 0; --count) {
        const std::size_t end = piece.words[word + count - 1].codePoints.end;
        const icu::UnicodeString key = comparable(std::u32string_view(piece.text).substr(begin, end - begin));
        const auto exact = exact_.find(bytes(key));
        const auto anyCase = anyCase_.find(folded(key));
        const Entry* found = exact == exact_.end() ? nullptr : &exact->second;
        if (anyCase != anyCase_.end() && (found == nullptr || anyCase->second.rank > found->rank)) {
            found = &anyCase->second;
        }
        if (found != nullptr) {
            return Match{count, found->takesStop, &found->phonemes};
        }
    }
    return std::nullopt;
}

std::vector<LexiconProblem> lexiconProblems(const std::vector<protocol::LexiconDictionary>& dictionaries,
                                            const PhonemeSet& set) {
    const WordFinder finder;
    std::vector<LexiconProblem> problems;
    for (std::size_t index = 0; index < dictionaries.size(); ++index) {
        for (const bool isAbbreviation : {false, true}) {
            const std::vector<protocol::LexiconEntry>& entries =
                isAbbreviation ? dictionaries[index].abbreviations : dictionaries[index].pronunciations;
            for (std::size_t entry = 0; entry < entries.size(); ++entry) {
                std::string message = mistakeIn(entries[entry], Spelling(entries[entry].spelling, finder),
                                                phonemesOf(entries[entry], set));
                if (!message.empty()) {
                    problems.push_back({index, isAbbreviation, entry, std::move(message)});
                }
            }
        }
    }
    return problems;
}

} // namespace zqm::engine
