// What is made of the commands' declarations: nothing of them is left out.

#include "cli/command_line/value_types.h"
#include "cli/commands.h"
#include "cli/documents/completion.h"
#include "cli/documents/manual_page.h"
#include "cli/documents/roff.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

std::string commandPart(const std::string& script, const std::string& begin, const std::string& end) {
    const std::size_t from = script.find(begin);
    EXPECT_NE(from, std::string::npos) << begin;
    return from == std::string::npos ? "" : script.substr(from, script.find(end, from + begin.size()) - from);
}

TEST(ValueTypes, AreKnownOfAllOptionsAndWords) {
    for (const Command& command : commands()) {
        for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
            EXPECT_TRUE(option.type.empty() || findValueType(option.type) != nullptr)
                << command.syntax.name << " " << option.names.front() << " " << option.type;
        }
        EXPECT_EQ(typeOfWords(command.syntax.words) == nullptr, command.syntax.words.empty())
            << command.syntax.words;
    }
}

TEST(ValueTypes, OfWordsAreNamedInTheirSyntax) {
    EXPECT_EQ(typeOfWords("[TEXT...]")->name, "TEXT");
    EXPECT_EQ(typeOfWords("COMMAND...")->name, "COMMAND");
    EXPECT_EQ(typeOfWords("[VOICE]")->name, "VOICE");
    EXPECT_EQ(typeOfWords(""), nullptr);
}

TEST(OptionDescription, TellsWhatTheCommandLineDeclares) {
    const Command& say = *findCommand("say");
    for (const OptionDescription& option : describeOptions(*say.newCommandLine())) {
        if (option.names.back() == "--rate") {
            EXPECT_EQ(option.type, "NUMBER");
            EXPECT_EQ(option.range, "50 to 500");
            EXPECT_EQ(option.summary, "Words a minute");
        } else if (option.names.back() == "--output") {
            EXPECT_EQ(option.names, (std::vector<std::string>{"-o", "--output"}));
            EXPECT_EQ(option.type, "FILE");
            EXPECT_EQ(option.range, "");
        } else if (option.names.back() == "--events") {
            EXPECT_EQ(option.type, "");
        }
    }
}

TEST(Completion, HasEveryCommandAndOption) {
    const std::string bash = bashCompletion(commands());
    const std::string zsh = zshCompletion(commands());
    const std::string fish = fishCompletion(commands());
    for (const Command& command : commands()) {
        const std::string name(command.syntax.name);
        const std::string inBash = commandPart(bash, "\n    1:" + name + ")\n", ";;");
        const std::string inZsh = commandPart(zsh, "\n        " + name + ")\n", ";;");
        EXPECT_THAT(commandPart(bash, "\n    0:*)", ";;"), HasSubstr(" " + name));
        EXPECT_THAT(commandPart(zsh, "commands=(", "\n    )"), HasSubstr("\n        '" + name + ":"));
        EXPECT_THAT(fish, HasSubstr("-n __zqmspeech_has_no_command -a " + name + " "));
        for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
            std::string fishNames;
            for (const std::string& each : option.names) {
                EXPECT_THAT(inBash, testing::ContainsRegex("[ ']" + each + "[ ']")) << name;
                EXPECT_THAT(inZsh, HasSubstr(")" + each +
                                             (option.type.empty() ? "["
                                              : each[1] == '-'    ? "=["
                                                                  : "+[")))
                    << name;
                if (!option.type.empty()) {
                    EXPECT_THAT(bash, testing::ContainsRegex("[ ]" + name + ":" + each + "[ )]"));
                }
                fishNames += (each[1] == '-' ? " -l " + each.substr(2) : " -s " + each.substr(1));
            }
            EXPECT_THAT(fish, HasSubstr("'__zqmspeech_command_is " + name + "'" + fishNames + " "));
        }
    }
}

TEST(ManualPage, TellsEveryCommandOptionAndExitCode) {
    const std::string page = manualPage(commands(), "1.2.3");
    EXPECT_THAT(page, HasSubstr("zqmspeech 1.2.3"));
    for (const Command& command : commands()) {
        const std::string name(command.syntax.name);
        const std::string section = commandPart(page, roff::subheading(name), "\n.S");
        EXPECT_THAT(section, HasSubstr(roff::escaped(command.syntax.summary)));
        for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
            for (const std::string& each : option.names) {
                EXPECT_THAT(section, HasSubstr(roff::bold(each))) << name;
            }
            EXPECT_THAT(section, HasSubstr(roff::escaped(option.summary)));
        }
        for (const auto& [line, meaning] : command.syntax.list) {
            EXPECT_THAT(section, HasSubstr(".TP\n" + roff::escaped(line) + "\n" + roff::escaped(meaning)));
        }
        for (const std::string_view meaning :
             {command.syntax.done, command.syntax.failed, command.syntax.fruitless}) {
            EXPECT_THAT(section, HasSubstr(roff::escaped(meaning)));
        }
    }
}

TEST(Roff, TakesNoTextForARequest) {
    EXPECT_EQ(roff::escaped(".so x\n.br"), "\\&.so x\n\\&.br");
    EXPECT_EQ(roff::escaped("'a' -b \\n ~^"), "\\(aqa\\(aq \\-b \\en \\(ti\\(ha");
    EXPECT_EQ(roff::heading("a \"b\""), ".SH \"a \\(dqb\\(dq\"\n");
}

TEST(Roff, KeepsLinesAndParagraphs) {
    EXPECT_EQ(roff::paragraphs("one\n  two\n\nthree"), ".PP\none\n.br\n  two\n.PP\nthree\n");
}

TEST(Quoted, IsOneWordOfTheShell) {
    EXPECT_EQ(quoted("it's"), "'it'\\''s'");
    EXPECT_EQ(escaped("a[b]", "[]"), "a\\[b\\]");
}

} // namespace
} // namespace zqm::cli
