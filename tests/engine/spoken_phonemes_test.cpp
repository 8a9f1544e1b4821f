#include "engine/speaker/spoken_phonemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace zqm::engine {

void PrintTo(const SpokenPhoneme& phoneme, std::ostream* stream) {
    *stream << phoneme.opcode << " at " << phoneme.sample;
}

} // namespace zqm::engine

namespace {

constexpr std::size_t kShortest = 100;
constexpr std::int16_t kD = 20;
constexpr std::int16_t kG = 23;

std::vector<SpokenPhoneme> spoken(const std::vector<PhonemeMark>& marks, std::size_t samples) {
    return spokenPhonemes(marks, samples, kShortest, PhonemeOpcodes("en-us"));
}

TEST(SpokenPhonemes, areThoseOfTheMarks) {
    EXPECT_THAT(spoken({}, 100), IsEmpty());
    EXPECT_THAT(spoken({{0, "d"}, {50, "g"}}, 100), ElementsAre(SpokenPhoneme{0, kD}, SpokenPhoneme{50, kG}));
}

TEST(SpokenPhonemes, countPausesThatAreLong) {
    EXPECT_THAT(spoken({{0, "d"}, {50, "_:"}, {149, "g"}, {200, "_:"}, {270, "_"}}, 300),
                ElementsAre(SpokenPhoneme{0, kD}, SpokenPhoneme{149, kG}, SpokenPhoneme{200, 0}));
}

TEST(SpokenPhonemes, ofOnePhonemeShareItsTime) {
    const std::vector<SpokenPhoneme> result = spoken({{0, "d"}, {100, "aI@"}, {300, "g"}}, 400);
    ASSERT_EQ(result.size(), 4U);
    EXPECT_EQ(result[1].sample, 100U);
    EXPECT_EQ(result[2].sample, 200U);
    EXPECT_EQ(result[3], (SpokenPhoneme{300, kG}));
}

} // namespace
