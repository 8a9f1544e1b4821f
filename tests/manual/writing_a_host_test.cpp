// The host in one file.

#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using support::runProcess;
using testing::HasSubstr;

ProcessResult runHost(const std::vector<std::string>& arguments) {
    return runProcess(ZQM_WRITING_A_HOST, arguments);
}

TEST(WritingAHost, SpeaksAndPrintsWords) {
    const support::TemporaryFolder folder;
    const auto file = folder / "speech.wav";
    const auto result =
        runHost({ZQM_PLUGIN, "file://" + file.string(), "Hello w\u00F6rld, \U0001F600 good-bye"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "Hello\nw\u00F6rld\n\U0001F600\ngood-bye\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(support::SoundFile(file).seconds(), 0.5);
}

// What is sanitized needs to be linked otherwise.
#ifndef __SANITIZE_ADDRESS__
std::string compilerLineOfThePage() {
    std::ifstream page(ZQM_SOURCE_FOLDER "/docs/writing-a-host.md");
    const std::string text{std::istreambuf_iterator<char>(page), {}};
    std::smatch line;
    return std::regex_search(text, line, std::regex(R"re(\n\n    (c\+\+ .*\\\n.*)\n\n)re")) ? line[1].str()
                                                                                            : "";
}

TEST(WritingAHost, IsCompiledAsThePageSays) {
    namespace fs = std::filesystem;
    const support::TemporaryFolder folder;
    for (const char* const sources : {"examples", "platform", "plugin"}) {
        fs::create_directory_symlink(fs::path(ZQM_SOURCE_FOLDER) / sources, folder / sources);
    }
    fs::create_directory(folder / "build");
    fs::create_directory_symlink(fs::path(ZQM_PLUGIN).parent_path(), folder / "build/release");
    const std::string line = compilerLineOfThePage();
    ASSERT_FALSE(line.empty());
    const ProcessResult compiled = runProcess("bash", {"-ec", line}, {.folder = folder.path()});
    ASSERT_TRUE(compiled.succeeded()) << line << '\n' << compiled.errors;
    const ProcessResult run =
        runProcess(folder / "writing_a_host", {ZQM_PLUGIN, "file://" + (folder / "a.wav").string(), "Hello"});
    EXPECT_EQ(run.output, "Hello\n") << run.errors;
}
#endif

TEST(WritingAHost, SaysWhatIsWrong) {
    const auto noFolder = runHost({ZQM_PLUGIN, "file:///nonexistent/speech.wav", "Hello"});
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_THAT(noFolder.errors,
                HasSubstr("writing_a_host: the text can't be spoken into file:///nonexistent/"));
    const auto noPlugin = runHost({"/nonexistent.so", "file:///nonexistent/speech.wav", "Hello"});
    EXPECT_EQ(noPlugin.exitCode, 1);
    EXPECT_THAT(noPlugin.errors, HasSubstr("writing_a_host: /nonexistent.so: "));
    EXPECT_EQ(runHost({}).exitCode, 1);
}

} // namespace
} // namespace zqm::tests
