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

constexpr std::size_t kSentences = 6;
constexpr std::size_t kWords = kSentences * kWordsOfSentence;
constexpr std::size_t kEndless = 500; // sentences that are not over before something happens, however late
constexpr std::size_t kSome = 3;      // words
constexpr double kMostOfAnEnd = 0.1;  // seconds
constexpr const char* kOther = "other";

class SoundDevice : public testing::Test {
protected:
    // Until some words are heard of the device that is the default one.
    void begin(std::size_t sentences = kEndless) {
        engine.send(speakParted(1, sentences));
        hearSome();
    }

    void hearSome() {
        for (std::size_t count = 0; count < kSome; ++count) {
            const std::vector<Event> some = until<Word>(engine);
            events.insert(events.end(), some.begin(), some.end());
        }
    }

    // What is told from now on is heard of that device, and no word is left out on the way.
    void expectGoesOnWith(const MonitorRecording& recording) {
        takeWhatWasSaid();
        const std::size_t before = wordsIn(events).size();
        hearSome();
        engine.send(Stop{1, Boundary::Sentence});
        finish();
        EXPECT_THAT(faults(events, 1), IsEmpty());
        EXPECT_EQ(finished(events)->error, "");
        const std::vector<Word> words = wordsIn(events);
        ASSERT_EQ(words.size() % kWordsOfSentence, 0U);
        EXPECT_LT(words.back().position, partedWords(words.size() / kWordsOfSentence).size());
        EXPECT_GE(wordsOf(recording).size(), words.size() - before);
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

    // The lengths of the words that device let hear, at least in part.
    static std::vector<double> wordsOf(const MonitorRecording& recording) {
        EXPECT_TRUE(recording.catchUp());
        return wordLengths(recording.samples(), recording.rate());
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
    expectGoesOnWith(recording);
}

TEST_F(SoundDevice, towardsWhichTheSpeechIsMovedGoesOnWithIt) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    const std::string streams = server.control({"list", "short", "sink-inputs"});
    server.control({"move-sink-input", streams.substr(0, streams.find('\t')), kOther});
    expectGoesOnWith(recording);
}

TEST_F(SoundDevice, thatIsLeftGoesOnWhenTheDefaultOneVanishes) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin();
    server.removeSink(kPulseSink);
    expectGoesOnWith(recording);
}

TEST_F(SoundDevice, withoutWhichThereIsNoneEndsTheSpeechAndTheNextOneIsUsed) {
    begin();
    server.removeSink(kPulseSink);
    finish();
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_FALSE(finished(events)->completed);
    EXPECT_THAT(finished(events)->error, HasSubstr("ended the sound"));

    engine.send(speak(3, "Nobody hears this."));
    EXPECT_THAT(startError(engine.untilEnd(3)), HasSubstr("takes no sound"));
    server.addSink(kOther);
    expectSpeaks();
}

TEST_F(SoundDevice, thatStandsStillHoldsTheSpeechForAsLong) {
    begin(kSentences);
    server.control({"suspend-sink", kPulseSink, "1"});
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    takeWhatWasSaid(); // then it tells what was due
    takeWhatWasSaid();
    const std::size_t told = events.size();
    std::this_thread::sleep_for(std::chrono::seconds(15)); // longer than a server may be silent
    takeWhatWasSaid();
    EXPECT_EQ(events.size(), told);
    ASSERT_LT(wordsIn(events).size(), kWords);
    server.control({"suspend-sink", kPulseSink, "0"});
    expectAllIsToldOnce();
}

TEST_F(SoundDevice, thatVanishesDuringAPauseIsNotMissedWhereThereIsAnother) {
    server.addSink(kOther);
    const MonitorRecording recording(server, kOther);
    begin(kSentences);
    engine.send(Pause{1, Boundary::Word});
    const std::vector<Event> held = until<Paused>(engine);
    server.removeSink(kPulseSink);
    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    events.insert(events.end(), held.begin(), held.end());
    const std::size_t heard = wordsIn(events).size();
    expectAllIsToldOnce();
    std::vector<double> words = wordsOf(recording);
    if (words.size() > kWords - heard) {
        // What the server had not yet played as its device vanished: the end of the word before the pause.
        EXPECT_LT(words.front(), kMostOfAnEnd);
        words.erase(words.begin());
    }
    EXPECT_THAT(words, SizeIs(kWords - heard));
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
