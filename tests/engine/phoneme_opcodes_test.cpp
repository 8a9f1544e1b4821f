// Which opcodes the phonemes of every voice are told by.

#include "engine/phonemes/phoneme_inventory.h"
#include "engine/phonemes/phoneme_set.h"
#include "engine/phonemes/phoneme_tables.h"
#include "engine/protocol/phoneme_symbols.h"
#include "tests/engine/espeak_phonemes.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/word_fixtures.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::IsEmpty;
using testing::Not;
using zqm::protocol::phonemeSymbols;

namespace {

// The sets that voices speak with, each with a voice.
std::map<std::string, std::string> setsOfVoices() {
    std::map<std::string, std::string> sets;
    for (const std::string& voice : voiceIdentifiers()) {
        sets.emplace(phonemeSetOf(espeakData(), voice, phonemeInventory()), voice);
    }
    return sets;
}

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(PhonemeInventory, HoldsTheSetOfEveryVoice) {
    for (const auto& [set, voice] : setsOfVoices()) {
        EXPECT_TRUE(phonemeInventory().contains(set)) << voice << " speaks with " << set;
    }
    const std::vector<std::string>& english = phonemeInventory().at("en-us");
    for (const char* const phoneme : {"0", "aI@", "tS", "t#", "3:", "N"}) {
        EXPECT_THAT(english, testing::Contains(phoneme));
    }
    EXPECT_THAT(english, Not(testing::Contains("W"))) << "of another language";
}

TEST(PhonemeInventory, TellsTheSetOfAVoice) {
    const auto setOf = [](const std::string& voice) {
        return phonemeSetOf(espeakData(), voice, phonemeInventory());
    };
    EXPECT_EQ(setOf("gmw/en-US"), "en-us") << "the set that its file names";
    EXPECT_EQ(setOf("gmw/de"), "de") << "the set of its language";
    EXPECT_EQ(setOf("gmw/en"), "en") << "the set of its language without the region";
    EXPECT_EQ(setOf("gmw/none"), "");
    EXPECT_EQ(setOf(""), "");
    EXPECT_EQ(setOf("../phontab"), "");
}

TEST(PhonemeInventory, RefusesWhatItDoesNotUnderstand) {
    const std::string table = contents(espeakData() / "phontab");
    ASSERT_GT(table.size(), 50'000U);
    const zqm::support::TemporaryFolder folder;
    const auto readOf = [&](const std::string& bytes) {
        std::ofstream(folder / "phontab", std::ios::binary | std::ios::trunc) << bytes;
        return readPhonemeInventory(folder.path());
    };
    EXPECT_EQ(readOf(table), phonemeInventory());
    EXPECT_THROW(readPhonemeInventory(folder / "none"), std::runtime_error);
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{3}, std::size_t{40}, table.size() / 2, table.size() - 1}) {
        EXPECT_THROW(readOf(table.substr(0, length)), std::runtime_error) << length;
    }
    EXPECT_THROW(readOf(table + '\0'), std::runtime_error);
    std::string itsOwnParent = table;
    itsOwnParent[5] = '\x01';
    EXPECT_THROW(readOf(itsOwnParent), std::runtime_error);
}

TEST(PhonemeTables, HoldSymbolsAlone) {
    std::vector<PhonemeRow> rows(commonPhonemes().begin(), commonPhonemes().end());
    for (const PhonemeTable& table : phonemeTables()) {
        rows.insert(rows.end(), table.rows.begin(), table.rows.end());
    }
    for (const PhonemeRow& row : rows) {
        std::string symbols;
        for (const std::string& symbol : splitSymbols(row.symbols)) {
            symbols += symbol;
        }
        symbols += row.symbols.ends_with(kWordEnd) ? std::string{kWordEnd} : "";
        EXPECT_EQ(symbols, row.symbols) << row.phoneme;
    }
}

TEST(PhonemeTables, AreOfSetsThatAVoiceHas) {
    const auto sets = setsOfVoices();
    std::set<std::string_view> listed;
    for (const PhonemeTable& table : phonemeTables()) {
        EXPECT_TRUE(phonemeInventory().contains(table.set)) << table.set;
        EXPECT_TRUE(listed.insert(table.set).second) << table.set;
        for (const PhonemeRow& row : table.rows) {
            const bool isUsed = std::any_of(sets.begin(), sets.end(), [&](const auto& set) {
                const std::vector<std::string>& phonemes = phonemeInventory().at(set.first);
                return std::find(phonemes.begin(), phonemes.end(), row.phoneme) != phonemes.end();
            });
            EXPECT_TRUE(isUsed) << table.set << " " << row.phoneme;
        }
    }
}

TEST(PhonemeTables, KnowEveryPhonemeOfEveryVoice) {
    std::size_t phonemes = 0;
    for (const auto& [set, voice] : setsOfVoices()) {
        for (const std::string& phoneme : phonemeInventory().at(set)) {
            EXPECT_TRUE(symbolsOf(set, phoneme).has_value()) << set << " " << phoneme;
            ++phonemes;
        }
    }
    EXPECT_GT(phonemes, 10'000U);
    EXPECT_FALSE(symbolsOf("en-us", "\xC3\xA9").has_value());
    EXPECT_FALSE(symbolsOf("en-us", "").has_value());
}

// The international letter that a phoneme begins with, and the symbols that may begin what it is told by.
const std::map<std::string, std::string> kNear = {
    {"p", "p b"},         {"b", "b"},
    {"t", "t C d J"},     {"d", "d J"},
    {"ʈ", "t d C"},       {"ɖ", "d J"},
    {"c", "C k"},         {"ɟ", "J g"},
    {"k", "k g"},         {"ɡ", "g"},
    {"g", "g"},           {"q", "k"},
    {"ɢ", "g"},           {"ʔ", "k t IY UW EH EY UX OW"},
    {"m", "m"},           {"n", "n"},
    {"ɲ", "n"},           {"ɳ", "n N"},
    {"ŋ", "N n"},         {"ɴ", "N"},
    {"N", "N"},           {"r", "r UX"},
    {"ɾ", "r"},           {"ɹ", "r"},
    {"ɽ", "r"},           {"ɻ", "r"},
    {"ʀ", "r g"},         {"ʁ", "r g"},
    {"l", "l"},           {"ɫ", "l"},
    {"ɭ", "l"},           {"ʎ", "l"},
    {"ɬ", "l"},           {"ʦ", "t"},
    {"f", "f"},           {"ɸ", "f"},
    {"v", "v"},           {"ʋ", "v"},
    {"β", "b"},           {"θ", "T"},
    {"ð", "D"},           {"s", "s S"},
    {"z", "z Z"},         {"ʃ", "S"},
    {"ʂ", "S s"},         {"ɕ", "S"},
    {"ç", "S h"},         {"ʒ", "Z"},
    {"ʐ", "Z r"},         {"ʑ", "Z"},
    {"ʝ", "y"},           {"x", "h"},
    {"χ", "h"},           {"h", "h"},
    {"ħ", "h"},           {"ʕ", "h"},
    {"ɣ", "g"},           {"j", "y"},
    {"w", "w"},           {"ʍ", "h"},
    {"i", "IY IH IX"},    {"ɪ", "IH IX IY"},
    {"ɨ", "IX IH"},       {"e", "EY EH"},
    {"ɛ", "EH EY AE"},    {"æ", "AE AW AY"},
    {"a", "AA AE AY AW"}, {"ɑ", "AA AO AW AY"},
    {"ɐ", "AX UX AA AW"}, {"ɒ", "AO AA"},
    {"ɔ", "AO OY UX OW"}, {"o", "OW OY AO UX UH"},
    {"ɤ", "UX"},          {"ʊ", "UH UW"},
    {"u", "UW UH"},       {"ʉ", "UW UH"},
    {"ɯ", "IX UH UW"},    {"y", "UW IX"},
    {"ø", "UH UX IX"},    {"œ", "UX UH"},
    {"ɵ", "UH"},          {"ə", "AX UX OW AY"},
    {"ɜ", "UX AX EY"},    {"ʌ", "UX AW AY AX"},
};

// Dialects of English keep the symbols of their words, whatever the sound; and where espeak-ng has no
// international letters for a phoneme, it spells it in its own.
const std::set<std::string> kUnlettered = {"en-n", "en-rp", "en-sc", "en-wi", "en-wm", "my", "om"};

TEST(PhonemeOpcodes, AreNearToWhatTheInternationalAlphabetSays) {
    std::size_t compared = 0;
    for (const auto& [set, voice] : setsOfVoices()) {
        if (kUnlettered.contains(set)) {
            continue;
        }
        speakWith(voice);
        for (const std::string& phoneme : phonemeInventory().at(set)) {
            if (phonemesOf("[[" + phoneme + "]]", Reading::Phonemes) != phoneme) {
                continue; // another one by itself, as voiced consonants at the end of a German word
            }
            const std::string international = internationalName(phoneme);
            const auto near = std::find_if(kNear.begin(), kNear.end(), [&](const auto& letter) {
                return international.starts_with(letter.first);
            });
            const std::string symbols = symbolsOf(set, phoneme).value();
            if (near == kNear.end() || symbols.empty()) {
                continue;
            }
            ++compared;
            std::string first = splitSymbols(symbols).front();
            first.erase(0, first.find_first_not_of("<>"));
            EXPECT_THAT(" " + near->second + " ", testing::HasSubstr(" " + first + " "))
                << set << " " << phoneme << " is [" << international << "]";
        }
    }
    EXPECT_GT(compared, 9'000U);
}

// What is heard when a fixture's text is spoken in its language.
TEST(PhonemeOpcodes, CoverTheSpeechOfManyLanguages) {
    std::set<std::string> voices;
    for (const zqm::support::WordFixture& fixture : zqm::support::wordFixtures()) {
        SCOPED_TRACE(fixture.place);
        voices.insert(fixture.voice);
        speakWith(fixture.voice);
        PhonemeOpcodes opcodes(phonemeSetOf(espeakData(), fixture.voice, phonemeInventory()));
        std::string set = phonemeSetOf(espeakData(), fixture.voice, phonemeInventory());
        for (const std::string& phoneme : phonemeEvents(fixture.text)) {
            if (isLanguageChange(phoneme)) {
                set = languageChangedTo(phoneme);
            } else {
                EXPECT_TRUE(symbolsOf(set, phoneme).has_value()) << set << " " << phoneme;
            }
            for (const std::int16_t opcode : opcodes.next(phoneme)) {
                ASSERT_LT(static_cast<std::size_t>(opcode), phonemeSymbols().size());
            }
        }
    }
    EXPECT_GE(voices.size(), 20U);
}

TEST(PhonemeOpcodes, FollowALanguageIntoAnotherAndBack) {
    PhonemeOpcodes french("fr");
    const auto symbol = [&](std::string_view phoneme) {
        std::string symbols;
        for (const std::int16_t opcode : french.next(phoneme)) {
            symbols += phonemeSymbols()[static_cast<std::size_t>(opcode)].symbol;
        }
        return symbols;
    };
    EXPECT_EQ(symbol("a"), "AA");
    EXPECT_EQ(symbol("(en)"), "");
    EXPECT_EQ(symbol("a"), "AE");
    EXPECT_EQ(symbol("(fr)"), "");
    EXPECT_EQ(symbol("a"), "AA");
    EXPECT_EQ(symbol("_:"), "%");
    EXPECT_EQ(symbol("_"), "");
    EXPECT_EQ(symbol(""), "");
    EXPECT_EQ(symbol("\xFF\xFE"), "") << "of a newer synthesizer";
    EXPECT_EQ(symbol("aI"), "AY");
    EXPECT_EQ(symbol("n^"), "ny");
}

struct Heard {
    std::string voice;
    std::string text;
    std::string symbols;
};

void PrintTo(const Heard& example, std::ostream* stream) {
    *stream << example.voice << " " << example.text;
}

class Language : public testing::TestWithParam<Heard> {};

TEST_P(Language, IsToldByTheNearestSymbols) {
    speakWith(GetParam().voice);
    PhonemeOpcodes opcodes(phonemeSetOf(espeakData(), GetParam().voice, phonemeInventory()));
    std::string symbols;
    for (const std::string& phoneme : phonemeEvents(GetParam().text)) {
        for (const std::int16_t opcode : opcodes.next(phoneme)) {
            if (opcode != zqm::protocol::kSilenceOpcode) {
                symbols += phonemeSymbols()[static_cast<std::size_t>(opcode)].symbol;
            }
        }
    }
    EXPECT_EQ(symbols, GetParam().symbols);
}

INSTANTIATE_TEST_SUITE_P(
    All, Language,
    testing::Values(
        Heard{"gmw/en-US", "button", "bUXtn"}, Heard{"gmw/en", "church", "CUXC"},
        Heard{"roa/es", "jamón", "hAAmOWn"}, Heard{"roa/es", "año", "AAnyOW"},
        Heard{"roa/fr", "bonjour", "bAONZUWr"}, Heard{"roa/fr", "une", "UWn"},
        Heard{"roa/it", "gnocchi", "nyOWkIH"}, Heard{"roa/it", "pizza", "pIYtsAA"},
        Heard{"roa/pt-BR", "falo", "fAAlUH"}, Heard{"roa/ro", "bună", "bUWnAX"},
        Heard{"roa/ca", "dia", "dIYUX"}, Heard{"gmw/de", "ich", "IHS"}, Heard{"gmw/de", "Bach", "bAAh"},
        Heard{"gmw/de", "Haus", "hAWs"}, Heard{"gmw/nl", "schip", "shIHp"}, Heard{"gmq/sv", "sju", "SUW"},
        Heard{"gmq/nb", "god", "gUWd"}, Heard{"gmq/is", "daginn", "dAAyIHn"}, Heard{"zle/ru", "мы", "mIX"},
        Heard{"zle/ru", "сын", "sIXn"}, Heard{"zlw/pl", "proszę", "prAOSEH"},
        Heard{"zlw/pl", "chleb", "hlEHp"}, Heard{"zlw/cs", "tři", "trZIY"}, Heard{"zls/sr", "џак", "JAAk"},
        Heard{"zls/bg", "добър", "dOWbAXr"}, Heard{"trk/tr", "kedi", "kEHdIH"},
        Heard{"trk/tr", "ışık", "IXSIXk"}, Heard{"urj/fi", "hyvää", "hUWvAE"},
        Heard{"urj/hu", "szép", "sEYp"}, Heard{"urj/hu", "jó", "yOW"}, Heard{"grk/el", "και", "kEH"},
        Heard{"grk/el", "θάλασσα", "TAAlAAssAA"}, Heard{"sem/ar", "سلام", "sAAlAAm"},
        Heard{"sem/he", "שלום", "SAAlOWm"}, Heard{"inc/hi", "नमस्ते", "nAXmUXstEY"},
        Heard{"inc/bn", "নমস্কার", "nAOmAOSkAAr"}, Heard{"dra/ta", "தமிழ்", "tUXmIYr"},
        Heard{"jpx/ja", "ひと", "hIYtOW"}, Heard{"jpx/ja", "ふじさん", "fUWJIYsAAN"},
        Heard{"ko", "한국", "hAAnkUWk"}, Heard{"sit/cmn-Latn-pinyin", "bei3 jing1", "bEYJIYN"},
        Heard{"sit/cmn-Latn-pinyin", "zhong1 guo2", "JUHNgUWOW"}, Heard{"sit/yue", "你好", "nEYhOW"},
        Heard{"aav/vi", "phở", "fAX"}, Heard{"ira/fa", "سلام", "sAElAAm"},
        Heard{"ccs/ka", "გამარჯობა", "gAAmAArJOWbAA"}, Heard{"cel/cy", "Llanelli", "lAAnEHlIH"},
        Heard{"bnt/sw", "jambo", "JAAmbOW"}, Heard{"poz/id", "pagi", "pAAgIY"},
        Heard{"sem/am", "ሰላም", "sAXlAAm"}, Heard{"map/haw", "aloha", "AAlOWhAA"}));

} // namespace
