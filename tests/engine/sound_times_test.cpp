// The times of what is told of sound that is played: those of its place in the sound, whenever it is heard.

#include "tests/engine/parted_words.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class SoundTimes : public testing::Test {
protected:
    PulseServer server;
    EngineProcess engine{server.environment()};
};

TEST_F(SoundTimes, areThoseOfTheSameSpeechInAFile) {
    const std::string text = "Hello [[sync 1]]world. [[rate x]]This is[[slnc 100]] heard.";
    engine.send(speak(1, text));
    const std::vector<Event> played = engine.untilEnd(1);
    EXPECT_THAT(faults(played, 1), IsEmpty());

    const TemporaryFolder folder;
    EngineProcess other(server.environment());
    Target target(folder.path(), "a.wav");
    Speak request = speak(1, text);
    request.output = target.output;
    other.send(request, std::move(target.descriptors));
    EXPECT_EQ(played, other.untilEnd(1));
    const SoundFile sound(target.file);
    EXPECT_DOUBLE_EQ(finished(played)->at, sound.seconds());
}

// A word so long that the pause is sure to cut it.
TEST_F(SoundTimes, areToldAgainWithACutWord) {
    engine.send(Speak{.utterance = 1,
                      .text = "So Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogoch and so on.",
                      .voice = "gmw/en-US",
                      .manner = {.rate = 80}});
    std::vector<Event> before = until<Word>(engine);
    const std::vector<Event> more = until<Word>(engine);
    before.insert(before.end(), more.begin(), more.end());
    const Word cut = wordsIn(before).back();
    EXPECT_GT(cut.at, 0);
    engine.send(Pause{1, Boundary::Immediate});
    const std::vector<Event> held = until<Paused>(engine);
    before.insert(before.end(), held.begin(), held.end());
    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    const std::vector<Event> rest = engine.untilEnd(1);
    ASSERT_THAT(wordsIn(rest), SizeIs(4));
    EXPECT_EQ(cut, wordsIn(rest).front());
    EXPECT_EQ(timeOf(rest.front()), cut.at) << "also of what comes with it";
    before.insert(before.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(before, 1), IsEmpty());
}

TEST_F(SoundTimes, theEndOfWhatIsStoppedHasTheLengthOfWhatWasHeard) {
    engine.send(speakParted(1, 20));
    std::vector<Event> events = until<Word>(engine);
    engine.send(Stop{1, Boundary::Word});
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(events, 1), IsEmpty());
    const double end = finished(events)->at;
    EXPECT_GT(end, wordsIn(events).back().at + 0.1) << "the word is whole";
    EXPECT_LT(end, wordsIn(events).back().at + 1.5) << "and the last";
}

TEST_F(SoundTimes, theEndOfWhatIsStoppedWhilePausedIsNotBeforeWhatWasTold) {
    engine.send(speakParted(1, 20));
    std::vector<Event> events = until<Word>(engine);
    const std::vector<Event> held = [&] {
        engine.send(Pause{1, Boundary::Immediate});
        return until<Paused>(engine);
    }();
    events.insert(events.end(), held.begin(), held.end());
    double told = 0;
    for (const Event& event : events) {
        told = std::max(told, timeOf(event).value_or(0));
    }
    engine.send(Stop{1});
    const auto end = finished(engine.untilEnd(1));
    ASSERT_TRUE(end);
    EXPECT_GT(end->at, told);
}

TEST_F(SoundTimes, theEndOfWhatTheServerCutOffIsNotBeforeWhatWasTold) {
    engine.send(speakParted(1, 20));
    until<Word>(engine);
    std::vector<Event> events = until<Word>(engine);
    server.kill();
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    double told = 0;
    for (std::size_t index = 0; index + 1 < events.size(); ++index) {
        told = std::max(told, timeOf(events[index]).value_or(0));
    }
    EXPECT_GT(told, 0);
    EXPECT_GE(finished(events)->at, told);
}

TEST_F(SoundTimes, nothingTakesNoTime) {
    engine.send(speak(1, ""));
    EXPECT_EQ(finished(engine.untilEnd(1))->at, 0);
}

} // namespace
