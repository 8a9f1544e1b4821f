#include "engine/track.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

TEST(Track, goesOnWhereItEnded) {
    Track track;
    EXPECT_EQ(track.end(), 0U);
    track.append(std::vector<std::int16_t>{1, 2, 3});
    track.append(std::vector<std::int16_t>{4, 5});
    EXPECT_EQ(track.end(), 5U);
    EXPECT_THAT(track.copy(1, 3), ElementsAre(2, 3, 4));
}

TEST(Track, goesOnWhereItWasCut) {
    Track track;
    track.append(std::vector<std::int16_t>{1, 2, 3});
    track.truncate(2);
    EXPECT_EQ(track.end(), 2U);
    track.append(std::vector<std::int16_t>{9});
    EXPECT_THAT(track.copy(0, 3), ElementsAre(1, 2, 9));
}

TEST(Track, keepsItsCountWhateverItForgets) {
    Track track;
    std::uint64_t next = 0;
    for (int round = 0; round < 200; ++round) {
        std::vector<std::int16_t> samples(1000);
        std::iota(samples.begin(), samples.end(), static_cast<std::int16_t>(next % 30'000));
        track.append(samples);
        next += samples.size();
        ASSERT_EQ(track.end(), next);
        const std::uint64_t wanted = next - 700;
        track.forgetBefore(wanted);
        ASSERT_EQ(track.copy(wanted, 700), std::vector<std::int16_t>(samples.end() - 700, samples.end()));
    }
    track.forgetBefore(next);
    EXPECT_EQ(track.end(), next);
    EXPECT_THAT(track.copy(next, 0), testing::IsEmpty());
    track.forgetBefore(0);
    track.forgetBefore(next + 10);
    EXPECT_EQ(track.end(), next);
}

} // namespace
