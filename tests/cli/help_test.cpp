#include "cli/command_line/help.h"
#include "cli/commands.h"
#include "cli/text/display_width.h"
#include "cli/text/wrapped_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

TEST(WrappedText, BreaksAtBlanks) {
    EXPECT_EQ(wrapped("one two three", 7), "one two\nthree\n");
    EXPECT_EQ(wrapped("one two three", 9, 2), "  one two\n  three\n");
    EXPECT_EQ(wrapped("one two", 100), "one two\n");
    EXPECT_EQ(wrapped("\u4e00\u4e8c \u4e09", 6), "\u4e00\u4e8c\n\u4e09\n") << "each takes two columns";
}

TEST(WrappedText, KeepsLongWordsAndLineBreaks) {
    EXPECT_EQ(wrapped("a considerable b", 4), "a\nconsiderable\nb\n");
    EXPECT_EQ(wrapped("a\n\nb", 4), "a\n\nb\n");
    EXPECT_EQ(wrapped("", 4), "\n");
    EXPECT_EQ(wrapped("a:\n  word   in a table", 10), "a:\n  word\n  in a\n  table\n");
    EXPECT_EQ(wrapped("  word   in a table", 40), "  word   in a table\n");
}

std::string helpOf(const Command& command, std::size_t columns) {
    return helpText(command.syntax, describeOptions(*command.newCommandLine()), columns);
}

// But for one long word, an example or an identifier, that can't be cut.
void expectItFits(const std::string& help, std::size_t columns) {
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t begin = line.find_first_not_of(' ');
        const bool isOneWord = begin != std::string::npos && line.find(' ', begin) == std::string::npos;
        EXPECT_TRUE(columnsOf(line) <= columns || isOneWord) << line;
        EXPECT_FALSE(line.ends_with(' ')) << line;
    }
}

class HelpColumns : public testing::TestWithParam<std::size_t> {};

TEST_P(HelpColumns, AreNotExceeded) {
    for (const Command& command : commands()) {
        expectItFits(helpOf(command, GetParam()), GetParam());
    }
    expectItFits(programHelp(GetParam()), GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, HelpColumns, testing::Values(40, 66, 80, 100));

TEST(Help, StandsBesideTheNamesWhereThereIsRoom) {
    const Command& say = *findCommand("say");
    EXPECT_THAT(helpOf(say, 80), HasSubstr("\n  -h,--help "));
    EXPECT_THAT(helpOf(say, 80), HasSubstr("  Words a minute (50 to 500)\n"));
    EXPECT_THAT(helpOf(say, 40), HasSubstr("\n  --rate NUMBER\n      Words a minute (50 to 500)\n"));
    EXPECT_THAT(programHelp(80), HasSubstr("\n  say          Speaks a text"));
}

TEST(Help, ExplainsTheLinesOfAListBesideThem) {
    const Command& say = *findCommand("say");
    EXPECT_THAT(helpOf(say, 80), HasSubstr("\nLines of --events:\n"
                                           "  word POSITION LENGTH TIME WORD  a word begins\n"
                                           "  sync MESSAGE TIME               a command [["));
    EXPECT_THAT(helpOf(say, 40), HasSubstr("\n  word POSITION LENGTH TIME WORD\n      a word begins\n"));
}

} // namespace
} // namespace zqm::cli
