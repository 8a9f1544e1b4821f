#include "engine/protocol/phoneme_symbols.h"

#include <algorithm>
#include <array>

namespace zqm::protocol {

namespace {

constexpr std::array<PhonemeSymbol, 42> kSymbols{{
    {0, "%", "silence", 0, 7}, {1, "@", "breath", 0, 6},  {2, "AE", "bat", 1, 2},
    {3, "EY", "bait", 1, 3},   {4, "AO", "caught", 1, 5}, {5, "AX", "about", 0, 1},
    {6, "IY", "beet", 1, 3},   {7, "EH", "bet", 1, 2},    {8, "IH", "bit", 1, 2},
    {9, "AY", "bite", 1, 2},   {10, "IX", "roses", 3, 4}, {11, "AA", "father", 1, 2},
    {12, "UW", "boot", 1, 3},  {13, "UH", "book", 1, 3},  {14, "UX", "bud", 1, 2},
    {15, "OW", "boat", 1, 3},  {16, "AW", "bout", 1, 3},  {17, "OY", "boy", 1, 3},
    {18, "b", "bin", 0, 1},    {19, "C", "chin", 0, 2},   {20, "d", "din", 0, 1},
    {21, "D", "them", 0, 2},   {22, "f", "fin", 0, 1},    {23, "g", "gain", 0, 1},
    {24, "h", "hat", 0, 1},    {25, "J", "jump", 0, 1},   {26, "k", "kin", 0, 1},
    {27, "l", "limb", 0, 1},   {28, "m", "mat", 0, 1},    {29, "n", "nap", 0, 1},
    {30, "N", "tang", 2, 4},   {31, "p", "pin", 0, 1},    {32, "r", "ran", 0, 1},
    {33, "s", "sin", 0, 1},    {34, "S", "shin", 0, 2},   {35, "t", "tin", 0, 1},
    {36, "T", "thin", 0, 2},   {37, "v", "van", 0, 1},    {38, "w", "wet", 0, 1},
    {39, "y", "yet", 0, 1},    {40, "z", "zoo", 0, 1},    {41, "Z", "measure", 3, 4},
}};

} // namespace

std::span<const PhonemeSymbol> phonemeSymbols() {
    return kSymbols;
}

const PhonemeSymbol* findPhonemeSymbol(std::string_view text) {
    const auto* const found =
        std::find_if(kSymbols.begin(), kSymbols.end(),
                     [&](const PhonemeSymbol& candidate) { return text.starts_with(candidate.symbol); });
    return found == kSymbols.end() ? nullptr : found;
}

bool isVowel(const PhonemeSymbol& symbol) {
    constexpr std::int16_t kFirst = 2;
    constexpr std::int16_t kLast = 17;
    return symbol.opcode >= kFirst && symbol.opcode <= kLast;
}

} // namespace zqm::protocol
