#include "cli/listen/listen_options.h"

#include "tests/cli/wrong_use.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ListenOptions parse(const std::vector<const char*>& arguments) {
    return std::get<ListenOptions>(parseListenOptions(arguments));
}

TEST(ListenOptions, CommandsAloneMeanTheMicrophoneForEver) {
    const ListenOptions options = parse({"Open the door", "close it"});
    EXPECT_THAT(options.commands, ElementsAre("Open the door", "close it"));
    EXPECT_FALSE(options.commandFile);
    EXPECT_FALSE(options.soundFile);
    EXPECT_FALSE(options.timeout);
    EXPECT_FALSE(options.once);
    EXPECT_FALSE(options.json);
}

TEST(ListenOptions, EveryOptionIsTaken) {
    const ListenOptions options = parse({"--commands", "list.txt", "--from", "said.wav", "--once",
                                         "--timeout", "2.5", "--json", "Open the door"});
    EXPECT_THAT(options.commands, ElementsAre("Open the door"));
    EXPECT_EQ(options.commandFile, "list.txt");
    EXPECT_EQ(options.soundFile, "said.wav");
    EXPECT_EQ(options.timeout, 2.5);
    EXPECT_TRUE(options.once);
    EXPECT_TRUE(options.json);
}

TEST(ListenOptions, LongFormsWithEqualSigns) {
    const ListenOptions options = parse({"--commands=a=b.txt", "--from=-", "--timeout=0.1"});
    EXPECT_THAT(options.commands, IsEmpty());
    EXPECT_EQ(options.commandFile, "a=b.txt");
    EXPECT_EQ(options.soundFile, "-");
    EXPECT_EQ(options.timeout, 0.1);
}

TEST(ListenOptions, AFileIsEnough) {
    const ListenOptions options = parse({"--commands", "-"});
    EXPECT_THAT(options.commands, IsEmpty());
    EXPECT_EQ(options.commandFile, "-");
}

TEST(ListenOptions, OptionsMayStandBetweenTheCommands) {
    const ListenOptions options = parse({"yes", "--once", "no", "--timeout", "86400", "--", "--json", "-"});
    EXPECT_THAT(options.commands, ElementsAre("yes", "no", "--json", "-"));
    EXPECT_TRUE(options.once);
    EXPECT_FALSE(options.json);
    EXPECT_EQ(options.timeout, 86400);
}

class ListenOptionsCommand : public testing::TestWithParam<const char*> {};

TEST_P(ListenOptionsCommand, IsTakenAsItStands) {
    EXPECT_THAT(parse({"first", GetParam(), "last"}).commands, ElementsAre("first", GetParam(), "last"));
}

TEST_P(ListenOptionsCommand, IsTakenAsItStandsAfterDashes) {
    EXPECT_THAT(parse({"--json", "--", GetParam()}).commands, ElementsAre(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, ListenOptionsCommand,
                         testing::Values("listen", "help", "{}", "[a,b]", "[]", "%%", "a b", "a,b", "++x",
                                         "\"quoted\"", "'single'", "back\\slash", "tab\there", "line\nbreak",
                                         "grüße", "=", "+5", "", " ", "-"));

TEST(ListenOptions, HelpNamesEveryOption) {
    for (const char* option : {"-h", "--help"}) {
        const auto parsed = parseListenOptions(std::vector<const char*>{option});
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed));
        const std::string& help = std::get<std::string>(parsed);
        EXPECT_THAT(help, HasSubstr("Usage: zqmspeech listen [OPTIONS] COMMAND..."));
        for (const char* name :
             {"--commands FILE", "--from FILE", "--once", "--timeout SECONDS", "--json", "0.1 to 86400",
              "3      no command was recognised", "130 for Ctrl-C", "NO_COLOR"}) {
            EXPECT_THAT(help, HasSubstr(name));
        }
    }
}

class ListenOptionsWrongUse : public testing::TestWithParam<WrongUse> {};

TEST_P(ListenOptionsWrongUse, IsAUsageErrorInOneLine) {
    expectComplaint(parse, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, ListenOptionsWrongUse,
    testing::Values(WrongUse{{}, "there is no command to listen for; zqmspeech listen --help tells how"},
                    WrongUse{{"--"}, "there is no command to listen for"},
                    WrongUse{{"--once", "--json"}, "there is no command to listen for"},
                    WrongUse{{"--from", "x.wav"}, "there is no command to listen for"},
                    WrongUse{{"--loud", "x"},
                             "--loud is not an option (a command that begins with - goes after --)"},
                    WrongUse{{"x", "-x"}, "-x is not an option"}, WrongUse{{"-1"}, "-1 is not an option"},
                    WrongUse{{"--commands"}, "--commands"}, WrongUse{{"--commands", "", "x"}, "it is empty"},
                    WrongUse{{"--commands", "a", "--commands", "b"}, "--commands"},
                    WrongUse{{"--from", "", "x"}, "it is empty"}, WrongUse{{"x", "--from"}, "--from"},
                    WrongUse{{"--from", "a.wav", "--from", "b.wav", "x"}, "--from"},
                    WrongUse{{"--timeout", "x"}, "x is not a number from 0.1 to 86400"},
                    WrongUse{{"x", "--timeout"}, "--timeout"},
                    WrongUse{{"--timeout", "0", "x"}, "0 is not a number from 0.1 to 86400"},
                    WrongUse{{"--timeout", "0.09", "x"}, "0.09 is not a number"},
                    WrongUse{{"--timeout", "86401", "x"}, "86401 is not a number"},
                    WrongUse{{"--timeout=-1", "x"}, "-1 is not a number"},
                    WrongUse{{"--timeout", "nan", "x"}, "nan is not a number"},
                    WrongUse{{"--timeout", "inf", "x"}, "inf is not a number"},
                    WrongUse{{"--timeout", "1e999", "x"}, "1e999 is not a number"},
                    WrongUse{{"--timeout", "5s", "x"}, "5s is not a number"},
                    WrongUse{{"--timeout", "0x10", "x"}, "0x10 is not a number"},
                    WrongUse{{"--timeout", "0X1p4", "x"}, "0X1p4 is not a number"},
                    WrongUse{{"--timeout", "1,5", "x"}, "1,5 is not a number"},
                    WrongUse{{"--timeout", "", "x"}, "--timeout"},
                    WrongUse{{"--timeout", "1", "--timeout", "2", "x"}, "--timeout"},
                    WrongUse{{"--once=maybe", "x"}, "--once"}, WrongUse{{"--json=maybe", "x"}, "--json"},
                    WrongUse{{"--once=3", "x"}, "--once"}, WrongUse{{"--once=0", "x"}, "--once"},
                    WrongUse{{"--json=false", "x"}, "--json"}));

} // namespace
} // namespace zqm::cli
