// `zqmspeech listen --from`: what is recognised in sound files, and how it is printed.

#include "tests/cli/json_schema.h"
#include "tests/cli/listen.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessOptions;
using support::ProcessResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ListenToFile : public testing::Test {
protected:
    // "Open the door", something else, "stop", "open the door".
    static void SetUpTestSuite() {
        folder_ = std::make_unique<support::TemporaryFolder>("with blank");
        support::writeSpokenPhrases(
            {"open the door", "my grandmother likes strawberries", "stop", "open the door"}, spoken());
    }
    static void TearDownTestSuite() { folder_.reset(); }

    static std::filesystem::path spoken() { return *folder_ / "said, ü.wav"; }

    // Of what is spoken, with these arguments.
    static ProcessResult heard(std::vector<std::string> arguments, ProcessOptions options = bareOptions()) {
        options.folder = folder_->path();
        arguments.insert(arguments.begin(), {"--from", "said, ü.wav"});
        return listen(arguments, options);
    }

    static std::unique_ptr<support::TemporaryFolder> folder_;
};

std::unique_ptr<support::TemporaryFolder> ListenToFile::folder_;

std::vector<nlohmann::json> objectsIn(const ProcessResult& result) {
    std::vector<nlohmann::json> objects;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(nlohmann::json::parse(line));
    }
    return objects;
}

TEST_F(ListenToFile, PrintsEachCommandOnALine) {
    const ProcessResult result = heard({"Stop!", "Open the door."});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "Open the door.\nStop!\nOpen the door.\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(ListenToFile, OnceEndsWithTheFirstCommand) {
    const ProcessResult result = heard({"--once", "stop", "open the door"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "open the door\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(ListenToFile, NothingRecognisedIsAnExitCodeOfItsOwn) {
    const ProcessResult result = heard({"--once", "play some music"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
}

TEST_F(ListenToFile, CommandsOfTheCommandLineComeBeforeThoseOfAFile) {
    std::ofstream(*folder_ / "commands.txt", std::ios::binary)
        << "\xEF\xBB\xBFwait a minute\r\n\r\n  OPEN the door \r\n";
    const std::vector<nlohmann::json> objects =
        objectsIn(heard({"--json", "--commands", "commands.txt", "stop", "go on"}));
    std::vector<std::pair<std::string, int>> recognized;
    for (const nlohmann::json& object : objects) {
        if (object["event"] == "recognized") {
            recognized.emplace_back(object["command"], object["index"]);
        }
    }
    EXPECT_THAT(recognized, ElementsAre(std::pair("OPEN the door", 3), std::pair("stop", 0),
                                        std::pair("OPEN the door", 3)));
}

TEST_F(ListenToFile, CommandsMayComeFromStandardInput) {
    ProcessOptions options = bareOptions();
    options.input = "\n\nstop\n\nopen the door\n";
    EXPECT_EQ(heard({"--commands", "-"}, options).output, "open the door\nstop\nopen the door\n");
}

TEST_F(ListenToFile, JsonTellsEverythingInOrder) {
    const ProcessResult result = heard({"--json", "stop", "open the door", "?!", "stop"});
    EXPECT_EQ(result.exitCode, 0);
    const std::vector<nlohmann::json> objects = objectsIn(result);
    std::vector<std::string> events;
    double last = 0;
    for (const nlohmann::json& object : objects) {
        events.push_back(object["event"]);
        if (object.contains("begin")) {
            EXPECT_GT(object["begin"], last) << object;
            EXPECT_GT(object["end"], object["begin"]) << object;
            last = object["end"];
        }
        if (object["event"] == "refused") {
            EXPECT_EQ(object["command"], "?!");
            EXPECT_NE(object["reason"], "");
            EXPECT_THAT(result.errors, HasSubstr("zqmspeech: \"?!\" can't be listened for: " +
                                                 object["reason"].get<std::string>() + "\n"));
        }
    }
    EXPECT_GT(last, 4) << "there are four seconds of silence in the file";
    // Whether a command is refused, and that listening begins, has no order.
    ASSERT_GE(events.size(), 2U);
    EXPECT_THAT(std::vector<std::string>(events.begin(), events.begin() + 2),
                testing::UnorderedElementsAre("began", "refused"));
    events.erase(events.begin(), events.begin() + 2);
    EXPECT_THAT(events, ElementsAre("recognized", "rejected", "recognized", "recognized", "ended"));
}

TEST_F(ListenToFile, JsonIsAsTheSchemaSays) {
    const std::string lines = heard({"--json", "stop", "open the door", "?!"}).output +
                              listen({"--json", "--from", "/nonexistent", "stop"}).output +
                              "{\"event\":\"moreRefused\",\"count\":1}\n";
    EXPECT_EQ(std::ranges::count(lines, '\n'), 9);
    EXPECT_EQ(schemaErrors(lines, ZQM_LISTEN_SCHEMA), "");
    EXPECT_THAT(schemaErrors(R"({"event":"recognized","command":"stop"})", ZQM_LISTEN_SCHEMA),
                HasSubstr("ValidationError"))
        << "what lacks the index is taken";
}

TEST_F(ListenToFile, ACommandThatCannotBeHeardIsSaidAndTheOthersGoOn) {
    const ProcessResult result = heard({"?!", "stop", "..."});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "stop\n");
    EXPECT_THAT(result.errors, testing::MatchesRegex("zqmspeech: \"\\?!\" can't be listened for: [^\n]+\n"
                                                     "zqmspeech: \"...\" can't be listened for: [^\n]+\n"));
}

TEST_F(ListenToFile, OneUsableCommandOfALongListIsEnough) {
    std::vector<std::string> arguments(150, "?!");
    arguments.insert(arguments.begin(), {"--json", "--once"});
    arguments.emplace_back("stop");
    const ProcessResult result = heard(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("{\"event\":\"moreRefused\",\"count\":50}\n"));
    EXPECT_THAT(result.output, HasSubstr("\"command\":\"stop\",\"index\":150,"));
    EXPECT_THAT(result.errors,
                testing::EndsWith("zqmspeech: 50 more of the commands can't be listened for\n"));
}

TEST_F(ListenToFile, ALineFeedInACommandBreaksNoLine) {
    EXPECT_EQ(heard({"open\nthe door"}).output, "open?the door\nopen?the door\n");
}

TEST_F(ListenToFile, ThatCannotBePrintedIsAFailure) {
    const ProcessResult result =
        sayInShell("exec \"$0\" listen --from \"$1\" stop > /dev/full", {spoken().string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "zqmspeech: can't write to standard output\n");
}

TEST_F(ListenToFile, AThousandCommands) {
    ProcessOptions options = bareOptions();
    for (int number = 0; number < 999; ++number) {
        options.input += "channel number " + std::to_string(number) + "\n";
    }
    const ProcessResult result = heard({"--commands", "-", "open the door"}, options);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("open the door\n"));
    EXPECT_EQ(result.errors, "");
}

} // namespace
} // namespace zqm::tests
