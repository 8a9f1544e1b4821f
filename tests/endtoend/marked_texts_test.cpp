// Words and phonemes, through the library, of texts whose words were marked by hand.

#include "tests/endtoend/speaking.h"
#include "tests/support/sound_file.h"
#include "tests/support/told_events.h"
#include "tests/support/word_fixtures.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

class MarkedTexts : public SpeakingTest {};

TEST_F(MarkedTexts, AreCutIntoTheirWords) {
    for (const support::WordFixture& fixture : support::wordFixtures()) {
        Speaker speaker(runtime, fixture.voice);
        ASSERT_EQ(speaker.object.get("voice").asText(), fixture.voice) << fixture.place;
        speaker.speak(fixture.text, file);
        EXPECT_EQ(speaker.words, fixture.words) << fixture.place << ": " << fixture.text;
        EXPECT_THAT(speaker.texts, testing::Each(fixture.text)) << fixture.place;
    }
}

TEST_F(MarkedTexts, SpeakInEveryLanguageWordByWordAndPhonemeByPhoneme) {
    const std::vector<support::WordFixture> paragraphs = support::wordFixtureParagraphs();
    ASSERT_GE(paragraphs.size(), 20U);
    for (const support::WordFixture& paragraph : paragraphs) {
        Speaker speaker(runtime, paragraph.voice);
        support::ToldEvents told;
        told.listenTo(speaker.object);
        ASSERT_TRUE(speaker.start(paragraph.text, file));
        ASSERT_TRUE(runtime.runUntil([&] { return !told.ends.empty(); }, kDeadline)) << paragraph.voice;
        EXPECT_THAT(told.ends, testing::ElementsAre(true)) << paragraph.voice;
        EXPECT_EQ(told.words, paragraph.words) << paragraph.voice;
        EXPECT_THAT(support::phonemeFaults(paragraph.cutOut, told.phonemes), testing::IsEmpty())
            << paragraph.voice;
        EXPECT_GT(support::rms(support::SoundFile(file).samples), 0.01) << paragraph.voice;
    }
}

} // namespace
} // namespace zqm::endtoend
