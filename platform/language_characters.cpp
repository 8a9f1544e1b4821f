#include "platform/language_characters.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <unicode/locid.h>
#include <unicode/uloc.h>
#include <unicode/ulocdata.h>
#include <unicode/uniset.h>
#include <unicode/uset.h>
#include <unicode/usetiter.h>

namespace zqm::platform {
namespace {

using icu::UnicodeSet;
using icu::UnicodeString;

// Of the languages that ICU does not know, or that the engine reads in another script.
struct Writing {
    std::string_view language;
    std::string_view script;
};
constexpr auto kWritings = std::to_array<Writing>(
    {{"chr", "Latn"}, {"grc", "Grek"}, {"hak", "Latn"}, {"hyw", "Armn"}, {"nog", "Cyrl"}});
constexpr std::string_view kCommonScript = "Latn";

// Digits, punctuation and blanks, which every voice takes.
constexpr const char16_t* kShared = u"[[\\u0020-\\u007E]-[:L:]\\u000A]";
// Most of the script is for transcription.
constexpr const char16_t* kLatinLetters = u"[[:Latin:]&[:L:]&[\\u0000-\\u024F\\u1E00-\\u1EFF]]";
// The engine reads no ideographs in Japanese.
constexpr std::string_view kJapanese = "ja";
constexpr const char16_t* kIdeographs = u"[:Han:]";
constexpr const char16_t* kNotSpelled = u"[[:Z:][:C:][:M:]]";

UnicodeSet setOf(const UnicodeString& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    return {pattern, status};
}

icu::Locale localeOf(const std::string& language) {
    std::array<char, ULOC_FULLNAME_CAPACITY> name{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_forLanguageTag(language.c_str(), name.data(), static_cast<std::int32_t>(name.size()), nullptr,
                        &status);
    return icu::Locale::createCanonical(U_SUCCESS(status) ? name.data() : "");
}

std::string_view exceptionalScript(const icu::Locale& locale) {
    const auto known =
        std::ranges::find(kWritings, std::string_view(locale.getLanguage()), &Writing::language);
    return known != kWritings.end() ? known->script : std::string_view();
}

// As ISO 15924 names it.
std::string usualScript(icu::Locale locale) {
    UErrorCode status = U_ZERO_ERROR;
    locale.addLikelySubtags(status);
    const std::string script = locale.getScript();
    return script.empty() ? std::string(kCommonScript) : script;
}

// Empty when they are not known.
UnicodeSet lettersOf(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<ULocaleData, decltype(&ulocdata_close)> data(
        ulocdata_open(locale.getBaseName(), &status), &ulocdata_close);
    UnicodeSet letters;
    // What ICU answers in place of a language that it does not know is the one of this machine.
    if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING) {
        return letters;
    }
    for (const auto kind : {ULOCDATA_ES_STANDARD, ULOCDATA_ES_AUXILIARY, ULOCDATA_ES_PUNCTUATION}) {
        UnicodeSet some;
        status = U_ZERO_ERROR;
        ulocdata_getExemplarSet(data.get(), some.toUSet(), USET_ADD_CASE_MAPPINGS, kind, &status);
        if (U_SUCCESS(status)) {
            letters.addAll(some);
        }
    }
    if (locale.getLanguage() == kJapanese) {
        letters.removeAll(setOf(kIdeographs));
    }
    return letters;
}

// Empty for scripts that are several in one, such as the Japanese.
UnicodeSet ofScript(std::string_view script, std::string_view classes) {
    return setOf(
        UnicodeString::fromUTF8("[[:scx=" + std::string(script) + ":]&[" + std::string(classes) + "]]"));
}

UnicodeSet lettersOfScript(std::string_view script) {
    return script == kCommonScript ? setOf(kLatinLetters) : ofScript(script, "[:L:][:M:]");
}

std::vector<CharacterRange> rangesOf(const UnicodeSet& set) {
    std::vector<CharacterRange> ranges;
    ranges.reserve(static_cast<std::size_t>(set.getRangeCount()));
    for (std::int32_t index = 0; index < set.getRangeCount(); ++index) {
        ranges.push_back(
            {static_cast<char32_t>(set.getRangeStart(index)), static_cast<char32_t>(set.getRangeEnd(index))});
    }
    return ranges;
}

// Letters of two characters, as some languages have, count as these two.
UnicodeSet singleCharacters(const UnicodeSet& set) {
    UnicodeSet single;
    icu::UnicodeSetIterator iterator(set);
    while (iterator.next()) {
        single.addAll(iterator.getString());
    }
    return single;
}

} // namespace

LanguageCharacters charactersOf(const std::string& language) {
    const icu::Locale locale = localeOf(language);
    std::string script(exceptionalScript(locale));
    UnicodeSet letters;
    if (script.empty()) {
        script = usualScript(locale);
        letters = lettersOf(locale);
    }
    if (letters.isEmpty()) {
        letters = lettersOfScript(script);
    }
    letters.addAll(ofScript(script, "[:Nd:][:P:]")).addAll(setOf(kShared));
    const UnicodeSet all = singleCharacters(letters);
    UnicodeSet spelled = all;
    spelled.removeAll(setOf(kNotSpelled));
    return {.all = rangesOf(all), .spelled = rangesOf(spelled)};
}

} // namespace zqm::platform
