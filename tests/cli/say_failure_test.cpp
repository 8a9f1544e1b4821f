// Each way in which `zqmspeech` fails: the exit code, and one line that says why.

#include "tests/cli/installation.h"
#include "tests/cli/one_line.h"
#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using support::TemporaryFolder;
using testing::HasSubstr;

ProcessResult zqmspeech(const std::vector<std::string>& arguments) {
    return support::runProcess(ZQMSPEECH_PROGRAM, arguments, bareOptions());
}

TEST(Command, WrongUses) {
    expectOneLine(zqmspeech({}), 2, "a command is missing");
    expectOneLine(zqmspeech({"shout", "x"}), 2, "shout is not a command");
    expectOneLine(zqmspeech({""}), 2, "is not a command");
    expectOneLine(zqmspeech({"--version", "say"}), 2,
                  "--version stands alone; zqmspeech COMMAND --help tells of a command");
    expectOneLine(zqmspeech({"--help", "say"}), 2, "--help stands alone; zqmspeech COMMAND --help");
    expectOneLine(zqmspeech({"two\nlines"}), 2, "two?lines is not a command");
    expectOneLine(say({"--loud", "x"}), 2, "--loud is not an option");
    expectOneLine(say({"--rate", "5000", "x"}), 2, "5000 is not a number from 50 to 500");
    expectOneLine(say({"-f", "a", "text"}), 2, "can't both be given");
}

TEST(Command, HelpAndVersion) {
    for (const char* option : {"--help", "-h"}) {
        const ProcessResult result = zqmspeech({option});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, HasSubstr("say          Speaks a text"));
        EXPECT_EQ(result.errors, "");
    }
    const ProcessResult sayHelp = say({"--help"});
    EXPECT_EQ(sayHelp.exitCode, 0);
    EXPECT_THAT(sayHelp.output, HasSubstr("Usage: zqmspeech say [OPTIONS] [TEXT...]"));
    EXPECT_EQ(sayHelp.errors, "");
    EXPECT_THAT(zqmspeech({"--version"}).output,
                testing::MatchesRegex("zqmspeech [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(SayFailure, OfTheText) {
    const TemporaryFolder folder;
    expectOneLine(say({""}), 1, "there is nothing to speak: the text is empty");
    expectOneLine(say({" \n"}), 1, "there is nothing to speak: the text has nothing but white space");
    expectOneLine(say({}), 1, "there is nothing to speak: standard input is empty");
    expectOneLine(sayInShell("exec \"$0\" say <&-", {}), 1, "can't read standard input: Bad file descriptor");
    expectOneLine(say({"gr\xFC\xDF e"}), 1, "the text is not valid UTF-8 at byte 2");
    expectOneLine(say({"-f", "/nonexistent/text"}), 1,
                  "can't read /nonexistent/text: No such file or directory");
    expectOneLine(say({"-f", folder.path().string()}), 1, "Is a directory");
}

TEST(SayFailure, OfTheVoice) {
    expectOneLine(say({"-v", "nobody", "Hello"}), 1,
                  "there is no voice \"nobody\" (zqmspeech voices lists them)");
    expectOneLine(say({"-v", "\xFF", "Hello"}), 1, "the name of the voice is not valid UTF-8 at byte 0");
}

TEST(SayFailure, OfTheOutput) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    const std::string failure = "the speech can't be written: ";
    expectOneLine(say({"-o", path, "Hello"}), 1, failure + path + ": Is a directory");
    expectOneLine(say({"-o", path + "/no/x.wav", "Hello"}), 1,
                  failure + path + "/no/x.wav: No such file or directory");
    expectOneLine(say({"-o", path + "/x.text", "Hello"}), 1,
                  failure + "no sound file format is known for the extension \"text\"");
    expectOneLine(say({"-o", "/proc/x.wav", "Hello"}), 1, failure + "/proc/x.wav: ");
    const std::string tooLong = path + "/" + std::string(300, 'x') + ".wav";
    expectOneLine(say({"-o", tooLong, "Hello"}), 1, failure + tooLong + ": File name too long");
    expectOneLine(say({"-o", path + "/\xFC.wav", "Hello"}), 1,
                  "the name of the sound file is not valid UTF-8 at byte ");
    expectOneLine(say({"--fallback", "\xFC.wav", "Hello"}), 1,
                  "the name of the fallback file is not valid UTF-8 at byte 0");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SayFailure, OfTheCurrentFolder) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "gone");
    support::ProcessOptions options = bareOptions();
    options.folder = folder / "gone";
    expectOneLine(sayInShell("rmdir \"$PWD\" && exec \"$0\" say -o x.wav Hello", {}, options), 1,
                  "the speech can't be written: x.wav: No such file or directory");
}

TEST(SayFailure, WhereNoSoundCanBePlayed) {
    expectOneLine(say({"Hello"}), 1,
                  "no sound can be played: no sound server answers (-o FILE writes a sound file)");
}

TEST(SayFallback, IsWrittenWhereNoSoundCanBePlayed) {
    const TemporaryFolder folder;
    support::ProcessOptions options = bareOptions();
    options.folder = folder.path();
    const ProcessResult result = say({"--fallback", "sp ö.wav", "--events", "Hello world"}, options);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(result.output), "word 0 5 Hello\nword 6 5 world\nfinish true\n");
    EXPECT_EQ(result.errors, "No sound can be played here: the speech goes to sp ö.wav\n");
    const support::SoundFile file(folder / "sp ö.wav");
    EXPECT_GT(file.seconds(), 0.5);
    EXPECT_GT(support::rms(file.samples), 0.01);
}

TEST(SayFallback, IsThatOfTheEnvironmentWithoutAnother) {
    const TemporaryFolder folder;
    support::ProcessOptions options = bareOptions();
    options.folder = folder.path();
    options.environment["ZQMSPEECH_FALLBACK"] = "usual.wav";
    EXPECT_EQ(say({"Hello"}, options).errors, "No sound can be played here: the speech goes to usual.wav\n");
    EXPECT_TRUE(std::filesystem::remove(folder / "usual.wav"));
    EXPECT_EQ(say({"--fallback", "given.wav", "Hello"}, options).exitCode, 0);
    EXPECT_EQ(say({"-o", "output.wav", "Hello"}, options).exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "given.wav"));
    EXPECT_TRUE(std::filesystem::exists(folder / "output.wav"));
    EXPECT_FALSE(std::filesystem::exists(folder / "usual.wav"));
    options.environment["ZQMSPEECH_FALLBACK"] = "";
    expectOneLine(say({"Hello"}, options), 1, "no sound can be played");
}

TEST(SayFallback, ThatCannotBeWritten) {
    const TemporaryFolder folder;
    expectOneLine(say({"--fallback", folder.path().string(), "Hello"}), 1,
                  "no sound can be played: no sound server answers; and the speech can't be written: " +
                      folder.path().string() + ": Is a directory");
}

ProcessResult sayIn(const Installation& installation,
                    const support::ProcessOptions& options = bareOptions()) {
    return installation.run({"say", "-o", (installation.path() / "x.wav").string(), "Hello world"}, options);
}

TEST(SayInstallation, IsWhole) {
    const Installation whole({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so", "zqmspeech-engine"});
    const ProcessResult result = sayIn(whole);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(support::SoundFile(whole.path() / "x.wav").seconds(), 0.2);
}

TEST(SayInstallation, LacksThePlugin) {
    const Installation lacking({ZQM_PLATFORM_LIBRARY, "zqmspeech-engine"});
    expectOneLine(sayIn(lacking), 1,
                  "libZQMNSSpeech.so is missing: it is neither in " + lacking.path().string());
}

TEST(SayInstallation, HasADamagedPlugin) {
    const Installation damaged({ZQM_PLATFORM_LIBRARY, "zqmspeech-engine"});
    std::ofstream(damaged.path() / "libZQMNSSpeech.so") << "no library";
    expectOneLine(sayIn(damaged), 1, "libZQMNSSpeech.so");
}

TEST(SayInstallation, LacksTheEngine) {
    const Installation lacking({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    expectOneLine(sayIn(lacking), 1,
                  "there are no voices: the speech engine is missing, does not answer, or finds none");
}

// With an engine that misbehaves in this way.
struct EngineFault {
    const char* fault;
    const char* line; // a part of it
};
class SayWithABadEngine : public testing::TestWithParam<EngineFault> {};

TEST_P(SayWithABadEngine, FailsWithOneLine) {
    const Installation bad({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    std::filesystem::copy(ZQM_BAD_ENGINE_PATH, bad.path());
    support::ProcessOptions options = bareOptions();
    options.environment["ZQM_BAD_ENGINE"] = GetParam().fault;
    const ProcessResult result = sayIn(bad, options);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.signal, 0);
    expectOneLine(result, 1, GetParam().line);
    EXPECT_FALSE(std::filesystem::exists(bad.path() / "x.wav"));
}

constexpr const char* kNoVoices =
    "there are no voices: the speech engine is missing, does not answer, or finds none";
INSTANTIATE_TEST_SUITE_P(All, SayWithABadEngine,
                         testing::Values(EngineFault{"close at once", kNoVoices},
                                         EngineFault{"deaf", kNoVoices},
                                         EngineFault{"garbage for voices", kNoVoices},
                                         EngineFault{"end instead of voices", kNoVoices},
                                         EngineFault{"no voices", kNoVoices},
                                         EngineFault{"mute", "the speech can't be written: "},
                                         EngineFault{"die on request", "the speech can't be written: "},
                                         EngineFault{"garbage on request", "the speech can't be written: "},
                                         EngineFault{"refuse", "the speech can't be written: the reason"},
                                         EngineFault{"die", "the speech broke off: "},
                                         EngineFault{"abort", "the speech broke off: "},
                                         EngineFault{"garbage", "the speech broke off: "},
                                         EngineFault{"overlong", "the speech broke off: "},
                                         EngineFault{"unfinished line", "the speech broke off: "},
                                         EngineFault{"fail", "the speech broke off: the disk is full"}),
                         [](const auto& test) {
                             std::string name = test.param.fault;
                             std::ranges::replace(name, ' ', '_');
                             return name;
                         });

TEST(SayInstallation, LacksThePlatformLibrary) {
    const Installation lacking({"libZQMNSSpeech.so", "zqmspeech-engine"});
    const ProcessResult result = sayIn(lacking);
    EXPECT_NE(result.exitCode, 0);
    EXPECT_EQ(result.signal, 0);
    EXPECT_THAT(result.errors, HasSubstr(ZQM_PLATFORM_LIBRARY));
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
}

} // namespace
} // namespace zqm::tests
