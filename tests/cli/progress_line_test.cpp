#include "cli/say/progress_line.h"
#include "cli/terminal/terminal_line.h"

#include "tests/cli/terminal.h"
#include "tests/support/scoped_environment.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>

#include <unistd.h>

namespace zqm::cli {
namespace {

using tests::Terminal;

TEST(ProgressText, ShowsPercentAndWord) {
    EXPECT_EQ(progressText(0, "Hello", 79), "  0%  Hello");
    EXPECT_EQ(progressText(0.42, "world", 79), " 42%  world");
    EXPECT_EQ(progressText(1, "end", 79), "100%  end");
}

TEST(ProgressText, EndsWhereTheColumnsEnd) {
    EXPECT_EQ(progressText(0.5, "abcdef", 9), " 50%  abc");
    EXPECT_EQ(progressText(0.5, "abcdef", 6), " 50%  ");
    EXPECT_EQ(progressText(0.5, "abcdef", 3), " 50");
    EXPECT_EQ(progressText(0.5, "abcdef", 0), "");
}

TEST(ProgressText, CountsColumnsNotBytes) {
    EXPECT_EQ(progressText(0.5, "üüüüüü", 9), " 50%  üüü");
    EXPECT_EQ(progressText(0.5, "世界世界", 10), " 50%  世界");
    EXPECT_EQ(progressText(0.5, "世界世界", 9), " 50%  世");
    EXPECT_EQ(progressText(0.5, "e\u0301e\u0301e\u0301", 8), " 50%  e\u0301e\u0301");
    EXPECT_EQ(progressText(0.5, "👋👋", 8), " 50%  👋");
}

TEST(ProgressText, LeavesOutWhatWouldSpoilTheTerminal) {
    EXPECT_EQ(progressText(0.5, "a\x1b[31mb\r\n\tc\x7F", 79), " 50%  a[31mbc");
    EXPECT_EQ(progressText(0.5, "a\u2028b\u2029c\u0085d", 79), " 50%  abcd");
    EXPECT_EQ(progressText(0.5, "a\u202Eb\u2067c", 79), " 50%  abc");
    EXPECT_EQ(progressText(0.5, "a\xFF\x80z", 79), " 50%  az");
}

class Line : public TerminalLine {
public:
    using TerminalLine::TerminalLine;

    void show(double share, std::string_view word) { draw(progressText(share, word, columns())); }
};

TEST(TerminalLine, IsRedrawnInPlaceAndCleared) {
    const support::ScopedEnvironment kind("TERM", "xterm");
    const Terminal terminal(20);
    {
        Line line(terminal.descriptor());
        ASSERT_TRUE(line.isPossible());
        EXPECT_TRUE(line.isDue());
        line.show(0.5, "Donaudampfschifffahrt");
        EXPECT_EQ(terminal.written(), "\r\x1b[K 50%  Donaudampfsch");
        line.show(1, "end");
        EXPECT_EQ(terminal.written(), "\r\x1b[K100%  end");
        line.clear();
        EXPECT_EQ(terminal.written(), "\r\x1b[K");
        line.clear();
        EXPECT_EQ(terminal.written(), "");
        line.show(1, "again");
        terminal.written();
    }
    EXPECT_EQ(terminal.written(), "\r\x1b[K");
}

TEST(TerminalLine, TakesATerminalOfUnknownWidthForAnUsualOne) {
    const support::ScopedEnvironment kind("TERM", "xterm");
    const Terminal terminal(0);
    Line line(terminal.descriptor());
    line.show(0.5, std::string(200, 'x'));
    EXPECT_EQ(terminal.written(), "\r\x1b[K 50%  " + std::string(73, 'x'));
}

TEST(TerminalLine, SurvivesATerminalOfOneColumn) {
    const support::ScopedEnvironment kind("TERM", "xterm");
    const Terminal terminal(1);
    Line line(terminal.descriptor());
    line.show(0.5, "word");
    EXPECT_EQ(terminal.written(), "\r\x1b[K");
}

TEST(TerminalLine, IsNotDrawnWhereItCannotBe) {
    const Terminal terminal(20);
    for (const std::optional<std::string>& value :
         {std::optional<std::string>("dumb"), std::optional<std::string>()}) {
        const support::ScopedEnvironment kind("TERM", value);
        Line line(terminal.descriptor());
        EXPECT_FALSE(line.isPossible());
        EXPECT_FALSE(line.isDue());
        line.show(0.5, "word");
        line.clear();
        EXPECT_EQ(terminal.written(), "");
    }
    const support::ScopedEnvironment kind("TERM", "xterm");
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_FALSE(Line(ends[1]).isPossible());
    close(ends[0]);
    close(ends[1]);
    EXPECT_FALSE(Line(-1).isPossible());
}

} // namespace
} // namespace zqm::cli
