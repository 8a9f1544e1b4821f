#include "cli/say/text_pieces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::cli {
namespace {

using Parts = std::vector<std::u16string>;

Parts piecesOf(std::u16string_view text, std::size_t mostWords, const std::string& language = "en") {
    TextPieces pieces(text, language, mostWords);
    Parts parts;
    std::size_t position = 0;
    while (const auto piece = pieces.next()) {
        EXPECT_EQ(piece->position, position);
        EXPECT_GT(piece->length, 0U);
        position += piece->length;
        parts.emplace_back(text.substr(piece->position, piece->length));
    }
    EXPECT_EQ(position, text.size());
    return parts;
}

TEST(TextPieces, OfAShortTextAreOne) {
    EXPECT_EQ(piecesOf(u"One two three.", 3), Parts{u"One two three."});
    EXPECT_EQ(piecesOf(u" \n", 3), Parts{u" \n"});
    EXPECT_EQ(piecesOf(u"", 3), Parts{});
}

TEST(TextPieces, EndWithSentences) {
    EXPECT_EQ(piecesOf(u"One two. Three four.  Five six.", 4),
              (Parts{u"One two. Three four.  ", u"Five six."}));
    EXPECT_EQ(piecesOf(u"One two. Three four.  Five six.", 3),
              (Parts{u"One two. ", u"Three four.  ", u"Five six."}));
    EXPECT_EQ(piecesOf(u"One two.\n\nThree four.\n\n", 2), (Parts{u"One two.\n\n", u"Three four.\n\n"}));
}

TEST(TextPieces, EndAtWordsInLongSentences) {
    EXPECT_EQ(piecesOf(u"one, two - three four five. Six.", 2),
              (Parts{u"one, two - ", u"three four ", u"five. Six."}));
    EXPECT_EQ(piecesOf(u"don't 25.50 e", 2), (Parts{u"don't 25.50 ", u"e"}));
}

TEST(TextPieces, DoNotEndBehindAbbreviations) {
    EXPECT_EQ(piecesOf(u"I saw Mr. Smith. He left.", 4), (Parts{u"I saw Mr. Smith. ", u"He left."}));
    EXPECT_EQ(piecesOf(u"Gut. Das gilt z.B. Montags. Gut.", 5, "de"),
              (Parts{u"Gut. Das gilt z.B. Montags. ", u"Gut."}));
}

TEST(TextPieces, CountWordsOfEveryScriptAndSymbols) {
    EXPECT_EQ(piecesOf(u"世界。你好。", 1), (Parts{u"世界。", u"你好。"}));
    EXPECT_EQ(piecesOf(u"👋🏽👩‍👩‍👧👋🏽", 2),
              (Parts{u"👋🏽👩‍👩‍👧", u"👋🏽"}));
    EXPECT_EQ(piecesOf(u"... !!! ...", 1), Parts{u"... !!! ..."});
}

// Each is found by looking at no more than itself.
TEST(TextPieces, OfATextWithoutASentenceAreManyAllTheSame) {
    std::u16string text;
    for (int index = 0; index < 1'000'000; ++index) {
        text += u"word ";
    }
    const Parts parts = piecesOf(text, TextPieces::kMostWords);
    EXPECT_EQ(parts.size(), 500U);
    EXPECT_EQ(parts.front().size(), 5 * TextPieces::kMostWords);
}

TEST(TextPieces, AreNotMadeOfTextsWithCommands) {
    EXPECT_TRUE(hasCommands("Now [[rate 250]] faster"));
    EXPECT_FALSE(hasCommands("Now [rate 250] faster"));
}

} // namespace
} // namespace zqm::cli
