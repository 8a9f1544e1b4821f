// Text in phoneme symbols: prosody marks, punctuation and all, as programs read and write it.

#pragma once

#include "engine/phonemes/phoneme_set.h"
#include "engine/protocol/phoneme_symbols.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

// What espeak_TextToPhonemes is to put between phonemes, so that their names can be told apart.
constexpr char kPhonemeSeparator = '\x1F';
constexpr int kPhonemeMode = kPhonemeSeparator << 8;

// The words of a clause as symbols, out of what espeak_TextToPhonemes says of it in kPhonemeMode, without a
// mark of punctuation at the end.
std::string symbolText(std::string_view phonemes, const PhonemeSet& set);

// What stands for a mark of punctuation of any script among symbols: one of . , ; : ! ? or a zero byte.
char punctuationFor(char32_t character);

// The symbol that stands at a code point; null when there is none.
const protocol::PhonemeSymbol* symbolAt(std::u32string_view symbols, std::size_t at);

struct SymbolMistake {
    std::size_t at; // code point
    std::string message;

    bool operator==(const SymbolMistake&) const = default;
};

// A word, or a mark of punctuation between words.
struct PhonemeWord {
    std::string mnemonics; // for espeak-ng, which takes them in [[ ]]; empty: punctuation
    char punctuation;
    std::size_t at; // code point at which it begins

    bool operator==(const PhonemeWord&) const = default;
};

struct PhonemeInput {
    std::vector<PhonemeWord> words;
    std::vector<SymbolMistake> mistakes;
};

// What isn't a symbol is left out and told as a mistake.
PhonemeInput phonemeInput(std::u32string_view symbols, const PhonemeSet& set);

} // namespace zqm::engine
