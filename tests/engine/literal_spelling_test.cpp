#include "engine/text/literal_spelling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::protocol::SpellingMode;

namespace zqm::engine {

void PrintTo(const SpelledRun& run, std::ostream* stream) {
    *stream << run.codePoints.begin << ".." << run.codePoints.end << " as " << static_cast<int>(run.spelling);
}

} // namespace zqm::engine

namespace {

constexpr SpellingModes kUsual{};
constexpr SpellingModes kCharacters{SpellingMode::Literal, SpellingMode::Normal};
constexpr SpellingModes kNumbers{SpellingMode::Normal, SpellingMode::Literal};
constexpr SpellingModes kBoth{SpellingMode::Literal, SpellingMode::Literal};

std::vector<SpelledRun> runs(std::u32string_view word, const SpellingModes& modes) {
    return spelledRuns(word, {0, word.size()}, modes);
}

TEST(LiteralSpelling, isNotUsual) {
    EXPECT_THAT(runs(U"MP3", kUsual), IsEmpty());
}

TEST(LiteralSpelling, ofAWordIsAllOfIt) {
    EXPECT_THAT(runs(U"don't", kCharacters), ElementsAre(SpelledRun{{0, 5}, Spelling::Characters}));
    EXPECT_THAT(runs(U"MP3", kBoth), ElementsAre(SpelledRun{{0, 3}, Spelling::Characters}));
    EXPECT_THAT(spelledRuns(U"a cat", {2, 5}, kCharacters),
                ElementsAre(SpelledRun{{2, 5}, Spelling::Characters}));
}

TEST(LiteralSpelling, ofNumbersIsTheirOwnMode) {
    EXPECT_THAT(runs(U"1066", kCharacters), IsEmpty());
    EXPECT_THAT(runs(U"cat", kNumbers), IsEmpty());
    EXPECT_THAT(runs(U"1066", kNumbers), ElementsAre(SpelledRun{{0, 4}, Spelling::Digits}));
    EXPECT_THAT(runs(U"$25.50", kNumbers), ElementsAre(SpelledRun{{1, 6}, Spelling::Digits}));
    EXPECT_THAT(runs(U"1,000,000", kNumbers), ElementsAre(SpelledRun{{0, 9}, Spelling::Digits}));
    EXPECT_THAT(runs(U"٣٤", kNumbers), ElementsAre(SpelledRun{{0, 2}, Spelling::Digits}));
}

TEST(LiteralSpelling, findsNumbersInWords) {
    EXPECT_THAT(runs(U"R2D22", kNumbers),
                ElementsAre(SpelledRun{{1, 2}, Spelling::Digits}, SpelledRun{{3, 5}, Spelling::Digits}));
    EXPECT_THAT(runs(U"25°C", kNumbers), ElementsAre(SpelledRun{{0, 2}, Spelling::Digits}));
}

TEST(LiteralSpelling, ofCharactersThatNameThemselvesHoldsThemApart) {
    EXPECT_THAT(runs(U"图书馆", kCharacters), ElementsAre(SpelledRun{{0, 3}, Spelling::Apart}));
    EXPECT_THAT(runs(U"ひらがな", kCharacters), ElementsAre(SpelledRun{{0, 4}, Spelling::Apart}));
}

} // namespace
