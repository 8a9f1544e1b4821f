#include "engine/phonemes/phoneme_text.h"

#include "engine/phonemes/text_phonemes.h"
#include "tests/engine/espeak_phonemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kAmerican = "gmw/en-US";
constexpr const char* kBritish = "gmw/en";

std::u32string wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

std::string said(const std::string& text, const std::string& voice) {
    const PhonemeSet& set = speakWith(voice);
    return textPhonemes(text, set);
}

std::string inputFor(const std::string& symbols, const std::string& voice = kAmerican) {
    const PhonemeInput input = phonemeInput(wide(symbols), speakWith(voice));
    EXPECT_THAT(input.mistakes, IsEmpty()) << symbols;
    return asText(input.words);
}

// What the voice says for symbols.
std::string spoken(const std::string& symbols, const std::string& voice = kAmerican) {
    return phonemesOf(inputFor(symbols, voice), Reading::Phonemes);
}

struct Pronounced {
    std::string voice;
    std::string text;
    std::string symbols;
};

void PrintTo(const Pronounced& example, std::ostream* stream) {
    *stream << example.voice << " " << example.text;
}

class TextAsSymbols : public testing::TestWithParam<Pronounced> {};

TEST_P(TextAsSymbols, IsAsPeopleHearIt) {
    EXPECT_EQ(said(GetParam().text, GetParam().voice), GetParam().symbols);
}

INSTANTIATE_TEST_SUITE_P(
    English, TextAsSymbols,
    testing::Values(Pronounced{kAmerican, "dog", "_d1AOg."}, Pronounced{kAmerican, "12", "_tw1EHlv."},
                    Pronounced{kAmerican, "bat", "_b1AEt."}, Pronounced{kAmerican, "bait", "_b1EYt."},
                    Pronounced{kAmerican, "beet", "_b1IYt."}, Pronounced{kAmerican, "bet", "_b1EHt."},
                    Pronounced{kAmerican, "bit", "_b1IHt."}, Pronounced{kAmerican, "bite", "_b1AYt."},
                    Pronounced{kAmerican, "roses", "_r1OWzIXz."},
                    Pronounced{kAmerican, "father", "_f1AADAXr."}, Pronounced{kAmerican, "boot", "_b1UWt."},
                    Pronounced{kAmerican, "book", "_b1UHk."}, Pronounced{kAmerican, "bud", "_b1UXd."},
                    Pronounced{kAmerican, "boat", "_b1OWt."}, Pronounced{kAmerican, "bout", "_b1AWt."},
                    Pronounced{kAmerican, "boy", "_b1OY."}, Pronounced{kAmerican, "bird", "_b1UXrd."},
                    Pronounced{kAmerican, "chin", "_C1IHn."}, Pronounced{kAmerican, "jump", "_J1UXmp."},
                    Pronounced{kAmerican, "them", "_D2EHm."}, Pronounced{kAmerican, "thin", "_T1IHn."},
                    Pronounced{kAmerican, "shin", "_S1IHn."}, Pronounced{kAmerican, "tang", "_t1AEN."},
                    Pronounced{kAmerican, "yet", "_y1EHt."}, Pronounced{kAmerican, "water", "_w1>AOtAXr."},
                    Pronounced{kAmerican, "measure", "_m1EHZAXr."}, Pronounced{kBritish, "dog", "_d1AOg."},
                    Pronounced{kBritish, "car", "_k1>AA."}, Pronounced{kBritish, "bird", "_b1>UXd."}));

INSTANTIATE_TEST_SUITE_P(Punctuation, TextAsSymbols,
                         testing::Values(Pronounced{kAmerican, "", ""}, Pronounced{kAmerican, "   ", ""},
                                         Pronounced{kAmerican, "dog, dog; dog: dog! dog? dog...",
                                                    "_d1AOg, _d1AOg; _d1AOg: _d1AOg! _d1AOg? _d1AOg."},
                                         Pronounced{kAmerican, "dog!", "_d1AOg!"},
                                         Pronounced{kAmerican, "dog. Boy", "_d1AOg. _b1OY."}));

TEST(SymbolsAsInput, AreReadAsEspeakReadsPhonemes) {
    EXPECT_EQ(inputFor("_d1AOg."), "[[d|'0|g]].");
    EXPECT_EQ(inputFor("~DAX _b1OY"), "[[D|@]] [[b|'OI]]");
    EXPECT_EQ(inputFor("_d1AOg, _b1OY?"), "[[d|'0|g]], [[b|'OI]]?");
    EXPECT_EQ(inputFor("_d1AOg_b1OY"), "[[d|'0|g]] [[b|'OI]]");
    EXPECT_EQ(inputFor("\"_d1AOg\" (_b1OY)"), "[[d|'0|g]] [[b|'OI]]");
    EXPECT_EQ(inputFor(" \t\r\n"), "");
    EXPECT_EQ(inputFor("_d1AOg % _b1OY"), "[[d|'0|g]] [[_:]] [[b|'OI]]");
}

TEST(SymbolsAsInput, HaveStressWhereItsMarkSays) {
    EXPECT_EQ(inputFor("_k2AEt1AEN"), "[[k|,a|t|'a|N]]");
    EXPECT_EQ(inputFor("_1kAEtAEN"), "[[k|'a|t|a|N]]") << "before the consonants of a syllable";
    EXPECT_EQ(inputFor("~k2AEt1AEN"), "[[k|a|t|a|N]]") << "a word without stress";
    EXPECT_EQ(inputFor("+k2AEt1AEN"), "[[k|,a|t|''a|N]]") << "a word with more of it";
}

TEST(SymbolsAsInput, WithoutStressHaveItOnTheFirstFullVowel) {
    EXPECT_EQ(inputFor("AXbUWt"), "[[@|b|'u:|t]]");
    EXPECT_EQ(inputFor("sIYkwAXl"), "[[s|'i:|k|w|@L]]");
    EXPECT_EQ(inputFor("DAX"), "[[D|'@]]");
    EXPECT_EQ(inputFor("pst"), "[[p|s|t]]");
}

TEST(SymbolsAsInput, TakeLegacyMarksForWhatTheyMean) {
    EXPECT_EQ(inputFor("_d1>AOg"), "[[d|'O:|g]]") << "a longer one of the same symbol";
    EXPECT_EQ(inputFor("_b1>>>>OY"), "[[b|'OI]]") << "as long as it can be";
    EXPECT_EQ(inputFor("_d1/AOg"), "[[d|'0|g]]");
    EXPECT_EQ(inputFor("_d1\\AOg"), "[[d|'0|g]]");
}

TEST(SymbolsAsInput, PartSyllablesAtTheirMark) {
    EXPECT_EQ(inputFor("~AXr1AWnd"), "[[3|aU|n|d]]");
    EXPECT_EQ(inputFor("_AX=r1AWnd"), "[[@|r|'aU|n|d]]");
    EXPECT_EQ(inputFor("_AX=r=1AWnd="), "[[@|r|'aU|n|d]]");
}

TEST(SymbolsAsInput, TellTheirMistakesByPlace) {
    const PhonemeSet& set = speakWith(kAmerican);
    const auto placesIn = [&](std::u32string_view symbols) {
        std::vector<std::size_t> places;
        for (const SymbolMistake& mistake : phonemeInput(symbols, set).mistakes) {
            EXPECT_FALSE(mistake.message.empty());
            places.push_back(mistake.at);
        }
        return places;
    };
    EXPECT_THAT(placesIn(U"_d1AOg."), IsEmpty());
    EXPECT_THAT(placesIn(U"_d1AOq."), ElementsAre(5));
    EXPECT_THAT(placesIn(U"\u00E9_d1AOg\U0001F600x"), ElementsAre(0, 7, 8));
    EXPECT_THAT(placesIn(U"A"), ElementsAre(0)) << "half a symbol";
    EXPECT_THAT(placesIn(U"3 0"), ElementsAre(0, 2));
    EXPECT_EQ(asText(phonemeInput(U"_dq1AOxg", set).words), "[[d|'0|g]]") << "the rest is spoken";
}

TEST(SymbolsAsInput, KnowWhereEachWordComesFrom) {
    EXPECT_THAT(phonemeInput(U" _d1AOg. ~bOY?", speakWith(kAmerican)).words,
                ElementsAre(PhonemeWord{"d|'0|g", '\0', 2}, PhonemeWord{"", '.', 7},
                            PhonemeWord{"b|OI", '\0', 10}, PhonemeWord{"", '?', 13}));
}

TEST(SymbolsAsInput, AreSpokenByEspeak) {
    EXPECT_EQ(spoken("_d1AOg."), "d|'0|g");
    EXPECT_EQ(spoken("~DAX _k1AEt, _b1OY!"), "D|@ k|'a|t b|'OI");
    EXPECT_EQ(spoken("sIYkwAXl"), "s|'i:|k|w|@L");
}

TEST(SymbolsAsInput, OfAnyKindAreTakenInEveryVoice) {
    const std::string all =
        "AE EY AO AX IY EH IH AY IX AA UW UH UX OW AW OY b C d D f g h J k l m n N p r s S t T "
        "v w y z Z";
    for (const std::string& voice : voiceIdentifiers()) {
        SCOPED_TRACE(voice);
        std::size_t words = 1;
        for (const char character : inputFor(all, voice)) {
            words += character == ' ' ? 1U : 0U;
        }
        EXPECT_EQ(words, 40U) << inputFor(all, voice);
    }
}

} // namespace
