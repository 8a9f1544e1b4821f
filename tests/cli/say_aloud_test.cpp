// `zqmspeech say` through a real sound server: what is heard, progress on a terminal, signals, a lost
// engine.

#include "tests/cli/one_line.h"
#include "tests/cli/say.h"
#include "tests/cli/terminal.h"
#include "tests/support/eventually.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

namespace zqm::tests {
namespace {

using support::eventually;
using support::Process;
using support::ProcessResult;
using support::PulseServer;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::chrono::minutes kDeadline{5};
constexpr std::string_view kClear = "\r\x1b[K";

// It is spoken for minutes, so that a busy machine, too, has time to do something meanwhile.
std::string longText() {
    std::string text;
    for (int sentence = 0; sentence < 100; ++sentence) {
        text += "This is a rather long sentence, one word after the other. ";
    }
    return text;
}

class SayAloud : public testing::Test {
protected:
    support::ProcessOptions options() const {
        support::ProcessOptions options = bareOptions();
        for (const auto& [name, value] : server_.environment()) {
            options.environment[name] = value;
        }
        return options;
    }

    // With the server's environment, standard error being that terminal. Slowly: of words that a busy machine
    // is told of at once only one is shown.
    ProcessResult sayOnTerminal(const Terminal& terminal, const std::vector<std::string>& arguments,
                                std::string& written, const char* kind = "xterm") {
        support::ProcessOptions onTerminal = options();
        onTerminal.environment["TERM"] = kind;
        std::vector<std::string> all{"-c",
                                     "terminal=$1; shift; exec \"$0\" say --rate 50 \"$@\" 2> \"$terminal\"",
                                     ZQMSPEECH_PROGRAM, terminal.path()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Process process("/bin/sh", all, onTerminal);
        EXPECT_TRUE(eventually([&] {
            written += terminal.written();
            return !process.running();
        }));
        written += terminal.written();
        return process.result();
    }

    PulseServer server_;
};

TEST_F(SayAloud, IsHeard) {
    const support::MonitorRecording recording(server_);
    const ProcessResult result = say({"--events", "Hello world"}, options());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(result.output), "word 0 5 Hello\nword 6 5 world\nfinish true\n");
    EXPECT_EQ(result.errors, "");
    ASSERT_TRUE(recording.catchUp());
    EXPECT_GT(support::rms(recording.samples()), 0.001);
}

TEST_F(SayAloud, ADeviceIsPlayedOn) {
    ASSERT_TRUE(
        support::runProcess("pactl", {"load-module", "module-null-sink", "sink_name=second"}, options())
            .succeeded());
    const support::MonitorRecording recording(server_);
    EXPECT_EQ(say({"--device", "second", "Hello world"}, options()).exitCode, 0);
    ASSERT_TRUE(recording.catchUp());
    EXPECT_EQ(support::rms(recording.samples()), 0) << "the other device sounds";
    EXPECT_EQ(say({"--device", "zqm", "Hello world"}, options()).exitCode, 0);
    ASSERT_TRUE(recording.catchUp());
    EXPECT_GT(support::rms(recording.samples()), 0.001);
    const ProcessResult list = say({"--devices"}, options());
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_THAT(list.output, testing::MatchesRegex("zqm  [^\n]+\nsecond  [^\n]+\n"));
}

TEST_F(SayAloud, AnUnknownDeviceIsSaid) {
    const support::TemporaryFolder folder;
    expectOneLine(say({"--device", "nobody", "--fallback", (folder / "x.wav").string(), "Hello"}, options()),
                  1, "there is no sound device \"nobody\" (there are: zqm)");
    EXPECT_FALSE(exists(folder / "x.wav"));
}

TEST(SayDevices, AreUnknownWithoutASoundServer) {
    expectOneLine(say({"--devices"}), 1, "no sound server answers");
    expectOneLine(say({"--device", "x", "Hello"}), 1, "no sound can be played: no sound server answers");
}

TEST_F(SayAloud, TheFallbackIsNotNeeded) {
    const support::TemporaryFolder folder;
    const ProcessResult result = say({"--fallback", (folder / "x.wav").string(), "Hello"}, options());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_FALSE(exists(folder / "x.wav"));
}

std::vector<std::string> frames(const std::string& written) {
    std::vector<std::string> all;
    for (std::size_t begin = 0; (begin = written.find(kClear, begin)) != std::string::npos;) {
        begin += kClear.size();
        all.push_back(written.substr(begin, written.find('\r', begin) - begin));
    }
    return all;
}

TEST_F(SayAloud, OnATerminalItsWordIsHighlightedAboveABar) {
    const Terminal terminal(40);
    std::string written;
    const ProcessResult result =
        sayOnTerminal(terminal, {"One two", "Donaudampfschifffahrtsgesellschaft", "四 five"}, written);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(written,
                StartsWith("\r\x1b[K\x1b[7mOne\x1b[27m two\r\n\r\x1b[KDonaudampfschifffahrtsgesellschaft "
                           "四\r\n\r\x1b[Kfive\r\n\r\x1b[K["));
    EXPECT_THAT(written, HasSubstr("\r\x1b[K\x1b[7mDonaudampfschifffahrtsgesellschaft\x1b[27m 四\r\n"));
    EXPECT_THAT(written, HasSubstr("\x1b[7mfive\x1b[27m\r\n"));
    EXPECT_THAT(written, HasSubstr("] 100%  "));
    EXPECT_THAT(written, EndsWith("\x1b[3A\r\x1b[K\x1b[J"));
}

TEST_F(SayAloud, OnAFlatTerminalALineIsRedrawn) {
    const Terminal terminal(16);
    terminal.resize(16, 2);
    std::string written;
    const ProcessResult result =
        sayOnTerminal(terminal, {"One two", "Donaudampfschifffahrtsgesellschaft", "四 five"}, written);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(written, StartsWith(kClear));
    EXPECT_THAT(written, EndsWith(kClear));
    EXPECT_EQ(written.find('\n'), std::string::npos);
    const std::vector<std::string> shown = frames(written);
    ASSERT_GE(shown.size(), 4U);
    EXPECT_THAT(shown.front(), testing::MatchesRegex(" +[0-9]+%  One"));
    EXPECT_THAT(shown, testing::Contains(EndsWith("%  Donaudamp")));
    EXPECT_THAT(shown, testing::Contains("100%  five"));
    EXPECT_EQ(shown.back(), "");
}

TEST_F(SayAloud, TheViewStandsBesideEventsInAPipe) {
    const Terminal terminal(80);
    std::string written;
    const ProcessResult result = sayOnTerminal(terminal, {"--events", "Hello world"}, written);
    EXPECT_EQ(withoutTimes(result.output), "word 0 5 Hello\nword 6 5 world\nfinish true\n");
    EXPECT_THAT(written, HasSubstr("Hello \x1b[7mworld\x1b[27m\r\n"));
}

TEST_F(SayAloud, TheViewGivesWayToEventsOnTheSameTerminal) {
    const Terminal terminal(80);
    support::ProcessOptions onTerminal = options();
    onTerminal.environment["TERM"] = "xterm";
    const ProcessResult result = support::runProcess(
        "/bin/sh",
        {"-c", "exec \"$0\" say --events Hello world > \"$1\" 2>&1", ZQMSPEECH_PROGRAM, terminal.path()},
        onTerminal);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(terminal.written()), "word 0 5 Hello\r\nword 6 5 world\r\nfinish true\r\n");
}

TEST_F(SayAloud, NoViewOnADumbTerminal) {
    const Terminal terminal(80);
    std::string written;
    EXPECT_EQ(sayOnTerminal(terminal, {"Hello world"}, written, "dumb").exitCode, 0);
    EXPECT_EQ(written, "");
}

// The engine of a process that speaks; the one that only told its voices may still be ending.
std::optional<pid_t> engineOf(const Process& process) {
    std::vector<pid_t> engines;
    const bool isOne = eventually([&] {
        engines = support::childrenOf(process.pid());
        std::erase_if(engines, [](pid_t engine) { return !support::isAlive(engine); });
        return engines.size() == 1;
    });
    return isOne ? std::optional(engines.front()) : std::nullopt;
}

// Speaks, and sends the signal as soon as the first word has come.
class SaySignal : public SayAloud, public testing::WithParamInterface<int> {};

TEST_P(SaySignal, StopsTheSpeech) {
    const Process process(ZQMSPEECH_PROGRAM, sayArguments({"--events", longText()}), options());
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    const std::optional<pid_t> engine = engineOf(process);
    ASSERT_TRUE(engine);
    process.signal(GetParam());
    ASSERT_TRUE(process.waitFor(kDeadline));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 128 + GetParam());
    EXPECT_EQ(result.signal, 0);
    EXPECT_THAT(withoutTimes(result.output), StartsWith("word 0 4 This\n"));
    EXPECT_THAT(withoutTimes(result.output), EndsWith("finish false\n"));
    EXPECT_EQ(result.output.find("word " + std::to_string(longText().rfind("other"))), std::string::npos)
        << "it was spoken to the end";
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(eventually([&] { return !support::isAlive(*engine); }));
}

INSTANTIATE_TEST_SUITE_P(All, SaySignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(SayAloud, AnIgnoredSignalStaysIgnored) {
    const Process process(
        "/bin/sh", {"-c", "trap '' INT; exec \"$0\" say --events One two three four", ZQMSPEECH_PROGRAM},
        options());
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    process.signal(SIGINT);
    ASSERT_TRUE(process.waitFor(kDeadline));
    EXPECT_EQ(process.result().exitCode, 0);
    EXPECT_THAT(withoutTimes(process.result().output), EndsWith("finish true\n"));
}

TEST_F(SayAloud, ALostEngineIsSaid) {
    const Process process(ZQMSPEECH_PROGRAM, sayArguments({"--events", longText()}), options());
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    const std::optional<pid_t> engine = engineOf(process);
    ASSERT_TRUE(engine);
    ASSERT_EQ(kill(*engine, SIGKILL), 0);
    ASSERT_TRUE(process.waitFor(kDeadline));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(withoutTimes(result.output), EndsWith("finish false\n"));
    EXPECT_EQ(result.errors, "zqmspeech: the speech broke off: the speech engine ended unexpectedly\n");
}

TEST_F(SayAloud, ALostSoundServerIsSaid) {
    const Process process(ZQMSPEECH_PROGRAM, sayArguments({"--events", longText()}), options());
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    server_.kill();
    ASSERT_TRUE(process.waitFor(kDeadline));
    EXPECT_EQ(process.result().exitCode, 1);
    EXPECT_EQ(process.result().errors, "zqmspeech: the speech broke off: the sound server is gone\n");
}

// Ten megabytes would be spoken for days: they are taken, begun, and stopped by a signal, which leaves a
// valid file behind.
TEST(SayMuch, TenMegabytesAreBegunAndStopped) {
    const support::TemporaryFolder folder;
    const std::string output = (folder / "x.wav").string();
    support::ProcessOptions options = bareOptions();
    while (options.input.size() < 10'000'000) {
        options.input += "many words and many more ";
    }
    const Process process(ZQMSPEECH_PROGRAM, sayArguments({"--events", "-o", output}), options);
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    process.signal(SIGINT);
    ASSERT_TRUE(process.waitFor(kDeadline));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_THAT(withoutTimes(result.output), StartsWith("word 0 4 many\n"));
    EXPECT_THAT(withoutTimes(result.output), EndsWith("finish false\n"));
    EXPECT_EQ(result.errors, "");
    const support::SoundFile file(output);
    EXPECT_GT(file.seconds(), 0.1);
    EXPECT_GT(support::rms(file.samples), 0.001);
}

// In one piece, as texts with commands are: an engine that ends between two of them is replaced.
TEST(SayMuch, ALostEngineLeavesNoFile) {
    const support::TemporaryFolder folder;
    support::ProcessOptions options = bareOptions();
    options.input = "[[rate 200]] ";
    while (options.input.size() < 1'000'000) {
        options.input += "many words and many more ";
    }
    const std::string output = (folder / "x.wav").string();
    const Process process(ZQMSPEECH_PROGRAM, sayArguments({"--events", "-o", output}), options);
    ASSERT_TRUE(eventually([&] { return process.result().output.find("word") != std::string::npos; }));
    const std::optional<pid_t> engine = engineOf(process);
    ASSERT_TRUE(engine);
    ASSERT_EQ(kill(*engine, SIGKILL), 0);
    ASSERT_TRUE(process.waitFor(kDeadline));
    EXPECT_EQ(process.result().exitCode, 1);
    EXPECT_EQ(process.result().errors,
              "zqmspeech: the speech broke off: the speech engine ended unexpectedly; " + output +
                  " is not written\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace zqm::tests
