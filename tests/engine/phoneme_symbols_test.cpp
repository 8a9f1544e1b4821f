#include "engine/protocol/phoneme_symbols.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::protocol;

namespace {

struct Documented {
    std::string symbol;
    std::string example;
    std::string letters; // of the example, that stand for the phoneme
};

// In the order of their opcodes.
const std::vector<Documented> kDocumented = {
    {"%", "silence", "silence"}, {"@", "breath", "breath"}, {"AE", "bat", "a"},   {"EY", "bait", "ai"},
    {"AO", "caught", "augh"},    {"AX", "about", "a"},      {"IY", "beet", "ee"}, {"EH", "bet", "e"},
    {"IH", "bit", "i"},          {"AY", "bite", "i"},       {"IX", "roses", "e"}, {"AA", "father", "a"},
    {"UW", "boot", "oo"},        {"UH", "book", "oo"},      {"UX", "bud", "u"},   {"OW", "boat", "oa"},
    {"AW", "bout", "ou"},        {"OY", "boy", "oy"},       {"b", "bin", "b"},    {"C", "chin", "ch"},
    {"d", "din", "d"},           {"D", "them", "th"},       {"f", "fin", "f"},    {"g", "gain", "g"},
    {"h", "hat", "h"},           {"J", "jump", "j"},        {"k", "kin", "k"},    {"l", "limb", "l"},
    {"m", "mat", "m"},           {"n", "nap", "n"},         {"N", "tang", "ng"},  {"p", "pin", "p"},
    {"r", "ran", "r"},           {"s", "sin", "s"},         {"S", "shin", "sh"},  {"t", "tin", "t"},
    {"T", "thin", "th"},         {"v", "van", "v"},         {"w", "wet", "w"},    {"y", "yet", "y"},
    {"z", "zoo", "z"},           {"Z", "measure", "s"},
};

TEST(PhonemeSymbols, AreTheDocumentedOnes) {
    ASSERT_EQ(phonemeSymbols().size(), kDocumented.size());
    for (std::size_t opcode = 0; opcode < kDocumented.size(); ++opcode) {
        const PhonemeSymbol& row = phonemeSymbols()[opcode];
        SCOPED_TRACE(row.symbol);
        EXPECT_EQ(row.opcode, static_cast<std::int16_t>(opcode));
        EXPECT_EQ(row.symbol, kDocumented[opcode].symbol);
        EXPECT_EQ(row.example, kDocumented[opcode].example);
        ASSERT_LE(row.hiliteStart, row.hiliteEnd);
        EXPECT_EQ(row.example.substr(row.hiliteStart, row.hiliteEnd - row.hiliteStart),
                  kDocumented[opcode].letters);
    }
}

TEST(PhonemeSymbols, AreFoundAtTheBeginningOfAText) {
    for (const PhonemeSymbol& row : phonemeSymbols()) {
        const std::string text = std::string(row.symbol) + "AX";
        ASSERT_NE(findPhonemeSymbol(text), nullptr) << row.symbol;
        EXPECT_EQ(findPhonemeSymbol(text)->opcode, row.opcode);
    }
    for (const char* const text : {"", "A", "q", "1AX", "_", "ax", " AX"}) {
        EXPECT_EQ(findPhonemeSymbol(text), nullptr) << text;
    }
}

TEST(PhonemeSymbols, TellVowelsApart) {
    std::string vowels;
    for (const PhonemeSymbol& row : phonemeSymbols()) {
        vowels += isVowel(row) ? std::string(row.symbol) + " " : "";
    }
    EXPECT_EQ(vowels, "AE EY AO AX IY EH IH AY IX AA UW UH UX OW AW OY ");
}

} // namespace
