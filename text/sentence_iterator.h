// Where sentences end, for the engine, which speaks them, and the command, which cuts texts between them.

#pragma once

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include <unicode/brkiter.h>
#include <unicode/filteredbrk.h>

namespace zqm::text {

// What stands before names and is missing in ICU's lists of abbreviations.
inline constexpr std::array kTitles{u"Dr.",  u"St.", u"Ste.", u"Sr.",  u"Sra.", u"Dra.", u"Gen.", u"Gov.",
                                    u"Sen.", u"Hr.", u"Fr.",  u"Mme.", u"Ing.", u"Mag.", u"Dipl."};

// Null with a failing status where ICU has nothing for the locale.
inline std::unique_ptr<icu::BreakIterator> sentenceIterator(const icu::Locale& locale, UErrorCode& status) {
    std::unique_ptr<icu::BreakIterator> plain(icu::BreakIterator::createSentenceInstance(locale, status));
    const std::unique_ptr<icu::FilteredBreakIteratorBuilder> abbreviations(
        icu::FilteredBreakIteratorBuilder::createInstance(locale, status));
    if (U_FAILURE(status)) {
        return nullptr;
    }
    for (const char16_t* const title : kTitles) {
        abbreviations->suppressBreakAfter(title, status);
    }
    return std::unique_ptr<icu::BreakIterator>(
        abbreviations->wrapIteratorWithFilter(plain.release(), status));
}

// By ICU's rules and lists of abbreviations for the language, or else for English. Throws std::runtime_error
// where ICU has neither.
inline std::unique_ptr<icu::BreakIterator> sentenceIterator(const std::string& language) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = icu::Locale::forLanguageTag(language, status);
    std::unique_ptr<icu::BreakIterator> iterator = sentenceIterator(locale, status);
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        iterator = sentenceIterator(icu::Locale::getEnglish(), status);
    }
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU has no sentence data: ") + u_errorName(status));
    }
    return iterator;
}

} // namespace zqm::text
