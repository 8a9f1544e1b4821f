#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using testing::HasSubstr;

TEST(Hello, SpeaksIntoAFileAndPrintsItsWords) {
    const support::TemporaryFolder folder;
    const auto file = folder / "hello.wav";
    const auto result = support::runProcess(ZQM_HELLO, {ZQM_PLUGIN, file.string()});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "Hello\nworld\n");
    EXPECT_EQ(result.errors, "");
    const support::SoundFile sound(file);
    EXPECT_GT(sound.seconds(), 0.4);
    EXPECT_GT(support::rms(sound.samples), 0.01);
}

TEST(Hello, SaysWhatIsWrong) {
    const auto noPlugin = support::runProcess(ZQM_HELLO, {"/nonexistent.so"});
    EXPECT_EQ(noPlugin.exitCode, 1);
    EXPECT_EQ(noPlugin.errors, "hello: there is no plugin /nonexistent.so\n");
    const auto noFolder = support::runProcess(ZQM_HELLO, {ZQM_PLUGIN, "/nonexistent/hello.wav"});
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_THAT(noFolder.errors, HasSubstr("hello: the speech could not be started"));
    EXPECT_EQ(support::runProcess(ZQM_HELLO, {}).exitCode, 1);
}

} // namespace
} // namespace zqm::endtoend
