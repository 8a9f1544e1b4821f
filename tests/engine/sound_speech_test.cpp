#include "engine/protocol/speaking_lock.h"
#include "tests/engine/engine_process.h"

#include "tests/support/monitor_recording.h"
#include "tests/support/process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The end of utterance 1 where it was stopped.
const auto kStopped = testing::Optional(testing::FieldsAre(1U, false, "", testing::_));

constexpr const char* kText = "Hello world, this is heard.";

std::string longText() {
    std::string text;
    for (int count = 0; count < 500; ++count) {
        text += "Word after word goes by. ";
    }
    return text;
}

class SoundSpeech : public testing::Test {
protected:
    // Until the first word is heard.
    void begin(std::uint64_t utterance, std::string text) {
        engine.send(speak(utterance, std::move(text)));
        const auto start = engine.next();
        ASSERT_TRUE(start);
        ASSERT_EQ(std::get<Started>(*start), (Started{utterance, ""}));
        ASSERT_TRUE(engine.nextOf<Word>());
    }

    std::vector<Event> speakWhole(std::uint64_t utterance, const std::string& text) {
        engine.send(speak(utterance, text));
        return engine.untilEnd(utterance);
    }

    [[nodiscard]] std::size_t clients() const {
        const ProcessResult result =
            runProcess("pactl", {"list", "clients"}, {.environment = server.environment()});
        EXPECT_TRUE(result.succeeded()) << result.errors;
        const std::string name = "application.name = \"zqmspeech\"";
        std::size_t count = 0;
        for (std::size_t at = 0; (at = result.output.find(name, at)) != std::string::npos; ++at) {
            ++count;
        }
        return count;
    }

    PulseServer server;
    EngineProcess engine{server.environment()};
};

Descriptor listenOn(const std::string& path) {
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket.get(), 1), 0);
    return socket;
}

// Where, in samples of a recording, sound begins after silence.
std::size_t firstSound(std::span<const float> samples) {
    constexpr float kAudible = 0.01F;
    return static_cast<std::size_t>(std::find_if(samples.begin(), samples.end(),
                                                 [](float sample) { return std::abs(sample) > kAudible; }) -
                                    samples.begin());
}

class SpeakingSign : public testing::Test {
protected:
    // Until the first word is heard.
    static void begin(EngineProcess& engine) {
        engine.send(speak(1, longText()));
        ASSERT_EQ(std::get<Started>(*engine.next()), (Started{1, ""}));
        ASSERT_TRUE(engine.next());
    }

    TemporaryFolder runtime;
    ScopedEnvironment folder{"XDG_RUNTIME_DIR", runtime.path().string()};
    PulseServer server;
    EngineProcess engine{server.environment()};
};

TEST_F(SpeakingSign, isThereFromTheStartToTheEndOfTheSound) {
    EXPECT_FALSE(SpeakingLock::isHeld());
    engine.send(speak(1, longText()));
    ASSERT_EQ(std::get<Started>(*engine.next()), (Started{1, ""}));
    EXPECT_TRUE(SpeakingLock::isHeld());
    EXPECT_TRUE(SpeakingLock::isHeld()) << "asking takes nothing away";
    engine.send(speak(2, kText));
    EXPECT_TRUE(finished(engine.untilEnd(2))->completed);
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingSign, isNotThereForAFile) {
    const TemporaryFolder target;
    ASSERT_EQ(0, ::mkfifo((target.path() / "a.ogg").c_str(), 0600));
    const Descriptor reader(::open((target.path() / "a.ogg").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    Descriptor writer(::open((target.path() / "a.ogg").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    Speak request = speak(1, longText()); // more than the pipe takes, and nobody reads
    request.output = {.extension = "ogg", .temporaryName = "", .finalName = ""};
    std::vector<Descriptor> descriptors;
    descriptors.push_back(std::move(writer));
    engine.send(request, std::move(descriptors));
    ASSERT_EQ(std::get<Started>(*engine.next()), (Started{1, ""}));
    EXPECT_FALSE(SpeakingLock::isHeld());
    engine.send(Stop{1});
    engine.untilEnd(1);
}

TEST_F(SpeakingSign, isGoneWhenTheSoundIsStopped) {
    begin(engine);
    EXPECT_TRUE(SpeakingLock::isHeld());
    engine.send(Stop{1});
    engine.untilEnd(1);
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingSign, isThereAsLongAsAnyoneSpeaks) {
    EngineProcess other(server.environment());
    begin(engine);
    begin(other);
    engine.send(Stop{1});
    engine.untilEnd(1);
    EXPECT_TRUE(SpeakingLock::isHeld());
    other.send(Stop{1});
    other.untilEnd(1);
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingSign, isGoneWithAKilledEngine) {
    begin(engine);
    EXPECT_TRUE(SpeakingLock::isHeld());
    ASSERT_EQ(0, ::kill(engine.pid(), SIGKILL));
    const auto end = std::chrono::steady_clock::now() + kProcessDeadline;
    while (SpeakingLock::isHeld() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingSign, isGoneWhenTheServerIs) {
    begin(engine);
    EXPECT_TRUE(SpeakingLock::isHeld());
    server.kill();
    engine.untilEnd(1);
    const auto end = std::chrono::steady_clock::now() + kProcessDeadline;
    while (SpeakingLock::isHeld() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SoundSpeech, isHeardAndToldWordByWord) {
    const MonitorRecording recording(server);
    const std::vector<Event> events = speakWhole(1, kText);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    ASSERT_TRUE(finished(events));
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(cutOut(kText, events), ElementsAre("Hello", "world", "this", "is", "heard"));

    ASSERT_TRUE(recording.catchUp());
    const std::vector<float> heard = recording.samples();
    EXPECT_GT(rms(heard), 0.01);

    // As long as the same speech in a file, from the first sound to the last.
    TemporaryFolder folder;
    Target target(folder.path(), "same.wav");
    Speak request = speak(2, kText);
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.untilEnd(2);
    const SoundFile file(target.file);
    const auto seconds = [](std::span<const float> samples, int rate) {
        const std::size_t begin = firstSound(samples);
        std::vector<float> backwards(samples.rbegin(), samples.rend());
        return static_cast<double>(samples.size() - begin - firstSound(backwards)) / rate;
    };
    EXPECT_NEAR(seconds(heard, recording.rate()), seconds(file.samples, file.rate), 0.1);
}

// Reports how far the first word is told from its first sound; machines that test are too busy to judge it.
TEST_F(SoundSpeech, firstWordIsToldWhenItsSoundIsHeard) {
    const MonitorRecording recording(server);
    engine.send(speak(1, "Time."));
    std::optional<double> told;
    while (auto event = engine.next()) {
        if (std::holds_alternative<Word>(*event)) {
            told = monotonicSeconds();
        } else if (std::holds_alternative<Finished>(*event)) {
            break;
        }
    }
    ASSERT_TRUE(told);
    ASSERT_TRUE(recording.catchUp());
    const std::vector<float> heard = recording.samples();
    const std::size_t first = firstSound(heard);
    ASSERT_LT(first, heard.size());
    // The word may begin with a silence of its own, as the file of it shows.
    TemporaryFolder folder;
    Target target(folder.path(), "same.wav");
    Speak request = speak(2, "Time.");
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.untilEnd(2);
    const SoundFile file(target.file);
    const double silence = static_cast<double>(firstSound(file.samples)) / file.rate;
    const double late = *told - (recording.timeOf(first) - silence);
    RecordProperty("milliseconds_after_the_sound", std::to_string(late * 1000));
    std::printf("the first word is told %.1f ms after its first sound\n", late * 1000);
}

TEST_F(SoundSpeech, wordsDoNotRunAheadOfTheSound) {
    engine.send(speak(1, longText()));
    ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
    for (int count = 0; count < 10; ++count) {
        ASSERT_TRUE(engine.nextOf<Word>());
    }
    engine.send(Stop{1});
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_LT(wordsIn(rest).size(), 100U);
    EXPECT_FALSE(finished(rest)->completed);
}

TEST_F(SoundSpeech, stopsAtOnceAndSpeaksAgain) {
    begin(1, longText());
    engine.send(Stop{1});
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_THAT(finished(rest), kStopped);
    const std::vector<Event> events = speakWhole(2, kText);
    EXPECT_THAT(faults(events, 2), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
}

TEST_F(SoundSpeech, stoppedBeforeItBeganStartsAndFinishes) {
    engine.send(speak(1, kText));
    engine.send(Stop{1});
    const std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_FALSE(finished(events)->completed);
}

TEST_F(SoundSpeech, aNewOneEndsTheOneBefore) {
    begin(1, longText());
    engine.send(speak(2, kText));
    EXPECT_FALSE(finished(engine.untilEnd(1))->completed);
    const std::vector<Event> events = engine.untilEnd(2);
    EXPECT_THAT(faults(events, 2), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
}

TEST_F(SoundSpeech, aChangeOfRateLosesNoWord) {
    const std::string text = "One two three four five six seven eight nine ten eleven twelve.";
    engine.send(speak(1, text));
    std::vector<Event> events;
    double rate = 100;
    while (auto event = engine.next()) {
        events.push_back(*event);
        if (std::holds_alternative<Finished>(*event)) {
            break;
        }
        rate += 25;
        engine.send(Adjust{1, {.rate = rate}});
    }
    ASSERT_THAT(faults(events, 1), IsEmpty()) << engine.errors();
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(cutOut(text, events), ElementsAre("One", "two", "three", "four", "five", "six", "seven",
                                                  "eight", "nine", "ten", "eleven", "twelve"));
}

TEST_F(SoundSpeech, aTextWithoutWordsFinishes) {
    const std::vector<Event> events = speakWhole(1, " ... \n");
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
}

TEST_F(SoundSpeech, failsWithTheServerAndSpeaksWithTheNext) {
    begin(1, longText());
    server.kill();
    const std::vector<Event> rest = engine.untilEnd(1);
    ASSERT_TRUE(finished(rest));
    EXPECT_FALSE(finished(rest)->completed);
    EXPECT_THAT(finished(rest)->error, testing::HasSubstr("sound server"));

    EXPECT_EQ(startError(speakWhole(2, kText)), "no sound server answers");

    server.restart();
    const std::vector<Event> events = speakWhole(3, kText);
    EXPECT_THAT(faults(events, 3), IsEmpty()) << startError(events);
    EXPECT_TRUE(finished(events) && finished(events)->completed);
}

// All of it is written, and its end awaited.
TEST_F(SoundSpeech, failsAtItsEndWithAServerThatStandsStill) {
    begin(1, "Hello.");
    server.freeze();
    const std::vector<Event> rest = engine.untilEnd(1);
    ASSERT_TRUE(finished(rest));
    EXPECT_FALSE(finished(rest)->completed);
    EXPECT_EQ(finished(rest)->error, "the sound server does not answer");
}

// The server is asked, and then neither it nor the engine gets any time.
TEST_F(SoundSpeech, goesOnWithAServerThatWasSuspendedTogetherWithTheEngine) {
    begin(1, longText());
    server.freeze();
    std::this_thread::sleep_for(std::chrono::seconds(3));
    ASSERT_EQ(0, ::kill(engine.pid(), SIGSTOP));
    std::this_thread::sleep_for(std::chrono::seconds(10));
    ASSERT_EQ(0, ::kill(engine.pid(), SIGCONT));
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // it is the first to look
    server.thaw();
    for (int count = 0; count < 10; ++count) {
        const auto event = engine.next();
        ASSERT_TRUE(event);
        ASSERT_FALSE(std::holds_alternative<Finished>(*event));
    }
    engine.send(Stop{1});
    EXPECT_THAT(finished(engine.untilEnd(1)), kStopped);
}

TEST_F(SoundSpeech, keepsTheServerForAWhileAndThenLetsItGo) {
    EXPECT_EQ(clients(), 0U);
    speakWhole(1, "One.");
    EXPECT_EQ(clients(), 1U);
    for (int tries = 0; tries < EngineProcess::kDeadlineMilliseconds / 100 && clients() > 0; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_EQ(clients(), 0U);
    EXPECT_TRUE(finished(speakWhole(2, "Two."))->completed);
}

TEST_F(SoundSpeech, twoEnginesSpeakAtOnce) {
    EngineProcess other(server.environment());
    begin(1, longText());
    other.send(speak(1, kText));
    EXPECT_TRUE(finished(other.untilEnd(1))->completed);
    engine.send(Stop{1});
    EXPECT_FALSE(finished(engine.untilEnd(1))->completed);
}

TEST_F(SoundSpeech, endsWithItsHost) {
    begin(1, longText());
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 0);
    EXPECT_EQ(engine.errors(), "");
}

TEST(SoundSpeechWithoutServer, isAnError) {
    EngineProcess engine({{"PULSE_SERVER", ScopedPulseServer::unreachableAddress()}});
    engine.send(speak(1, kText));
    EXPECT_EQ(startError(engine.untilEnd(1)), "no sound server answers");
    engine.send(speak(2, kText));
    EXPECT_EQ(startError(engine.untilEnd(2)), "no sound server answers");
}

TEST(SoundSpeechWithoutServer, onANetworkIsAnErrorOfItsOwn) {
    EngineProcess engine(Environment{{"PULSE_SERVER", "tcp:127.0.0.1:1"}});
    engine.send(speak(1, kText));
    EXPECT_EQ(startError(engine.untilEnd(1)),
              "the sound server tcp:127.0.0.1:1 can't be used: only one with a UNIX socket can");
}

// A server that takes connections but says nothing.
TEST(SoundSpeechWithoutServer, thatAnswersIsAnErrorToo) {
    const TemporaryFolder folder;
    const std::string path = folder / "socket";
    const Descriptor silent = listenOn(path);
    EngineProcess engine({{"PULSE_SERVER", "unix:" + path}});
    engine.send(speak(1, kText));
    EXPECT_EQ(startError(engine.untilEnd(1)), "no sound server answers");
}

} // namespace
