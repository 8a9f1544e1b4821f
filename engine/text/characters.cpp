#include "engine/text/characters.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unicode/uchar.h>
#include <unicode/uscript.h>

namespace zqm::engine {

namespace {

constexpr std::array kDictionaryScripts{USCRIPT_HAN, USCRIPT_HIRAGANA, USCRIPT_KATAKANA, USCRIPT_THAI,
                                        USCRIPT_LAO, USCRIPT_KHMER,    USCRIPT_MYANMAR};

// Between any two letters or numbers: apostrophes, hyphens, full stop, underscore.
constexpr std::u32string_view kJoiners = U"'\u2019\uFF07-\u2010\u2011._";
// Between two letters: ampersand, the Catalan middle dot, Hebrew geresh and gershayim, and the Armenian marks
// that stand on a vowel inside a word.
constexpr std::u32string_view kLetterJoiners = U"&\u00B7\u05F3\u05F4\u055A\u055B\u055C\u055E";
// Between two digits, besides: comma, colon, slash, fraction slash, the Arabic separators.
constexpr std::u32string_view kDigitJoiners = U",:/\u2044\u066B\u066C";

bool contains(std::u32string_view set, char32_t character) {
    return set.find(character) != std::u32string_view::npos;
}

UChar32 icu(char32_t character) {
    return static_cast<UChar32>(character);
}

bool hasCategory(char32_t character, std::uint32_t mask) {
    return (U_GET_GC_MASK(icu(character)) & mask) != 0;
}

bool isHebrew(char32_t character) {
    return uscript_hasScript(icu(character), USCRIPT_HEBREW) != 0;
}

} // namespace

bool isBlank(char32_t character) {
    return u_isUWhiteSpace(icu(character)) != 0;
}

bool isDigit(char32_t character) {
    return u_isdigit(icu(character)) != 0;
}

bool isLetterOrNumber(char32_t character) {
    return hasCategory(character, U_GC_L_MASK | U_GC_N_MASK);
}

bool isMark(char32_t character) {
    return hasCategory(character, U_GC_M_MASK);
}

bool isInvisible(char32_t character) {
    return hasCategory(character, U_GC_CF_MASK);
}

bool isCurrency(char32_t character) {
    return hasCategory(character, U_GC_SC_MASK);
}

bool isPictograph(char32_t character) {
    return u_hasBinaryProperty(icu(character), UCHAR_EXTENDED_PICTOGRAPHIC) != 0;
}

bool isRegionalIndicator(char32_t character) {
    return u_hasBinaryProperty(icu(character), UCHAR_REGIONAL_INDICATOR) != 0;
}

bool isOfDictionaryScript(char32_t character) {
    return isLetterOrNumber(character) && !isDigit(character) &&
           std::any_of(kDictionaryScripts.begin(), kDictionaryScripts.end(),
                       [&](UScriptCode script) { return uscript_hasScript(icu(character), script) != 0; });
}

bool isSpokenSymbol(char32_t character) {
    constexpr std::u32string_view kStandIns = U"\uFFFC\uFFFD"; // for what is no character
    return (hasCategory(character, U_GC_S_MASK) && !contains(kStandIns, character)) ||
           contains(U"&%@#", character);
}

bool isSign(char32_t character) {
    return contains(U"+-\u2212\u00B1\u2010\u2011", character);
}

bool joins(char32_t before, char32_t character, char32_t after) {
    if (contains(kJoiners, character)) {
        return true;
    }
    if (isDigit(after) && isCurrency(character)) {
        return true; // US$25, 5€50
    }
    if (isDigit(before)) {
        return isDigit(after) ? contains(kDigitJoiners, character) : character == U'\u00B0'; // 25°C
    }
    if (isDigit(after)) {
        return false;
    }
    return contains(kLetterJoiners, character) || (character == U'"' && isHebrew(before) && isHebrew(after));
}

} // namespace zqm::engine
