#include "engine/speaker/espeak_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string_view>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

EspeakText given(std::u32string_view text) {
    EspeakText result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        result.add(text[index], index);
    }
    return result;
}

TEST(EspeakText, isTheTextGiven) {
    const EspeakText text = given(U"Größe 😀");
    EXPECT_EQ(text.text(), "Größe 😀");
    EXPECT_THAT(text.origins(), ElementsAre(0, 1, 2, 3, 4, 5, 6));
}

TEST(EspeakText, leavesOutWhatIsNeitherSeenNorHeard) {
    const EspeakText text = given(U"a\u00ADb\uFFFDc");
    EXPECT_EQ(text.text(), "ab c");
    EXPECT_THAT(text.origins(), ElementsAre(0, 2, 3, 4));
}

TEST(EspeakText, takesNoCommandFromTheText) {
    EXPECT_EQ(given(U"a\u0001100Sb").text(), "a 100Sb");
}

TEST(EspeakText, takesNoPhonemesFromTheText) {
    EXPECT_EQ(given(U"a[[b]]").text(), "a[ [b]]");
    EXPECT_EQ(given(U"[[[").text(), "[ [ [");
    EXPECT_EQ(given(U"[\u00AD[").text(), "[ [");
    EXPECT_THAT(given(U"[[b").origins(), ElementsAre(0, 1, 1, 2));
}

TEST(EspeakText, holdsPhonemesApartFromWhatStandsAroundThem) {
    EspeakText text = given(U"(");
    text.addPhonemes("d'0g", 1);
    text.add(U'a', 4);
    EXPECT_EQ(text.text(), "( [[d'0g]] a");
    EXPECT_THAT(text.origins(), ElementsAre(0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 4, 4));

    EspeakText ended;
    ended.addPhonemes("d'0g", 0);
    ended.add(U'.', 3);
    EXPECT_EQ(ended.text(), "[[d'0g]].");
}

TEST(EspeakText, beginsAWordWhereArmenianOrGeorgianFollowsAnotherScript) {
    EXPECT_EQ(given(U"𐌶ծ").text(), "𐌶 ծ");
    EXPECT_EQ(given(U"𐌶.ծ-ծծ").text(), "𐌶. ծ-ծծ");
    EXPECT_EQ(given(U"Ⅻმმ, მ-მ").text(), "Ⅻ მმ, მ-მ");
    EXPECT_EQ(given(U"«5-րդ»").text(), "«5-րդ»");
    EXPECT_EQ(given(U"𐌶ж").text(), "𐌶ж");
    EXPECT_THAT(given(U"𐌶ծ").origins(), ElementsAre(0, 1, 1));
}

TEST(EspeakText, holdsCommands) {
    EspeakText text;
    text.addCommand(EspeakText::Command::Rate, 140, 7);
    EXPECT_EQ(text.text(), "\x01"
                           "140S");
    EXPECT_THAT(text.origins(), ElementsAre(7, 7, 7, 7, 7));
}

} // namespace
