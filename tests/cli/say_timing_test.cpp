#include "cli/say/say_timing.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace zqm::cli {
namespace {

using Kind = SpeakingEvent::Kind;
using Span = std::tuple<double, double>;

class SayTimings : public testing::Test {
protected:
    void word(double time, std::size_t position = 0) {
        timing_.add({.kind = Kind::Word, .time = time, .position = position, .length = 3});
    }
    void sound(double time) {
        timing_.add({.kind = Kind::Phoneme, .time = time, .opcode = 24, .symbol = "h"});
    }
    void silence(double time) {
        timing_.add({.kind = Kind::Phoneme, .time = time, .opcode = 0, .symbol = "%"});
    }
    std::vector<Span> words(double duration) {
        std::vector<Span> spans;
        for (const TimedWord& each : timing_.finish(duration).words) {
            spans.emplace_back(each.begin, each.end);
        }
        return spans;
    }

    SayTiming timing_{u"one two"};
};

TEST_F(SayTimings, AWordEndsWhereTheNextBegins) {
    word(0);
    sound(0);
    word(1, 4);
    sound(1);
    EXPECT_EQ(words(2), (std::vector<Span>{{0, 1}, {1, 2}}));
}

TEST_F(SayTimings, AWordEndsAtTheSilenceBehindIt) {
    silence(0);
    word(0);
    sound(0);
    silence(0.5);
    word(1, 4);
    sound(1);
    silence(1.75);
    EXPECT_EQ(words(2), (std::vector<Span>{{0, 0.5}, {1, 1.75}}));
}

// The phoneme at the beginning of a word may come before the word.
TEST_F(SayTimings, TheOrderOfWhatComesTogetherDoesNotMatter) {
    sound(0);
    word(0);
    silence(0.5);
    sound(1);
    word(1, 4);
    EXPECT_EQ(words(2), (std::vector<Span>{{0, 0.5}, {1, 2}}));
}

TEST_F(SayTimings, AWordGoesOnBehindASilenceInside) {
    word(0);
    sound(0);
    silence(0.25);
    sound(0.5);
    silence(0.75);
    word(1, 4);
    EXPECT_EQ(words(2), (std::vector<Span>{{0, 0.75}, {1, 2}}));
}

TEST_F(SayTimings, NothingEndsBeforeItBeginsInAStoppedSound) {
    word(0);
    word(3, 4);
    sound(3);
    EXPECT_EQ(words(2), (std::vector<Span>{{0, 3}, {3, 3}}));
}

TEST_F(SayTimings, PhonemesLastToTheNext) {
    silence(0);
    word(0.25, 4);
    sound(0.25);
    silence(1);
    const SpeechTiming& timing = timing_.finish(1.5);
    ASSERT_EQ(timing.phonemes.size(), 3U);
    EXPECT_EQ(timing.phonemes[1].symbol, "h");
    EXPECT_EQ(timing.phonemes[1].opcode, 24);
    EXPECT_EQ(timing.phonemes[1].begin, 0.25);
    EXPECT_EQ(timing.phonemes[1].end, 1);
    EXPECT_EQ(timing.phonemes[2].end, 1.5);
    EXPECT_EQ(timing.words.front().position, 4U);
    EXPECT_EQ(timing.words.front().length, 3U);
    EXPECT_EQ(timing.duration, 1.5);
    EXPECT_EQ(timing.text, u"one two");
}

TEST_F(SayTimings, WhatHasNoTimeIsLeftOut) {
    timing_.add({.kind = Kind::Word, .time = {}, .position = 0, .length = 3});
    EXPECT_TRUE(timing_.finish(1).words.empty());
}

} // namespace
} // namespace zqm::cli
