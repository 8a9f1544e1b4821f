// The times of what is told, held against the sound in the file.

#include "tests/engine/engine_process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const Environment kNoServer{{"PULSE_SERVER", "unix:/nonexistent/pulse"}};

template <typename Message>
std::vector<Message> of(const std::vector<Event>& events) {
    std::vector<Message> some;
    for (const Event& event : events) {
        if (const auto* const message = std::get_if<Message>(&event)) {
            some.push_back(*message);
        }
    }
    return some;
}

struct Spoken {
    std::vector<Event> events;
    SoundFile sound;

    // Of a time, which must be that of a sample.
    [[nodiscard]] std::size_t sampleAt(double time) const {
        const double sample = time * sound.rate;
        EXPECT_NEAR(sample, std::round(sample), 1e-6);
        return static_cast<std::size_t>(std::llround(sample));
    }
};

class FileTimes : public testing::Test {
protected:
    Spoken speakWhole(const std::string& text, const std::string& name = "a.wav") {
        Target target(folder.path(), name);
        start(text, target);
        std::vector<Event> events = engine.untilEnd(number);
        EXPECT_THAT(faults(events, number), IsEmpty());
        EXPECT_TRUE(finished(events)->completed);
        return {std::move(events), SoundFile(target.file)};
    }

    // Sent with the next request, or by the first wait for an event.
    void start(const std::string& text, Target& target) {
        Speak request = speak(++number, text);
        request.output = target.output;
        engine.queue(request, std::move(target.descriptors));
    }

    std::uint64_t number = 0;
    TemporaryFolder folder;
    EngineProcess engine{kNoServer};
};

// Longer than any pause of the voice's own.
constexpr const char* kParted = "One[[slnc 900]]two[[slnc 1100]]buckle my shoe.[[slnc 1300]]Three.";

TEST_F(FileTimes, aWordBeginsWhereItIsHeard) {
    const Spoken spoken = speakWhole(kParted);
    const std::vector<Word> words = of<Word>(spoken.events);
    ASSERT_THAT(words, SizeIs(6));
    const auto isSound = [](float sample) { return sample != 0; };
    for (const auto& [index, silence] : {std::pair(1U, 0.9), {2U, 1.1}, {5U, 1.3}}) {
        ASSERT_GE(words[index].at, silence);
        ASSERT_LT(words[index].at, spoken.sound.seconds());
        const auto begin =
            spoken.sound.samples.begin() + static_cast<std::ptrdiff_t>(spoken.sampleAt(words[index].at));
        const auto least = static_cast<std::ptrdiff_t>(silence * spoken.sound.rate);
        EXPECT_TRUE(std::none_of(begin - least, begin, isSound)) << index;
        const auto heard = std::find_if(begin, spoken.sound.samples.end(), isSound);
        EXPECT_LT(static_cast<double>(heard - begin) / spoken.sound.rate, 0.05) << index;
    }
}

TEST_F(FileTimes, eachWordHasItsTimeWithinItsSound) {
    const Spoken spoken = speakWhole("One[[slnc 900]]two[[slnc 1100]]three");
    const std::vector<Word> words = of<Word>(spoken.events);
    ASSERT_THAT(words, SizeIs(3));
    EXPECT_EQ(words[0].at, 0);
    EXPECT_GT(words[1].at, 0.9);
    EXPECT_GT(words[2].at, words[1].at + 1.1);
    EXPECT_LT(words[2].at, spoken.sound.seconds());
}

TEST_F(FileTimes, phonemesFollowEachOtherFromTheBeginningToTheEnd) {
    const Spoken spoken = speakWhole(kParted);
    const std::vector<Phoneme> phonemes = of<Phoneme>(spoken.events);
    ASSERT_GT(phonemes.size(), 15U);
    EXPECT_EQ(phonemes.front().opcode, 0);
    EXPECT_EQ(phonemes.front().at, 0);
    EXPECT_EQ(phonemes.back().opcode, 0);
    EXPECT_LE(phonemes.back().at, spoken.sound.seconds());
    for (std::size_t index = 2; index < phonemes.size(); ++index) {
        EXPECT_GT(phonemes[index].at, phonemes[index - 1].at) << index;
        EXPECT_TRUE(phonemes[index].opcode != 0 || phonemes[index - 1].opcode != 0) << index;
    }
    for (const double silence : {0.9, 1.1, 1.3}) {
        EXPECT_TRUE(std::ranges::any_of(phonemes, [&](const Phoneme& phoneme) {
            const auto* const next = &phoneme + 1;
            return phoneme.opcode == 0 && next != phonemes.data() + phonemes.size() &&
                   next->at - phoneme.at >= silence && next->at - phoneme.at < silence + 0.2;
        })) << silence;
    }
    for (const Word& word : of<Word>(spoken.events)) {
        EXPECT_TRUE(std::ranges::any_of(phonemes, [&](const Phoneme& phoneme) {
            return std::abs(phoneme.at - word.at) < 0.06;
        })) << word.at;
    }
}

TEST_F(FileTimes, messagesAndMistakesHaveTheTimeOfTheirWord) {
    const Spoken spoken =
        speakWhole("One [[sync 1]]two three[[slnc 500]] [[rate much]]four. [[sync 2]]Five.");
    const std::vector<Word> words = of<Word>(spoken.events);
    ASSERT_THAT(words, SizeIs(5));
    const std::vector<Sync> messages = of<Sync>(spoken.events);
    ASSERT_THAT(messages, SizeIs(2));
    EXPECT_EQ(messages[0].at, words[1].at);
    EXPECT_EQ(messages[1].at, words[4].at);
    const std::vector<Problem> problems = of<Problem>(spoken.events);
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].at, words[3].at);
}

TEST_F(FileTimes, ofALongTextGoOnToItsEnd) {
    std::string text;
    for (int count = 0; count < 40; ++count) {
        text += "This is a sentence like any other. ";
    }
    const Spoken spoken = speakWhole(text);
    const std::vector<Word> words = of<Word>(spoken.events);
    ASSERT_THAT(words, SizeIs(280));
    for (std::size_t index = 1; index < words.size(); ++index) {
        EXPECT_GT(words[index].at, words[index - 1].at) << index;
    }
    const double length = spoken.sound.seconds();
    EXPECT_GT(words.back().at, length - 2);
    EXPECT_NEAR(words[140].at, length / 2, 0.05 * length);
}

TEST_F(FileTimes, theEndHasTheLengthOfTheFile) {
    for (const char* const name : {"a.wav", "a.aiff", "a.flac", "a.ogg"}) {
        for (const char* const text : {kParted, "", " ... "}) {
            const Spoken spoken = speakWhole(text, name);
            EXPECT_EQ(spoken.sampleAt(finished(spoken.events)->at), spoken.sound.frames())
                << name << ' ' << text;
        }
    }
}

TEST_F(FileTimes, theEndOfAStoppedFileHasItsLength) {
    for (const Boundary boundary : {Boundary::Immediate, Boundary::Word, Boundary::Sentence}) {
        Target target(folder.path(), "a.wav");
        std::string text;
        for (int count = 0; count < 20'000; ++count) {
            text += "One and two. ";
        }
        start(text, target);
        ASSERT_TRUE(engine.nextOf<Word>());
        engine.send(Stop{number, boundary});
        const auto end = finished(engine.untilEnd(number));
        ASSERT_TRUE(end);
        EXPECT_FALSE(end->completed);
        const SoundFile sound(target.file);
        EXPECT_GT(sound.frames(), 0U);
        EXPECT_EQ(std::llround(end->at * sound.rate), static_cast<long long>(sound.frames()));
    }
}

// What was made in the manner before is made anew, and its times with it.
TEST_F(FileTimes, areRightWhenTheRateChangesOnTheWay) {
    Target target(folder.path(), "a.wav");
    start("One two three four five six seven eight.[[slnc 700]]Nine.", target);
    engine.queue(Pause{number, Boundary::Word});
    engine.queue(Adjust{number, {.rate = 90}});
    engine.send(Continue{number});
    const std::vector<Event> events = engine.untilEnd(number);
    EXPECT_THAT(faults(events, number), IsEmpty());
    const Spoken spoken{events, SoundFile(target.file)};
    const std::vector<Word> words = of<Word>(spoken.events);
    ASSERT_THAT(words, SizeIs(9));
    ASSERT_GE(words.back().at, 0.7);
    ASSERT_LT(words.back().at + 0.7, spoken.sound.seconds());
    EXPECT_EQ(spoken.sampleAt(finished(events)->at), spoken.sound.frames());
    const auto begin =
        spoken.sound.samples.begin() + static_cast<std::ptrdiff_t>(spoken.sampleAt(words.back().at));
    const auto silence = static_cast<std::ptrdiff_t>(0.7 * spoken.sound.rate);
    EXPECT_TRUE(std::none_of(begin - silence, begin, [](float sample) { return sample != 0; }));
    EXPECT_TRUE(std::any_of(begin, begin + silence, [](float sample) { return sample != 0; }));
}

} // namespace
