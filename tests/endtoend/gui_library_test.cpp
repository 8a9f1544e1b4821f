// A process with GNUstep's library for user interfaces, which has speech classes and constants of its own
// under the names of Apple's.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::endtoend {
namespace {

struct Told {
    std::string owner; // the library of the class NSSpeechSynthesizer
    std::string rest;
};

Told beGuest(const std::vector<std::string>& libraries) {
    const support::TemporaryFolder folder;
    std::vector<std::string> arguments{ZQM_PLUGIN, folder / "a.wav"};
    arguments.insert(arguments.end(), libraries.begin(), libraries.end());
    const auto result = support::runProcess(ZQM_GUEST_PROCESS, arguments, {}, std::chrono::minutes(5));
    EXPECT_TRUE(result.succeeded()) << result.output << result.errors;
    EXPECT_EQ(result.errors, "");
    const std::size_t end = result.output.find('\n');
    return {result.output.substr(0, end), result.output.substr(end + 1)};
}

TEST(GuiLibrary, AndThePluginHaveEachItsOwnClassesAndConstantsWhicheverIsLoadedFirst) {
    const Told alone = beGuest({ZQM_GUEST});
    EXPECT_EQ(alone.owner, "none");
    EXPECT_THAT(alone.rest, testing::HasSubstr("NSVoiceName VoiceName\n"));
    EXPECT_THAT(alone.rest, testing::HasSubstr("began 1\nword 0 4\nword 5 3\nword 9 6\nfinished 1\n"));
    EXPECT_THAT(alone.rest, testing::EndsWith("heard open the window\nreports 0\n"));
    for (const auto& libraries :
         {std::vector<std::string>{ZQM_GUI_LIBRARY, ZQM_GUEST}, {ZQM_GUEST, ZQM_GUI_LIBRARY}}) {
        const Told beside = beGuest(libraries);
        EXPECT_THAT(beside.owner, testing::HasSubstr("libgnustep-gui"));
        EXPECT_EQ(beside.rest, alone.rest);
    }
}

} // namespace
} // namespace zqm::endtoend
