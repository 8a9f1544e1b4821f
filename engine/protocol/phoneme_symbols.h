// The phonemes that a program names: their numbers in events, their symbols in text.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace zqm::protocol {

struct PhonemeSymbol {
    std::int16_t opcode;
    std::string_view symbol;
    std::string_view example;
    std::size_t hiliteStart; // of the example's letters, those that stand for the phoneme
    std::size_t hiliteEnd;   // behind the last of them
};

// All of them; the opcode is the index.
std::span<const PhonemeSymbol> phonemeSymbols();

// The one that a text begins with; null when it begins with none. No symbol begins another.
const PhonemeSymbol* findPhonemeSymbol(std::string_view text);

bool isVowel(const PhonemeSymbol& symbol);

constexpr std::int16_t kSilenceOpcode = 0;

} // namespace zqm::protocol
