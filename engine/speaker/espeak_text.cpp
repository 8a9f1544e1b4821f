#include "engine/speaker/espeak_text.h"

#include "engine/text/characters.h"
#include "engine/text/utf8.h"

#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/uscript.h>

namespace zqm::engine {

namespace {

constexpr char32_t kSkipped = U'\0';

// What is given to the synthesizer for a character. Some garble what follows them (U+FFFD), end the text
// (NUL) or mean something else to it (controls, private use).
char32_t spokenFor(char32_t character) {
    constexpr char32_t kJoiner = U'\u200D';
    constexpr char32_t kNonJoiner = U'\u200C';
    constexpr char32_t kReplacement = U'\uFFFD';
    if (character == U'\n' || character == U'\u2028' || character == U'\u2029' || character == U'\u0085') {
        return U'\n';
    }
    if (isInvisible(character)) {
        return character == kJoiner || character == kNonJoiner ? character : kSkipped;
    }
    constexpr std::uint32_t kUnspeakable = U_GC_CC_MASK | U_GC_CN_MASK | U_GC_CO_MASK | U_GC_CS_MASK;
    const bool unspeakable = (U_GET_GC_MASK(static_cast<UChar32>(character)) & kUnspeakable) != 0;
    return unspeakable || character == kReplacement ? U' ' : character;
}

UScriptCode scriptOf(char32_t character) {
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(static_cast<UChar32>(character), &status);
}

// espeak-ng reads freed memory where a letter of these scripts follows one that it doesn't know in a word.
bool needsWordOfItsOwn(char32_t letter, char32_t before) {
    const UScriptCode script = scriptOf(letter);
    return (script == USCRIPT_ARMENIAN || script == USCRIPT_GEORGIAN) && !isBlank(before) &&
           scriptOf(before) != script;
}

} // namespace

void EspeakText::add(char32_t character, std::size_t origin) {
    const char32_t spoken = spokenFor(character);
    if (spoken == kSkipped) {
        return;
    }
    const bool wouldBeginPhonemes = last_ == U'[' && spoken == U'[';
    if (wouldBeginPhonemes || (afterPhonemes_ && isLetterOrNumber(spoken)) ||
        needsWordOfItsOwn(spoken, lastLetter_)) {
        append(U' ', origin);
    }
    append(spoken, origin);
}

void EspeakText::addCommand(Command command, int value, std::size_t origin) {
    append("\x01" + std::to_string(value) + static_cast<char>(command), origin);
}

void EspeakText::addPhonemes(std::string_view mnemonics, std::size_t origin) {
    if (!isBlank(last_)) {
        append(U' ', origin);
    }
    append("[[" + std::string(mnemonics) + "]]", origin);
    afterPhonemes_ = true;
}

void EspeakText::append(char32_t character, std::size_t origin) {
    appendUtf8(text_, character);
    origins_.push_back(origin);
    last_ = character;
    if (isBlank(character) || (isLetterOrNumber(character) && !isDigit(character))) {
        lastLetter_ = character;
    }
    afterPhonemes_ = false;
}

void EspeakText::append(std::string_view ascii, std::size_t origin) {
    for (const char character : ascii) {
        append(static_cast<unsigned char>(character), origin);
    }
}

} // namespace zqm::engine
