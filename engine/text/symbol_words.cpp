#include "engine/text/symbol_words.h"

#include "engine/phonemes/phoneme_text.h"
#include "engine/text/characters.h"

#include <algorithm>
#include <unicode/utf16.h>

namespace zqm::engine {

namespace {

bool hasSound(std::u32string_view token) {
    for (std::size_t at = 0; at < token.size(); ++at) { // the symbol of silence is one character
        const protocol::PhonemeSymbol* const symbol = symbolAt(token, at);
        if (symbol != nullptr && symbol->opcode != protocol::kSilenceOpcode) {
            return true;
        }
    }
    return false;
}

bool endsSentence(char32_t character) {
    const char punctuation = punctuationFor(character);
    return punctuation == '.' || punctuation == '!' || punctuation == '?';
}

} // namespace

std::vector<Word> symbolWords(std::u32string_view text) {
    std::vector<Word> words;
    Word token;
    const auto endToken = [&] {
        if (hasSound(text.substr(token.codePoints.begin, token.codePoints.length()))) {
            words.push_back(token);
        }
    };
    for (const char32_t character : text) {
        if (isBlank(character)) {
            endToken();
        }
        ++token.codePoints.end;
        token.utf16.end += static_cast<std::size_t>(U16_LENGTH(character));
        if (isBlank(character)) {
            token = {{token.codePoints.end, token.codePoints.end}, {token.utf16.end, token.utf16.end}};
        }
    }
    endToken();
    return words;
}

std::vector<std::size_t> symbolSentences(std::u32string_view text, const std::vector<Word>& words) {
    std::vector<std::size_t> sentences;
    for (std::size_t index = 1; index < words.size(); ++index) {
        const std::size_t behind = words[index - 1].codePoints.end - 1;
        const std::size_t begin = words[index].codePoints.begin;
        const std::u32string_view between = text.substr(behind, begin - behind);
        if (std::any_of(between.begin(), between.end(), endsSentence)) {
            sentences.push_back(begin);
        }
    }
    return sentences;
}

} // namespace zqm::engine
