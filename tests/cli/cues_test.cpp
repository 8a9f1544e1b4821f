#include "cli/subtitles/cues.h"

#include "cli/text/display_width.h"
#include "tests/cli/marked_timing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;

using tests::markedTiming;

// Words parted by |, lines by /.
std::string shown(const Cue& cue) {
    std::string text;
    for (const CuePart& part : cue) {
        text.append(part.startsLine ? "/" : "").append(part.text).append("|");
    }
    return text;
}

std::vector<std::string> shown(const std::vector<Cue>& cues) {
    std::vector<std::string> texts;
    for (const Cue& cue : cues) {
        texts.push_back(shown(cue));
    }
    return texts;
}

std::vector<std::string> sentences(std::string_view marked) {
    return shown(sentenceCues(markedTiming(marked)));
}

std::vector<std::string> lines(std::string_view marked, std::size_t columns) {
    return shown(shortCues(markedTiming(marked), columns));
}

TEST(SentenceCues, HoldTheirWordsWithWhatStandsAroundThem) {
    EXPECT_THAT(sentences("⟦Hello⟧, \"⟦world⟧\"! (⟦So⟧ -- ⟦it⟧ ⟦begins⟧...)"),
                ElementsAre("Hello, |\"world\"!|", "(So -- |it |begins...)|"));
}

TEST(SentenceCues, HaveTheTimesOfTheirWords) {
    const std::vector<Cue> cues = sentenceCues(markedTiming("⟦One⟧ ⟦two⟧. ⟦Three⟧.", 1));
    ASSERT_EQ(cues.size(), 2);
    EXPECT_EQ(cues[0].front().begin, 1);
    EXPECT_EQ(cues[0].back().begin, 1.5);
    EXPECT_EQ(cues[0].back().end, 2);
    EXPECT_EQ(cues[1].front().begin, 2);
    EXPECT_EQ(cues[1].back().end, 2.5);
}

TEST(SentenceCues, AreNoneWithoutWords) {
    EXPECT_THAT(sentences(""), IsEmpty());
    EXPECT_THAT(sentences(" \\n "), IsEmpty());
    EXPECT_THAT(sentences("... ⟦One⟧. *** ⟦Two⟧."), ElementsAre("One.|", "*** Two.|"));
    EXPECT_THAT(sentences("⟦One⟧.\\n\\n***\\n\\n⟦Two⟧."), ElementsAre("One.|", "Two.|"));
}

TEST(SentenceCues, HaveOneBlankForWhiteSpace) {
    EXPECT_THAT(sentences("\\n ⟦One⟧\\t \\n⟦two⟧\\u{A0}⟦three⟧ \\n\\n ⟦Four⟧\\n"),
                ElementsAre("One |two |three|", "Four|"));
}

TEST(SentenceCues, LeaveOutControlCharacters) {
    EXPECT_THAT(sentences("⟦a\\u{1B}b⟧\\u{7F}\\u{1} ⟦c⟧"), ElementsAre("ab |c|"));
}

TEST(SentenceCues, LeaveOutCommands) {
    EXPECT_THAT(sentences("[[rate 250]]⟦Now⟧ [[slnc 500; emph +]] ⟦faster⟧[[volm 1]]. [[rset 0]]"),
                ElementsAre("Now |faster.|"));
}

TEST(SentenceCues, KeepBracketsWhoseWordsAreHeard) {
    EXPECT_THAT(sentences("⟦See⟧ [[⟦note⟧ ⟦two⟧]] [[⟦end⟧"), ElementsAre("See |[[note |two]] |[[end|"));
    EXPECT_THAT(sentences("[[⟦a⟧]] [[x]] ⟦b⟧"), ElementsAre("[[a]] |b|"));
}

TEST(SentenceCues, EndWhereTheSpeechWasStopped) {
    EXPECT_THAT(sentences("⟦One⟧. ⟦Two⟧, three and four. Five."), ElementsAre("One.|", "Two,|"));
}

TEST(SentenceCues, AreOfAnyScript) {
    EXPECT_THAT(sentences("⟦你好⟧,⟦世界⟧。⟦再见⟧。"), ElementsAre("你好,|世界。|", "再见。|"));
    EXPECT_THAT(sentences("⟦مرحبا⟧ ⟦بالعالم⟧."), ElementsAre("مرحبا |بالعالم.|"));
    EXPECT_THAT(sentences("⟦👋🏽⟧ ⟦cafe\u0301⟧ ⟦👩‍👩‍👧⟧!"),
                ElementsAre("👋🏽 |cafe\u0301 |👩‍👩‍👧!|"));
}

TEST(SentenceCues, ParseNoWordsBeyondTheText) {
    SpeechTiming timing = markedTiming("⟦One⟧ ⟦two⟧");
    timing.words[1].length = 100;
    timing.words.push_back({50, 3, 1, 2});
    EXPECT_THAT(shown(sentenceCues(timing)), ElementsAre("One |two|"));
}

TEST(ShortCues, AreOneLineAsLongAsThatHolds) {
    EXPECT_THAT(lines("⟦aaaa⟧ ⟦bbb⟧.", 9), ElementsAre("aaaa |bbb.|"));
    EXPECT_THAT(lines("⟦aaaa⟧ ⟦bbb⟧.", 8), ElementsAre("aaaa|/bbb.|"));
}

TEST(ShortCues, HaveLinesOfAboutOneLength) {
    EXPECT_THAT(lines("⟦aaaa⟧ ⟦bbbb⟧ ⟦cccc⟧ ⟦dd⟧", 14), ElementsAre("aaaa |bbbb|/cccc |dd|"));
}

TEST(ShortCues, AreCutEvenlyAndRatherBehindAComma) {
    EXPECT_THAT(lines("⟦aa⟧ ⟦bb⟧ ⟦cc⟧ ⟦dd⟧ ⟦ee⟧ ⟦ff⟧ ⟦gg⟧ ⟦hh⟧", 8),
                ElementsAre("aa |bb|/cc |dd|", "ee |ff|/gg |hh|"));
    EXPECT_THAT(lines("⟦aa⟧ ⟦bb⟧ ⟦cc⟧ ⟦dd⟧ ⟦ee⟧, ⟦ff⟧ ⟦gg⟧ ⟦hh⟧", 9),
                ElementsAre("aa |bb |cc|/dd |ee,|", "ff |gg |hh|"));
}

TEST(ShortCues, EndWithTheirLastWord) {
    SpeechTiming timing = markedTiming("⟦aaaa⟧ ⟦bbbb⟧, ⟦cccc⟧ ⟦dddd⟧");
    timing.words[1].end = 0.8; // a silence before the next one
    const std::vector<Cue> cues = shortCues(timing, 6);
    ASSERT_THAT(shown(cues), ElementsAre("aaaa|/bbbb,|", "cccc|/dddd|"));
    EXPECT_EQ(cues[0].back().end, 0.8);
    EXPECT_EQ(cues[1].front().begin, 1);
}

TEST(ShortCues, BreakWordsThatAreWiderThanALine) {
    EXPECT_THAT(lines("⟦a⟧ ⟦Donaudampfschiff⟧, ⟦b⟧", 8), ElementsAre("a|/Donaudam|", "pfschiff|/, |b|"));
    EXPECT_THAT(lines("⟦Donaudampfschifffahrt⟧", 8), ElementsAre("Donaudam|", "pfschiff|/fahrt|"));
    EXPECT_THAT(lines("⟦Donaudam⟧ ⟦b⟧", 8), ElementsAre("Donaudam|/b|"));
    EXPECT_THAT(lines("⟦cafe\u0301cafe\u0301⟧", 4), ElementsAre("cafe\u0301|/cafe\u0301|"));
    EXPECT_THAT(lines("⟦你好世界⟧", 5), ElementsAre("你好|/世界|"));
}

TEST(ShortCues, ShareTheTimeOfABrokenWordByItsColumns) {
    const std::vector<Cue> cues = shortCues(markedTiming("⟦abcdefghij⟧", 1), 4);
    ASSERT_THAT(shown(cues), ElementsAre("abcd|", "efgh|/ij|"));
    const double wordBegin = cues[0][0].begin;
    const double wordEnd = cues[1][1].end;
    ASSERT_LT(wordBegin, wordEnd);
    EXPECT_EQ(wordBegin, 1);
    EXPECT_NEAR(cues[1][0].begin, wordBegin + (wordEnd - wordBegin) * 0.4, 1e-9);
    EXPECT_EQ(cues[0][0].end, cues[1][0].begin);
    EXPECT_NEAR(cues[1][1].begin, wordBegin + (wordEnd - wordBegin) * 0.8, 1e-9);
}

TEST(ShortCues, CountColumnsNotCharacters) {
    EXPECT_THAT(lines("⟦你好⟧⟦世界⟧", 8), ElementsAre("你好|世界|"));
    EXPECT_THAT(lines("⟦你好⟧⟦世界⟧", 7), ElementsAre("你好|/世界|"));
    EXPECT_THAT(lines("⟦cafe\u0301⟧ ⟦üü⟧", 7), ElementsAre("cafe\u0301 |üü|"));
}

TEST(ShortCues, FitIntoTwoLinesAndLoseNothing) {
    std::string marked;
    std::string text;
    for (std::size_t index = 0; index < 2000; ++index) {
        const std::string word(index % 100 == 50 ? 150 : 1 + index * 7 % 11, 'x');
        marked += "⟦" + word + "⟧" + (index % 5 == 4 ? ", " : " ");
        text += word + (index % 5 == 4 ? "," : "");
    }
    std::string joined;
    for (const Cue& cue : shortCues(markedTiming(marked), 42)) {
        std::string line;
        int lineCount = 1;
        for (const CuePart& part : cue) {
            if (part.startsLine) {
                EXPECT_THAT(columnsOf(line), Le(42));
                line.clear();
                ++lineCount;
            }
            line += part.text;
            joined += part.text;
        }
        EXPECT_THAT(columnsOf(line), Le(42));
        EXPECT_THAT(lineCount, Le(2));
    }
    std::erase(joined, ' ');
    EXPECT_EQ(joined, text);
}

} // namespace
} // namespace zqm::cli
