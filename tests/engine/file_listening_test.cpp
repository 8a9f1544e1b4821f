#include "tests/engine/engine_process.h"
#include "tests/engine/listening_files.h"

#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sndfile.h>
#include <string>
#include <sys/stat.h>
#include <thread>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::vector<std::string> kCommands{"open the door", kRecordedCommand, "stop"};
constexpr std::uint64_t kRecorded = 1; // its place among those

Descriptor openFile(const std::filesystem::path& path) {
    return Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

// One engine for all: its model takes a while to load.
class FileListening : public testing::Test {
protected:
    static void SetUpTestSuite() {
        engine = std::make_unique<EngineProcess>();
        setCommands(kCommands);
    }
    static void TearDownTestSuite() { engine.reset(); }

    void TearDown() override { EXPECT_EQ(engine->errors(), ""); }

    static std::uint64_t setCommands(const std::vector<std::string>& commands) {
        engine->send(SetCommands{++list, commands});
        const auto set = engine->nextOf<CommandsSet>();
        EXPECT_TRUE(set && set->list == list);
        return list;
    }

    static void listen(Descriptor file, bool reportsLevel = false) {
        std::vector<Descriptor> descriptors;
        descriptors.push_back(std::move(file));
        engine->send(Listen{++session, reportsLevel, true}, std::move(descriptors));
    }

    // The events of the session, to its last.
    static std::vector<Event> rest() {
        std::vector<Event> events;
        while (auto event = engine->next()) {
            events.push_back(*event);
            const auto* const state = std::get_if<Listening>(&*event);
            if (std::holds_alternative<EndOfInput>(*event) || (state != nullptr && !state->error.empty())) {
                break;
            }
        }
        return events;
    }

    static std::vector<Event> listenTo(const std::filesystem::path& file, bool reportsLevel = false) {
        listen(openFile(file), reportsLevel);
        return rest();
    }

    // Why the session failed, which is all that was said of it.
    static std::string failure(const std::vector<Event>& events) {
        const auto* const state = events.size() == 1 ? std::get_if<Listening>(events.data()) : nullptr;
        return state == nullptr ? "no failure" : state->error;
    }

    std::filesystem::path write(const std::string& name, std::span<const float> samples,
                                const SoundFormat& format) const {
        std::filesystem::path path = folder.path() / name;
        writeSoundFile(path, samples, format);
        return path;
    }

    std::filesystem::path writeWave(const std::string& name, std::span<const float> samples) const {
        return write(name, samples, {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16000, 1});
    }

    // That the recording and nothing else was heard, where it is in the file.
    static void expectTheRecording(const std::vector<Event>& events) {
        ASSERT_EQ(events.size(), 3U);
        EXPECT_EQ(events[0], Event(Listening{session, ""}));
        EXPECT_EQ(events[2], Event(EndOfInput{session}));
        const auto* const heard = std::get_if<Heard>(&events[1]);
        ASSERT_NE(heard, nullptr);
        EXPECT_EQ(heard->session, session);
        EXPECT_EQ(heard->list, list);
        EXPECT_EQ(heard->command, kRecorded);
        EXPECT_NEAR(heard->begin, 1.4, 0.3);
        EXPECT_NEAR(heard->end, 3.3, 0.3);
    }

    static void expectNothing(const std::vector<Event>& events) {
        EXPECT_THAT(events, ElementsAre(Event(Listening{session, ""}), Event(EndOfInput{session})));
    }

    static inline std::unique_ptr<EngineProcess> engine;
    static inline std::uint64_t session = 0;
    static inline std::uint64_t list = 0;
    TemporaryFolder folder;
};

// ---- what is a sound file

struct Case {
    std::string name;
    SoundFormat format;
};

class FileListeningTo : public FileListening, public testing::WithParamInterface<Case> {};

TEST_P(FileListeningTo, hearsTheCommand) {
    expectTheRecording(listenTo(write("file", recordedCommand(), GetParam().format)));
}

INSTANTIATE_TEST_SUITE_P(Formats, FileListeningTo,
                         testing::Values(Case{"wav8", {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1}},
                                         Case{"wav11", {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 11025, 1}},
                                         Case{"wav16", {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16000, 1}},
                                         Case{"wav22stereo", {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 22050, 2}},
                                         Case{"wav44stereo", {SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 2}},
                                         Case{"wav48sixChannels",
                                              {SF_FORMAT_WAV | SF_FORMAT_FLOAT, 48000, 6}},
                                         Case{"wav192", {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 192000, 1}},
                                         Case{"flac16", {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 16000, 1}},
                                         Case{"flac48stereo", {SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 48000, 2}},
                                         Case{"ogg16", {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 16000, 1}},
                                         Case{"ogg44stereo", {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 2}},
                                         Case{"opus48", {SF_FORMAT_OGG | SF_FORMAT_OPUS, 48000, 1}},
                                         Case{"aiff22", {SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 22050, 1}},
                                         Case{"aiff44stereo", {SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 44100, 2}},
                                         Case{"au8", {SF_FORMAT_AU | SF_FORMAT_ULAW, 8000, 1}}),
                         [](const auto& each) { return each.param.name; });

TEST_F(FileListening, hearsNothingInAFileWithoutSamples) {
    for (const int format : {SF_FORMAT_WAV, SF_FORMAT_AIFF}) {
        const auto path = write("none", {}, {format | SF_FORMAT_PCM_16, 44100, 2});
        expectNothing(listenTo(path));
    }
}

TEST_F(FileListening, hearsNothingInSilence) {
    expectNothing(listenTo(writeWave("silence.wav", std::vector<float>(160'000))));
}

// ---- what is none

TEST_F(FileListening, saysWhyAFileIsNoSound) {
    const auto wave = writeWave("whole.wav", recordedCommand());
    std::filesystem::copy(wave, folder.path() / "headerOnly.wav");
    std::filesystem::resize_file(folder.path() / "headerOnly.wav", 20);
    std::ofstream(folder.path() / "empty.wav") << "";
    std::ofstream(folder.path() / "garbage.wav") << std::string(100'000, 'x');
    std::ofstream(folder.path() / "text.txt") << "This is no sound.\n";
    for (const char* name : {"headerOnly.wav", "empty.wav", "garbage.wav", "text.txt"}) {
        const std::string error = failure(listenTo(folder.path() / name));
        EXPECT_THAT(error, StartsWith("the sound file can't be read: ")) << name;
        EXPECT_GT(error.size(), 40U) << name;
    }
    EXPECT_EQ(failure(listenTo(folder.path())), "the sound file can't be read: Is a directory");
    for (const char* device : {"/dev/zero", "/dev/null"}) {
        EXPECT_EQ(failure(listenTo(device)), "the sound file can't be read: it is neither a file nor a pipe")
            << device;
    }
    EXPECT_THAT(failure(listenTo(write("slow.wav", {}, {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 1}))),
                HasSubstr("1 samples a second"));
    // It was for that session only.
    expectTheRecording(listenTo(wave));
}

TEST_F(FileListening, refusesADescriptorThatCannotBeRead) {
    const auto wave = writeWave("whole.wav", recordedCommand());
    listen(Descriptor(::open(wave.c_str(), O_WRONLY | O_CLOEXEC)));
    EXPECT_THAT(failure(rest()), StartsWith("the sound file can't be read: "));
}

// What is there of a file that was cut short is heard before its fault is told.
TEST_F(FileListening, hearsWhatIsLeftOfAFile) {
    const std::vector<float> twice = repeated(recordedCommand(), 2);
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                             SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS}) {
        const auto path = write("cut", twice, {format, 44100, 1});
        std::filesystem::resize_file(path, std::filesystem::file_size(path) * 6 / 10);
        const std::vector<Event> events = listenTo(path);
        ASSERT_GE(events.size(), 3U) << format;
        EXPECT_EQ(events[0], Event(Listening{session, ""})) << format;
        const auto* const heard = std::get_if<Heard>(&events[1]);
        ASSERT_NE(heard, nullptr) << format;
        EXPECT_EQ(heard->command, kRecorded) << format;
    }
}

// ---- pipes

TEST_F(FileListening, takesAPipe) {
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS}) {
        const auto path = write("file", recordedCommand(), {format, 22050, 1});
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        Descriptor reader(ends[0]);
        Descriptor writer(ends[1]);
        listen(std::move(reader));
        // While nothing more comes the engine does other things.
        ASSERT_EQ(::write(writer.get(), "", 0), 0);
        engine->send(ListVoices{});
        EXPECT_TRUE(engine->nextOf<Voices>());
        std::thread feeder([&] {
            std::ifstream file(path, std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            for (std::size_t at = 0; at < bytes.size();) {
                const ssize_t count = ::write(writer.get(), bytes.data() + at, bytes.size() - at);
                if (count <= 0) {
                    break;
                }
                at += static_cast<std::size_t>(count);
            }
            writer.reset();
        });
        expectTheRecording(rest());
        feeder.join();
    }
}

TEST_F(FileListening, answersPingsWhileNothingComesThroughAPipe) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    Descriptor in(ends[1]);
    listen(Descriptor(ends[0]));
    engine->send(Ping{});
    EXPECT_TRUE(engine->nextOf<Pong>());
    in.reset();
    EXPECT_NE(failure(rest()), "");
}

TEST_F(FileListening, takesAPipeThatIsLeftEmpty) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[1]);
    listen(Descriptor(ends[0]));
    EXPECT_THAT(failure(rest()), StartsWith("the sound file can't be read: "));
}

TEST_F(FileListening, leavesAPipeThatIsNotListenedToAnyMore) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const Descriptor writer(ends[1]);
    std::signal(SIGPIPE, SIG_IGN);
    listen(Descriptor(ends[0]));
    expectTheRecording(listenTo(writeWave("file.wav", recordedCommand())));
    EXPECT_LT(::write(writer.get(), "x", 1), 0);
    EXPECT_EQ(errno, EPIPE);
}

// ---- sessions

TEST_F(FileListening, countsTimeFromTheBeginningOfEachSession) {
    const auto path = writeWave("file.wav", repeated(recordedCommand(), 2));
    for (int count = 0; count < 2; ++count) {
        const std::vector<Event> events = listenTo(path);
        ASSERT_EQ(events.size(), 4U);
        const auto& first = std::get<Heard>(events[1]);
        const auto& second = std::get<Heard>(events[2]);
        const double length = static_cast<double>(recordedCommand().size()) / 16000;
        EXPECT_NEAR(first.begin, 1.4, 0.3);
        EXPECT_NEAR(second.begin - first.begin, length, 0.05);
    }
}

// A whole day: it ends in the middle.
TEST_F(FileListening, hearsNothingMoreOfASessionThatWasStopped) {
    const auto endless = writeWave("endless.wav", repeated(recordedCommand(), 200));
    const auto path = writeWave("file.wav", recordedCommand());
    listen(openFile(endless));
    ASSERT_TRUE(engine->nextOf<Heard>());
    engine->send(StopListening{session});
    engine->send(ListVoices{});
    ASSERT_TRUE(engine->nextOf<Voices>());
    expectTheRecording(listenTo(path));
}

TEST_F(FileListening, aNewSessionEndsTheOneBefore) {
    const auto endless = writeWave("endless.wav", repeated(recordedCommand(), 200));
    const auto path = writeWave("file.wav", recordedCommand());
    listen(openFile(endless));
    ASSERT_TRUE(engine->nextOf<Heard>());
    const std::uint64_t before = session;
    listen(openFile(path));
    std::vector<Event> events = rest();
    const auto isOfBefore = [&](const Event& event) {
        const auto* const heard = std::get_if<Heard>(&event);
        return heard != nullptr && heard->session == before;
    };
    events.erase(events.begin(), std::find_if_not(events.begin(), events.end(), isOfBefore));
    expectTheRecording(events);
}

TEST_F(FileListening, aStopOfAnotherSessionStopsNothing) {
    const auto path = writeWave("file.wav", recordedCommand());
    listen(openFile(path));
    engine->send(StopListening{session - 1});
    engine->send(StopListening{session + 1});
    expectTheRecording(rest());
}

TEST_F(FileListening, endsWithItsHost) {
    EngineProcess other;
    std::vector<Descriptor> files;
    files.push_back(openFile(writeWave("endless.wav", repeated(recordedCommand(), 200))));
    other.send(SetCommands{1, kCommands});
    other.send(Listen{1, false, true}, std::move(files));
    ASSERT_TRUE(other.nextOf<Heard>());
    other.hangUp();
    EXPECT_EQ(other.wait(), 0);
    EXPECT_EQ(other.errors(), "");
}

// ---- commands

TEST_F(FileListening, rejectsAPhraseThatIsNoCommand) {
    setCommands({"what a beautiful evening"});
    const std::vector<Event> events = listenTo(writeWave("file.wav", recordedCommand()));
    setCommands(kCommands);
    ASSERT_EQ(events.size(), 3U);
    const auto* const rejected = std::get_if<Rejected>(&events[1]);
    ASSERT_NE(rejected, nullptr);
    EXPECT_EQ(rejected->session, session);
    EXPECT_NEAR(rejected->begin, 1.4, 0.3);
}

TEST_F(FileListening, rejectsEverythingWithoutCommands) {
    setCommands({});
    const std::vector<Event> events = listenTo(writeWave("file.wav", recordedCommand()));
    setCommands(kCommands);
    ASSERT_EQ(events.size(), 3U);
    EXPECT_TRUE(std::holds_alternative<Rejected>(events[1]));
}

TEST_F(FileListening, tellsWhichCommandsItCannotListenFor) {
    engine->send(SetCommands{++list, {"stop", "", "...", kRecordedCommand}});
    const auto set = engine->nextOf<CommandsSet>();
    ASSERT_TRUE(set && set->problems.size() == 2);
    EXPECT_EQ(set->refused, 2U);
    EXPECT_EQ(set->problems[0].command, 1U);
    EXPECT_EQ(set->problems[1].command, 2U);
    const std::vector<Event> events = listenTo(writeWave("file.wav", recordedCommand()));
    setCommands(kCommands);
    ASSERT_EQ(events.size(), 3U);
    ASSERT_TRUE(std::holds_alternative<Heard>(events[1]));
    EXPECT_EQ(std::get<Heard>(events[1]).command, 3U);
}

TEST_F(FileListening, keepsItsLineShortHoweverManyCommandsItCannotListenFor) {
    std::vector<std::string> commands(1000, std::string(20'000, '.'));
    commands.push_back(kRecordedCommand);
    engine->send(SetCommands{++list, commands});
    engine->flush();
    const auto set = engine->nextOf<CommandsSet>();
    ASSERT_TRUE(set);
    EXPECT_EQ(set->problems.size(), CommandsSet::kMaxProblems);
    EXPECT_EQ(set->refused, 1000U);
    setCommands(kCommands);
}

// Each phrase counts for one list: that of which was not said yet that it is replaced.
TEST_F(FileListening, losesNoPhraseWhenTheCommandsChange) {
    constexpr int kTimes = 30;
    const auto path = writeWave("file.wav", repeated(recordedCommand(), kTimes));
    listen(openFile(path));
    int heard = 0;
    std::uint64_t current = list;
    std::uint64_t asked = list;
    while (auto event = engine->next()) {
        if (const auto* const phrase = std::get_if<Heard>(&*event)) {
            ++heard;
            EXPECT_EQ(phrase->list, current);
            EXPECT_EQ(phrase->command, phrase->list % 2 == list % 2 ? kRecorded : 0);
            ++asked;
            engine->send(SetCommands{
                asked, asked % 2 == list % 2 ? kCommands : std::vector<std::string>{kRecordedCommand}});
        } else if (const auto* const set = std::get_if<CommandsSet>(&*event)) {
            EXPECT_GT(set->list, current);
            current = set->list;
        } else if (std::holds_alternative<EndOfInput>(*event)) {
            break;
        }
    }
    EXPECT_EQ(heard, kTimes);
    list = asked;
    setCommands(kCommands);
}

TEST_F(FileListening, takesCommandsAfterTheSessionBegan) {
    EngineProcess other;
    std::vector<Descriptor> files;
    files.push_back(openFile(writeWave("endless.wav", repeated(recordedCommand(), 100))));
    other.send(Listen{1, false, true}, std::move(files));
    ASSERT_TRUE(other.nextOf<Rejected>());
    other.send(SetCommands{1, kCommands});
    ASSERT_TRUE(other.nextOf<CommandsSet>());
    const auto heard = other.nextOf<Heard>();
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->command, kRecorded);
}

// ---- the level

TEST_F(FileListening, tellsTheLevelTenTimesASecondOfAudio) {
    std::vector<float> samples(32'000); // a second of silence, a second of a square wave
    for (std::size_t index = 16000; index < samples.size(); ++index) {
        samples[index] = index / 20 % 2 == 0 ? 0.1F : -0.1F;
    }
    const std::vector<Event> events = listenTo(writeWave("file.wav", samples), true);
    std::vector<double> levels;
    for (const Event& event : events) {
        if (const auto* const level = std::get_if<Level>(&event)) {
            EXPECT_EQ(level->session, session);
            levels.push_back(level->decibels);
        }
    }
    ASSERT_EQ(levels.size(), 20U);
    EXPECT_EQ(levels[0], -120);
    EXPECT_NEAR(levels[19], -20, 0.1);
}

TEST_F(FileListening, tellsNoLevelUnasked) {
    for (const Event& event : listenTo(writeWave("file.wav", recordedCommand()))) {
        EXPECT_FALSE(std::holds_alternative<Level>(event));
    }
}

// ---- an engine that speaks as well

TEST_F(FileListening, goesOnWhileTheEngineSpeaks) {
    const auto path = writeWave("file.wav", repeated(recordedCommand(), 3));
    Target target(folder.path(), "spoken.wav");
    Speak request = speak(1, "Somebody listens while this is said, which makes no difference to either.");
    request.output = target.output;
    listen(openFile(path));
    engine->send(request, std::move(target.descriptors));
    int heard = 0;
    bool hasFinished = false;
    bool hasEnded = false;
    while (!hasFinished || !hasEnded) {
        const auto event = engine->next();
        ASSERT_TRUE(event);
        if (const auto* const phrase = std::get_if<Heard>(&*event)) {
            EXPECT_EQ(phrase->command, kRecorded);
            ++heard;
        } else if (const auto* const end = std::get_if<Finished>(&*event)) {
            EXPECT_TRUE(end->completed) << end->error;
            hasFinished = true;
        } else if (std::holds_alternative<EndOfInput>(*event)) {
            hasEnded = true;
        }
    }
    EXPECT_EQ(heard, 3);
}

} // namespace
