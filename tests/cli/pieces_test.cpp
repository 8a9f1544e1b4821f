// The small pieces of the command: URLs, words, where things are.

#include "cli/command_line/failure.h"
#include "cli/system/file_url.h"
#include "cli/system/plugin_location.h"
#include "cli/text/spoken_text.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

// Works in a folder, and goes back to where it was.
class ScopedCurrentFolder {
public:
    explicit ScopedCurrentFolder(const std::filesystem::path& folder)
        : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ScopedCurrentFolder(const ScopedCurrentFolder&) = delete;
    ScopedCurrentFolder& operator=(const ScopedCurrentFolder&) = delete;
    ~ScopedCurrentFolder() { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_;
};

void createFile(const std::filesystem::path& path) {
    std::ofstream(path) << "x";
}

TEST(FileUrl, KeepsWhatNeedsNoEncoding) {
    EXPECT_EQ(fileUrl("/tmp/a-b_c.d~1/Z9.wav"), "file:///tmp/a-b_c.d~1/Z9.wav");
}

TEST(FileUrl, EncodesEverythingElse) {
    EXPECT_EQ(fileUrl("/a b#c%41?d;e&f=g+h:i@j\"k'l\\m[n]*!$,(o)"),
              "file:///a%20b%23c%2541%3Fd%3Be%26f%3Dg%2Bh%3Ai%40j%22k%27l%5Cm%5Bn%5D%2A%21%24%2C%28o%29");
    EXPECT_EQ(fileUrl("/grüße/世界/👋.wav"), "file:///gr%C3%BC%C3%9Fe/%E4%B8%96%E7%95%8C/%F0%9F%91%8B.wav");
    EXPECT_EQ(fileUrl("/line\nbreak\x7F"), "file:///line%0Abreak%7F");
}

TEST(FileUrl, IsAbsolute) {
    const support::TemporaryFolder folder("with blank");
    const ScopedCurrentFolder current(folder.path());
    EXPECT_EQ(fileUrl("x/y.wav"), fileUrl((folder / "x/y.wav").string()));
}

TEST(FileUrl, RefusesRelativeNamesWhereTheFolderIsGone) {
    const support::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "gone");
    const ScopedCurrentFolder current(folder / "gone");
    std::filesystem::remove(folder / "gone");
    EXPECT_THROW(fileUrl("x.wav"), Failure);
    EXPECT_EQ(fileUrl("/x.wav"), "file:///x.wav");
}

TEST(SpokenText, CutsByUtf16Units) {
    const SpokenText text("a 👋🏽 grüße 世界");
    EXPECT_EQ(text.cut(0, 1), "a");
    EXPECT_EQ(text.cut(2, 4), "👋🏽");
    EXPECT_EQ(text.cut(7, 5), "grüße");
    EXPECT_EQ(text.cut(13, 2), "世界");
}

TEST(SpokenText, LeavesOutWhatIsOutside) {
    const SpokenText text("abc");
    EXPECT_EQ(text.cut(2, 5), "c");
    EXPECT_EQ(text.cut(3, 1), "");
    EXPECT_EQ(text.cut(100, 1), "");
    EXPECT_EQ(text.cut(1, SIZE_MAX), "bc");
    EXPECT_EQ(text.cut(SIZE_MAX, SIZE_MAX), "");
}

TEST(SpokenText, KnowsHowFarAPositionIs) {
    const SpokenText text("👋👋");
    EXPECT_DOUBLE_EQ(text.shareBefore(0), 0);
    EXPECT_DOUBLE_EQ(text.shareBefore(2), 0.5);
    EXPECT_DOUBLE_EQ(text.shareBefore(4), 1);
    EXPECT_DOUBLE_EQ(text.shareBefore(99), 1);
    EXPECT_DOUBLE_EQ(SpokenText("").shareBefore(0), 1);
}

TEST(SpokenText, CountsCodePoints) {
    const SpokenText text("a 👋🏽 grüße");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(text.codePointsBefore(0), 0U);
        EXPECT_EQ(text.codePointsBefore(2), 2U);
        EXPECT_EQ(text.codePointsBefore(6), 4U);
        EXPECT_EQ(text.codePointsBefore(12), 10U);
        EXPECT_EQ(text.codePointsBefore(99), 10U);
    }
}

TEST(PluginLocation, IsBesideTheProgram) {
    const support::TemporaryFolder folder;
    createFile(folder / ZQM_PLUGIN_FILE);
    EXPECT_EQ(findPlugin(folder.path()), folder / ZQM_PLUGIN_FILE);
}

TEST(PluginLocation, IsInTheFolderForLibrariesOfAnInstallation) {
    const support::TemporaryFolder folder;
    const std::filesystem::path libraries = folder / "bin" / ZQM_LIBRARY_FOLDER;
    std::filesystem::create_directory(folder / "bin");
    std::filesystem::create_directories(libraries);
    createFile(libraries / ZQM_PLUGIN_FILE);
    EXPECT_TRUE(std::filesystem::equivalent(findPlugin(folder / "bin"), libraries / ZQM_PLUGIN_FILE));
    createFile(folder / "bin" / ZQM_PLUGIN_FILE);
    EXPECT_EQ(findPlugin(folder / "bin"), folder / "bin" / ZQM_PLUGIN_FILE);
}

TEST(PluginLocation, SaysWhereItLooked) {
    const support::TemporaryFolder folder;
    try {
        findPlugin(folder.path());
        FAIL() << "found, though none is installed";
    } catch (const Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr(ZQM_PLUGIN_FILE " is missing"));
        EXPECT_THAT(failure.what(), HasSubstr(folder.path().string()));
        EXPECT_THAT(failure.what(), HasSubstr("/lib"));
    }
}

} // namespace
} // namespace zqm::cli
