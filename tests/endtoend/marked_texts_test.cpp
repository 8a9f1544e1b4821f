// Word positions, through the library, against lists marked by hand.

#include "tests/endtoend/speaking.h"
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

} // namespace
} // namespace zqm::endtoend
