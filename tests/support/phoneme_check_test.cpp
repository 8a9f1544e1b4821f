#include "tests/support/phoneme_check.h"

#include <gmock/gmock.h>

namespace zqm::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::vector<std::string> kWords{"one", "😀", "2"};

TEST(PhonemeCheck, FindsNothingWhereAllIsThere) {
    EXPECT_THAT(phonemeFaults(kWords, std::vector<ToldPhoneme>{{0, 0}, {1, 1}, {41, 3}, {0, 3}}), IsEmpty());
    EXPECT_THAT(phonemeFaults({}, std::vector<ToldPhoneme>{{0, 0}}), IsEmpty());
}

TEST(PhonemeCheck, MissesSilenceAtBothEnds) {
    const auto silence = HasSubstr("silence");
    EXPECT_THAT(phonemeFaults({}, {}), ElementsAre(silence));
    EXPECT_THAT(phonemeFaults(kWords, std::vector<ToldPhoneme>{{1, 1}, {1, 3}, {0, 3}}),
                ElementsAre(silence));
    EXPECT_THAT(phonemeFaults(kWords, std::vector<ToldPhoneme>{{0, 0}, {1, 1}, {1, 3}}),
                ElementsAre(silence));
}

TEST(PhonemeCheck, NamesWhatIsNoOpcode) {
    EXPECT_THAT(phonemeFaults(kWords, std::vector<ToldPhoneme>{{0, 0}, {-1, 1}, {42, 3}, {0, 3}}),
                ElementsAre(HasSubstr("opcode: -1"), HasSubstr("opcode: 42")));
}

TEST(PhonemeCheck, NamesWordsThatHaveNone) {
    EXPECT_THAT(phonemeFaults(kWords, std::vector<ToldPhoneme>{{0, 0}, {1, 0}, {0, 1}, {1, 2}, {0, 3}}),
                ElementsAre(HasSubstr("word 0, one"), HasSubstr("word 2, 2")));
}

} // namespace
} // namespace zqm::support
