// Sound devices that change, stop or vanish while they speak.

#include "tests/engine/parted_words.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::size_t kSentences = 2;
constexpr std::size_t kWords = kSentences * kWordsOfSentence;
constexpr std::size_t kBefore = 2; // words heard before something happens
constexpr const char* kOther = "other";

class SoundDevice : public testing::Test {
protected:
    // Until some words are heard of the device that is the default one.
    void begin() {
        engine.send(speakParted(1, kSentences));
        for (std::size_t count = 0; count < kBefore; ++count) {
            const std::vector<Event> some = until<Word>(engine);
            events.insert(events.end(), some.begin(), some.end());
        }
    }

    void expectAllIsToldOnce() {
        finish();
        EXPECT_THAT(faults(events, 1), IsEmpty());
        EXPECT_TRUE(finished(events)->completed) << finished(events)->error;
        EXPECT_THAT(wordsIn(events), SizeIs(kWords));
    }

    void finish() {
        const std::vector<Event> rest = engine.untilEnd(1);
        events.insert(events.end(), rest.begin(), rest.end());
    }

    void takeWhatWasSaid() {
        engine.send(ListVoices{});
        const std::vector<Event> some = until<Voices>(engine);
        events.insert(events.end(), some.begin(), some.end() - 1);
    }

    // How many words that device let hear, at least in part.
    static std::size_t wordsOf(const MonitorRecording& recording) {
        EXPECT_TRUE(recording.catchUp());
        return wordLengths(recording.samples(), recording.rate()).size();
    }

    void expectSpeaks() {
        engine.send(speak(2, "Again."));
        const std::vector<Event> again = engine.untilEnd(2);
        EXPECT_EQ(startError(again), "");
        EXPECT_TRUE(finished(again) && finished(again)->completed);
    }

    PulseServer server;
    EngineProcess engine{server.environment()};
    std::vector<Event> events;
};

TEST_F(SoundDevice, thatBecomesTheDefaultOneGoesOnWithTheSpeech) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    server.control({"set-default-sink", kOther});
    expectAllIsToldOnce();
    EXPECT_GE(wordsOf(recording), kWords - kBefore);
}

TEST_F(SoundDevice, towardsWhichTheSpeechIsMovedGoesOnWithIt) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    const std::string streams = server.control({"list", "short", "sink-inputs"});
    server.control({"move-sink-input", streams.substr(0, streams.find('\t')), kOther});
    expectAllIsToldOnce();
    EXPECT_GE(wordsOf(recording), kWords - kBefore);
}

TEST_F(SoundDevice, thatIsLeftGoesOnWhenTheDefaultOneVanishes) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    server.removeSink(kPulseSink);
    expectAllIsToldOnce();
    EXPECT_GE(wordsOf(recording), kWords - kBefore);
}

TEST_F(SoundDevice, withoutWhichThereIsNoneEndsTheSpeechAndTheNextOneIsUsed) {
    begin();
    server.removeSink(kPulseSink);
    finish();
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_FALSE(finished(events)->completed);
    EXPECT_THAT(finished(events)->error, HasSubstr("ended the sound"));
    EXPECT_LT(wordsIn(events).size(), kWords);

    engine.send(speak(3, "Nobody hears this."));
    EXPECT_THAT(startError(engine.untilEnd(3)), HasSubstr("takes no sound"));
    server.addSink(kOther);
    expectSpeaks();
}

TEST_F(SoundDevice, thatStandsStillForAWhileHoldsTheSpeech) {
    begin();
    server.control({"suspend-sink", kPulseSink, "1"});
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    takeWhatWasSaid();
    const std::size_t told = events.size();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    takeWhatWasSaid();
    EXPECT_EQ(events.size(), told);
    server.control({"suspend-sink", kPulseSink, "0"});
    expectAllIsToldOnce();
}

TEST_F(SoundDevice, thatVanishesDuringAPauseIsNotMissedWhereThereIsAnother) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    engine.send(Pause{1, Boundary::Word});
    const std::vector<Event> held = until<Paused>(engine);
    server.removeSink(kPulseSink);
    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    events.insert(events.end(), held.begin(), held.end());
    const std::size_t heard = wordsIn(events).size();
    expectAllIsToldOnce();
    EXPECT_EQ(wordsOf(recording), kWords - heard);
}

TEST_F(SoundDevice, thatVanishesDuringAPauseEndsTheSpeechWhereThereIsNoOther) {
    begin();
    engine.send(Pause{1, Boundary::Word});
    ASSERT_TRUE(engine.nextOf<Paused>());
    server.removeSink(kPulseSink);
    engine.send(Continue{1});
    const auto end = finished(engine.untilEnd(1));
    ASSERT_TRUE(end);
    EXPECT_FALSE(end->completed);
    EXPECT_THAT(end->error, HasSubstr("takes no sound"));
}

TEST_F(SoundDevice, ofAServerThatIsRestartedSpeaksAgainAtTheNextStart) {
    begin();
    server.restart();
    finish();
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_FALSE(finished(events)->completed);
    EXPECT_THAT(finished(events)->error, HasSubstr("is gone"));
    expectSpeaks();
}

} // namespace
