// Runs ./speak of the source tree, as somebody does who has just cloned it: here everything is installed and
// built, so that it only has to look.

#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

constexpr std::chrono::minutes kDeadline{5};

support::ProcessResult speak(const std::vector<std::string>& arguments,
                             const support::TemporaryFolder& folder) {
    support::ProcessOptions options = bareOptions();
    options.folder = folder.path();
    return support::runProcess(ZQM_SPEAK_SCRIPT, arguments, options, kDeadline);
}

TEST(SpeakScript, WritesAFileWhereNoSoundCanBePlayedAndSaysSo) {
    const support::TemporaryFolder folder("with blank");
    const auto before = std::filesystem::last_write_time(ZQMSPEECH_PROGRAM);
    const auto result = speak({"--events", "Hello world"}, folder);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(result.output), "word 0 5 Hello\nword 6 5 world\nfinish true\n");
    EXPECT_EQ(result.errors, "No sound can be played here: the speech goes to speech.wav\n");
    const support::SoundFile file(folder / "speech.wav");
    EXPECT_GT(file.seconds(), 0.5);
    EXPECT_GT(support::rms(file.samples), 0.01);
    EXPECT_EQ(std::filesystem::last_write_time(ZQMSPEECH_PROGRAM), before) << "it was built once more";
}

TEST(SpeakScript, PassesExitCodesAndWordsOn) {
    const support::TemporaryFolder folder;
    const auto result = speak({"--rate", "a  b", "Hello"}, folder);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "zqmspeech: --rate: a  b is not a number from 50 to 500\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace zqm::tests
