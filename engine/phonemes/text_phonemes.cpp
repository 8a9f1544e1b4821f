#include "engine/phonemes/text_phonemes.h"

#include "engine/phonemes/phoneme_text.h"

#include <algorithm>
#include <cstdint>
#include <espeak-ng/speak_lib.h>
#include <string_view>
#include <unicode/utf8.h>

namespace zqm::engine {

namespace {

// The last of the marks of punctuation in a part of a text, outside phonemes; a zero byte when there is none.
char lastPunctuation(std::string_view part) {
    char last = '\0';
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(part.data());
    const auto length = static_cast<std::int32_t>(part.size());
    for (std::int32_t at = 0; at < length;) {
        if (part.substr(static_cast<std::size_t>(at)).starts_with("[[")) {
            at = static_cast<std::int32_t>(
                std::min(part.find("]]", static_cast<std::size_t>(at)), part.size()));
            continue;
        }
        UChar32 character = 0;
        U8_NEXT(bytes, at, length, character);
        const char punctuation = punctuationFor(static_cast<char32_t>(character));
        last = punctuation != '\0' ? punctuation : last;
    }
    return last;
}

// What espeak-ng has taken for a clause, without the character behind it, at which it saw that it was over.
std::string_view clauseOf(std::string_view taken, bool isLast) {
    if (isLast || taken.empty()) {
        return taken;
    }
    std::size_t length = taken.size() - 1;
    while (length > 0 && U8_IS_TRAIL(taken[length])) {
        --length;
    }
    return taken.substr(0, length);
}

} // namespace

std::string textPhonemes(const std::string& text, const PhonemeSet& set) {
    std::string symbols;
    const void* rest = text.c_str();
    while (rest != nullptr) {
        const auto* const begin = static_cast<const char*>(rest);
        const char* const phonemes = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, kPhonemeMode);
        const bool isLast = rest == nullptr;
        const char* const end = isLast ? text.c_str() + text.size() : static_cast<const char*>(rest);
        const std::string clause = symbolText(phonemes == nullptr ? "" : phonemes, set);
        if (clause.empty()) {
            continue;
        }
        symbols += symbols.empty() ? "" : " ";
        symbols += clause;
        const char punctuation =
            lastPunctuation(clauseOf({begin, static_cast<std::size_t>(end - begin)}, isLast));
        if (punctuation != '\0') {
            symbols += punctuation;
        }
    }
    if (!symbols.empty() && lastPunctuation({&symbols.back(), 1}) == '\0') {
        symbols += '.';
    }
    return symbols;
}

} // namespace zqm::engine
