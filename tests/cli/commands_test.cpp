#include "cli/commands.h"

#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

TEST(Commands, AreFoundByTheirNames) {
    std::set<std::string_view> names;
    for (const Command& command : commands()) {
        EXPECT_EQ(findCommand(command.syntax.name), &command);
        EXPECT_TRUE(names.insert(command.syntax.name).second) << command.syntax.name;
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"say", "listen"}));
    EXPECT_EQ(findCommand("sa"), nullptr);
    EXPECT_EQ(findCommand(""), nullptr);
    EXPECT_EQ(findCommand("SAY"), nullptr);
}

// In one line: where the help breaks its lines is another matter.
std::string inOneLine(std::string_view text) {
    std::istringstream words{std::string(text)};
    std::string line;
    for (std::string word; words >> word;) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

TEST(Commands, TheHelpListsAll) {
    const std::string help = programHelp(200);
    for (const Command& command : commands()) {
        EXPECT_THAT(help, HasSubstr("\n  " + std::string(command.syntax.name) + " "));
        EXPECT_THAT(help, HasSubstr(std::string(command.syntax.summary) + "\n"));
    }
}

TEST(Commands, EachHelpTellsAllOfItsSyntax) {
    for (const Command& command : commands()) {
        const Syntax& syntax = command.syntax;
        testing::internal::CaptureStdout();
        EXPECT_EQ(command.run(std::vector<const char*>{"--help"}), kDone);
        const std::string help = testing::internal::GetCapturedStdout();
        EXPECT_THAT(help, HasSubstr("Usage: zqmspeech " + std::string(syntax.name) + " [OPTIONS]"));
        for (const std::string_view part : {syntax.summary, syntax.words, syntax.wordNotes, syntax.notes,
                                            syntax.done, syntax.failed, syntax.fruitless}) {
            EXPECT_THAT(inOneLine(help), HasSubstr(inOneLine(part))) << syntax.name;
        }
        EXPECT_EQ(command.newCommandLine()->help(), help);
    }
}

TEST(Commands, EachRefusesUnknownOptions) {
    for (const Command& command : commands()) {
        EXPECT_THROW(command.run(std::vector<const char*>{"--no-such-option"}), UsageError)
            << command.syntax.name;
    }
}

} // namespace
} // namespace zqm::cli
