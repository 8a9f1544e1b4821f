// `zqmspeech say -o`: what is written besides files of the platform's own formats, and where.

#include "tests/cli/one_line.h"
#include "tests/cli/say.h"
#include "tests/cli/terminal.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include <sys/stat.h>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using support::SoundFile;
using testing::HasSubstr;
using testing::StartsWith;

class SayOutput : public testing::Test {
protected:
    SayOutput() { options_.environment["TMPDIR"] = temporary_.path().string(); }
    void TearDown() override { EXPECT_TRUE(std::filesystem::is_empty(temporary_.path())); }

    ProcessResult run(const std::vector<std::string>& arguments) {
        ProcessResult result = say(arguments, options_);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return result;
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    std::string bytes(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    support::TemporaryFolder folder_;
    support::TemporaryFolder temporary_;
    support::ProcessOptions options_ = bareOptions();
};

class SayOtherFormat : public SayOutput,
                       public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(SayOtherFormat, SoundsTheSame) {
    const auto [extension, format] = GetParam();
    run({"-o", path("x.wav"), "Hello, world"});
    const std::string name = std::string("x.") + extension;
    run({"-o", path(name), "Hello, world"});
    const SoundFile reference(path("x.wav"));
    const SoundFile file(path(name));
    EXPECT_THAT(file.format, HasSubstr(format));
    EXPECT_NEAR(file.seconds(), reference.seconds(), 0.15); // some formats come in blocks
    EXPECT_NEAR(support::rms(file.samples), support::rms(reference.samples),
                support::rms(reference.samples) * 0.15);
}

INSTANTIATE_TEST_SUITE_P(All, SayOtherFormat,
                         testing::Values(std::pair{"au", "AU"}, std::pair{"caf", "CAF"},
                                         std::pair{"mp3", "MPEG"}, std::pair{"opus", "OGG"},
                                         std::pair{"rf64", "RF64"}, std::pair{"sds", "SDS"},
                                         std::pair{"voc", "VOC"}, std::pair{"w64", "W64"},
                                         std::pair{"wve", "WVE"}, std::pair{"xi", "XI"}),
                         [](const auto& test) { return std::string(test.param.first); });

TEST_F(SayOutput, RawIsTheSamplesAlone) {
    run({"-o", path("x.raw"), "Hello"});
    run({"-o", path("x.wav"), "Hello"});
    EXPECT_EQ(bytes("x.raw").size(), SoundFile(path("x.wav")).frames() * 2);
    EXPECT_THAT(bytes("x.wav"), testing::EndsWith(bytes("x.raw")));
}

TEST_F(SayOutput, AGivenFormatCountsForTheExtension) {
    run({"-o", path("x.wav"), "--format", "FLAC", "Hello"});
    EXPECT_THAT(SoundFile(path("x.wav")).format, StartsWith("FLAC"));
    run({"-o", path("x.text"), "--format", "wav", "Hello"});
    EXPECT_THAT(SoundFile(path("x.text")).format, StartsWith("WAV"));
}

TEST_F(SayOutput, FormatsAreListed) {
    const std::string list = run({"--formats"}).output;
    EXPECT_THAT(list, HasSubstr("wav     WAV (Microsoft), Signed 16 bit PCM\n"));
    EXPECT_THAT(list, HasSubstr("mp3     MPEG-1/2 Audio, MPEG Layer III\n"));
    EXPECT_THAT(list, HasSubstr("opus    OGG (OGG Container format), Opus, 24000 Hz\n"));
}

TEST_F(SayOutput, StandardOutputGetsWhatAFileWould) {
    run({"-o", path("x.wav"), "Hello"});
    EXPECT_TRUE(run({"-o", "-", "Hello"}).output == bytes("x.wav"));
    run({"-o", path("x.flac"), "Hello"});
    EXPECT_TRUE(run({"-o", "-", "--format", "flac", "Hello"}).output == bytes("x.flac"));
    EXPECT_TRUE(sayInShell("\"$0\" say -o - Hello | cat", {}, options_).output == bytes("x.wav"));
}

TEST_F(SayOutput, IsNoneForATerminal) {
    const Terminal terminal(80);
    const ProcessResult result =
        sayInShell("exec \"$0\" say -o - Hello > \"$1\"", {terminal.path()}, options_);
    expectOneLine(result, 1, "a sound file is nothing for a terminal");
    EXPECT_EQ(terminal.written(), "");
}

TEST_F(SayOutput, APipeAndALinkGetTheWholeFile) {
    run({"-o", path("x.wav"), "Hello"});
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    const ProcessResult piped =
        sayInShell("exec 3<>\"$1\"; cat \"$1\" 3>&- & \"$0\" say -o \"$1\" Hello; exec 3>&-; wait",
                   {path("pipe.wav")}, options_);
    EXPECT_TRUE(piped.output == bytes("x.wav")) << piped.errors;
    EXPECT_TRUE(std::filesystem::is_fifo(path("pipe.wav")));

    std::filesystem::create_symlink("target.wav", path("link.wav"));
    run({"-o", path("link.wav"), "Hello"});
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.wav")));
    EXPECT_TRUE(bytes("target.wav") == bytes("x.wav"));
}

TEST_F(SayOutput, APipeThatNobodyReadsIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    expectOneLine(say({"-o", path("pipe.wav"), "Hello"}, options_), 1,
                  "the speech can't be written: " + path("pipe.wav") + ": No such device or address");
}

TEST_F(SayOutput, AReplacedFileKeepsItsPermissions) {
    std::ofstream(path("x.wav")) << "before";
    std::filesystem::permissions(path("x.wav"), std::filesystem::perms(0640));
    run({"-o", path("x.wav"), "Hello"});
    EXPECT_EQ(std::filesystem::status(path("x.wav")).permissions(), std::filesystem::perms(0640));
    EXPECT_GT(SoundFile(path("x.wav")).seconds(), 0.2);
}

TEST_F(SayOutput, WhatIsThereStaysUntilTheSpeechIsWhole) {
    std::ofstream(path("x.wav")) << "before";
    const ProcessResult result =
        sayInShell("ulimit -f 8; exec \"$0\" say -o \"$1\" One two three four five six seven eight nine ten",
                   {path("x.wav")}, options_);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(bytes("x.wav"), "before");
}

// As on a full disk.
TEST_F(SayOutput, ATemporaryPlaceThatIsFullIsNamed) {
    const std::string complaint = "the speech can't be written: " + temporary_.path().string() +
                                  " (TMPDIR names another place for temporary files): File too large";
    const std::string said = " One two three four five six seven eight nine ten";
    for (const std::string name : {"x.wav", "x.ogg", "x.flac"}) {
        expectOneLine(sayInShell("ulimit -f 8; exec \"$0\" say -o \"$1\"" + said, {path(name)}, options_), 1,
                      complaint);
    }
    // What is spoken has room, packed, but not as what goes to standard output.
    options_.input = std::string(1500, ' ');
    for (std::size_t at = 0; at < options_.input.size(); at += 5) {
        options_.input.replace(at, 4, "word");
    }
    run({"-o", path("y.flac")});
    const std::size_t size = SoundFile(path("y.flac")).frames() * 2;
    ASSERT_LT(bytes("y.flac").size(), size * 7 / 10);
    const ProcessResult result = sayInShell(
        "ulimit -f " + std::to_string(size * 3 / 4 / 512) + "; exec \"$0\" say -o - | cat", {}, options_);
    EXPECT_EQ(result.errors, "zqmspeech: " + complaint + "\n");
    EXPECT_EQ(result.output, "");
}

// As on a full disk: what is spoken has room, packed, but not where it shall be.
TEST_F(SayOutput, AFileThatCannotGrowIsNotWritten) {
    for (int index = 0; index < 300; ++index) {
        options_.input += "word ";
    }
    run({"-o", path("x.flac")});
    const std::size_t size = SoundFile(path("x.flac")).frames() * 2;
    ASSERT_LT(bytes("x.flac").size(), size * 7 / 10);
    const ProcessResult result =
        sayInShell("ulimit -f " + std::to_string(size * 3 / 4 / 512) + "; exec \"$0\" say -o \"$1\"",
                   {path("x.wav")}, options_);
    expectOneLine(result, 1, "the speech can't be written: " + path("x.wav") + ": File too large\n");
    EXPECT_FALSE(std::filesystem::exists(path("x.wav")));
}

TEST_F(SayOutput, AFormatThatCannotHoldItIsSaid) {
    for (int index = 0; index < 300; ++index) {
        options_.input += "word ";
    }
    expectOneLine(say({"--rate", "60", "-o", path("x.sds")}, options_), 1,
                  "the speech is longer than a file of this format can be (flac and ogg have no limit)");
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SayOutput, FullDevicesAreSaid) {
    expectOneLine(say({"-o", "/dev/full", "Hello"}, options_), 1,
                  "the speech can't be written: /dev/full: No space left on device");
    expectOneLine(sayInShell("exec \"$0\" say -o - Hello > /dev/full", {}, options_), 1,
                  "the speech can't be written: standard output: No space left on device");
}

TEST_F(SayOutput, AReaderWhoHasLeftIsSaid) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    const ProcessResult result =
        sayInShell("exec 3<>\"$1\" 4>\"$1\" 3>&-; exec \"$0\" say -o - Hello >&4", {path("pipe")}, options_);
    expectOneLine(result, 1, "the speech can't be written: standard output: Broken pipe");
}

TEST_F(SayOutput, AMissingTemporaryFolderIsSaid) {
    options_.environment["TMPDIR"] = "/nonexistent/folder";
    expectOneLine(say({"-o", path("x.wav"), "Hello"}, options_), 1,
                  "can't make a temporary folder in /nonexistent/folder: No such file or directory");
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SayOutput, UnknownExtensionsNameTheListOfFormats) {
    expectOneLine(say({"-o", path("x.text"), "Hello"}, options_), 1, "zqmspeech say --formats lists them");
}

} // namespace
} // namespace zqm::tests
