#include "platform/text_portions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextPortions, OfAShortTextAreTheText) {
    EXPECT_THAT(portionsOf("one two", 7), ElementsAre("one two"));
    EXPECT_THAT(portionsOf("", 7), IsEmpty());
}

TEST(TextPortions, BeginWhereLinesDoOrElseWords) {
    EXPECT_THAT(portionsOf("one two\nthree four", 10), ElementsAre("one two\n", "three four"));
    EXPECT_THAT(portionsOf("one two\rthree", 10), ElementsAre("one two\r", "three"));
    EXPECT_THAT(portionsOf("one two three", 9), ElementsAre("one two ", "three"));
    EXPECT_THAT(portionsOf("one\ttwo", 5), ElementsAre("one\t", "two"));
}

TEST(TextPortions, OfALongWordEndWithACharacter) {
    EXPECT_THAT(portionsOf("abcdef", 4), ElementsAre("abcd", "ef"));
    EXPECT_THAT(portionsOf("a\u00E9\u00E9", 4), ElementsAre("a\u00E9", "\u00E9"));
    EXPECT_THAT(portionsOf("\u20AC\u20AC", 5), ElementsAre("\u20AC", "\u20AC"));
}

TEST(TextPortions, HaveACharacterAtLeast) {
    EXPECT_THAT(portionsOf("\u20AC\U0001F600a", 1), ElementsAre("\u20AC", "\U0001F600", "a"));
    EXPECT_THAT(portionsOf("\u20AC", 2), ElementsAre("\u20AC"));
}

} // namespace
} // namespace zqm::platform
