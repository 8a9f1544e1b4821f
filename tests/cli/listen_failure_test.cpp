// Each way in which `zqmspeech listen` fails: the exit code, and one line that says why.

#include "tests/cli/installation.h"
#include "tests/cli/listen.h"
#include "tests/cli/one_line.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using support::TemporaryFolder;
using testing::EndsWith;
using testing::HasSubstr;

TEST(ListenFailure, WrongUses) {
    expectOneLine(listen({}), 2, "there is no command to listen for");
    expectOneLine(listen({"--once"}), 2, "there is no command to listen for");
    expectOneLine(listen({"--loud", "x"}), 2, "--loud is not an option");
    expectOneLine(listen({"--timeout", "0", "x"}), 2, "0 is not a number from 0.1 to 86400");
    expectOneLine(listen({"--timeout", "0x10", "x"}), 2, "0x10 is not a number from 0.1 to 86400");
    expectOneLine(listen({"--once=3", "x"}), 2, "--once: it takes no value, and 3 was given");
}

TEST(ListenFailure, HelpIsNone) {
    const ProcessResult help = listen({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, HasSubstr("Usage: zqmspeech listen [OPTIONS] COMMAND..."));
    EXPECT_EQ(help.errors, "");
}

TEST(ListenFailure, OfTheCommands) {
    const TemporaryFolder folder;
    const std::string list = (folder / "list").string();
    std::ofstream(list) << "stop\ngr\xFC\xDF e\n";
    expectOneLine(listen({"stop", "gr\xFC\xDF e"}), 1, "command 2 is not valid UTF-8 at byte 2");
    expectOneLine(listen({"--commands", list}), 1, list + " is not valid UTF-8 in line 2");
    expectOneLine(listen({"--commands", list + "/x"}), 1, "can't read " + list + "/x: Not a directory");
    expectOneLine(listen({"--commands", folder.path().string()}), 1, "Is a directory");
    expectOneLine(listen({"--commands", "/dev/null"}), 1,
                  "there is nothing to listen for: /dev/null has no command in it");
    expectOneLine(listen({"--commands", "-"}), 1,
                  "there is nothing to listen for: standard input has no command in it");
    expectOneLine(sayInShell("exec \"$0\" listen --commands - <&-", {}), 1,
                  "can't read standard input: Bad file descriptor");
}

TEST(ListenFailure, OfTheFile) {
    const TemporaryFolder folder;
    const std::string text = (folder / "text.wav").string();
    std::ofstream(text) << "no sound";
    const std::string failure = "nothing can be heard: ";
    expectOneLine(listen({"--from", "/nonexistent/x.wav", "stop"}), 1,
                  failure + "/nonexistent/x.wav: No such file or directory");
    expectOneLine(listen({"--from", folder.path().string(), "stop"}), 1,
                  failure + folder.path().string() + ": Is a directory");
    expectOneLine(listen({"--from", text, "stop"}), 1, failure);
    expectOneLine(listen({"--from", "/\xFC.wav", "stop"}), 1,
                  "the name of the sound file is not valid UTF-8 at byte 1");
}

// Nothing else becomes standard output.
TEST(ListenFailure, OfStandardOutputThatIsClosed) {
    const TemporaryFolder folder;
    support::writeSpokenPhrases({"stop"}, folder / "x.wav");
    for (const std::string closed : {">&-", "<&- >&-"}) {
        SCOPED_TRACE(closed);
        expectOneLine(
            sayInShell("exec \"$0\" listen --from \"$1\" stop " + closed, {(folder / "x.wav").string()}), 1,
            "can't write to standard output");
    }
    EXPECT_EQ(sayInShell("exec \"$0\" listen --from \"$1\" stop <&- >&- 2>&-", {(folder / "x.wav").string()})
                  .exitCode,
              1);
}

TEST(ListenFailure, WithoutAMicrophone) {
    const ProcessResult plain = listen({"stop"});
    expectOneLine(plain, 1, "nothing can be heard: ");
    const ProcessResult json = listen({"--json", "stop"});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(json.errors, plain.errors);
    EXPECT_THAT(json.output,
                testing::StartsWith("{\"event\":\"failed\",\"reason\":\"nothing can be heard: "));
}

TEST(ListenFailure, OfEveryCommand) {
    const TemporaryFolder folder;
    support::writeSpokenPhrases({"stop"}, folder / "x.wav");
    const ProcessResult result = listen({"--from", (folder / "x.wav").string(), "?!", "..."});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("\"?!\" can't be listened for: "));
    EXPECT_THAT(result.errors, HasSubstr("\"...\" can't be listened for: "));
    EXPECT_THAT(result.errors, EndsWith("zqmspeech: none of the commands can be listened for\n"));
}

// Of more than a hundred not every one is told.
TEST(ListenFailure, OfEveryCommandOfALongList) {
    const TemporaryFolder folder;
    support::writeSpokenPhrases({"stop"}, folder / "x.wav");
    for (const std::size_t more : {1U, 900U}) {
        SCOPED_TRACE(more);
        const std::vector<std::string> commands(100 + more, "?!");
        std::vector<std::string> arguments{"--from", (folder / "x.wav").string()};
        arguments.insert(arguments.end(), commands.begin(), commands.end());
        const ProcessResult result = listen(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 102);
        EXPECT_THAT(result.errors, EndsWith("zqmspeech: " + std::to_string(more) +
                                            " more of the commands can't be listened for\n"
                                            "zqmspeech: none of the commands can be listened for\n"));
    }
}

TEST(ListenInstallation, LacksThePlugin) {
    const Installation lacking({ZQM_PLATFORM_LIBRARY, "zqmspeech-engine"});
    expectOneLine(lacking.run({"listen", "stop"}), 1,
                  "libZQMNSSpeech.so is missing: it is neither in " + lacking.path().string());
}

TEST(ListenInstallation, LacksTheEngine) {
    const Installation lacking({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    expectOneLine(lacking.run({"listen", "stop"}), 1, "nothing can be heard: ");
}

TEST(ListenInstallation, HasAnEngineThatEndsAtOnce) {
    const Installation bad({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    std::filesystem::copy(ZQM_BAD_ENGINE_PATH, bad.path());
    support::ProcessOptions options = bareOptions();
    options.environment["ZQM_BAD_ENGINE"] = "close at once";
    const ProcessResult result = bad.run({"listen", "stop"}, options);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors,
                EndsWith("zqmspeech: nothing can be heard: the speech engine ended unexpectedly\n"));
}

} // namespace
} // namespace zqm::tests
