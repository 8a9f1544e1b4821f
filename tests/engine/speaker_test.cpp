#include "engine/speaker.h"

#include "engine/text_pieces.h"
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

TEST(SpeakerSpelling, ofCharactersSoundsLikeTheirNames) {
    const double spelled = speak("The dog.", kCharacters).seconds();
    EXPECT_NEAR(spelled, speak("Tea aitch ee, dee oh gee.").seconds(), 0.2 * spelled);
    EXPECT_GT(spelled, 1.5 * speak("The dog.").seconds());
}

TEST(SpeakerSpelling, ofNumbersIsDigitByDigit) {
    const double digits = speak("1066", kNumbers).seconds();
    EXPECT_NEAR(digits, speak("one zero six six").seconds(), 0.15 * digits);
    EXPECT_NEAR(speak("١٠٦٦", kNumbers).seconds(), digits, 0.05 * digits);
    const double words = speak("The dog.").seconds();
    EXPECT_NEAR(speak("The dog.", kNumbers).seconds(), words, 0.02 * words);
}

} // namespace
