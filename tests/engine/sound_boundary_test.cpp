#include "tests/engine/parted_words.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// The end of utterance 1 where it was stopped.
const auto kStopped = testing::Optional(testing::FieldsAre(1U, false, "", testing::_));

constexpr std::size_t kSentences = 4;

// Words are shorter than what the sound server has of the sound before it is heard.
constexpr double kFast = 300;
constexpr std::size_t kWords = kSentences * kWordsOfSentence;

// How far the length of a word's sound may be off: a recording is made at another rate.
constexpr double kTolerance = 0.03;

class SoundHeld : public testing::Test {
protected:
    // Until so many words are told.
    std::vector<Event> start(std::size_t words) {
        engine.send(speakParted(1, kSentences));
        std::vector<Event> events;
        while (wordsIn(events).size() < words) {
            const auto event = engine.next();
            if (!event) {
                ADD_FAILURE() << engine.errors();
                break;
            }
            events.push_back(*event);
        }
        return events;
    }

    // The sounds of the words that were recorded.
    [[nodiscard]] std::vector<double> recorded() const {
        EXPECT_TRUE(recording.catchUp());
        return wordLengths(recording.samples(), recording.rate());
    }

    // And those of all words, without any pause.
    static std::vector<double> expected() {
        const SoundFile sound = inFile(speakParted(1, kSentences));
        return wordLengths(sound.samples, sound.rate);
    }

    static SoundFile inFile(Speak request) {
        const TemporaryFolder folder;
        Target target(folder.path(), "whole.wav");
        EngineProcess other(Environment{{"PULSE_SERVER", "unix:/nonexistent/pulse"}});
        request.output = target.output;
        other.send(request, std::move(target.descriptors));
        EXPECT_TRUE(finished(other.untilEnd(1))->completed);
        return SoundFile(target.file);
    }

    static void expectSameSounds(const std::vector<double>& sounds, std::vector<double> wanted,
                                 std::size_t count) {
        ASSERT_THAT(wanted, SizeIs(kWords));
        wanted.resize(count);
        EXPECT_THAT(sounds, testing::Pointwise(testing::DoubleNear(kTolerance), wanted));
    }

    [[nodiscard]] std::size_t streams() const {
        const ProcessResult result =
            runProcess("pactl", {"list", "short", "sink-inputs"}, {.environment = server.environment()});
        EXPECT_TRUE(result.succeeded()) << result.errors;
        return static_cast<std::size_t>(std::count(result.output.begin(), result.output.end(), '\n'));
    }

    PulseServer server;
    MonitorRecording recording{server};
    EngineProcess engine{server.environment()};
};

// At a word or a sentence.
class SoundBoundary : public SoundHeld, public testing::WithParamInterface<Boundary> {};

TEST_P(SoundBoundary, endsStoppedSoundWithTheWordToldLast) {
    std::vector<Event> events = start(kWordsOfSentence + 1);
    engine.send(Stop{1, GetParam()});
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_FALSE(finished(events)->completed);
    const std::size_t told = wordsIn(events).size();
    EXPECT_LT(told, kWords);
    if (GetParam() == Boundary::Sentence) {
        EXPECT_EQ(told % kWordsOfSentence, 0U);
    }
    expectSameSounds(recorded(), expected(), told);
}

TEST_P(SoundBoundary, holdsSoundAndGoesOn) {
    std::vector<Event> events = start(kWordsOfSentence + 1);
    engine.send(Pause{1, GetParam()});
    const std::vector<Event> held = until<Paused>(engine);
    events.insert(events.end(), held.begin(), held.end());
    const std::size_t told = wordsIn(events).size();
    expectSilent(engine);
    EXPECT_EQ(streams(), 0U);
    expectSameSounds(recorded(), expected(), told);

    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(wordsIn(events), SizeIs(kWords));
    expectSameSounds(recorded(), expected(), kWords);
}

// Sound that was taken back is given again.
TEST_P(SoundBoundary, pausesThatAreTakenBackAreNotHeard) {
    std::vector<Event> events = start(1);
    while (!finished(events)) {
        if (std::holds_alternative<Word>(events.back())) {
            engine.send(Pause{1, GetParam()});
            engine.send(Continue{1});
        }
        const auto event = engine.next();
        ASSERT_TRUE(event) << engine.errors();
        events.push_back(*event);
    }
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(wordsIn(events), SizeIs(kWords));
    expectSameSounds(recorded(), expected(), kWords);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, SoundBoundary, testing::Values(Boundary::Word, Boundary::Sentence),
                         boundaryName);

// Every second word of continuous speech is silent, so that the beginning of one too many would be heard.
TEST_F(SoundHeld, noneOfTheNextWordIsHeardThoughNoPauseIsBetween) {
    Speak request = speak(1, "");
    request.manner.rate = kFast;
    for (int count = 0; count < 20; ++count) {
        request.text += "[[volm 0]]moon [[volm 1]]moon ";
    }
    const SoundFile file = inFile(request);
    std::vector<double> wanted = wordLengths(file.samples, file.rate);
    ASSERT_THAT(wanted, SizeIs(20));

    engine.send(request);
    for (int words = 0; words < 5; ++words) {
        ASSERT_TRUE(engine.nextOf<Word>());
    }
    engine.send(Stop{1, Boundary::Word});
    const std::size_t told = 5 + wordsIn(engine.untilEnd(1)).size();
    wanted.resize(told / 2);
    EXPECT_THAT(recorded(), testing::Pointwise(testing::DoubleNear(kTolerance), wanted));
}

TEST_F(SoundHeld, continuousSpeechGoesOnWhenEachPauseIsTakenBack) {
    Speak request = speak(1, "");
    request.manner.rate = kFast;
    for (int count = 0; count < 12; ++count) {
        request.text += "moon ";
    }
    const SoundFile file = inFile(request);
    engine.send(request);
    while (auto event = engine.next()) {
        if (std::holds_alternative<Word>(*event)) {
            engine.send(Pause{1, Boundary::Word});
            engine.send(Continue{1});
        } else if (std::holds_alternative<Finished>(*event)) {
            break;
        }
    }
    ASSERT_TRUE(recording.catchUp());
    EXPECT_NEAR(heardSeconds(recording.samples(), recording.rate()), heardSeconds(file.samples, file.rate),
                kTolerance);
}

// Whether the pause cuts the word or comes in the pause behind it is the machine's business.
TEST_F(SoundHeld, aCutWordIsHeardAndToldAgain) {
    const std::vector<Event> before = start(2);
    engine.send(Pause{1, Boundary::Immediate});
    const std::vector<Event> held = until<Paused>(engine);
    expectSilent(engine);
    EXPECT_EQ(streams(), 0U);
    const std::size_t heard = wordsIn(before).size() + wordsIn(held).size();
    const std::vector<double> cut = recorded();
    EXPECT_LE(cut.size(), heard);

    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_TRUE(finished(rest)->completed);
    const std::vector<Word> words = wordsIn(rest);
    const Word last =
        held.size() > 1 && !wordsIn(held).empty() ? wordsIn(held).back() : wordsIn(before).back();
    ASSERT_FALSE(words.empty());
    const bool isRepeated = words.front() == last;
    EXPECT_EQ(words.size(), kWords - heard + (isRepeated ? 1 : 0));
    // What is heard after the pause is whole.
    const std::vector<double> all = recorded();
    std::vector<double> wanted = expected();
    ASSERT_THAT(wanted, SizeIs(kWords));
    ASSERT_GE(all.size(), words.size());
    const std::vector<double> after(all.end() - static_cast<std::ptrdiff_t>(words.size()), all.end());
    wanted.erase(wanted.begin(), wanted.end() - static_cast<std::ptrdiff_t>(words.size()));
    EXPECT_THAT(after, testing::Pointwise(testing::DoubleNear(kTolerance), wanted));
}

// A word so long that the pause is sure to cut it.
TEST_F(SoundHeld, aCutWordIsToldAgainAndWhatFollowsItIsToldOnce) {
    constexpr double kSlow = 80;
    constexpr std::uint32_t kMessage = 7;
    const std::string word = "Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogoch";
    engine.send(Speak{.utterance = 1,
                      .text = "[[sync 5]]" + word + " and [[sync 7]]so on.",
                      .voice = "gmw/en-US",
                      .manner = {.rate = kSlow}});
    const std::vector<Event> before = until<Word>(engine);
    ASSERT_THAT(wordsIn(before), SizeIs(1));
    engine.send(Pause{1, Boundary::Immediate});
    until<Paused>(engine);
    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_TRUE(finished(rest)->completed);
    const std::vector<Word> words = wordsIn(rest);
    ASSERT_THAT(words, SizeIs(4));
    EXPECT_EQ(words.front(), wordsIn(before).front());
    std::vector<std::uint32_t> messages;
    std::size_t silences = 0;
    for (const Event& event : rest) {
        if (const auto* sync = std::get_if<Sync>(&event)) {
            messages.push_back(sync->message);
        }
        const auto* phoneme = std::get_if<Phoneme>(&event);
        silences += phoneme != nullptr && phoneme->opcode == 0 ? 1 : 0;
    }
    EXPECT_THAT(messages, testing::ElementsAre(kMessage));
    EXPECT_GE(silences, 1U);
}

TEST_F(SoundHeld, pausedBeforeItBeganItStartsWhenContinued) {
    engine.send(speakParted(1, kSentences));
    engine.send(Pause{1, Boundary::Immediate});
    EXPECT_TRUE(engine.nextOf<Paused>());
    expectSilent(engine);
    engine.send(Continue{1});
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_TRUE(finished(rest)->completed);
    EXPECT_THAT(wordsIn(rest), SizeIs(kWords));
    expectSameSounds(recorded(), expected(), kWords);
}

TEST_F(SoundHeld, aPauseOutlivesTheServer) {
    start(1);
    engine.send(Pause{1, Boundary::Word});
    EXPECT_TRUE(engine.nextOf<Paused>());
    server.kill();
    expectSilent(engine);
    server.restart();
    engine.send(Continue{1});
    EXPECT_TRUE(finished(engine.untilEnd(1))->completed);
}

TEST_F(SoundHeld, isStoppedWhilePaused) {
    for (const Boundary boundary : {Boundary::Immediate, Boundary::Word, Boundary::Sentence}) {
        start(1);
        engine.send(Pause{1, Boundary::Immediate});
        EXPECT_TRUE(engine.nextOf<Paused>());
        engine.send(Stop{1, boundary});
        EXPECT_THAT(finished(engine.untilEnd(1)), kStopped);
    }
}

} // namespace
