#include "engine/listening/command_text.h"

#include "engine/text/characters.h"
#include "engine/text/utf8.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

namespace zqm::engine {

namespace {

struct Replacement {
    char32_t character;
    std::u32string_view text;
};

// What their compatibility forms would make other words of.
constexpr Replacement kBeforeFolding[] = {
    {U'\u2122', U""},        {U'\u2120', U""},          {U'\u00AE', U""},        {U'\u00A9', U""},
    {U'\u2116', U"number "}, {U'\u00B2', U" squared "}, {U'\u00B3', U" cubed "},
};

constexpr Replacement kBehindFolding[] = {
    {U'\u2018', U"'"}, {U'\u2019', U"'"}, {U'\u02BC', U"'"}, {U'\u00B4', U"'"}, {U'`', U"'"},
    {U'\u2010', U"-"}, {U'\u2011', U"-"}, {U'\u2012', U"-"}, {U'\u2013', U"-"}, {U'\u2212', U"-"},
};

// As a part or a power, not a digit of the number before it: 2½ isn't 21/2.
bool isNumberOfItsOwn(char32_t character) {
    const std::int32_t type =
        u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_DECOMPOSITION_TYPE);
    return type == U_DT_FRACTION ||
           ((type == U_DT_SUPER || type == U_DT_SUB) && !u_isalpha(static_cast<UChar32>(character)));
}

template <std::size_t kCount>
std::u32string replaced(std::u32string_view text, const Replacement (&replacements)[kCount]) {
    std::u32string result;
    for (const char32_t character : text) {
        const auto* const found =
            std::find_if(std::begin(replacements), std::end(replacements),
                         [&](const Replacement& candidate) { return candidate.character == character; });
        result += isNumberOfItsOwn(character) ? U" " : U"";
        result += found == std::end(replacements) ? std::u32string_view(&character, 1) : found->text;
    }
    return result;
}

icu::UnicodeString unicodeString(std::u32string_view text) {
    return icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(text.data()),
                                         static_cast<std::int32_t>(text.size()));
}

std::u32string folded(std::u32string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKCCasefoldInstance(status);
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU can't fold letters: ") + u_errorName(status));
    }
    std::string bytes;
    normalizer->normalize(unicodeString(text), status).toUTF8String(bytes);
    return fromUtf8(bytes);
}

} // namespace

std::u32string commandText(const std::string& command) {
    std::u32string text = replaced(folded(replaced(fromUtf8(command), kBeforeFolding)), kBehindFolding);
    for (char32_t& character : text) {
        if (isDigit(character)) {
            character = U'0' + static_cast<char32_t>(u_charDigitValue(static_cast<UChar32>(character)));
        }
    }
    return text;
}

bool isForeignLetter(char32_t character) {
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(static_cast<UChar32>(character), &status);
    return isLetterOrNumber(character) && !isDigit(character) && script != USCRIPT_LATIN &&
           script != USCRIPT_COMMON && script != USCRIPT_INHERITED;
}

std::string withoutAccents(std::u32string_view word) {
    static const std::unique_ptr<icu::Transliterator> kTransliterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<icu::Transliterator>(
            icu::Transliterator::createInstance("Latin-ASCII", UTRANS_FORWARD, status));
    }();
    icu::UnicodeString text = unicodeString(word);
    if (kTransliterator) {
        kTransliterator->transliterate(text);
    }
    std::string bytes;
    text.toUTF8String(bytes);
    return bytes;
}

} // namespace zqm::engine
