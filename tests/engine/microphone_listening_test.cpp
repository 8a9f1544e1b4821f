#include "tests/engine/engine_process.h"
#include "tests/engine/listening_files.h"
#include "tests/engine/other_host.h"

#include "tests/support/played_file.h"
#include "tests/support/process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <string>
#include <thread>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::vector<std::string> kCommands{"open the door", kRecordedCommand, "stop"};
constexpr std::uint64_t kRecorded = 1; // its place among those

std::filesystem::path writeRecording(const TemporaryFolder& folder, int times = 1) {
    std::filesystem::path path = folder.path() / ("recording" + std::to_string(times) + ".wav");
    writeSoundFile(path, repeated(recordedCommand(), times), {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16000, 1});
    return path;
}

void setCommands(EngineProcess& engine, std::uint64_t list = 1) {
    engine.send(SetCommands{list, kCommands});
    const auto set = engine.nextOf<CommandsSet>();
    ASSERT_TRUE(set && set->list == list);
}

// Until it captures.
void begin(EngineProcess& engine, std::uint64_t session, bool reportsLevel = false) {
    engine.send(Listen{session, reportsLevel, false});
    const auto state = engine.nextOf<Listening>();
    ASSERT_TRUE(state);
    ASSERT_EQ(*state, (Listening{session, ""}));
}

// What was asked before has been done.
void sync(EngineProcess& engine) {
    engine.send(ListVoices{});
    ASSERT_TRUE(engine.nextOf<Voices>());
}

void listenToFile(EngineProcess& engine, std::uint64_t session, const std::filesystem::path& path) {
    std::vector<Descriptor> descriptors;
    descriptors.emplace_back(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    engine.send(Listen{session, false, true}, std::move(descriptors));
}

struct Phrases {
    int heard = 0;
    int rejected = 0;
    bool operator==(const Phrases&) const = default;
};

// What it hears in a file.
Phrases phrasesIn(EngineProcess& engine, std::uint64_t session, const std::filesystem::path& path) {
    listenToFile(engine, session, path);
    Phrases phrases;
    while (auto event = engine.next()) {
        phrases.heard += std::holds_alternative<Heard>(*event) ? 1 : 0;
        phrases.rejected += std::holds_alternative<Rejected>(*event) ? 1 : 0;
        if (std::holds_alternative<EndOfInput>(*event)) {
            return phrases;
        }
    }
    throw std::runtime_error("the engine ended");
}

class MicrophoneListening : public testing::Test {
protected:
    ProcessResult pactl(const std::vector<std::string>& arguments) const {
        ProcessResult result = runProcess("pactl", arguments, {.environment = server.environment()});
        EXPECT_TRUE(result.succeeded()) << result.errors;
        return result;
    }

    // Who records, one a line.
    std::string recordings() const { return pactl({"list", "short", "source-outputs"}).output; }

    static bool becomes(const std::function<bool()>& condition) {
        for (int tries = 0; tries < EngineProcess::kDeadlineMilliseconds / 100; ++tries) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return false;
    }

    void expectToHearTheRecording(std::uint64_t session) {
        const PlayedFile player(server, recording);
        const auto heard = engine.nextOf<Heard>();
        ASSERT_TRUE(heard);
        EXPECT_EQ(heard->session, session);
        EXPECT_EQ(heard->command, kRecorded);
    }

    // The next state; whatever else comes meanwhile.
    Listening nextState() {
        const auto state = engine.nextOf<Listening>();
        return state ? *state : Listening{};
    }

    // The reasons that are told until it works.
    std::vector<std::string> reasonsUntilItWorks() {
        std::vector<std::string> reasons;
        while (const auto state = engine.nextOf<Listening>()) {
            if (state->error.empty()) {
                break;
            }
            reasons.push_back(state->error);
        }
        return reasons;
    }

    TemporaryFolder runtime;
    ScopedEnvironment user{"XDG_RUNTIME_DIR", runtime.path().string()};
    TemporaryFolder folder;
    std::filesystem::path recording = writeRecording(folder);
    PulseServer server;
    EngineProcess engine{server.environment()};
};

TEST_F(MicrophoneListening, hearsTheCommand) {
    setCommands(engine);
    begin(engine, 1);
    expectToHearTheRecording(1);
    EXPECT_EQ(engine.errors(), "");
}

TEST_F(MicrophoneListening, recordsOnlyWhileItListens) {
    setCommands(engine);
    EXPECT_EQ(recordings(), "");
    begin(engine, 1);
    EXPECT_NE(recordings(), "");
    engine.send(StopListening{1});
    EXPECT_TRUE(becomes([&] { return recordings().empty(); }));
    const std::string name = "application.name = \"zqmspeech\"";
    EXPECT_TRUE(becomes([&] {
        return pactl({"list", "clients"}).output.find(name) == std::string::npos;
    })) << "the connection stays";
    begin(engine, 2);
    expectToHearTheRecording(2);
}

TEST_F(MicrophoneListening, tellsTheLevelWhenAsked) {
    begin(engine, 1, true);
    EXPECT_EQ(engine.nextOf<Level>(), (Level{1, -120}));
    const PlayedFile player(server, recording);
    while (const auto level = engine.nextOf<Level>()) {
        if (level->decibels > -30) {
            break;
        }
    }
}

TEST_F(MicrophoneListening, takesNewCommandsAfterThePhraseThatIsGoingOn) {
    setCommands(engine);
    begin(engine, 1, true);
    const PlayedFile player(server, writeRecording(folder, 2));
    for (int loud = 0; loud < 5;) {
        const auto level = engine.nextOf<Level>();
        ASSERT_TRUE(level);
        loud += level->decibels > -40 ? 1 : 0;
    }
    engine.send(SetCommands{2, {kRecordedCommand}});
    std::vector<Event> phrases;
    while (phrases.size() < 3) {
        const auto event = engine.next();
        ASSERT_TRUE(event);
        if (!std::holds_alternative<Level>(*event)) {
            phrases.push_back(*event);
        }
    }
    ASSERT_TRUE(std::holds_alternative<Heard>(phrases[0]));
    EXPECT_EQ(std::get<Heard>(phrases[0]).list, 1U);
    EXPECT_EQ(std::get<Heard>(phrases[0]).command, kRecorded);
    EXPECT_EQ(phrases[1], Event(CommandsSet{2, {}}));
    ASSERT_TRUE(std::holds_alternative<Heard>(phrases[2]));
    EXPECT_EQ(std::get<Heard>(phrases[2]).list, 2U);
    EXPECT_EQ(std::get<Heard>(phrases[2]).command, 0U);
}

TEST_F(MicrophoneListening, aNewSessionEndsTheOneBefore) {
    setCommands(engine);
    begin(engine, 1);
    begin(engine, 2);
    EXPECT_TRUE(becomes([&] {
        const std::string list = recordings();
        return std::count(list.begin(), list.end(), '\n') == 1;
    }));
    expectToHearTheRecording(2);
}

TEST_F(MicrophoneListening, goesOnWhileTheEngineSpeaks) {
    setCommands(engine);
    begin(engine, 1);
    engine.send(speak(1, "One."));
    EXPECT_THAT(engine.nextOf<Finished>(), testing::Optional(testing::FieldsAre(1U, true, "", testing::_)));
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, endsWithItsHost) {
    begin(engine, 1);
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 0);
    EXPECT_EQ(engine.errors(), "");
    EXPECT_TRUE(becomes([&] { return recordings().empty(); }));
}

// ---- what fails

TEST_F(MicrophoneListening, goesOnWhenTheServerIsBack) {
    setCommands(engine);
    begin(engine, 1);
    server.kill();
    EXPECT_EQ(nextState(), (Listening{1, "the sound server is gone", true}));
    EXPECT_EQ(nextState(), (Listening{1, "no sound server answers", true}));
    server.restart();
    EXPECT_THAT(reasonsUntilItWorks(), IsEmpty());
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, goesOnWhenTheServerAnswersAgain) {
    setCommands(engine);
    begin(engine, 1);
    server.freeze();
    EXPECT_EQ(nextState(), (Listening{1, "the microphone gives no sound"}));
    server.thaw();
    EXPECT_THAT(reasonsUntilItWorks(), IsEmpty());
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, goesOnWhenThereIsAMicrophoneAgain) {
    setCommands(engine);
    begin(engine, 1);
    pactl({"unload-module", "module-null-sink"});
    EXPECT_EQ(nextState(), (Listening{1, "the sound server ended the recording"}));
    EXPECT_EQ(nextState(), (Listening{1, "there is no microphone"}));
    pactl({"load-module", "module-null-sink", "sink_name=again"});
    EXPECT_THAT(reasonsUntilItWorks(), IsEmpty());
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, goesOnWithAnotherMicrophone) {
    setCommands(engine);
    pactl({"load-module", "module-null-sink", "sink_name=other"});
    pactl({"load-module", "module-rescue-streams"});
    begin(engine, 1);
    pactl({"set-default-sink", "other"});
    pactl({"set-default-source", "other.monitor"});
    const std::string index = recordings().substr(0, recordings().find('\t'));
    pactl({"move-source-output", index, "other.monitor"});
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, saysThatAMicrophoneIsSuspended) {
    setCommands(engine);
    begin(engine, 1);
    pactl({"suspend-sink", "zqm", "1"});
    EXPECT_EQ(nextState(), (Listening{1, "the microphone gives no sound"}));
    pactl({"suspend-sink", "zqm", "0"});
    EXPECT_THAT(reasonsUntilItWorks(), IsEmpty());
    expectToHearTheRecording(1);
}

TEST_F(MicrophoneListening, canBeStoppedWhileItFails) {
    setCommands(engine);
    begin(engine, 1);
    server.kill();
    EXPECT_EQ(nextState(), (Listening{1, "the sound server is gone", true}));
    engine.send(StopListening{1});
    sync(engine);
    server.restart();
    EXPECT_EQ(phrasesIn(engine, 2, recording), (Phrases{1, 0}));
}

TEST(MicrophoneListeningWithoutServer, saysSoOnce) {
    EngineProcess engine({{"PULSE_SERVER", ScopedPulseServer::unreachableAddress()}});
    engine.send(Listen{1, false, false});
    EXPECT_EQ(engine.nextOf<Listening>(), (Listening{1, "no sound server answers", true}));
    engine.send(Listen{2, false, false});
    EXPECT_EQ(engine.nextOf<Listening>(), (Listening{2, "no sound server answers", true}));
    // It doesn't keep the engine from anything else.
    const TemporaryFolder folder;
    setCommands(engine);
    EXPECT_EQ(phrasesIn(engine, 3, writeRecording(folder)), (Phrases{1, 0}));
}

// ---- several programs

class BlockingListening : public MicrophoneListening {
protected:
    // Has an engine be heard alone, by the microphone.
    static void block(EngineProcess& blocker) {
        blocker.send(BlockOthers{true});
        setCommands(blocker);
        begin(blocker, 1);
    }

    Phrases hear() { return phrasesIn(engine, ++session, recording); }

    void SetUp() override { setCommands(engine); }

    static constexpr Phrases kAll{1, 0};
    static constexpr Phrases kNothing{0, 0};

    std::uint64_t session = 100;
};

TEST_F(BlockingListening, isHeardAloneUntilItStops) {
    OtherHost other(server.environment());
    EXPECT_EQ(hear(), kAll);
    other.engine().send(BlockOthers{true});
    sync(other.engine());
    EXPECT_EQ(hear(), kAll) << "it doesn't listen yet";
    block(other.engine());
    EXPECT_EQ(hear(), kNothing);
    other.engine().send(StopListening{1});
    sync(other.engine());
    EXPECT_EQ(hear(), kAll);
}

TEST_F(BlockingListening, dropsWhatIsNoCommandToo) {
    OtherHost other(server.environment());
    block(other.engine());
    engine.send(SetCommands{2, {"open the door"}});
    ASSERT_TRUE(engine.nextOf<CommandsSet>());
    EXPECT_EQ(hear(), kNothing);
    other.engine().send(BlockOthers{false});
    sync(other.engine());
    EXPECT_EQ(hear(), (Phrases{0, 1}));
}

TEST_F(BlockingListening, canChangeWhileItListens) {
    OtherHost other(server.environment());
    setCommands(other.engine());
    begin(other.engine(), 1);
    EXPECT_EQ(hear(), kAll);
    other.engine().send(BlockOthers{true});
    sync(other.engine());
    EXPECT_EQ(hear(), kNothing);
    other.engine().send(BlockOthers{false});
    sync(other.engine());
    EXPECT_EQ(hear(), kAll);
}

TEST_F(BlockingListening, endsWithAKilledEngine) {
    OtherHost other(server.environment());
    block(other.engine());
    EXPECT_EQ(hear(), kNothing);
    ::kill(other.engine().pid(), SIGKILL);
    EXPECT_FALSE(other.engine().next());
    EXPECT_EQ(hear(), kAll);
}

TEST_F(BlockingListening, doesNotConcernTheSameHost) {
    EngineProcess twin(server.environment());
    block(twin);
    EXPECT_EQ(hear(), kAll);
}

TEST_F(BlockingListening, isForTheFirstOfSeveral) {
    OtherHost first(server.environment());
    OtherHost second(server.environment());
    block(first.engine());
    block(second.engine());
    {
        const PlayedFile player(server, recording);
        EXPECT_TRUE(first.engine().nextOf<Heard>());
    }
    first.engine().send(StopListening{1});
    sync(first.engine());
    const PlayedFile player(server, recording);
    // What was said before is not told after all.
    const auto heard = second.engine().nextOf<Heard>();
    ASSERT_TRUE(heard);
    EXPECT_GT(heard->begin, 4);
}

TEST_F(BlockingListening, isNoneWhileItHearsNothing) {
    OtherHost other(server.environment());
    block(other.engine());
    EXPECT_EQ(hear(), kNothing);
    server.kill();
    const auto state = other.engine().nextOf<Listening>();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->error, "the sound server is gone");
    EXPECT_EQ(hear(), kAll);
}

} // namespace
