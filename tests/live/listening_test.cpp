// Spoken commands as they are heard: a voice speaks into a sound server's null sink, the recognizer listens
// to its monitor, and the host program is told.

#include "tests/live/delays.h"
#include "tests/live/speaker.h"
#include "tests/support/command_listener.h"
#include "tests/support/log_lines.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/played_file.h"
#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/spoken_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace zqm::live {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr host::Seconds kPatience{120};
constexpr int kMostPlays = 20; // of a command until it is heard

const std::vector<std::string> kCommands = {"open the window", "turn left",    "find my keys",
                                            "channel 5",       "read my mail", "answer the telephone"};

// Each command once, between sentences and other sounds that are none.
constexpr const char* kNoise = "(noise)";
const std::vector<std::string> kScript = {
    "open the window",     "My sister bought seven green apples.",
    "turn left",           "Nobody could remember the name of the village.",
    "find my keys",        kNoise,
    "channel 5",           "The river was frozen for most of December.",
    "read my mail",        "He had always wanted to become a teacher.",
    "answer the telephone"};

constexpr double kPause = 1.2; // seconds between two of these; longer than any pause in them

support::Samples noise(int rate) {
    constexpr int kSeconds = 3;
    constexpr float kLoudness = 0.05F;
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> level(-kLoudness, kLoudness);
    support::Samples samples(static_cast<std::size_t>(kSeconds * rate));
    std::ranges::generate(samples, [&] { return level(generator); });
    return samples;
}

bool isCommand(const std::string& text) {
    return std::ranges::find(kCommands, text) != kCommands.end();
}

class Listening : public testing::Test {
protected:
    Listening() { loadPlugin(runtime_); }
    void TearDown() override { EXPECT_TRUE(runtime_.reports().empty()); }

    std::filesystem::path spoken(const std::string& voice, const std::string& text) {
        const std::filesystem::path file = folder_ / (std::to_string(++files_) + ".wav");
        support::writeSpokenFile(ZQMSPEECH_PROGRAM, voice, text, file);
        return file;
    }

    // The script in one file, so that no pause depends on how busy the machine is.
    std::filesystem::path spokenScript(const std::string& voice) {
        support::Samples all;
        int rate = 0;
        for (const std::string& text : kScript) {
            support::Samples samples;
            if (text == kNoise) {
                samples = noise(rate);
            } else {
                const support::SoundFile file(spoken(voice, text));
                rate = file.rate;
                samples = file.samples;
            }
            all.insert(all.end(), samples.begin(), samples.end());
            all.resize(all.size() + static_cast<std::size_t>(kPause * rate));
        }
        const std::filesystem::path file = folder_ / "script.wav";
        support::writeSoundFile(file, all, rate);
        return file;
    }

    bool waitFor(const std::function<bool()>& condition) { return runtime_.runUntil(condition, kPatience); }

    void play(const support::PulseServer& server, const std::filesystem::path& file) {
        const support::PlayedFile played(server, file);
        EXPECT_TRUE(waitFor([&] { return played.isOver(); }));
    }

    // Plays a command until it is heard: for when nobody knows from when on it can be.
    bool playUntilHeard(support::CommandListener& listener, const support::PulseServer& server,
                        const std::filesystem::path& file) {
        const std::size_t before = listener.commands().size();
        const auto isHeard = [&] { return listener.commands().size() > before; };
        for (int time = 0; time < kMostPlays && !isHeard(); ++time) {
            play(server, file);
            runtime_.runUntil(isHeard, host::Seconds(3));
        }
        return isHeard();
    }

    support::TemporaryFolder folder_;
    support::ScopedEnvironment user_{"XDG_RUNTIME_DIR", folder_.path().string()}; // and nobody else's
    host::Runtime runtime_;

private:
    int files_ = 0;
};

class ListeningTo : public Listening, public testing::WithParamInterface<const char*> {};

void printDelays(const std::string& voice, const support::CommandListener& listener,
                 const support::MonitorRecording& recording) {
    const std::vector<support::SoundedPart> parts =
        support::soundedParts(recording.samples(), static_cast<std::size_t>(kPause / 2 * recording.rate()));
    DelayTable table("command event minus last sound");
    std::vector<double> delays;
    for (const support::CommandListener::Answer& answer : listener.answers()) {
        const auto next = std::ranges::find_if(parts, [&](const support::SoundedPart& part) {
            return recording.timeOf(part.end) > answer.time;
        });
        if (!answer.command.empty() && next != parts.begin()) {
            delays.push_back(answer.time - recording.timeOf((next - 1)->end - 1));
        }
    }
    table.add(voice, delays);
    std::cout << table.text();
}

TEST_P(ListeningTo, AVoiceHearsItsCommandsAndNothingElseLiveAndFromAFile) {
    const std::filesystem::path script = spokenScript(GetParam());
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    support::CommandListener listener(runtime_, kCommands);

    const support::MonitorRecording recording(server);
    listener.start();
    ASSERT_TRUE(waitFor([&] { return listener.timesBegan() == 1; }));
    play(server, script);
    // The last of the script is a command, so that nothing is still to come when that was heard.
    ASSERT_TRUE(waitFor([&] {
        return !listener.answers().empty() && listener.answers().back().command == kScript.back();
    })) << testing::PrintToString(listener.commands());
    listener.stop();
    ASSERT_TRUE(recording.catchUp());
    printDelays(GetParam(), listener, recording);
    std::vector<std::string> wanted = kScript;
    std::erase_if(wanted, [](const std::string& text) { return !isCommand(text); });
    // None that wasn't said; a busy machine may lose a piece of the sound, and one command with it.
    EXPECT_THAT(listener.commands(), testing::IsSubsetOf(wanted));
    EXPECT_GE(listener.commands().size() + 1, wanted.size());
    const bool isWhole = listener.commands() == wanted;

    std::vector<std::string> live;
    for (const auto& answer : listener.answers()) {
        live.push_back(answer.command);
    }
    listener.forget();
    ZQMPlatformListenToFile(script.c_str());
    listener.start();
    ZQMPlatformListenToFile(nullptr);
    ASSERT_TRUE(waitFor([&] { return listener.timesEnded() == 1; }));
    std::vector<std::string> fromFile;
    for (const auto& answer : listener.answers()) {
        fromFile.push_back(answer.command);
    }
    if (isWhole) {
        EXPECT_EQ(fromFile, live);
    }
    std::erase(fromFile, "");
    EXPECT_EQ(fromFile, wanted);
}

INSTANTIATE_TEST_SUITE_P(Voices, ListeningTo, testing::Values("flite slt", "espeak-ng gmw/en-US"));

TEST_F(Listening, GoesOnWithAServerThatWasKilledAndStartedAgain) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    const std::filesystem::path command = spoken("flite slt", "open the window");
    support::CommandListener listener(runtime_, kCommands);
    listener.start();
    ASSERT_TRUE(waitFor([&] { return listener.timesBegan() == 1; }));
    ASSERT_TRUE(playUntilHeard(listener, server, command));
    server.kill();
    ASSERT_TRUE(waitFor([&] { return !listener.failures().empty(); }));
    server.restart();
    ASSERT_TRUE(waitFor([&] { return listener.timesBegan() == 2; }));
    EXPECT_TRUE(playUntilHeard(listener, server, command));
}

TEST_F(Listening, SaysOnceThatThereIsNoServerAndUsesOneThatComes) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    server.kill();
    support::CommandListener listener(runtime_, kCommands);
    const std::vector<std::string> lines = support::logged([&] {
        listener.start();
        EXPECT_TRUE(waitFor([&] { return !listener.failures().empty(); }));
        runtime_.runFor(host::Seconds(5)); // in which it is tried again
    });
    ASSERT_EQ(listener.failures().size(), 1U);
    EXPECT_THAT(lines, ElementsAre("Nothing can be heard: " + listener.failures().front()));
    EXPECT_EQ(listener.timesBegan(), 0U);
    server.restart();
    ASSERT_TRUE(waitFor([&] { return listener.timesBegan() == 1; }));
    EXPECT_TRUE(playUntilHeard(listener, server, spoken("flite slt", "open the window")));
}

// By which an engine may be behind what it hears, where much else goes on.
#ifdef __SANITIZE_ADDRESS__
constexpr host::Seconds kMostLag{20};
#else
constexpr host::Seconds kMostLag{3};
#endif

class LosingListening : public Listening, public testing::WithParamInterface<int> {};

TEST_P(LosingListening, GoesOnWithAnotherEngine) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    const std::filesystem::path command = spoken("flite slt", "open the window");
    support::CommandListener listener(runtime_, kCommands);
    listener.start();
    ASSERT_TRUE(playUntilHeard(listener, server, command));
    const std::vector<pid_t> engines = support::childrenThatRun("zqmspeech-engine");
    ASSERT_EQ(engines.size(), 1U);
    const std::vector<std::string> lines = support::logged([&] {
        kill(engines.front(), GetParam());
        EXPECT_TRUE(waitFor([&] { return listener.timesBegan() == 2; }));
    });
    EXPECT_EQ(lines.size(), 1U) << testing::PrintToString(lines);
    EXPECT_TRUE(playUntilHeard(listener, server, command));
    EXPECT_THAT(listener.failures(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, LosingListening, testing::Values(SIGKILL, SIGSTOP),
                         [](const auto& each) { return each.param == SIGKILL ? "Killed" : "Stopped"; });

TEST_F(Listening, IsForOneProgramAloneWhileItBlocksOthers) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    const std::filesystem::path first = spoken("flite slt", "open the window");
    const std::filesystem::path second = spoken("flite slt", "read my mail");
    support::CommandListener listener(runtime_, kCommands);
    listener.object().set("blocksOtherRecognizers", true);
    listener.start();
    ASSERT_TRUE(waitFor([&] { return listener.timesBegan() == 1; }));
    std::vector<std::string> arguments = {"listen", "--json", "--"};
    arguments.insert(arguments.end(), kCommands.begin(), kCommands.end());
    const support::Process other(ZQMSPEECH_PROGRAM, arguments);
    const auto isTold = [&](const std::string& what) {
        return other.result().output.find('"' + what + '"') != std::string::npos;
    };
    ASSERT_TRUE(waitFor([&] { return isTold("began"); }));
    ASSERT_TRUE(playUntilHeard(listener, server, first));
    // What the other one has of it still to judge, it judges as blocked.
    runtime_.runUntil([] { return false; }, kMostLag);

    listener.object().set("blocksOtherRecognizers", false);
    const auto isSecondTold = [&] { return isTold("read my mail"); };
    for (int time = 0; time < kMostPlays && !isSecondTold(); ++time) {
        play(server, second);
        runtime_.runUntil(isSecondTold, host::Seconds(3));
    }
    EXPECT_TRUE(isSecondTold());
    EXPECT_FALSE(isTold("open the window"));
    EXPECT_FALSE(isTold("rejected"));
    // Both hear it, and either may be told first.
    EXPECT_TRUE(waitFor([&] { return listener.commands().back() == "read my mail"; }));
}

} // namespace
} // namespace zqm::live
