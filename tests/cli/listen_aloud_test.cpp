// `zqmspeech listen` at a real sound server: what it hears, the meter on a terminal, signals, the time, a
// reader who leaves, a lost engine.

#include "tests/cli/listen.h"
#include "tests/cli/terminal.h"
#include "tests/support/eventually.h"
#include "tests/support/played_file.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::eventually;
using support::Process;
using support::ProcessResult;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::chrono::minutes kDeadline{5};
constexpr const char* kBegan = "{\"event\":\"began\"}\n";
constexpr std::string_view kClear = "\r\x1b[K";

bool hasBegun(const Process& process) {
    return eventually([&] { return process.result().output.find(kBegan) != std::string::npos; });
}

class ListenAloud : public testing::Test {
protected:
    support::ProcessOptions options() const {
        support::ProcessOptions options = bareOptions();
        for (const auto& [name, value] : server_.environment()) {
            options.environment[name] = value;
        }
        return options;
    }

    // Says the phrase to the server again and again, of which a busy machine may lose a piece, until that is
    // so.
    bool sayUntil(const std::string& phrase, const std::function<bool()>& condition) {
        support::writeSpokenPhrases({phrase}, folder_ / "said.wav");
        return eventually([&] {
            const support::PlayedFile played(server_, folder_ / "said.wav");
            bool isSo = false;
            EXPECT_TRUE(eventually([&] { return (isSo = condition()) || played.isOver(); }));
            return isSo;
        });
    }

    support::PulseServer server_;
    support::TemporaryFolder folder_;
};

TEST_F(ListenAloud, PrintsWhatItHears) {
    const Process process(ZQMSPEECH_PROGRAM, listenArguments({"--json", "--once", "stop", "Open the door"}),
                          options());
    ASSERT_TRUE(hasBegun(process));
    EXPECT_TRUE(sayUntil("open the door", [&] { return !process.running(); }));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output,
                testing::MatchesRegex("\\{\"event\":\"began\"\\}\n"
                                      "(\\{\"event\":\"rejected\",\"begin\":[0-9.]+,\"end\":[0-9.]+\\}\n)*"
                                      "\\{\"event\":\"recognized\",\"command\":\"Open the "
                                      "door\",\"index\":1,\"begin\":[0-9.]+,\"end\":[0-9.]+\\}\n"
                                      "\\{\"event\":\"ended\"\\}\n"));
    EXPECT_EQ(result.errors, "");
}

TEST_F(ListenAloud, EndsWithItsTime) {
    const ProcessResult result = listen({"--json", "--timeout", "0.5", "stop"}, options());
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.output, EndsWith("{\"event\":\"ended\"}\n"));
    EXPECT_EQ(result.errors, "");
}

class ListenSignal : public ListenAloud, public testing::WithParamInterface<int> {};

TEST_P(ListenSignal, EndsIt) {
    const Process process(ZQMSPEECH_PROGRAM, listenArguments({"--json", "stop"}), options());
    ASSERT_TRUE(hasBegun(process));
    const std::vector<pid_t> engines = support::childrenOf(process.pid());
    EXPECT_EQ(engines.size(), 1U);
    process.signal(GetParam());
    ASSERT_TRUE(process.waitFor(kDeadline));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 128 + GetParam());
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.output, std::string(kBegan) + "{\"event\":\"ended\"}\n");
    EXPECT_EQ(result.errors, "");
    for (const pid_t engine : engines) {
        EXPECT_TRUE(eventually([engine] { return !support::isAlive(engine); }));
    }
}

INSTANTIATE_TEST_SUITE_P(All, ListenSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

// It says nothing more, so that only looking shows that nobody would read it.
TEST_F(ListenAloud, EndsWithItsReader) {
    const ProcessResult result =
        sayInShell("{ \"$0\" listen --json stop; echo $? >&2; } | head -n 1", {}, options());
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.output, kBegan);
    EXPECT_EQ(result.errors, "zqmspeech: can't write to standard output\n1\n");
}

TEST_F(ListenAloud, EndsWithoutAMicrophoneAnyMore) {
    const Process process(ZQMSPEECH_PROGRAM, listenArguments({"--json", "stop"}), options());
    ASSERT_TRUE(hasBegun(process));
    server_.kill();
    ASSERT_TRUE(process.waitFor(kDeadline));
    EXPECT_EQ(process.result().exitCode, 1);
    EXPECT_THAT(
        process.result().output,
        StartsWith(std::string(kBegan) + "{\"event\":\"failed\",\"reason\":\"nothing can be heard: "));
    EXPECT_THAT(process.result().errors, StartsWith("zqmspeech: nothing can be heard: "));
}

TEST_F(ListenAloud, GoesOnWithAnotherEngine) {
    const Process process(ZQMSPEECH_PROGRAM, listenArguments({"--json", "--once", "stop", "open the door"}),
                          options());
    ASSERT_TRUE(hasBegun(process));
    const std::vector<pid_t> engines = support::childrenOf(process.pid());
    ASSERT_EQ(engines.size(), 1U);
    ASSERT_EQ(kill(engines.front(), SIGKILL), 0);
    ASSERT_TRUE(eventually([&] {
        return process.result().output.find(std::string(kBegan) + kBegan) != std::string::npos;
    })) << process.result().output;
    EXPECT_TRUE(sayUntil("open the door", [&] { return !process.running(); }));
    EXPECT_EQ(process.result().exitCode, 0);
    EXPECT_THAT(process.result().output, HasSubstr("\"open the door\""));
    EXPECT_THAT(process.result().errors, HasSubstr("another one goes on listening"));
}

// For minutes.
void writeTone(const std::filesystem::path& file) {
    constexpr int kRate = 16000;
    constexpr std::size_t kSeconds = 300;
    constexpr std::size_t kHalfPeriod = 20;
    support::Samples samples(kSeconds * kRate);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        samples[index] = index / kHalfPeriod % 2 == 0 ? 0.1F : -0.1F;
    }
    support::writeSoundFile(file, samples, kRate);
}

// Its standard error is a terminal, and with `both` its standard output as well.
class ListenOnTerminal : public ListenAloud {
protected:
    std::string written(unsigned short columns, const std::string& name, const std::string& value,
                        bool both = false) {
        const Terminal terminal(columns);
        support::ProcessOptions onTerminal = options();
        onTerminal.environment["TERM"] = "xterm";
        onTerminal.environment["NO_COLOR"] = std::nullopt;
        onTerminal.environment[name] = value;
        const Process process(
            "/bin/sh",
            {"-c",
             std::string("exec \"$0\" listen --once stop \"open the door\" 2> \"$1\"") + (both ? " >&2" : ""),
             ZQMSPEECH_PROGRAM, terminal.path()},
            onTerminal);
        std::string text;
        const auto isWritten = [&](std::string_view part) {
            return eventually([&] {
                text += terminal.written();
                return text.find(part) != std::string::npos || !process.running();
            });
        };
        // Without a line to redraw nothing tells that it listens.
        const bool hasMeter = onTerminal.environment["TERM"] != "dumb";
        const bool hasBar = hasMeter && columns > 12;
        EXPECT_TRUE(!hasMeter || isWritten(hasBar ? "listening" : "list"));
        if (hasBar) { // a phrase may be over before it is shown
            writeTone(folder_ / "tone.wav");
            const support::PlayedFile tone(server_, folder_ / "tone.wav");
            EXPECT_TRUE(isWritten("#"));
        }
        EXPECT_TRUE(sayUntil("open the door", [&] {
            text += terminal.written();
            return !process.running();
        }));
        text += terminal.written();
        EXPECT_EQ(process.result().exitCode, 0);
        EXPECT_EQ(process.result().output, both ? "" : "open the door\n");
        return text;
    }
};

std::vector<std::string> frames(const std::string& written) {
    std::vector<std::string> all;
    for (std::size_t begin = 0; (begin = written.find(kClear, begin)) != std::string::npos;) {
        begin += kClear.size();
        all.push_back(written.substr(begin, written.find('\r', begin) - begin));
    }
    return all;
}

TEST_F(ListenOnTerminal, AMeterIsOneLineRedrawn) {
    const std::string text = written(80, "NO_COLOR", "1");
    EXPECT_THAT(text, StartsWith(kClear));
    EXPECT_THAT(text, EndsWith(kClear));
    EXPECT_EQ(text.find('\n'), std::string::npos);
    const std::vector<std::string> shown = frames(text);
    EXPECT_EQ(shown.front(), "[------------------------------]  starting");
    EXPECT_THAT(shown, testing::Contains("[------------------------------]  listening"));
    EXPECT_THAT(shown, testing::Contains(testing::MatchesRegex("\\[#+-*\\]  listening")));
    EXPECT_THAT(shown, testing::Contains(EndsWith("]  listening; last: open the door")));
    EXPECT_EQ(shown.back(), "");
}

TEST_F(ListenOnTerminal, AMeterFitsANarrowOne) {
    const std::vector<std::string> shown = frames(written(25, "NO_COLOR", "1"));
    EXPECT_EQ(shown.front(), "[----------]  starting");
    EXPECT_THAT(shown, testing::Contains(EndsWith("]  listening;")));
    for (const std::string& frame : shown) {
        EXPECT_LT(frame.size(), 25U) << frame;
    }
}

TEST_F(ListenOnTerminal, ATinyOneShowsTheStateAlone) {
    const std::vector<std::string> shown = frames(written(6, "NO_COLOR", "1"));
    EXPECT_EQ(shown.front(), "start");
    EXPECT_THAT(shown, testing::Contains("liste"));
}

TEST_F(ListenOnTerminal, LoudnessHasColours) {
    EXPECT_THAT(written(80, "NO_COLOR", ""), HasSubstr("[\x1b[32m#"));
}

TEST_F(ListenOnTerminal, NoMeterOnADumbOne) {
    EXPECT_EQ(written(80, "TERM", "dumb"), "");
}

TEST_F(ListenOnTerminal, CommandsStandOnLinesOfTheirOwn) {
    EXPECT_THAT(written(80, "NO_COLOR", "1", true), HasSubstr(std::string(kClear) + "open the door\r\n"));
}

} // namespace
} // namespace zqm::tests
