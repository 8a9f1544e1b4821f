#include "tests/support/sounded_parts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SoundedParts, ArePartedByLongSilencesOnly) {
    const std::vector<float> samples = {0, 0, 1, 0, -1, 0, 0, 0, 1, 1, 0};
    EXPECT_THAT(soundedParts(samples, 3), ElementsAre(SoundedPart{2, 5}, SoundedPart{8, 10}));
    EXPECT_THAT(soundedParts(samples, 4), ElementsAre(SoundedPart{2, 10}));
    EXPECT_THAT(soundedParts(samples, 1),
                ElementsAre(SoundedPart{2, 3}, SoundedPart{4, 5}, SoundedPart{8, 10}));
    EXPECT_DOUBLE_EQ(heardSeconds(samples, 4), 2);
}

TEST(SoundedParts, AreNoneInSilence) {
    EXPECT_THAT(soundedParts({}, 1), IsEmpty());
    EXPECT_THAT(soundedParts(std::vector<float>{0, 0.001F, 0}, 1), IsEmpty());
    EXPECT_DOUBLE_EQ(heardSeconds(std::vector<float>{0, 0}, 1), 0);
}

} // namespace
} // namespace zqm::support
