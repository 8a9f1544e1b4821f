#include "cli/text/text_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Parts = std::vector<std::u16string>;

Parts around(TextLines& lines, const std::u16string& text, std::size_t position, std::size_t count) {
    Parts parts;
    for (const TextLine& line : lines.around(position, count)) {
        parts.push_back(text.substr(line.begin, line.end - line.begin));
    }
    return parts;
}

Parts linesOf(const std::u16string& text, std::size_t columns) {
    TextLines lines(text, columns);
    return around(lines, text, 0, 1000);
}

TEST(TextLines, BreakAtBlanks) {
    EXPECT_EQ(linesOf(u"one two three", 7), (Parts{u"one two", u"three"}));
    EXPECT_EQ(linesOf(u"one two three", 6), (Parts{u"one", u"two", u"three"}));
    EXPECT_EQ(linesOf(u"one  two ", 7), (Parts{u"one", u"two"}));
    EXPECT_EQ(linesOf(u"well-known", 5), (Parts{u"well-", u"known"}));
}

TEST(TextLines, KeepTheLinesOfTheTextButNoBlankOnes) {
    EXPECT_EQ(linesOf(u"\n one\r\ntwo \n\n\t\n three\u2028four", 20),
              (Parts{u"one", u"two", u"three", u"four"}));
    EXPECT_EQ(linesOf(u"one two\nthree", 7), (Parts{u"one two", u"three"}));
}

TEST(TextLines, BreakLongWords) {
    EXPECT_EQ(linesOf(u"a Donaudampfschiff b", 8), (Parts{u"a", u"Donaudam", u"pfschiff", u"b"}));
    EXPECT_EQ(linesOf(u"世界世界", 1), (Parts{u"世", u"界", u"世", u"界"}));
}

TEST(TextLines, CountColumns) {
    EXPECT_EQ(linesOf(u"世界世界世", 5), (Parts{u"世界", u"世界", u"世"}));
    EXPECT_EQ(linesOf(u"e\u0301e\u0301e\u0301e\u0301", 3), (Parts{u"e\u0301e\u0301e\u0301", u"e\u0301"}));
    EXPECT_EQ(linesOf(u"👋 👋 👋", 5), (Parts{u"👋 👋", u"👋"}));
    EXPECT_EQ(linesOf(u"❤\uFE0F❤\uFE0F❤\uFE0F", 4), (Parts{u"❤\uFE0F❤\uFE0F", u"❤\uFE0F"}));
    EXPECT_EQ(linesOf(u"a\u0001\u202Eb\u200Dc", 3), (Parts{u"a\u0001\u202Eb\u200Dc"}));
}

TEST(TextLines, AreNoneInAnEmptyText) {
    EXPECT_THAT(linesOf(u"", 10), IsEmpty());
    EXPECT_THAT(linesOf(u" \n ", 10), IsEmpty());
}

TEST(TextLines, HaveTheCurrentOneInTheirMiddle) {
    const std::u16string text = u"a b c d e f g";
    TextLines lines(text, 1);
    EXPECT_EQ(around(lines, text, 0, 3), (Parts{u"a", u"b", u"c"}));
    EXPECT_EQ(around(lines, text, 2, 3), (Parts{u"a", u"b", u"c"}));
    EXPECT_EQ(around(lines, text, 4, 3), (Parts{u"b", u"c", u"d"}));
    EXPECT_EQ(around(lines, text, 5, 3), (Parts{u"b", u"c", u"d"})); // the blank behind it
    EXPECT_EQ(around(lines, text, 12, 3), (Parts{u"e", u"f", u"g"}));
    EXPECT_EQ(around(lines, text, 100, 3), (Parts{u"e", u"f", u"g"}));
    EXPECT_EQ(around(lines, text, 4, 1), (Parts{u"c"}));
    EXPECT_EQ(around(lines, text, 4, 4), (Parts{u"b", u"c", u"d", u"e"}));
    EXPECT_EQ(around(lines, text, 2, 3), (Parts{u"a", u"b", u"c"})); // and back
}

TEST(TextLines, BeginWhereTheyAreTold) {
    const std::u16string text = u"one two three four";
    TextLines lines(text, 10, 3);
    EXPECT_EQ(around(lines, text, 8, 5), (Parts{u"two three", u"four"}));
    EXPECT_EQ(around(lines, text, 0, 5), (Parts{u"two three", u"four"}));
}

} // namespace
} // namespace zqm::cli
