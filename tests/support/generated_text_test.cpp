#include "tests/support/generated_text.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace zqm::support {
namespace {

TEST(TextGenerator, RepeatsItselfForTheSameSeedOnly) {
    TextGenerator one(7);
    TextGenerator same(7);
    TextGenerator other(8);
    const std::u16string first = one.next(500);
    EXPECT_EQ(first, same.next(500));
    EXPECT_NE(first, other.next(500));
    EXPECT_NE(first, one.next(500));
}

TEST(TextGenerator, KeepsToTheLength) {
    TextGenerator generator(1);
    EXPECT_EQ(generator.next(0), u"");
    for (const std::size_t length : {1U, 10U, 100000U}) {
        const std::size_t size = generator.next(length).size();
        EXPECT_GE(size, length);
        EXPECT_LT(size, length + 40);
    }
}

TEST(TextGenerator, MixesEverythingThatCanGoWrong) {
    const std::u16string text = TextGenerator(3).next(200000);
    std::size_t loneSurrogates = 0;
    std::size_t supplementaryLetters = 0;
    std::size_t emoji = 0;
    std::size_t marks = 0;
    std::size_t blanks = 0;
    for (std::size_t at = 0; at < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text, at, text.size(), character);
        loneSurrogates += U_IS_SURROGATE(character) ? 1 : 0;
        supplementaryLetters += character > 0xFFFF && u_isalpha(character) != 0 ? 1 : 0;
        emoji += u_hasBinaryProperty(character, UCHAR_EMOJI_PRESENTATION) != 0 ? 1 : 0;
        marks += (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0 ? 1 : 0;
        blanks += u_isUWhiteSpace(character) != 0 ? 1 : 0;
    }
    for (const std::size_t count : {loneSurrogates, supplementaryLetters, emoji, marks, blanks}) {
        EXPECT_GT(count, 100U);
    }
}

} // namespace
} // namespace zqm::support
