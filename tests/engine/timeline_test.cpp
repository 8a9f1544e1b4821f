#include "engine/speaker/timeline.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

// Words of four characters, one blank between.
std::vector<Word> words(std::size_t count) {
    std::vector<Word> list;
    for (std::size_t index = 0; index < count; ++index) {
        const Range range{index * 5, index * 5 + 4};
        list.push_back({range, range});
    }
    return list;
}

TEST(WordTimes, ofNoWordsAreNone) {
    EXPECT_THAT(wordTimes({}, {{{0, 10}}, {}, 100}), ElementsAre());
}

TEST(WordTimes, areThoseReported) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 10}, {5, 40}, {10, 70}}, {}, 100}), ElementsAre(10, 40, 70));
}

TEST(WordTimes, ofMissingWordsStandBetweenTheirNeighbours) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 0}, {10, 80}}, {}, 100}), ElementsAre(0, 40, 80));
}

TEST(WordTimes, ofMissingWordsStandAtPhonemes) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 0}, {10, 80}}, {0, 20, 50, 80}, 100}), ElementsAre(0, 50, 80));
}

TEST(WordTimes, ofMissingWordsLeaveEachWordAPhoneme) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 0}, {10, 80}}, {0, 10, 80}, 100}), ElementsAre(0, 10, 80));
    EXPECT_THAT(wordTimes(words(4), {{{0, 0}, {15, 90}}, {0, 10, 80, 90}, 100}), ElementsAre(0, 10, 80, 90));
    EXPECT_THAT(wordTimes(words(4), {{{0, 0}, {15, 90}}, {0, 70, 80, 90}, 100}), ElementsAre(0, 70, 80, 90));
    EXPECT_THAT(wordTimes(words(3), {{}, {0, 10, 20}, 90}), ElementsAre(0, 10, 20));
}

TEST(WordTimes, ofMoreWordsThanPhonemesShareThem) {
    EXPECT_THAT(wordTimes(words(4), {{}, {0, 60}, 80}), ElementsAre(0, 0, 60, 60));
}

TEST(WordTimes, ofWordsBeforeTheFirstReportedBeginAtOnce) {
    EXPECT_THAT(wordTimes(words(3), {{{10, 80}}, {}, 100}), ElementsAre(0, 40, 80));
}

TEST(WordTimes, ofWordsBehindTheLastReportedEndInTime) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 10}}, {}, 100}), ElementsAre(10, 40, 70));
}

TEST(WordTimes, withoutAnyReportAreSpreadEvenly) {
    EXPECT_THAT(wordTimes(words(4), {{}, {}, 100}), ElementsAre(0, 25, 50, 75));
}

TEST(WordTimes, countTheFirstOfSeveralReportsOfAWord) {
    EXPECT_THAT(wordTimes(words(2), {{{0, 0}, {5, 30}, {7, 40}, {6, 50}}, {}, 100}), ElementsAre(0, 30));
}

TEST(WordTimes, ofAWordReportedInItsMiddleCount) {
    EXPECT_THAT(wordTimes(words(2), {{{0, 0}, {7, 30}}, {}, 100}), ElementsAre(0, 30));
}

TEST(WordTimes, ignoreReportsThatGoBack) {
    EXPECT_THAT(wordTimes(words(3), {{{0, 0}, {5, 30}, {0, 40}, {10, 60}}, {}, 100}), ElementsAre(0, 30, 60));
}

TEST(WordTimes, ignoreOneReportThatRunsAhead) {
    EXPECT_THAT(wordTimes(words(4), {{{0, 0}, {16, 10}, {5, 30}, {10, 60}, {15, 90}}, {}, 100}),
                ElementsAre(0, 30, 60, 90));
}

TEST(WordTimes, ignoreReportsBehindTheLastWordAndTheEnd) {
    EXPECT_THAT(wordTimes(words(2), {{{0, 0}, {5, 500}, {99, 50}}, {}, 100}), ElementsAre(0, 50));
}

TEST(WordTimes, withoutAnySoundAreAllAtTheBeginning) {
    EXPECT_THAT(wordTimes(words(3), {}), ElementsAre(0, 0, 0));
}

TEST(WordTimes, neverDecreaseWhateverIsReported) {
    constexpr int kRounds = 2000;
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same reports in every run
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < kRounds; ++round) {
        const std::vector<Word> list = words(1 + below(40));
        Marks marks;
        marks.end = below(1000);
        for (std::size_t count = below(60); count > 0; --count) {
            marks.words.push_back({below(220), below(1100)});
            marks.phonemes.push_back(below(1100));
        }
        std::sort(marks.words.begin(), marks.words.end(),
                  [](const Mark& left, const Mark& right) { return left.sample < right.sample; });
        std::sort(marks.phonemes.begin(), marks.phonemes.end());
        const std::vector<std::size_t> times = wordTimes(list, marks);
        ASSERT_EQ(times.size(), list.size());
        EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
        EXPECT_LE(times.back(), marks.end);
    }
}

} // namespace
