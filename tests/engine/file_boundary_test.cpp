#include "tests/engine/parted_words.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::IsEmpty;

namespace {

// The end of utterance 1 where it was stopped.
const auto kStopped = testing::Optional(testing::FieldsAre(1U, false, "", testing::_));

constexpr std::size_t kSentences = 60;

const Environment kNoServer{{"PULSE_SERVER", "unix:/nonexistent/pulse"}};

class FileHeld : public testing::Test {
protected:
    // Sent with the next request, so that this finds the speech at its beginning.
    static void start(EngineProcess& engine, Target& target, std::size_t sentences = kSentences) {
        Speak request = speakParted(1, sentences);
        request.output = target.output;
        engine.queue(request, std::move(target.descriptors));
    }

    // By an engine of its own: what one spoke before shows in its sound.
    SoundFile whole() {
        EngineProcess other{kNoServer};
        Target target(folder.path(), "whole.wav");
        start(other, target);
        other.flush();
        EXPECT_TRUE(finished(other.untilEnd(1))->completed);
        return SoundFile(target.file);
    }

    // The words that were told, and no sound but theirs.
    static void expectWords(const SoundFile& sound, std::size_t words) {
        EXPECT_GT(words, 0U);
        EXPECT_EQ(wordLengths(sound.samples, sound.rate).size(), words);
        EXPECT_LT(silenceAtEnd(sound.samples, sound.rate), 0.05);
    }

    TemporaryFolder folder;
    EngineProcess engine{kNoServer};
};

class FileBoundary : public FileHeld, public testing::WithParamInterface<Boundary> {};

TEST_P(FileBoundary, endsAStoppedFileWithTheWordToldLast) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.send(Stop{1, GetParam()});
    const std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    ASSERT_THAT(finished(events), kStopped);
    const SoundFile sound(target.file);
    expectWords(sound, wordsIn(events).size());
    if (GetParam() == Boundary::Sentence) {
        EXPECT_EQ(wordsIn(events).size() % kWordsOfSentence, 0U);
    }

    const SoundFile all = whole();
    ASSERT_LT(sound.frames(), all.frames());
    EXPECT_TRUE(std::equal(sound.samples.begin(), sound.samples.end(), all.samples.begin()));
}

TEST_P(FileBoundary, holdsAFileAndGoesOnWithoutASeam) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.send(Pause{1, GetParam()});
    std::vector<Event> events = until<Paused>(engine);
    const std::size_t told = wordsIn(events).size();
    EXPECT_LT(told, kSentences * kWordsOfSentence);
    if (GetParam() == Boundary::Sentence) {
        EXPECT_EQ(told % kWordsOfSentence, 0U);
    }
    expectSilent(engine);
    EXPECT_FALSE(std::filesystem::exists(target.file));
    engine.send(Continue{1});
    EXPECT_TRUE(engine.nextOf<Continued>());
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_EQ(wordsIn(events).size(), kSentences * kWordsOfSentence);
    EXPECT_TRUE(SoundFile(target.file).samples == whole().samples);
}

TEST_P(FileBoundary, stopsAPausedFileWithTheWordToldLast) {
    for (const Boundary stop : {Boundary::Immediate, Boundary::Word, Boundary::Sentence}) {
        Target target(folder.path(), "a.wav");
        start(engine, target);
        engine.send(Pause{1, GetParam()});
        const std::vector<Event> events = until<Paused>(engine);
        engine.send(Stop{1, stop});
        EXPECT_THAT(finished(engine.untilEnd(1)), kStopped);
        expectWords(SoundFile(target.file), wordsIn(events).size());
    }
}

TEST_P(FileBoundary, aPauseCanBeTakenBack) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.queue(Pause{1, GetParam()});
    engine.send(Continue{1});
    const std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_EQ(std::count_if(events.begin(), events.end(),
                            [](const Event& event) { return std::holds_alternative<Continued>(event); }),
              1);
    EXPECT_TRUE(SoundFile(target.file).samples == whole().samples);
}

TEST_P(FileBoundary, aNewUtteranceEndsAPausedOne) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.send(Pause{1, GetParam()});
    until<Paused>(engine);
    Target second(folder.path(), "b.wav");
    Speak request = speakParted(2, kSentences);
    request.output = second.output;
    engine.send(request, std::move(second.descriptors));
    EXPECT_THAT(finished(engine.untilEnd(1)), kStopped);
    EXPECT_TRUE(finished(engine.untilEnd(2))->completed);
    EXPECT_TRUE(std::filesystem::exists(target.file));
}

TEST_P(FileBoundary, aStopIsNotTakenBack) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.queue(Stop{1, GetParam()});
    engine.queue(Pause{1, GetParam()});
    engine.send(Continue{1});
    EXPECT_THAT(finished(engine.untilEnd(1)), kStopped);
}

TEST_P(FileBoundary, whatChangesInAPauseHoldsFromThereOn) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.send(Pause{1, GetParam()});
    const std::size_t told = wordsIn(until<Paused>(engine)).size();
    engine.send(Adjust{1, {.volume = 0}});
    engine.send(Continue{1});
    EXPECT_TRUE(finished(engine.untilEnd(1))->completed);
    const SoundFile sound(target.file);
    EXPECT_EQ(wordLengths(sound.samples, sound.rate).size(), told);
    EXPECT_EQ(sound.frames(), whole().frames());
}

TEST_P(FileBoundary, whatIsMadeAnewInAPauseIsWhole) {
    Target target(folder.path(), "a.wav");
    start(engine, target);
    engine.send(Pause{1, GetParam()});
    std::vector<Event> events = until<Paused>(engine);
    const std::size_t told = wordsIn(events).size();
    constexpr double kFast = 240;
    engine.send(Adjust{1, {.rate = kFast}});
    engine.send(Continue{1});
    const std::vector<Event> rest = engine.untilEnd(1);
    events.insert(events.end(), rest.begin(), rest.end());
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_EQ(wordsIn(events).size(), kSentences * kWordsOfSentence);
    // As slow as ever up to the pause, and faster behind it.
    const SoundFile sound(target.file);
    const SoundFile slow = whole();
    const auto common =
        std::mismatch(sound.samples.begin(), sound.samples.end(), slow.samples.begin(), slow.samples.end());
    const std::span before(slow.samples.begin(), common.second);
    EXPECT_GE(wordLengths(before, slow.rate).size(), told);
    EXPECT_LT(sound.seconds(), slow.seconds() * 0.9);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, FileBoundary,
                         testing::Values(Boundary::Immediate, Boundary::Word, Boundary::Sentence),
                         boundaryName);

// The last sentence is followed by none that would show its end.
TEST_F(FileHeld, theLastSentenceIsHeldAtItsEnd) {
    Target target(folder.path(), "a.wav");
    start(engine, target, 1);
    engine.send(Pause{1, Boundary::Sentence});
    EXPECT_EQ(wordsIn(until<Paused>(engine)).size(), kWordsOfSentence);
    engine.send(Continue{1});
    EXPECT_TRUE(finished(engine.untilEnd(1))->completed);
}

} // namespace
