#include "tests/support/word_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> faults(std::u16string_view text, const std::vector<WordRange>& words) {
    return wordFaults(text, words);
}

TEST(WordCheck, FindsNothingWrongWithGoodWords) {
    EXPECT_THAT(faults(u"", {}), IsEmpty());
    EXPECT_THAT(faults(u" … — !", {}), IsEmpty());
    EXPECT_THAT(faults(u"Hello, 👍🏽 world", {{0, 5}, {7, 4}, {12, 5}}), IsEmpty());
    EXPECT_THAT(faults(u"e\u0301te\u0301.", {{0, 5}}), IsEmpty());
}

TEST(WordCheck, FindsLettersAndDigitsOutsideWords) {
    EXPECT_THAT(faults(u"Hello world", {{0, 5}}), testing::SizeIs(5));
    EXPECT_THAT(faults(u"a 5 b", {{0, 1}, {4, 1}}), ElementsAre(HasSubstr("outside every word at 2")));
    EXPECT_THAT(faults(u"ab", {{0, 1}}), ElementsAre(HasSubstr("outside every word at 1")));
    EXPECT_THAT(faults(u"ab", {{1, 1}}), ElementsAre(HasSubstr("outside every word at 0")));
    EXPECT_THAT(faults(u"𝒳", {}), ElementsAre(HasSubstr("outside every word at 0")));
}

TEST(WordCheck, FindsWordsOutOfOrder) {
    EXPECT_THAT(faults(u"ab cd", {{0, 2}, {0, 2}, {3, 2}}), ElementsAre(HasSubstr("begins before")));
    EXPECT_THAT(faults(u"abcd", {{0, 3}, {2, 2}}), testing::Contains(HasSubstr("begins before")));
    EXPECT_THAT(faults(u"ab cd", {{3, 2}, {0, 2}}), testing::Contains(HasSubstr("begins before")));
}

TEST(WordCheck, FindsEmptyWordsAndThoseBeyondTheEnd) {
    EXPECT_THAT(faults(u"ab", {{0, 2}, {2, 0}}), ElementsAre(HasSubstr("empty")));
    EXPECT_THAT(faults(u"--", {{1, 2}}), ElementsAre(HasSubstr("beyond the end")));
    EXPECT_THAT(faults(u"--", {{3, 1}}), ElementsAre(HasSubstr("beyond the end")));
}

TEST(WordCheck, FindsWhatIsParted) {
    EXPECT_THAT(faults(u"𝒳", {{0, 1}}), testing::Contains(HasSubstr("surrogate pair")));
    EXPECT_THAT(faults(u"👍🏽", {{0, 2}}), ElementsAre(HasSubstr("grapheme cluster")));
    EXPECT_THAT(faults(u"e\u0301", {{0, 1}}), ElementsAre(HasSubstr("grapheme cluster")));
    EXPECT_THAT(faults(u"🇩🇪🇫🇷", {{0, 2}, {2, 6}}),
                ElementsAre(HasSubstr("grapheme cluster"), HasSubstr("grapheme cluster")));
}

TEST(WordCheck, LetsAWordBeginRightAfterABlank) {
    EXPECT_THAT(faults(u"a \U0001F3FD", {{0, 1}, {2, 2}}), IsEmpty());
    EXPECT_THAT(faults(u"a. \u0301b", {{0, 1}, {3, 2}}), IsEmpty());
}

TEST(WordCheck, FindsWhiteSpaceInsideAWord) {
    EXPECT_THAT(faults(u"ab cd", {{0, 5}}), ElementsAre(HasSubstr("white space inside a word at 2")));
    EXPECT_THAT(faults(u"ab\u3000", {{0, 3}}), ElementsAre(HasSubstr("white space")));
}

TEST(WordCheck, SurvivesLoneSurrogates) {
    const std::u16string text = {0xDC00, u'a', 0xD800};
    EXPECT_THAT(faults(text, {{1, 1}}), IsEmpty());
}

} // namespace
} // namespace zqm::support
