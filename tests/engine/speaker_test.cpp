#include "engine/speaker/speaker.h"

#include "engine/text/text_pieces.h"
#include "tests/support/fundamental_frequency.h"
#include "tests/support/sound_file.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

using namespace zqm::engine;
using namespace zqm::protocol;
using namespace zqm::support;
using testing::ElementsAre;

namespace {

constexpr const char* kEnglish = "gmw/en-US";
constexpr const char* kVoiced =
    "My mother will remain in the warm room all morning, and we may know more in a minute.";

Speaker& speaker() {
    static Speaker instance;
    return instance;
}

struct Spoken {
    std::vector<float> samples;    // -1 to 1
    std::vector<double> wordTimes; // seconds
    std::vector<SpokenPhoneme> phonemes;
    std::vector<TextMistake> mistakes;

    [[nodiscard]] std::vector<int> opcodes() const {
        std::vector<int> list;
        for (const SpokenPhoneme& phoneme : phonemes) {
            list.push_back(phoneme.opcode);
        }
        return list;
    }

    // Without pauses, between two words; the last word ends the piece.
    [[nodiscard]] std::vector<int> opcodesOfWord(std::size_t word) const {
        std::vector<int> list;
        for (const SpokenPhoneme& phoneme : phonemes) {
            const double time = static_cast<double>(phoneme.sample) / speaker().sampleRate();
            const bool isBefore = time < wordTimes[word] - kTolerance;
            const bool isBehind = word + 1 < wordTimes.size() && time >= wordTimes[word + 1] - kTolerance;
            if (!isBefore && !isBehind && phoneme.opcode != 0) {
                list.push_back(phoneme.opcode);
            }
        }
        return list;
    }
    static constexpr double kTolerance = 1e-6;

    [[nodiscard]] double seconds() const {
        return static_cast<double>(samples.size()) / speaker().sampleRate();
    }
    [[nodiscard]] double level(double from, double to) const {
        const auto at = [&](double seconds) {
            return static_cast<std::size_t>(seconds * speaker().sampleRate());
        };
        return rms(std::span(samples).subspan(at(from), at(to) - at(from)));
    }
};

Piece piece(const std::string& text, const std::string& language = "en-US") {
    TextPieces pieces(text, language);
    return pieces.next().value();
}

Spoken speak(const std::string& text, const Manner& manner = {}, const char* voice = kEnglish,
             std::optional<bool> emphasis = std::nullopt) {
    const Voice* const found = speaker().findVoice(voice);
    EXPECT_TRUE(found != nullptr && speaker().setVoice(*found)) << voice;
    speaker().setManner(manner);
    const Speech speech = speaker().synthesize(piece(text, found->language), emphasis);
    Spoken spoken;
    for (const std::int16_t sample : speech.samples) {
        spoken.samples.push_back(static_cast<float>(sample) / 32768);
    }
    for (const std::size_t time : speech.wordTimes) {
        spoken.wordTimes.push_back(static_cast<double>(time) / speaker().sampleRate());
    }
    spoken.phonemes = speech.phonemes;
    spoken.mistakes = speech.mistakes;
    return spoken;
}

double frequency(const Manner& manner, const char* voice = kEnglish) {
    return medianFrequency(speak(kVoiced, manner, voice).samples, speaker().sampleRate());
}

double spread(const Manner& manner) {
    return frequencySpread(speak(kVoiced, manner).samples, speaker().sampleRate());
}

// ---- rate

TEST(SpeakerRate, isTheVoicesOwnUnlessGiven) {
    const double own = speak(kVoiced).seconds();
    EXPECT_NEAR(speak(kVoiced, {.rate = 175}).seconds(), own, 0.02 * own);
    EXPECT_NEAR(speak(kVoiced, {.rate = std::nan("")}).seconds(), own, 0.02 * own);
}

TEST(SpeakerRate, makesSpeechShorter) {
    const double own = speak(kVoiced).seconds();
    EXPECT_NEAR(speak(kVoiced, {.rate = 350}).seconds() / own, 0.5, 0.1);
    EXPECT_NEAR(speak(kVoiced, {.rate = 100}).seconds() / own, 1.75, 0.25);
}

TEST(SpeakerRate, isTakenToWhatCanBeSpoken) {
    const double fastest = speak(kVoiced, {.rate = 450}).seconds();
    EXPECT_NEAR(speak(kVoiced, {.rate = 1e300}).seconds(), fastest, 0.02 * fastest);
    const double slowest = speak(kVoiced, {.rate = 80}).seconds();
    EXPECT_NEAR(speak(kVoiced, {.rate = -1}).seconds(), slowest, 0.02 * slowest);
}

// ---- pitch

class SpeakerPitch : public testing::TestWithParam<const char*> {};

TEST_P(SpeakerPitch, isAbout90HzAt35And300At60) {
    EXPECT_NEAR(frequency({.pitchBase = 35}, GetParam()), 90, 9);
    EXPECT_NEAR(frequency({.pitchBase = 60}, GetParam()), 300, 30);
}

TEST_P(SpeakerPitch, isWhatTheVoiceSaysOfItself) {
    const double own = frequency({}, GetParam());
    const double base = speaker().findVoice(GetParam())->pitchBase;
    EXPECT_NEAR(frequency({.pitchBase = base}, GetParam()), own, 0.05 * own);
    EXPECT_NEAR(own, 90 * std::pow(300.0 / 90, (base - 35) / 25), 0.1 * own);
}

INSTANTIATE_TEST_SUITE_P(Voices, SpeakerPitch,
                         testing::Values(kEnglish, "gmw/de", "roa/fr", "urj/hu", "zle/ru", "gmw/af"));

TEST(SpeakerPitch, risesWithTheBase) {
    double last = frequency({.pitchBase = 30});
    for (const double base : {35, 40, 45, 50, 55, 60}) {
        const double next = frequency({.pitchBase = base});
        EXPECT_GT(next, 1.1 * last) << base;
        last = next;
    }
}

TEST(SpeakerPitch, isTakenToWhatCanBeSpoken) {
    EXPECT_GT(frequency({.pitchBase = 127}), 300);
    EXPECT_GT(frequency({.pitchBase = 1}), 50);
    EXPECT_GT(frequency({.pitchBase = std::numeric_limits<double>::infinity()}), 300);
}

TEST(SpeakerPitch, ofEveryVoiceIsSafeAtItsEnds) {
    for (const Voice& voice : speaker().voices()) {
        for (const double base : {1, 30, 127}) {
            EXPECT_FALSE(
                speak("Mama 25?", {.pitchBase = base, .pitchModulation = 127}, voice.identifier.c_str())
                    .samples.empty())
                << voice.identifier;
        }
    }
}

TEST(SpeakerPitch, isMonotoneWithoutModulationAndLivelierWithMore) {
    EXPECT_LT(spread({.pitchModulation = 0}), 1);
    const double own = spread({});
    EXPECT_GT(own, 2);
    EXPECT_NEAR(spread({.pitchModulation = speaker().findVoice(kEnglish)->pitchModulation}), own, 0.1 * own);
    EXPECT_GT(spread({.pitchModulation = 127}), 1.5 * own);
}

TEST(SpeakerPitch, staysWhereItIsWithAnyModulation) {
    for (const double modulation : {0, 64, 127}) {
        EXPECT_NEAR(frequency({.pitchBase = 45, .pitchModulation = modulation}), 146, 10) << modulation;
    }
}

TEST(SpeakerPitch, isTheVoicesOwnAgainAfterwards) {
    const double own = frequency({});
    frequency({.pitchBase = 60, .pitchModulation = 0});
    EXPECT_NEAR(frequency({}), own, 0.03 * own);
    EXPECT_NEAR(frequency({.pitchBase = std::nan(""), .pitchModulation = std::nan("")}), own, 0.03 * own);
}

// ---- emphasis

TEST(SpeakerEmphasis, makesAWordLouderAndLongerOrSofterAndShorter) {
    const char* const text = "Many people came.";
    const Spoken usual = speak(text);
    const Spoken more = speak(text, {}, kEnglish, true);
    const Spoken less = speak(text, {}, kEnglish, false);
    const double length = usual.wordTimes[1];
    EXPECT_GT(more.wordTimes[1], 1.1 * length);
    EXPECT_LT(less.wordTimes[1], 0.9 * length);
    const double level = usual.level(0, length);
    EXPECT_GT(more.level(0, more.wordTimes[1]), 1.2 * level);
    EXPECT_LT(less.level(0, less.wordTimes[1]), 0.8 * level);
}

TEST(SpeakerEmphasis, isOfOneWordOnly) {
    const char* const text = "Many people came.";
    const Spoken usual = speak(text);
    for (const bool more : {true, false}) {
        const Spoken changed = speak(text, {}, kEnglish, more);
        ASSERT_EQ(changed.wordTimes.size(), 3U);
        const double rest = usual.seconds() - usual.wordTimes[1];
        EXPECT_NEAR(changed.seconds() - changed.wordTimes[1], rest, 0.05 * rest);
        const double level = usual.level(usual.wordTimes[1], usual.seconds());
        EXPECT_NEAR(changed.level(changed.wordTimes[1], changed.seconds()), level, 0.15 * level);
    }
}

// ---- literal characters and numbers

constexpr Manner kCharacters{.characters = SpellingMode::Literal};
constexpr Manner kNumbers{.numbers = SpellingMode::Literal};

// The same phonemes, whatever the pauses between them.
std::vector<int> sounds(const Spoken& spoken) {
    std::vector<int> list = spoken.opcodes();
    std::erase(list, 0);
    return list;
}

// The names of characters, each spoken alone.
std::vector<int> names(const std::string& characters) {
    std::vector<int> list;
    for (const char character : characters) {
        const std::vector<int> name = sounds(speak(std::string{character}));
        list.insert(list.end(), name.begin(), name.end());
    }
    return list;
}

TEST(SpeakerSpelling, ofCharactersIsByTheirNames) {
    EXPECT_EQ(sounds(speak("See the cat now.", kCharacters)), names("SEETHECATNOW"));
    EXPECT_NE(sounds(speak("See the cat now.", kCharacters)), sounds(speak("See the cat now.")));
}

TEST(SpeakerSpelling, ofNumbersIsDigitByDigit) {
    EXPECT_EQ(sounds(speak("1066", kNumbers)), names("1066"));
    EXPECT_EQ(sounds(speak("\u0661\u0660\u0666\u0666", kNumbers)), names("1066"));
    EXPECT_NE(sounds(speak("1066")), names("1066"));
    EXPECT_EQ(sounds(speak("The dog.", kNumbers)), sounds(speak("The dog.")));
}

TEST(SpeakerSpelling, ofNumbersNamesTheirPoint) {
    const std::vector<int> spelled = sounds(speak("25.50", kNumbers));
    std::vector<int> expected = names("25");
    const std::vector<int> rest = names("50");
    const std::vector<int> point(spelled.begin() + static_cast<std::ptrdiff_t>(expected.size()),
                                 spelled.end() - static_cast<std::ptrdiff_t>(rest.size()));
    EXPECT_THAT(point, ElementsAre(20, testing::_, 35)); // dot
    expected.insert(expected.end(), point.begin(), point.end());
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(spelled, expected);
}

TEST(SpeakerSpelling, ofCharactersLeavesNumbers) {
    EXPECT_EQ(sounds(speak("1066", kCharacters)), sounds(speak("1066")));
}

// ---- phonemes

constexpr Manner kSymbols{.input = InputMode::Phonemes};

TEST(SpeakerPhonemes, areTimedOpcodes) {
    const Spoken spoken = speak("dog");
    ASSERT_THAT(spoken.opcodes(), ElementsAre(20, testing::AnyOf(4, 11), 23, 0));
    EXPECT_LT(static_cast<double>(spoken.phonemes.front().sample) / speaker().sampleRate(), 0.05);
    EXPECT_TRUE(std::is_sorted(
        spoken.phonemes.begin(), spoken.phonemes.end(),
        [](const SpokenPhoneme& left, const SpokenPhoneme& right) { return left.sample < right.sample; }));
    EXPECT_LT(spoken.phonemes.back().sample, spoken.samples.size());
    // The silence that is told is one.
    const double silence = static_cast<double>(spoken.phonemes.back().sample) / speaker().sampleRate();
    EXPECT_LT(spoken.level(silence + 0.05, spoken.seconds()), 0.002);
}

TEST(SpeakerPhonemes, countPausesWithinASentence) {
    const std::vector<int> opcodes = speak("Dog, cat").opcodes();
    EXPECT_EQ(std::count(opcodes.begin(), opcodes.end(), 0), 2);
}

TEST(SpeakerPhonemes, thatAreGivenAreSpoken) {
    EXPECT_EQ(sounds(speak("_h1EHlOW _w1UXrld", kSymbols)),
              (std::vector<int>{24, 7, 27, 15, 38, 14, 32, 27, 20}));
    EXPECT_EQ(speak("_h1EHlOW", kSymbols).mistakes.size(), 0U);
}

TEST(SpeakerPhonemes, ofATextSoundLikeIt) {
    const Voice& voice = *speaker().findVoice(kEnglish);
    for (const char* const text : {"dog", "Hello world.", "The cat is sitting on a mat, again."}) {
        const std::string symbols = speaker().phonemes(text, voice);
        EXPECT_EQ(sounds(speak(symbols, kSymbols)), sounds(speak(text))) << symbols;
    }
}

TEST(SpeakerPhonemes, thatAreNoneAreToldByPlace) {
    const Spoken spoken = speak("_d1AOg \u00E9 _k1AEt", kSymbols);
    ASSERT_EQ(spoken.mistakes.size(), 1U);
    EXPECT_EQ(spoken.mistakes[0].codePoint, 7U);
    EXPECT_NE(spoken.mistakes[0].message, "");
    EXPECT_EQ(sounds(spoken), sounds(speak("_d1AOg _k1AEt", kSymbols)));
}

TEST(SpeakerPhonemes, mayBeEmphatic) {
    const char* const text = "_m1EHnIY _p1IYpAXl _k1EYm";
    const Spoken usual = speak(text, kSymbols);
    const Spoken more = speak(text, kSymbols, kEnglish, true);
    ASSERT_EQ(more.wordTimes.size(), 3U);
    EXPECT_GT(more.wordTimes[1], 1.1 * usual.wordTimes[1]);
    EXPECT_GT(more.level(0, more.wordTimes[1]), 1.2 * usual.level(0, usual.wordTimes[1]));
    EXPECT_EQ(sounds(more), sounds(usual));
}

TEST(SpeakerPhonemes, ofEspeakNgInATextAreNone) {
    for (const char* const text : {"[[d'0g]]", "see [[h@l'oU]] now", "a [[ b", "[[[[dog]]", "x]] y [[z"}) {
        std::string apart;
        for (const char character : std::string(text)) {
            apart += character == '[' || character == ']' ? ' ' : character;
        }
        EXPECT_EQ(sounds(speak(text)), sounds(speak(apart))) << text;
    }
    EXPECT_NE(sounds(speak("[[d'0g]]")), sounds(speak("dog")));
}

// ---- lexicon

struct WithLexicon {
    explicit WithLexicon(std::vector<LexiconDictionary> dictionaries)
        : problems(speaker().setLexicon(std::move(dictionaries))) {}
    ~WithLexicon() { speaker().setLexicon({}); }
    WithLexicon(const WithLexicon&) = delete;
    WithLexicon& operator=(const WithLexicon&) = delete;

    std::vector<LexiconProblem> problems;
};

constexpr const char* kOld = "2020-01-01 00:00:00 +0000";
constexpr const char* kNew = "2021-01-01 00:00:00 +0000";

TEST(SpeakerLexicon, saysHowAWordSounds) {
    const std::vector<int> usual = sounds(speak("The dog is here."));
    const WithLexicon lexicon({{"en_US", kOld, {{"dog", "AXbUWt"}, {"SQL", "sIYkwAXl"}}, {}}});
    EXPECT_EQ(sounds(speak("dog")), (std::vector<int>{5, 18, 12, 35}));
    EXPECT_EQ(sounds(speak("Dog!")), sounds(speak("AXbUWt", kSymbols)));
    EXPECT_EQ(sounds(speak("SQL")), sounds(speak("sIYkwAXl", kSymbols)));
    EXPECT_NE(sounds(speak("The dog is here.")), usual);
    EXPECT_EQ(sounds(speak("The cat is here.", kNumbers)), sounds(speak("The cat is here.")));
}

TEST(SpeakerLexicon, countsTheNewestAndIsReplaced) {
    {
        const WithLexicon lexicon(
            {{"en_US", kNew, {{"dog", "AXbUWt"}}, {}}, {"en_US", kOld, {{"dog", "kAEt"}}, {}}});
        EXPECT_EQ(sounds(speak("dog")), (std::vector<int>{5, 18, 12, 35}));
    }
    EXPECT_NE(sounds(speak("dog")), (std::vector<int>{5, 18, 12, 35}));
}

TEST(SpeakerLexicon, isOfTheVoicesLanguage) {
    const std::vector<int> german = sounds(speak("Hund", {}, "gmw/de"));
    const WithLexicon lexicon({{"en_US", kOld, {{"Hund", "AXbUWt"}}, {}}});
    EXPECT_EQ(sounds(speak("Hund", {}, "gmw/de")), german);
    EXPECT_EQ(sounds(speak("Hund")), (std::vector<int>{5, 18, 12, 35}));
    EXPECT_EQ(sounds(speak("Hund", {}, "gmw/en-GB-x-rp")).size(), 4U);
}

TEST(SpeakerLexicon, endsNoSentenceAtAnAbbreviation) {
    const WithLexicon lexicon({{"", kOld, {}, {{"Abc.", "AXbUWt"}}}});
    const Spoken spoken = speak("See Abc. now");
    EXPECT_EQ(sounds(spoken), sounds(speak("See Abc now")));
    const std::vector<int> opcodes = spoken.opcodes();
    EXPECT_EQ(std::count(opcodes.begin(), opcodes.end(), 0), 1);
    EXPECT_THAT(spoken.opcodesOfWord(1), ElementsAre(5, 18, 12, 35));
}

TEST(SpeakerLexicon, tellsBadEntriesByIndex) {
    const WithLexicon lexicon({{"en_US", kOld, {{"dog", "AXbUWt"}, {"cat", "4444"}, {"cow", "AXbUWt"}}, {}}});
    ASSERT_EQ(lexicon.problems.size(), 1U);
    EXPECT_EQ(lexicon.problems[0].entry, 1U);
    EXPECT_EQ(sounds(speak("dog")), sounds(speak("cow")));
    EXPECT_NE(sounds(speak("cat")), sounds(speak("cow")));
}

TEST(SpeakerLexicon, worksBetweenAnySigns) {
    const WithLexicon lexicon({{"", kOld, {{"dog", "AXbUWt"}}, {}}});
    for (const char* const text :
         {"(dog)", "\"dog\"", "'dog',", "[dog]", "[[dog]]", "\u201Cdog\u201D", "-dog-", "\ndog\n"}) {
        EXPECT_EQ(sounds(speak(text)), (std::vector<int>{5, 18, 12, 35})) << text;
    }
}

// ---- words

// The phonemes from each word's time on are those of the word.
void expectWordsAt(const Spoken& spoken, const std::vector<std::vector<int>>& words) {
    ASSERT_EQ(spoken.wordTimes.size(), words.size());
    for (std::size_t word = 0; word < words.size(); ++word) {
        EXPECT_EQ(spoken.opcodesOfWord(word), words[word]) << word;
    }
}

// ---- phonemes of a text

std::string phonemesOf(const std::string& text, const Manner& manner = {}) {
    return speaker().phonemes(text, *speaker().findVoice(kEnglish), manner);
}

TEST(SpeakerTextPhonemes, areThoseOfTheLexicon) {
    EXPECT_EQ(phonemesOf("dog"), "_d1AOg.");
    {
        const WithLexicon lexicon({{"en_US", kNew, {{"dog", "k2AEt1AEN"}}, {{"Dr", "dAAktAXr"}}}});
        EXPECT_EQ(phonemesOf("Dog, dogs"), "_k2AEt1AEN, _d1AOgz.");
        EXPECT_EQ(phonemesOf("See dog"), "_s1IY _k2AEt1AEN.") << "a stress sign is no comma";
        EXPECT_EQ(phonemesOf("Dr. dog!"), "_d1AAktAXr _k2AEt1AEN!");
    }
    EXPECT_EQ(phonemesOf("dog"), "_d1AOg.");
}

TEST(SpeakerTextPhonemes, areThoseOfCharactersAndDigits) {
    for (const Manner& manner : {kCharacters, kNumbers, Manner{}}) {
        for (const char* const text : {"1066", "dog", "The cat, 12."}) {
            const std::string symbols = phonemesOf(text, manner);
            EXPECT_EQ(sounds(speak(symbols, kSymbols)), sounds(speak(text, manner))) << symbols;
        }
    }
    EXPECT_NE(phonemesOf("1066", kNumbers), phonemesOf("1066"));
    EXPECT_NE(phonemesOf("dog", kCharacters), phonemesOf("dog"));
    EXPECT_EQ(phonemesOf("dog", kSymbols), phonemesOf("dog")) << "the text is words";
}

TEST(SpeakerTextPhonemes, areNeverThoseThatATextNames) {
    EXPECT_EQ(phonemesOf("[[dog]]"), "_d1AOg.");
    EXPECT_EQ(phonemesOf("[[[dog]]]"), "_d1AOg.");
    EXPECT_EQ(phonemesOf("dog [[ dog"), "_d1AOg _d1AOg.");
}

TEST(SpeakerWords, keepTheirTimesWhenSpelled) {
    expectWordsAt(speak("Cat dog, MP3 yes.", kCharacters),
                  {names("CAT"), names("DOG"), names("MP3"), names("YES")});
    expectWordsAt(speak("In 1066 or 25.50, yes 7 yes.", kNumbers),
                  {sounds(speak("In")), names("1066"), sounds(speak("or")), sounds(speak("25.50", kNumbers)),
                   sounds(speak("yes")), names("7"), sounds(speak("yes"))});
}

TEST(SpeakerWords, keepTheirTimesWithEmphasis) {
    for (const bool more : {true, false}) {
        expectWordsAt(speak("Many people came.", {}, kEnglish, more),
                      {sounds(speak("many")), sounds(speak("people")), sounds(speak("came"))});
    }
}

TEST(SpeakerWords, keepTheirTimesWithALexicon) {
    const std::vector<int> about{5, 18, 12, 35};
    const WithLexicon lexicon({{"", kOld, {{"dog", "AXbUWt"}}, {{"Abc.", "AXbUWt"}}}});
    expectWordsAt(speak("Many dogs, dog dog Abc. came (dog) now."),
                  {sounds(speak("many")), sounds(speak("dogs")), about, about, about, sounds(speak("came")),
                   about, sounds(speak("now"))});
}

TEST(SpeakerWords, ofSymbolsHaveTheirTimes) {
    expectWordsAt(speak("_m1EHnIY _p1IYpAXl, _k1EYm.", kSymbols),
                  {sounds(speak("mEHnIY", kSymbols)), sounds(speak("pIYpAXl", kSymbols)),
                   sounds(speak("kEYm", kSymbols))});
}

} // namespace
