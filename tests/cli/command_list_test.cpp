#include "cli/listen/command_list.h"

#include "cli/command_line/failure.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class CommandList : public testing::Test {
protected:
    std::vector<std::string> commandsIn(const std::string& content) const {
        std::ofstream(path_, std::ios::binary) << content;
        return readCommands(path_.string());
    }

    std::string complaintAbout(const std::string& content) const {
        try {
            commandsIn(content);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "none";
    }

    support::TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "commands ü.txt";
};

TEST_F(CommandList, HoldsACommandALine) {
    EXPECT_THAT(commandsIn("Open the door\nclose it\n"), ElementsAre("Open the door", "close it"));
    EXPECT_THAT(commandsIn("Open the door\nclose it"), ElementsAre("Open the door", "close it"));
    EXPECT_THAT(commandsIn("Open the door\r\nclose it\r\n"), ElementsAre("Open the door", "close it"));
}

TEST_F(CommandList, IsWithoutBlankLines) {
    EXPECT_THAT(commandsIn("\n\none\n \t\n\r\n\u00A0\u2003\ntwo\n\n"), ElementsAre("one", "two"));
    EXPECT_THAT(commandsIn(""), IsEmpty());
    EXPECT_THAT(commandsIn("\n"), IsEmpty());
    EXPECT_THAT(commandsIn("\xEF\xBB\xBF"), IsEmpty());
    EXPECT_THAT(commandsIn(" \n\t"), IsEmpty());
}

TEST_F(CommandList, IsWithoutWhiteSpaceAroundCommands) {
    EXPECT_THAT(commandsIn("  Open  the door \t\n\u2003über\u2003\n"), ElementsAre("Open  the door", "über"));
}

TEST_F(CommandList, MayBeginWithAByteOrderMark) {
    EXPECT_THAT(commandsIn("\xEF\xBB\xBFone\ntwo\n"), ElementsAre("one", "two"));
}

TEST_F(CommandList, KeepsDoublesAndDashes) {
    EXPECT_THAT(commandsIn("one\n--once\none\n#two\n"), ElementsAre("one", "--once", "one", "#two"));
}

TEST_F(CommandList, SaysInWhichLineItHasANullCharacter) {
    using namespace std::string_literals;
    EXPECT_THAT(complaintAbout("one\n\ntwo\0three\n"s),
                EndsWith("commands ü.txt has a null character in line 3"));
    EXPECT_THAT(complaintAbout("\0"s), EndsWith("has a null character in line 1"));
}

TEST_F(CommandList, SaysInWhichLineItIsNoUtf8) {
    EXPECT_THAT(complaintAbout("one\n\ngr\xFC\xDF\ntwo"),
                EndsWith("commands ü.txt is not valid UTF-8 in line 3"));
    EXPECT_THAT(complaintAbout(std::string("\xFF\xFEo\0n\0", 6)), EndsWith("is not valid UTF-8 in line 1"));
    EXPECT_THAT(complaintAbout("one\ntwo\xE4\xB8"), EndsWith("is not valid UTF-8 in line 2"));
    EXPECT_THAT(complaintAbout("one\n\xE4\n\xB8\x96"), EndsWith("is not valid UTF-8 in line 2"));
}

TEST_F(CommandList, SaysThatItCannotBeRead) {
    try {
        readCommands((folder_ / "none").string());
        FAIL() << "read";
    } catch (const Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr("/none: No such file or directory"));
    }
    EXPECT_THROW(readCommands(folder_.path().string()), Failure);
}

TEST_F(CommandList, MayBeLong) {
    std::string content;
    for (int number = 0; number < 100'000; ++number) {
        content += "command " + std::to_string(number) + "\n";
    }
    const std::vector<std::string> commands = commandsIn(content);
    ASSERT_EQ(commands.size(), 100'000U);
    EXPECT_EQ(commands.back(), "command 99999");
}

} // namespace
} // namespace zqm::cli
