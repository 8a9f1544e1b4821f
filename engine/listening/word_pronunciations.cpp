#include "engine/listening/word_pronunciations.h"

#include "engine/listening/command_text.h"
#include "engine/text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>

namespace zqm::engine {

namespace {

bool isLetter(char letter) {
    return letter >= 'a' && letter <= 'z';
}

// What people may say letter by letter: short words, and those without vowels.
bool mayBeInitials(std::string_view word) {
    constexpr std::size_t kLongestOfAny = 4;
    constexpr std::size_t kLongest = 7;
    const bool hasVowel = word.find_first_of("aeiouy") != std::string_view::npos;
    return word.size() > 1 && word.size() <= (hasVowel ? kLongestOfAny : kLongest) &&
           std::all_of(word.begin(), word.end(), isLetter);
}

// u.s, without the last full stop
bool areInitials(std::string_view word) {
    bool areParted = word.size() > 1 && word.size() % 2 == 1;
    for (std::size_t at = 0; at < word.size() && areParted; ++at) {
        areParted = at % 2 == 0 ? isLetter(word[at]) : word[at] == '.';
    }
    return areParted;
}

bool endsWithOneOf(const std::string& phones, std::initializer_list<std::string_view> last) {
    const std::string_view end = std::string_view(phones).substr(phones.rfind(' ') + 1);
    return std::find(last.begin(), last.end(), end) != last.end();
}

} // namespace

std::string bothSaid(const std::string& first, const std::string& second) {
    return first.empty() ? second : first + ' ' + second;
}

void addPronunciations(std::vector<std::string>& pronunciations, const std::vector<std::string>& more) {
    for (const std::string& phones : more) {
        if (!phones.empty() &&
            std::find(pronunciations.begin(), pronunciations.end(), phones) == pronunciations.end()) {
            pronunciations.push_back(phones);
        }
    }
}

std::vector<std::string> WordPronunciations::listed(std::u32string_view word) const {
    const std::string name = toUtf8(word);
    std::vector<std::string> pronunciations;
    if (areInitials(name)) {
        return dictionary_.find(name + '.'); // without it, "u.s" is the plural of a letter
    }
    if (name.ends_with('.')) {
        const std::vector<std::string> abbreviation = dictionary_.find(name);
        if (abbreviation.empty()) {
            return {};
        }
        // It may be the end of a sentence.
        addPronunciations(pronunciations, listed(word.substr(0, word.size() - 1)));
        addPronunciations(pronunciations, abbreviation);
        return pronunciations;
    }
    addPronunciations(pronunciations, dictionary_.find(name));
    if (pronunciations.empty() &&
        std::any_of(word.begin(), word.end(), [](char32_t c) { return c > 0x7F; })) {
        addPronunciations(pronunciations, dictionary_.find(withoutAccents(word)));
    }
    return pronunciations;
}

std::vector<std::string> WordPronunciations::possessive(const std::string& word) const {
    constexpr std::string_view kEnding = "'s";
    if (!word.ends_with(kEnding)) {
        return {};
    }
    std::vector<std::string> pronunciations = dictionary_.find(word.substr(0, word.size() - kEnding.size()));
    for (std::string& phones : pronunciations) {
        phones += endsWithOneOf(phones, {"S", "Z", "SH", "ZH", "CH", "JH"}) ? " IH Z"
                  : endsWithOneOf(phones, {"P", "T", "K", "F", "TH"})       ? " S"
                                                                            : " Z";
    }
    return pronunciations;
}

std::string WordPronunciations::spelled(std::string_view word) const {
    std::string phones;
    for (const char letter : word) {
        // By its name, "a" is the last of its pronunciations, behind that of the article.
        const std::vector<std::string> names = dictionary_.find(std::string_view(&letter, 1));
        if (names.empty()) {
            return {};
        }
        phones += phones.empty() ? "" : " ";
        phones += letter == 'a' ? names.back() : names.front();
    }
    return phones;
}

std::vector<std::string> WordPronunciations::of(std::u32string_view word) const {
    std::vector<std::string> pronunciations = listed(word);
    if (!pronunciations.empty()) {
        return pronunciations;
    }
    const std::string plain = withoutAccents(word);
    addPronunciations(pronunciations, possessive(plain));
    if (pronunciations.empty()) {
        addPronunciations(pronunciations, transcriber_(toUtf8(word)));
        if (mayBeInitials(plain)) {
            addPronunciations(pronunciations, {spelled(plain)});
        }
    }
    return pronunciations;
}

std::vector<std::string> WordPronunciations::of(const std::vector<std::string>& words) const {
    constexpr std::size_t kMost = 4;
    std::vector<std::string> pronunciations{{}};
    for (const std::string& word : words) {
        std::vector<std::string> longer;
        for (const std::string& next : of(fromUtf8(word))) {
            for (const std::string& phones : pronunciations) {
                longer.push_back(bothSaid(phones, next));
            }
        }
        longer.resize(std::min(longer.size(), words.size() == 1 ? longer.size() : kMost));
        pronunciations = std::move(longer);
    }
    return pronunciations;
}

} // namespace zqm::engine
