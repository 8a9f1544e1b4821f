// What the commands in a text make of its sound and its events, from an engine into a file.

#include "engine/protocol/protocol.h"
#include "tests/engine/engine_process.h"
#include "tests/support/fundamental_frequency.h"
#include "tests/support/generated_text.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/utf16.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kVoiced =
    "My mother will remain in the warm room all morning, and we may know more in a minute.";

// A silence that no pause in speech comes near.
const std::string kGap = "[[slnc 3000]]";
constexpr double kGapSeconds = 2.5;

struct Spoken {
    std::vector<Event> events;
    Samples samples;
    int rate = 0;

    [[nodiscard]] double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

std::vector<Samples> partsOf(const Spoken& spoken) {
    return partsBetweenSilences(spoken.samples, spoken.rate, kGapSeconds);
}

// The synthesizer never makes quite the same sound twice.
bool soundAlike(const Samples& one, const Samples& other) {
    constexpr double kTolerance = 0.03;
    const double length = static_cast<double>(one.size()) / static_cast<double>(other.size());
    return std::abs(length - 1) < kTolerance && std::abs(rms(one) / rms(other) - 1) < kTolerance;
}

class CommandSpeech : public testing::Test {
protected:
    Spoken say(const std::string& text, const Manner& manner = {.rate = 175, .volume = 1}) {
        Target target(folder.path(), std::to_string(++number) + ".wav");
        Speak request = speak(number, text);
        request.manner = manner;
        request.output = target.output;
        engine.send(request, std::move(target.descriptors));
        Spoken spoken{engine.untilEnd(number), {}, 0};
        EXPECT_THAT(faults(spoken.events, number), IsEmpty());
        EXPECT_TRUE(finished(spoken.events) && finished(spoken.events)->completed);
        SoundFile file(target.file);
        spoken.samples = std::move(file.samples);
        spoken.rate = file.rate;
        return spoken;
    }

    TemporaryFolder folder;
    EngineProcess engine{Environment{{"PULSE_SERVER", "unix:/nonexistent/pulse"}}};
    std::uint64_t number = 0;
};

// ---- rate, volume and pitch

struct Ratio {
    double value;
    double tolerance;
};

constexpr Ratio kSame{1, 0.06};

struct Measure {
    std::string command;
    Manner manner; // of the utterance
    Ratio duration;
    Ratio level;
    Ratio frequency;
    std::optional<Ratio> spread{}; // of the pitch, in semitones; not given: not looked at
};

void PrintTo(const Measure& example, std::ostream* stream) {
    *stream << example.command;
}

class MeasuredCommands : public CommandSpeech, public testing::WithParamInterface<Measure> {};

TEST_P(MeasuredCommands, changeTheRestOfTheSound) {
    const Measure& expected = GetParam();
    const std::string text = kVoiced + kGap + expected.command + kVoiced;
    const Spoken spoken = say(text, expected.manner);
    const std::vector<Samples> parts = partsOf(spoken);
    ASSERT_EQ(parts.size(), 2U);
    const auto length = [&](const Samples& part) { return static_cast<double>(part.size()); };
    const auto frequency = [&](const Samples& part) { return medianFrequency(part, spoken.rate); };
    const auto spread = [&](const Samples& part) { return frequencySpread(part, spoken.rate); };
    EXPECT_NEAR(length(parts[1]) / length(parts[0]), expected.duration.value, expected.duration.tolerance);
    EXPECT_NEAR(rms(parts[1]) / rms(parts[0]), expected.level.value, expected.level.tolerance);
    EXPECT_NEAR(frequency(parts[1]) / frequency(parts[0]), expected.frequency.value,
                expected.frequency.tolerance);
    if (expected.spread) {
        EXPECT_NEAR(spread(parts[1]) / spread(parts[0]), expected.spread->value, expected.spread->tolerance);
    }
    const std::size_t words = wordsIn(spoken.events).size();
    EXPECT_EQ(words, 36U);
    EXPECT_EQ(cutOut(text, spoken.events).at(words / 2), "My");
}

const Manner kUsual{.rate = 175, .volume = 1};
const Manner kSoft{.rate = 175, .volume = 0.4};
const Manner kLow{.rate = 175, .volume = 1, .pitchBase = 35, .pitchModulation = 40};
const Ratio kAnyLevel{1, 0.6}; // a pitch changes it by the way

INSTANTIATE_TEST_SUITE_P(
    Rate, MeasuredCommands,
    testing::Values(Measure{"[[rate 175]]", kUsual, kSame, kSame, kSame},
                    Measure{"[[rate 350]]", kUsual, {0.5, 0.1}, {1, 0.2}, {1, 0.1}},
                    Measure{"[[rate +175]]", kUsual, {0.5, 0.1}, {1, 0.2}, {1, 0.1}},
                    Measure{"[[rate 100]]", kUsual, {1.75, 0.25}, {1, 0.2}, {1, 0.1}},
                    Measure{"[[rate -75]]", kUsual, {1.75, 0.25}, {1, 0.2}, {1, 0.1}},
                    Measure{"[[rate +100; rate -50]][[rate +125]]", kUsual, {0.5, 0.1}, {1, 0.2}, {1, 0.1}},
                    Measure{"[[rate -1000; rate 175]]", kUsual, kSame, kSame, kSame}));

INSTANTIATE_TEST_SUITE_P(Volume, MeasuredCommands,
                         testing::Values(Measure{"[[volm 1]]", kUsual, kSame, {1, 0.02}, kSame},
                                         Measure{"[[volm 0.5]]", kUsual, kSame, {0.5, 0.02}, kSame},
                                         Measure{"[[volm .1]]", kUsual, kSame, {0.1, 0.01}, kSame},
                                         Measure{"[[volm -0.75]]", kUsual, kSame, {0.25, 0.02}, kSame},
                                         Measure{"[[volm +0.4]]", kSoft, kSame, {2, 0.05}, kSame},
                                         Measure{"[[volm +5]]", kSoft, kSame, {2.5, 0.05}, kSame},
                                         Measure{"[[volm -5; volm +0.2]]", kUsual, kSame, {0.2, 0.02}, kSame},
                                         Measure{"[[volm 1]]", kSoft, kSame, {2.5, 0.05}, kSame}));

INSTANTIATE_TEST_SUITE_P(
    Pitch, MeasuredCommands,
    testing::Values(Measure{"[[pbas 35]]", kLow, kSame, kSame, kSame, kSame},
                    Measure{"[[pbas 60]]", kLow, {1, 0.1}, kAnyLevel, {3.33, 0.35}},
                    Measure{"[[pbas +25]]", kLow, {1, 0.1}, kAnyLevel, {3.33, 0.35}},
                    Measure{"[[pbas 49.4]]", kLow, {1, 0.1}, kAnyLevel, {2, 0.2}},
                    Measure{"[[pbas +30; pbas -15.6]]", kLow, {1, 0.1}, kAnyLevel, {2, 0.2}},
                    Measure{"[[pmod 40]]", kLow, kSame, kSame, kSame, kSame},
                    Measure{"[[pmod 0]]", kLow, {1, 0.1}, kAnyLevel, {1, 0.15}, Ratio{0, 0.3}},
                    Measure{"[[pmod -200]]", kLow, {1, 0.1}, kAnyLevel, {1, 0.15}, Ratio{0, 0.3}},
                    Measure{"[[pmod 80]]", kLow, {1, 0.1}, kAnyLevel, {1, 0.2}, Ratio{2, 0.6}},
                    Measure{"[[pmod +40]]", kLow, {1, 0.1}, kAnyLevel, {1, 0.2}, Ratio{2, 0.6}}));

INSTANTIATE_TEST_SUITE_P(
    Reset, MeasuredCommands,
    testing::Values(
        Measure{"[[rset 0]]", kLow, kSame, kSame, kSame, kSame},
        Measure{"[[rate 350; volm 0.2; pbas 60; pmod 0; rset 0]]", kLow, kSame, kSame, kSame, kSame},
        Measure{"[[rate 350; volm 0.2; pbas 60; pmod 0; rset 0]]", kSoft, kSame, kSame, kSame, kSame},
        Measure{"[[char LTRL; nmbr LTRL; inpt PHON; emph +; rset 0]]", kUsual, kSame, kSame, kSame},
        Measure{"[[rate 350]] [[rset 0; volm 0.5]]", kUsual, kSame, {0.5, 0.02}, kSame}));

// They and what is wrong with a command change nothing.
INSTANTIATE_TEST_SUITE_P(Nothing, MeasuredCommands,
                         testing::Values(Measure{"[[cmnt rate 350]]", kUsual, kSame, kSame, kSame},
                                         Measure{"[[ctxt WORD; vers 1]]", kUsual, kSame, kSame, kSame},
                                         Measure{"[[rate; volm 2; pbas x; xtnd abcd]]", kUsual, kSame, kSame,
                                                 kSame}));

TEST_F(CommandSpeech, changesEndWithTheirUtterance) {
    const double usual = say(kVoiced).seconds();
    say(std::string("[[rate 350; volm 0.1]]") + kVoiced);
    const Spoken after = say(kVoiced);
    EXPECT_NEAR(after.seconds(), usual, 0.01 * usual);
    EXPECT_GT(rms(after.samples), 0.02);
}

// ---- silence

struct Held {
    std::string text;
    double seconds;
    std::string without; // the same but for the silence
};

void PrintTo(const Held& example, std::ostream* stream) {
    *stream << example.text;
}

class SilenceCommands : public CommandSpeech, public testing::WithParamInterface<Held> {};

TEST_P(SilenceCommands, lastAsLongAsTheySay) {
    const Spoken spoken = say(GetParam().text);
    constexpr double kTolerance = 0.01;
    EXPECT_NEAR(spoken.seconds() - say(GetParam().without).seconds(), GetParam().seconds, kTolerance);
    EXPECT_GE(longestSilence(spoken.samples, spoken.rate, 1e-9F), GetParam().seconds - kTolerance);
}

INSTANTIATE_TEST_SUITE_P(Silences, SilenceCommands,
                         testing::Values(Held{"One [[slnc 0]]two", 0, "One [[slnc 0]]two"},
                                         Held{"One [[slnc 10]]two", 0.01, "One [[slnc 0]]two"},
                                         Held{"One [[slnc 250]]two", 0.25, "One [[slnc 0]]two"},
                                         Held{"One. [[slnc 1000]]Two", 1, "One. [[slnc 0]]Two"},
                                         Held{"One [[slnc 0x7D0]]two", 2, "One [[slnc 0]]two"},
                                         Held{"One [[slnc 60000]]two", 60, "One [[slnc 0]]two"},
                                         Held{"[[slnc 500]]One two", 0.5, "One two"},
                                         Held{"One two[[slnc 500]]", 0.5, "One two"},
                                         Held{"One [[slnc 300; slnc 300]]two", 0.6, "One [[slnc 0]]two"},
                                         Held{"One [[slnc 300]] [[slnc 300]]two", 0.6, "One [[slnc 0]]two"},
                                         Held{"[[volm 0]]One [[volm 1; pbas 50; slnc 400]]two", 0.4,
                                              "[[volm 0]]One [[volm 1; pbas 50]]two"},
                                         Held{"[[slnc 700]]", 0.7, ""}));

// ---- emphasis

TEST_F(CommandSpeech, emphasisMakesTheNextWordStrongerOrWeaker) {
    const std::vector<Samples> words =
        partsOf(say("Many" + kGap + "[[emph +]]many" + kGap + "[[emph -]]many"));
    ASSERT_EQ(words.size(), 3U);
    EXPECT_GT(rms(words[1]), 1.2 * rms(words[0]));
    EXPECT_GT(words[1].size(), 1.1 * static_cast<double>(words[0].size()));
    EXPECT_LT(rms(words[2]), 0.8 * rms(words[0]));
    EXPECT_LT(words[2].size(), 0.9 * static_cast<double>(words[0].size()));
}

TEST_F(CommandSpeech, emphasisIsOfOneWord) {
    const std::vector<Samples> usual = partsOf(say("One" + kGap + "many people."));
    for (const std::string degree : {"+", "-"}) {
        const std::vector<Samples> words = partsOf(say("[[emph " + degree + "]]One" + kGap + "many people."));
        ASSERT_EQ(words.size(), 2U);
        EXPECT_FALSE(soundAlike(words[0], usual[0])) << degree;
        EXPECT_TRUE(soundAlike(words[1], usual[1])) << degree;
    }
}

// ---- modes

TEST_F(CommandSpeech, charactersAreSpelledWhereItIsSaid) {
    const std::vector<Samples> parts =
        partsOf(say("Strength." + kGap + "[[char LTRL]]Strength." + kGap + "[[char NORM]]Strength."));
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_TRUE(soundAlike(parts[2], parts[0]));
    EXPECT_GT(parts[1].size(), 2 * parts[0].size());
    const Manner literal{.rate = 175, .volume = 1, .characters = SpellingMode::Literal};
    EXPECT_TRUE(soundAlike(parts[1], partsOf(say("Strength.", literal)).at(0)));
}

TEST_F(CommandSpeech, numbersAreSpelledWhereItIsSaid) {
    const std::vector<Samples> parts =
        partsOf(say("1234567." + kGap + "[[nmbr LTRL]]1234567." + kGap + "[[nmbr NORM]]1234567."));
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_TRUE(soundAlike(parts[2], parts[0]));
    EXPECT_LT(parts[1].size(), 0.8 * static_cast<double>(parts[0].size()));
    const Manner literal{.rate = 175, .volume = 1, .numbers = SpellingMode::Literal};
    EXPECT_TRUE(soundAlike(parts[1], partsOf(say("1234567.", literal)).at(0)));
}

TEST_F(CommandSpeech, phonemesSoundLikeTheirText) {
    const std::vector<Samples> parts =
        partsOf(say("Morning." + kGap + "[[inpt PHON]]_m1AOrnIHN.[[inpt TEXT]]" + kGap + "Morning."));
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_TRUE(soundAlike(parts[1], parts[0]));
    EXPECT_TRUE(soundAlike(parts[2], parts[0]));
}

// ---- events

std::vector<int> opcodesIn(const std::vector<Event>& events) {
    std::vector<int> opcodes;
    for (const Event& event : events) {
        if (const auto* const phoneme = std::get_if<Phoneme>(&event)) {
            opcodes.push_back(phoneme->opcode);
        }
    }
    return opcodes;
}

struct Pronounced {
    std::string text;
    std::vector<int> opcodes;
};

void PrintTo(const Pronounced& example, std::ostream* stream) {
    *stream << example.text;
}

class PronouncedCommands : public CommandSpeech, public testing::WithParamInterface<Pronounced> {};

TEST_P(PronouncedCommands, areToldByTheirPhonemes) {
    EXPECT_EQ(opcodesIn(say(GetParam().text).events), GetParam().opcodes);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, PronouncedCommands,
    testing::Values(Pronounced{"dog", {0, 20, 4, 23, 0}},
                    Pronounced{"[[inpt PHON]]_d1AOg.", {0, 20, 4, 23, 0}},
                    Pronounced{"[[inpt PHON]]_d1AOg[[inpt TEXT]] dog", {0, 20, 4, 23, 20, 4, 23, 0}},
                    Pronounced{"[[char LTRL]]dog", {0, 20, 6, 15, 25, 6, 0}},
                    Pronounced{"[[nmbr LTRL]]12", {0, 38, 14, 29, 35, 12, 0}},
                    Pronounced{"[[char LTRL; char NORM; nmbr LTRL; nmbr NORM]]dog", {0, 20, 4, 23, 0}}));

// Words as they are cut out of the text, sync messages and mistakes, in their order.
std::vector<std::string> told(const std::string& text, const std::vector<Event>& events) {
    std::vector<std::string> words = cutOut(text, events);
    std::reverse(words.begin(), words.end());
    std::vector<std::string> told;
    for (const Event& event : events) {
        if (std::holds_alternative<Word>(event)) {
            told.push_back(words.back());
            words.pop_back();
        } else if (const auto* const sync = std::get_if<Sync>(&event)) {
            told.push_back("sync " + std::to_string(sync->message));
        } else if (const auto* const problem = std::get_if<Problem>(&event)) {
            EXPECT_FALSE(problem->message.empty());
            told.push_back(std::to_string(problem->code) + " at " + std::to_string(problem->position));
        }
    }
    return told;
}

struct Story {
    std::string text;
    std::vector<std::string> told;
};

void PrintTo(const Story& example, std::ostream* stream) {
    *stream << example.text;
}

class ToldCommands : public CommandSpeech, public testing::WithParamInterface<Story> {};

TEST_P(ToldCommands, areEventsAtTheirPlace) {
    EXPECT_EQ(told(GetParam().text, say(GetParam().text).events), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Sync, ToldCommands,
    testing::Values(Story{"One [[sync 1]]two", {"One", "sync 1", "two"}},
                    Story{"[[sync 0x41]]One two", {"sync 65", "One", "two"}},
                    Story{"One [[sync ABCD]]two", {"One", "sync 1094861636", "two"}},
                    Story{"One two[[sync 4294967295]]", {"One", "two", "sync 4294967295"}},
                    Story{"One [[sync 1; sync 2]] [[sync 3]]two",
                          {"One", "sync 1", "sync 2", "sync 3", "two"}},
                    Story{"One [[sync 1]]... (two)", {"One", "sync 1", "two"}},
                    Story{"One. [[sync 1; slnc 100; sync 2]]Two", {"One", "sync 1", "sync 2", "Two"}},
                    Story{"One [[emph +; sync 1; rate 300]]two", {"One", "sync 1", "two"}},
                    Story{"One[[sync 1]]two", {"One", "sync 1", "two"}}, Story{"[[sync 5]]", {"sync 5"}}));

INSTANTIATE_TEST_SUITE_P(Mistakes, ToldCommands,
                         testing::Values(Story{"One [[rate fast]]two", {"One", "-245 at 11", "two"}},
                                         Story{"One [[rate]]two", {"One", "-252 at 6", "two"}},
                                         Story{"One [[rate 1 2]]two", {"One", "-252 at 13", "two"}},
                                         Story{"One [[speed 1]]two", {"One", "-246 at 6", "two"}},
                                         Story{"One [[inpt TUNE]]two", {"One", "-247 at 11", "two"}},
                                         Story{"One [[xtnd abcd]]two", {"One", "-247 at 11", "two"}},
                                         Story{"One [[volm 2; sync 7; pbas]]two",
                                               {"One", "-245 at 11", "sync 7", "-252 at 22", "two"}},
                                         Story{"One [[two three", {"One", "-246 at 4", "two", "three"}},
                                         Story{"One two[[dlim]]", {"One", "two", "-252 at 9"}},
                                         Story{"[[", {"-246 at 0"}},
                                         Story{"\u00C9t\u00E9 \U0001F600 [[volm 2]]two",
                                               {"\u00C9t\u00E9", "\U0001F600", "-245 at 14", "two"}}));

INSTANTIATE_TEST_SUITE_P(
    Delimiters, ToldCommands,
    testing::Values(Story{"One [[dlim < >]]two <sync 1>three [[sync 2]]four",
                          {"One", "two", "sync 1", "three", "sync", "2", "four"}},
                    Story{"One <sync 1> [[dlim < >; sync 2]]two", {"One", "sync", "1", "sync 2", "two"}},
                    Story{"One [[dlim < >]]two <dlim [[ ]]>three [[sync 2]]four",
                          {"One", "two", "three", "sync 2", "four"}},
                    Story{std::string("One [[dlim \0\0]]two [[sync 2]]", 28), {"One", "two", "sync", "2"}}));

TEST_F(CommandSpeech, delimitersOfTheRequestCount) {
    Target target(folder.path(), "delimited.wav");
    Speak request = speak(1, "One {sync 1}two [[sync 2]]");
    request.delimiters = {"{", "}"};
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    EXPECT_THAT(told(request.text, engine.untilEnd(1)), ElementsAre("One", "sync 1", "two", "sync", "2"));
}

TEST_F(CommandSpeech, manyCommandsLoseNothing) {
    std::string text;
    std::vector<std::string> expected;
    for (int index = 0; index < 500; ++index) {
        const std::string message = std::to_string(1000 + index);
        text += "[[rate +1; sync " + message + "; volm -0.001]]word [[rate -1; sync]]";
        expected.push_back("sync " + message);
        expected.emplace_back("word");
        expected.push_back("-252 at " + std::to_string(text.size() - 6));
    }
    EXPECT_EQ(told(text, say(text).events), expected);
}

// Whatever stands in a text, it is spoken to its end, and the places are places of it.
TEST_F(CommandSpeech, anyTextWithAnyCommandsIsSpoken) {
    const std::vector<std::string> parts{"[[rate 400]]",
                                         "[[rate -60]]",
                                         "[[volm +.3]]",
                                         "[[volm -0.2]]",
                                         "[[pbas +9]]",
                                         "[[pbas 12; pmod 90]]",
                                         "[[pmod -20]]",
                                         "[[emph +]]",
                                         "[[emph -]]",
                                         "[[slnc 20]]",
                                         "[[sync 1]]",
                                         "[[char LTRL]]",
                                         "[[char NORM]]",
                                         "[[nmbr LTRL]]",
                                         "[[nmbr NORM]]",
                                         "[[inpt PHON]]",
                                         "[[rset 0]]",
                                         "[[inpt TEXT]]",
                                         "[[dlim < >]]",
                                         "<dlim [[ ]]>",
                                         "[[cmnt a; b]]",
                                         "[[volm]]",
                                         "[[",
                                         "]]",
                                         "_d1AOg. ",
                                         "<emph +>",
                                         " ",
                                         "\n\n",
                                         ". ",
                                         "12 "};
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        TextGenerator generator(seed);
        std::string text;
        for (std::size_t count = 1 + generator.below(30); count > 0; --count) {
            const std::size_t part = generator.below(2 * parts.size());
            text += part < parts.size() ? parts[part] : toUtf8(generator.next(1 + generator.below(12)));
        }
        const std::vector<Event> events = say(text).events;
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        const std::size_t units = toUtf16(text).size();
        for (const Event& event : events) {
            if (const auto* const word = std::get_if<Word>(&event)) {
                EXPECT_LE(word->position + word->length, units) << "seed " << seed;
            } else if (const auto* const problem = std::get_if<Problem>(&event)) {
                EXPECT_LT(problem->position, units) << "seed " << seed;
            }
        }
    }
}

} // namespace
