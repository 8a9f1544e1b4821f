#include "cli/subtitles/subtitles.h"

#include "tests/cli/marked_timing.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace zqm::cli {
namespace {

using tests::markedTiming;

std::string written(const SpeechTiming& timing, SubtitleFormat format) {
    std::ostringstream output;
    writeSubtitles(timing, format, output);
    return output.str();
}

std::string webVtt(std::string_view marked, double begin = 0) {
    return written(markedTiming(marked, begin), SubtitleFormat::WebVtt);
}

std::string srt(std::string_view marked, double begin = 0) {
    return written(markedTiming(marked, begin), SubtitleFormat::Srt);
}

std::string lrc(std::string_view marked, double begin = 0) {
    return written(markedTiming(marked, begin), SubtitleFormat::Lrc);
}

// An hour and a bit; the last word ends in the next minute.
constexpr double kLate = 3600 + 59;
constexpr double kAfterAHundredHours = 100 * 3600;

TEST(SubtitleFormats, GoByTheExtension) {
    EXPECT_EQ(subtitleFormat("a.vtt"), SubtitleFormat::WebVtt);
    EXPECT_EQ(subtitleFormat("dir.vtt/a.b.SRT"), SubtitleFormat::Srt);
    EXPECT_EQ(subtitleFormat("ä.Lrc"), SubtitleFormat::Lrc);
    for (const char* name : {"", "a", "vtt", "a.txt", "a.vtt/b", "a.vtt "}) {
        EXPECT_EQ(subtitleFormat(name), std::nullopt) << name;
    }
}

TEST(WebVtt, HasSentencesWithTheTimesOfTheirWords) {
    EXPECT_EQ(webVtt("⟦Hello⟧, ⟦world⟧! ⟦Again⟧.", 0.25), "WEBVTT\n"
                                                          "\n"
                                                          "00:00:00.250 --> 00:00:01.250\n"
                                                          "Hello, <00:00:00.750>world!\n"
                                                          "\n"
                                                          "00:00:01.250 --> 00:00:01.750\n"
                                                          "Again.\n");
}

TEST(WebVtt, HasTwoLinesAtTheMost) {
    EXPECT_EQ(webVtt("⟦abcdefghijklmnopqrst⟧ ⟦abcdefghijklmnopqrst⟧ ⟦abcdefghijklmnopqrst⟧"),
              "WEBVTT\n"
              "\n"
              "00:00:00.000 --> 00:00:01.500\n"
              "abcdefghijklmnopqrst <00:00:00.500>abcdefghijklmnopqrst\n"
              "<00:00:01.000>abcdefghijklmnopqrst\n");
}

TEST(WebVtt, EscapesItsMarkup) {
    EXPECT_EQ(webVtt("⟦a⟧ --> ⟦b⟧ & <⟦c⟧> &⟦lt⟧;"), "WEBVTT\n"
                                                    "\n"
                                                    "00:00:00.000 --> 00:00:02.000\n"
                                                    "a --&gt; <00:00:00.500>b &amp; "
                                                    "<00:00:01.000>&lt;c&gt; <00:00:01.500>&amp;lt;\n");
}

TEST(WebVtt, TellsHours) {
    EXPECT_EQ(webVtt("⟦One⟧ ⟦two⟧", kLate + 0.5), "WEBVTT\n"
                                                  "\n"
                                                  "01:00:59.500 --> 01:01:00.500\n"
                                                  "One <01:01:00.000>two\n");
    EXPECT_EQ(webVtt("⟦One⟧", kAfterAHundredHours), "WEBVTT\n"
                                                    "\n"
                                                    "100:00:00.000 --> 100:00:00.500\n"
                                                    "One\n");
}

// Each time must be behind the one before, the word's also before the end.
TEST(WebVtt, LeavesOutTheTimesOfWordsThatTakeNone) {
    SpeechTiming timing = markedTiming("⟦a⟧ ⟦b⟧ ⟦c⟧ ⟦d⟧");
    timing.words = {{0, 1, 1, 1}, {2, 1, 1, 1.0001}, {4, 1, 1.5, 2}, {6, 1, 2, 2}};
    EXPECT_EQ(written(timing, SubtitleFormat::WebVtt), "WEBVTT\n"
                                                       "\n"
                                                       "00:00:01.000 --> 00:00:02.000\n"
                                                       "a b <00:00:01.500>c d\n");
}

TEST(Subtitles, NeverOverlapAndAlwaysTakeTime) {
    SpeechTiming timing = markedTiming("⟦One⟧. ⟦Two⟧. ⟦Three⟧.");
    timing.words = {{0, 3, 1, 1.5}, {5, 3, 1.2, 1.2}, {10, 5, 1.2, 0}};
    EXPECT_EQ(written(timing, SubtitleFormat::Srt), "1\n"
                                                    "00:00:01,000 --> 00:00:01,500\n"
                                                    "One.\n"
                                                    "\n"
                                                    "2\n"
                                                    "00:00:01,500 --> 00:00:01,501\n"
                                                    "Two.\n"
                                                    "\n"
                                                    "3\n"
                                                    "00:00:01,501 --> 00:00:01,502\n"
                                                    "Three.\n");
    EXPECT_EQ(written(timing, SubtitleFormat::Lrc), "[00:01.00]<00:01.00>One.<00:01.50>\n"
                                                    "[00:01.50]<00:01.50>Two.<00:01.51>\n"
                                                    "[00:01.51]<00:01.51>Three.<00:01.52>\n");
}

TEST(Subtitles, OfNoWordsHaveNoCues) {
    for (const char* text : {"", "...", " \\n"}) {
        EXPECT_EQ(webVtt(text), "WEBVTT\n");
        EXPECT_EQ(srt(text), "");
        EXPECT_EQ(lrc(text), "");
    }
}

TEST(Subtitles, KeepEveryScript) {
    EXPECT_EQ(srt("⟦你好⟧,⟦世界⟧。⟦مرحبا⟧ ⟦👩‍👩‍👧⟧!"),
              "1\n"
              "00:00:00,000 --> 00:00:01,000\n"
              "你好,世界。\n"
              "\n"
              "2\n"
              "00:00:01,000 --> 00:00:02,000\n"
              "مرحبا 👩‍👩‍👧!\n");
    EXPECT_EQ(webVtt("⟦你好⟧,⟦世界⟧。"), "WEBVTT\n"
                                         "\n"
                                         "00:00:00.000 --> 00:00:01.000\n"
                                         "你好,<00:00:00.500>世界。\n");
}

TEST(Srt, HasNumberedSentences) {
    EXPECT_EQ(srt("⟦One⟧\\n⟦two⟧.\\n\\n⟦Three⟧?", kLate), "1\n"
                                                          "01:00:59,000 --> 01:01:00,000\n"
                                                          "One two.\n"
                                                          "\n"
                                                          "2\n"
                                                          "01:01:00,000 --> 01:01:00,500\n"
                                                          "Three?\n");
}

TEST(Srt, PartsWhatWouldBeATagOrATime) {
    EXPECT_EQ(srt("⟦a⟧ <⟦b⟧> {\\\\⟦an8⟧} --> ⟦c⟧ & ⟦d⟧"), "1\n"
                                                          "00:00:00,000 --> 00:00:02,500\n"
                                                          "a <\u200Bb> {\u200B\\an8} --\u200B> c & d\n");
}

TEST(Lrc, HasALineForASentenceWithTheTimesOfItsWords) {
    EXPECT_EQ(lrc("⟦Hello⟧, ⟦world⟧! ⟦Again⟧.", 0.26),
              "[00:00.26]<00:00.26>Hello, <00:00.76>world!<00:01.26>\n"
              "[00:01.26]<00:01.26>Again.<00:01.76>\n");
}

TEST(Lrc, CountsMinutes) {
    EXPECT_EQ(lrc("⟦One⟧ ⟦two⟧", kLate + 0.5), "[60:59.50]<60:59.50>One <61:00.00>two<61:00.50>\n");
    EXPECT_EQ(lrc("⟦One⟧", kAfterAHundredHours), "[6000:00.00]<6000:00.00>One<6000:00.50>\n");
}

TEST(Lrc, PartsWhatWouldBeATime) {
    EXPECT_EQ(lrc("[⟦1⟧:⟦2⟧] <⟦3⟧>"), "[00:00.00]<00:00.00>[\u200B1:<00:00.50>2] "
                                      "<00:01.00><\u200B3><00:01.50>\n");
}

} // namespace
} // namespace zqm::cli
