#include "cli/text/sentences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Parts = std::vector<std::u16string>;

Parts sentencesOf(std::u16string_view text, const std::string& language = "en") {
    Parts parts;
    std::size_t begin = 0;
    for (const std::size_t end : sentenceEnds(text, language)) {
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end;
    }
    EXPECT_EQ(begin, text.size());
    return parts;
}

TEST(Sentences, EndBehindTheirWhiteSpace) {
    EXPECT_EQ(sentencesOf(u"One two.  Three? \"Four!\" Five"),
              (Parts{u"One two.  ", u"Three? ", u"\"Four!\" ", u"Five"}));
}

TEST(Sentences, AreNoneInAnEmptyTextAndOneInABlankOne) {
    EXPECT_THAT(sentenceEnds(u""), IsEmpty());
    EXPECT_THAT(sentenceEnds(u" \n\n "), ElementsAre(4));
    EXPECT_THAT(sentenceEnds(u"..."), ElementsAre(3));
}

TEST(Sentences, GoOnBehindALineEnd) {
    EXPECT_EQ(sentencesOf(u"One\ntwo \r\n three. Four\u2028five"),
              (Parts{u"One\ntwo \r\n three. ", u"Four\u2028five"}));
}

TEST(Sentences, EndAtABlankLine) {
    EXPECT_EQ(sentencesOf(u"Chapter One\n \nIt began\r\n\r\nso\u2029and so"),
              (Parts{u"Chapter One\n \n", u"It began\r\n\r\n", u"so\u2029", u"and so"}));
}

TEST(Sentences, BeginWithTheWhiteSpaceOfTheText) {
    EXPECT_EQ(sentencesOf(u"\n\n  One. Two.\n\n"), (Parts{u"\n\n  One. ", u"Two.\n\n"}));
}

TEST(Sentences, DoNotEndBehindAbbreviations) {
    EXPECT_EQ(sentencesOf(u"Mr. Smith met Dr. Who. They spoke."),
              (Parts{u"Mr. Smith met Dr. Who. ", u"They spoke."}));
    EXPECT_EQ(sentencesOf(u"Das gilt z.B. Montags. Gut.", "de"),
              (Parts{u"Das gilt z.B. Montags. ", u"Gut."}));
}

TEST(Sentences, OfWhatIsNoLanguageAreThoseOfEnglish) {
    for (const char* language : {"", "??", "a b"}) {
        EXPECT_EQ(sentencesOf(u"Mr. Smith came. He left.", language),
                  (Parts{u"Mr. Smith came. ", u"He left."}))
            << language;
    }
}

TEST(Sentences, AreFoundInOtherScripts) {
    EXPECT_EQ(sentencesOf(u"世界。你好!"), (Parts{u"世界。", u"你好!"}));
    EXPECT_EQ(sentencesOf(u"مرحبا؟ نعم."), (Parts{u"مرحبا؟ ", u"نعم."}));
    EXPECT_EQ(sentencesOf(u"👋🏽. 👩‍👩‍👧!"), (Parts{u"👋🏽. ", u"👩‍👩‍👧!"}));
}

} // namespace
} // namespace zqm::cli
