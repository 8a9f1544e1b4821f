// `zqmspeech say -o FILE`: what is written, from which text, under which name.

#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace zqm::tests {
namespace {

using support::SoundFile;
using support::TemporaryFolder;
using testing::StartsWith;

std::set<std::string> namesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

class SayFile : public testing::Test {
protected:
    // Succeeds without a word.
    void write(const std::vector<std::string>& arguments,
               const support::ProcessOptions& options = bareOptions()) {
        const support::ProcessResult result = say(arguments, options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "");
    }

    SoundFile written(const std::string& name, const std::vector<std::string>& arguments,
                      const support::ProcessOptions& options = bareOptions()) {
        std::vector<std::string> all{"-o", path(name)};
        all.insert(all.end(), arguments.begin(), arguments.end());
        write(all, options);
        return SoundFile(path(name));
    }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    TemporaryFolder folder_;
};

class SayFileFormat : public SayFile,
                      public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(SayFileFormat, IsThatOfTheExtension) {
    const auto [name, format] = GetParam();
    const SoundFile file = written(name, {"Hello, world"});
    EXPECT_THAT(file.format, StartsWith(format));
    EXPECT_GT(file.seconds(), 0.5);
    EXPECT_LT(file.seconds(), 3);
    EXPECT_GT(support::rms(file.samples), 0.01);
    EXPECT_EQ(namesIn(folder_.path()), std::set<std::string>{name});
}

INSTANTIATE_TEST_SUITE_P(All, SayFileFormat,
                         testing::Values(std::pair{"x", "AIFF"}, std::pair{"x.wav", "WAV"},
                                         std::pair{"x.WAV", "WAV"}, std::pair{"x.aiff", "AIFF"},
                                         std::pair{"x.flac", "FLAC"}, std::pair{"x.ogg", "OGG"}));

class SayFileName : public SayFile, public testing::WithParamInterface<const char*> {};

TEST_P(SayFileName, IsTakenAsItStands) {
    written(GetParam(), {"Hello"});
    EXPECT_EQ(namesIn(folder_.path()), std::set<std::string>{GetParam()});
}

TEST_P(SayFileName, IsTakenAsItStandsRelativeToTheFolder) {
    const std::string folder = std::string("in ") + GetParam();
    std::filesystem::create_directory(folder_ / folder);
    support::ProcessOptions options = bareOptions();
    options.folder = folder_ / folder;
    write({"-o", GetParam(), "Hello"}, options);
    EXPECT_EQ(namesIn(folder_ / folder), std::set<std::string>{GetParam()});
    write({"-o", std::string("../") + GetParam(), "Hello"}, options);
    EXPECT_EQ(namesIn(folder_.path()), (std::set<std::string>{GetParam(), folder}));
}

INSTANTIATE_TEST_SUITE_P(All, SayFileName,
                         testing::Values("a b.wav", " .wav", "grüße.wav", "世界.wav", "👋🏽.wav",
                                         "#1.wav", "100%.wav", "%41.wav", "what?.wav", "a;b&c=d+e:f@g.wav",
                                         "\"quoted\" 'name'.wav", "back\\slash.wav", "-o.wav", "~.wav",
                                         "two\nlines.wav", "[x]*{y}.wav", "file:.wav"));

TEST_F(SayFile, AnExistingFileIsReplaced) {
    std::ofstream(folder_ / "x.wav") << "something else";
    EXPECT_GT(written("x.wav", {"Hello"}).seconds(), 0.2);
}

TEST_F(SayFile, TheTextMayComeFromAnywhere) {
    const SoundFile reference = written("a.wav", {"Hello, wide world"});
    EXPECT_EQ(written("b.wav", {"Hello,", "wide", "world"}).samples, reference.samples);
    support::ProcessOptions options = bareOptions();
    options.input = "Hello, wide world";
    EXPECT_EQ(written("c.wav", {}, options).samples, reference.samples);
    EXPECT_EQ(written("d.wav", {"-"}, options).samples, reference.samples);
    EXPECT_EQ(written("e.wav", {"-f", "-"}, options).samples, reference.samples);
    std::ofstream(folder_ / "text ü.txt") << "\xEF\xBB\xBFHello, wide world";
    EXPECT_EQ(written("f.wav", {"-f", path("text ü.txt")}).samples, reference.samples);
    EXPECT_EQ(written("g.wav", {"--", "Hello, wide world"}).samples, reference.samples);
}

TEST_F(SayFile, TextsAreUtf8WhateverTheLocale) {
    const SoundFile reference = written("reference.wav", {"-v", "gmw/de", "Schöne Grüße"});
    EXPECT_NE(written("other.wav", {"-v", "gmw/de", "Schone Gruse"}).samples, reference.samples);
    for (const char* locale : {"C", "POSIX", "C.UTF-8", "de_DE.ISO-8859-1", "no_SUCH.locale"}) {
        support::ProcessOptions options = bareOptions();
        options.environment["LC_ALL"] = locale;
        EXPECT_EQ(
            written(std::string("ü ") + locale + ".wav", {"-v", "gmw/de", "Schöne Grüße"}, options).samples,
            reference.samples)
            << locale;
        EXPECT_TRUE(exists(folder_ / (std::string("ü ") + locale + ".wav"))) << locale;
    }
}

// GNUstep can't read such arguments and variables by itself.
TEST_F(SayFile, NamesThatAreNoUtf8DoNotMatter) {
    std::ofstream(folder_ / "gr\xFC\xDF e.txt") << "Hello";
    support::ProcessOptions options = bareOptions();
    options.environment["NAME"] = "M\xFCller";
    EXPECT_GT(written("x.wav", {"-f", path("gr\xFC\xDF e.txt")}).seconds(), 0.2);
    EXPECT_GT(written("y.wav", {"Hello"}, options).seconds(), 0.2);
    EXPECT_GT(written("z.wav", {"-f", path("gr\xFC\xDF e.txt")}, options).seconds(), 0.2);
}

TEST_F(SayFile, ASlowerRateTakesLonger) {
    const double slow = written("slow.wav", {"--rate", "90", "One two three four five"}).seconds();
    const double usual = written("usual.wav", {"One two three four five"}).seconds();
    const double fast = written("fast.wav", {"--rate", "400", "One two three four five"}).seconds();
    EXPECT_GT(slow, usual * 1.2);
    EXPECT_LT(fast, usual * 0.8);
}

TEST_F(SayFile, AVolumeIsHeard) {
    const double loud = support::rms(written("loud.wav", {"--volume", "1", "Hello, world"}).samples);
    const double soft = support::rms(written("soft.wav", {"--volume", "0.25", "Hello, world"}).samples);
    const double none = support::rms(written("none.wav", {"--volume", "0", "Hello, world"}).samples);
    EXPECT_GT(loud, 0.01);
    EXPECT_NEAR(soft / loud, 0.25, 0.05);
    EXPECT_EQ(none, 0);
}

TEST_F(SayFile, AVoiceIsHeard) {
    const SoundFile english = written("en.wav", {"-v", "gmw/en-US", "Zwei Dinge"});
    const SoundFile german = written("de.wav", {"-v", "gmw/de", "Zwei Dinge"});
    EXPECT_NE(english.samples, german.samples);
}

TEST_F(SayFile, TheFallbackIsNotForAFile) {
    auto options = bareOptions();
    options.environment["ZQMSPEECH_FALLBACK"] = path("fallback.wav");
    write({"-o", path("x.wav"), "Hello"}, options);
    EXPECT_EQ(namesIn(folder_.path()), std::set<std::string>{"x.wav"});
}

TEST_F(SayFile, AProgramBesideItNeedsNoSettingsNorFolder) {
    const support::ProcessResult result =
        sayInShell("cd / && exec env -i PULSE_SERVER=none ASAN_OPTIONS=\"$ASAN_OPTIONS\" "
                   "LSAN_OPTIONS=\"$LSAN_OPTIONS\" \"$0\" say -o \"$1\" Hello",
                   {path("x.wav")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(SoundFile(path("x.wav")).seconds(), 0.2);
}

} // namespace
} // namespace zqm::tests
