#include "cli/say/speech_view.h"

#include "cli/text/display_width.h"
#include "tests/cli/terminal.h"
#include "tests/support/scoped_environment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

namespace zqm::cli {
namespace {

using namespace std::chrono_literals;

using support::ScopedEnvironment;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using tests::Terminal;

std::string drawn(const std::u16string& text, std::size_t begin, std::size_t end) {
    return textLine(text, {0, text.size()}, begin, end);
}

TEST(TextLine, HighlightsTheWord) {
    EXPECT_EQ(drawn(u"one two three", 4, 7), "one \x1b[7mtwo\x1b[27m three");
    EXPECT_EQ(drawn(u"one two", 4, 7), "one \x1b[7mtwo\x1b[27m");
    EXPECT_EQ(drawn(u"one two", 0, 0), "one two");
    EXPECT_EQ(drawn(u"one two", 7, 9), "one two");
    EXPECT_EQ(drawn(u"世界 👋🏽 e\u0301!", 3, 7), "世界 \x1b[7m👋🏽\x1b[27m e\u0301!");
}

TEST(TextLine, HighlightsThePartOfAWordThatIsOnIt) {
    const std::u16string text = u"Donaudampfschiff";
    EXPECT_EQ(textLine(text, {0, 5}, 0, 16), "\x1b[7mDonau\x1b[27m");
    EXPECT_EQ(textLine(text, {5, 10}, 0, 16), "\x1b[7mdampf\x1b[27m");
}

TEST(TextLine, LeavesOutWhatWouldSpoilTheTerminal) {
    EXPECT_EQ(drawn(u"a\u001B[31mb\tc\u0007\u202Ed", 20, 20), "a[31mb cd");
}

TEST(ProgressBar, ShowsShareAndTimeLeft) {
    EXPECT_EQ(progressBar(0.5, 7s, 32, false), "[####----]  50%  0:07 left");
    EXPECT_EQ(progressBar(0, std::nullopt, 32, false), "[--------]   0%  ");
    EXPECT_EQ(progressBar(1, 0s, 32, false), "[########] 100%  0:00 left");
    EXPECT_EQ(progressBar(0.1, 3723s, 32, false), "[#-------]  10%  1:02:03 left");
    EXPECT_EQ(progressBar(0.1, 754s, 32, false), "[#-------]  10%  12:34 left");
}

TEST(ProgressBar, HasColoursIfWanted) {
    EXPECT_EQ(progressBar(0.5, 7s, 32, true), "[\x1b[36m####\x1b[39m----]  50%  0:07 left");
}

TEST(ProgressBar, IsATextWhereThereIsNoRoom) {
    EXPECT_EQ(progressBar(0.5, 7s, 27, true), " 50%  0:07 left");
    EXPECT_EQ(progressBar(0.5, 7s, 8, true), " 50%  0:");
    EXPECT_EQ(progressBar(0.5, 7s, 0, true), "");
}

TEST(ProgressBar, StaysWithinItsColumns) {
    for (std::size_t columns = 0; columns < 120; ++columns) {
        for (const double share : {0.0, 0.33, 1.0}) {
            for (const std::optional<std::chrono::seconds> left :
                 {std::optional<std::chrono::seconds>(), std::optional(359'999s)}) {
                EXPECT_LE(columnsOf(progressBar(share, left, columns, false)), columns);
            }
        }
    }
}

// On a terminal of 20 columns and these rows.
class SpeechViewOnATerminal : public testing::Test {
protected:
    std::string shown(unsigned short rows, std::size_t position, std::size_t length) {
        terminal_.resize(20, rows);
        SpeechView view(terminal_.descriptor(), text_);
        view.show(position, length);
        const std::string written = terminal_.written();
        view.clear();
        terminal_.written();
        return written;
    }

    ScopedEnvironment kind_{"TERM", "xterm"};
    ScopedEnvironment colours_{"NO_COLOR", "1"};
    Terminal terminal_{20};
    std::u16string text_ = u"one\ntwo\nthree\nfour\nfive\nsix\nseven";
};

TEST_F(SpeechViewOnATerminal, ShowsTheTextAroundTheWord) {
    EXPECT_EQ(shown(24, 14, 4), "\r\x1b[Ktwo\r\n"
                                "\r\x1b[Kthree\r\n"
                                "\r\x1b[K\x1b[7mfour\x1b[27m\r\n"
                                "\r\x1b[Kfive\r\n"
                                "\r\x1b[Ksix\r\n"
                                "\r\x1b[K 55%  \x1b[J");
}

TEST_F(SpeechViewOnATerminal, HasFewerLinesOnFewerRows) {
    EXPECT_EQ(shown(4, 14, 4), "\r\x1b[K\x1b[7mfour\x1b[27m\r\n"
                               "\r\x1b[Kfive\r\n"
                               "\r\x1b[K 55%  \x1b[J");
    EXPECT_EQ(shown(3, 14, 4), "\r\x1b[K\x1b[7mfour\x1b[27m\r\n"
                               "\r\x1b[K 55%  \x1b[J");
}

TEST_F(SpeechViewOnATerminal, IsALineOnTwoRows) {
    EXPECT_EQ(shown(2, 14, 4), "\r\x1b[K 55%  four");
    EXPECT_EQ(shown(1, 14, 4), "\r\x1b[K 55%  four");
}

TEST_F(SpeechViewOnATerminal, HasNoMoreLinesThanTheText) {
    text_ = u"one two";
    EXPECT_EQ(shown(24, 4, 3), "\r\x1b[Kone \x1b[7mtwo\x1b[27m\r\n"
                               "\r\x1b[K100%  \x1b[J");
}

TEST_F(SpeechViewOnATerminal, IsRedrawnInPlaceAndCleared) {
    SpeechView view(terminal_.descriptor(), text_);
    for (bool isTooSoon = false; !isTooSoon;) { // a busy machine may be too slow for that
        while (!view.isDue()) {
        }
        view.clear();
        terminal_.written();
        const auto begin = std::chrono::steady_clock::now();
        view.show(0, 3);
        EXPECT_THAT(terminal_.written(), StartsWith("\r\x1b[K\x1b[7mone"));
        view.show(4, 3);
        const std::string seen = terminal_.written();
        isTooSoon = std::chrono::steady_clock::now() - begin < SpeechView::kRedrawInterval;
        EXPECT_TRUE(!isTooSoon || seen.empty()) << seen;
    }
    while (!view.isDue()) {
    }
    view.refresh();
    EXPECT_THAT(terminal_.written(),
                AllOf(StartsWith("\x1b[5A\r\x1b[Kone"), HasSubstr("\x1b[7mtwo\x1b[27m")));
    while (!view.isDue()) {
    }
    view.refresh(); // nothing has changed
    EXPECT_EQ(terminal_.written(), "");
    view.clear();
    EXPECT_EQ(terminal_.written(), "\x1b[5A\r\x1b[K\x1b[J");
}

// Terminals break the lines that are too long then: five text lines of 19 columns take two rows each.
TEST_F(SpeechViewOnATerminal, FollowsAnotherSize) {
    text_ = u"";
    for (int line = 0; line < 5; ++line) {
        text_ += u"abcdefghi abcdefghi\n";
    }
    SpeechView view(terminal_.descriptor(), text_);
    view.show(0, 9);
    terminal_.written();
    terminal_.resize(10, 24);
    while (!view.isDue()) {
    }
    view.refresh();
    EXPECT_EQ(terminal_.written(), "\x1b[10A\r\x1b[K\x1b[7mabcdefghi\x1b[27m\r\n"
                                   "\r\x1b[Kabcdefghi\r\n"
                                   "\r\x1b[Kabcdefghi\r\n"
                                   "\r\x1b[Kabcdefghi\r\n"
                                   "\r\x1b[Kabcdefghi\r\n"
                                   "\r\x1b[K  9%  \x1b[J");
}

TEST_F(SpeechViewOnATerminal, FindsItsPlaceInALongTextAtAnotherSize) {
    text_.assign(10'000, u'x');
    for (std::size_t blank = 7; blank < text_.size(); blank += 8) {
        text_[blank] = u' ';
    }
    SpeechView view(terminal_.descriptor(), text_);
    view.show(8000, 7);
    terminal_.written();
    terminal_.resize(10, 4);
    while (!view.isDue()) {
    }
    view.refresh();
    EXPECT_THAT(terminal_.written(), HasSubstr("\r\x1b[K\x1b[7mxxxxxxx\x1b[27m\r\n\r\x1b[Kxxxxxxx\r\n"));
}

TEST_F(SpeechViewOnATerminal, TakesWordsBeyondTheText) {
    EXPECT_THAT(shown(24, 100, 5), HasSubstr("seven\r\n\r\x1b[K100%"));
    EXPECT_THAT(shown(24, 28, 100), HasSubstr("\x1b[7mseven\x1b[27m"));
    text_.clear();
    EXPECT_EQ(shown(24, 0, 0), "\r\x1b[K100%  ");
}

TEST_F(SpeechViewOnATerminal, HasNoColoursButTheHighlightIfTheyAreNotWanted) {
    terminal_.resize(80, 24);
    {
        SpeechView view(terminal_.descriptor(), text_);
        view.show(14, 4);
        EXPECT_THAT(terminal_.written(), AllOf(HasSubstr("\x1b[7m"), Not(HasSubstr("\x1b[36m"))));
    }
    terminal_.written();
    const ScopedEnvironment colours("NO_COLOR", std::nullopt);
    SpeechView view(terminal_.descriptor(), text_);
    view.show(14, 4);
    EXPECT_THAT(terminal_.written(), HasSubstr("[\x1b[36m#"));
}

TEST_F(SpeechViewOnATerminal, IsNotDrawnOnADumbOne) {
    const ScopedEnvironment kind("TERM", "dumb");
    SpeechView view(terminal_.descriptor(), text_);
    EXPECT_FALSE(view.isPossible());
    view.show(0, 3);
    view.refresh();
    view.clear();
    EXPECT_EQ(terminal_.written(), "");
}

} // namespace
} // namespace zqm::cli
