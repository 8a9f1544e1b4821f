#include "engine/text/literal_spelling.h"

#include "engine/text/characters.h"

#include <algorithm>
#include <array>
#include <unicode/uscript.h>

namespace zqm::engine {

namespace {

// The end of the number that begins here: digits, and single characters that join them.
std::size_t numberEnd(std::u32string_view text, std::size_t at, std::size_t wordEnd) {
    while (at < wordEnd) {
        const bool joined =
            at + 1 < wordEnd && isDigit(text[at + 1]) && joins(text[at - 1], text[at], text[at + 1]);
        if (!isDigit(text[at]) && !(isDigit(text[at - 1]) && joined)) {
            break;
        }
        ++at;
    }
    return at;
}

bool namesItself(char32_t character) {
    constexpr std::array kScripts{USCRIPT_HAN, USCRIPT_HIRAGANA, USCRIPT_KATAKANA};
    return std::any_of(kScripts.begin(), kScripts.end(), [character](UScriptCode script) {
        return uscript_hasScript(static_cast<UChar32>(character), script) != 0;
    });
}

} // namespace

std::vector<SpelledRun> spelledRuns(std::u32string_view text, const Range& word, const SpellingModes& modes) {
    const std::u32string_view characters = text.substr(word.begin, word.length());
    const bool hasLetters = std::any_of(characters.begin(), characters.end(), [](char32_t character) {
        return isLetterOrNumber(character) && !isDigit(character);
    });
    if (hasLetters && modes.characters == protocol::SpellingMode::Literal) {
        const bool apart = std::all_of(characters.begin(), characters.end(), namesItself);
        return {{word, apart ? Spelling::Apart : Spelling::Characters}};
    }
    std::vector<SpelledRun> runs;
    if (modes.numbers == protocol::SpellingMode::Literal) {
        for (std::size_t at = word.begin; at < word.end; ++at) {
            if (isDigit(text[at])) {
                const std::size_t end = numberEnd(text, at + 1, word.end);
                runs.push_back({{at, end}, Spelling::Digits});
                at = end - 1;
            }
        }
    }
    return runs;
}

} // namespace zqm::engine
