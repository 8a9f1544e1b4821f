#include "engine/text_pieces.h"

#include "tests/support/generated_text.h"
#include "tests/support/utf16.h"
#include "tests/support/word_fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unicode/unistr.h>
#include <vector>

using namespace zqm::engine;
using namespace zqm::support;

namespace {

std::string toBytes(std::u32string_view text) {
    std::string bytes;
    for (const char32_t character : text) {
        icu::UnicodeString(static_cast<UChar32>(character)).toUTF8String(bytes);
    }
    return bytes;
}

struct Pieces {
    explicit Pieces(const std::string& text, const std::string& language = "en-US") {
        TextPieces reader(text, language);
        while (auto piece = reader.next()) {
            pieces.push_back(std::move(*piece));
        }
    }

    [[nodiscard]] std::string joined() const {
        std::string text;
        for (const Piece& piece : pieces) {
            text += toBytes(piece.text);
        }
        return text;
    }

    [[nodiscard]] std::vector<Range> words() const {
        std::vector<Range> ranges;
        for (const Piece& piece : pieces) {
            for (const Word& word : piece.words) {
                ranges.push_back(word.utf16);
            }
        }
        return ranges;
    }

    std::vector<Piece> pieces;
};

std::vector<Range> wordsOfWhole(const std::string& text) {
    std::u32string characters;
    const icu::UnicodeString units = icu::UnicodeString::fromUTF8(text);
    for (std::int32_t at = 0; at < units.length(); at = units.moveIndex32(at, 1)) {
        characters.push_back(static_cast<char32_t>(units.char32At(at)));
    }
    std::vector<Range> ranges;
    for (const Word& word : WordFinder().find(characters)) {
        ranges.push_back(word.utf16);
    }
    return ranges;
}

std::string repeated(const std::string& part, std::size_t times) {
    std::string text;
    for (std::size_t count = 0; count < times; ++count) {
        text += part;
    }
    return text;
}

TEST(TextPieces, ofNothingAreNone) {
    EXPECT_TRUE(Pieces("").pieces.empty());
}

TEST(TextPieces, aShortTextIsOnePiece) {
    const Pieces text("Hello world. It's me.");
    ASSERT_EQ(text.pieces.size(), 1U);
    EXPECT_EQ(text.pieces[0].words.size(), 4U);
    EXPECT_TRUE(text.pieces[0].endsSentence);
}

TEST(TextPieces, areCutAtTheEndsOfSentences) {
    const Pieces text(repeated("This is a sentence of some length, spoken. ", 50));
    EXPECT_GT(text.pieces.size(), 4U);
    for (const Piece& piece : text.pieces) {
        EXPECT_TRUE(piece.text.ends_with(U". ")) << toBytes(piece.text);
        EXPECT_TRUE(piece.endsSentence);
        EXPECT_LE(piece.text.size(), TextPieces::kLongest);
    }
}

TEST(TextPieces, areNeverCutAfterAnAbbreviation) {
    for (const char* const name : {"Dr. Smith ", "J. R. Smith ", "Mrs. Smith ", "Prof. Smith "}) {
        for (const Piece& piece : Pieces(repeated(name, 200)).pieces) {
            EXPECT_FALSE(piece.text.ends_with(U". ")) << toBytes(piece.text);
        }
    }
}

TEST(TextPieces, areCutAtParagraphsClausesBlanksOrWords) {
    for (const char* const part :
         {"no stop here\n\n", "one clause, ", "word ", "\u6211\u4EEC\u53BB\u5B66\u6821"}) {
        const std::string text = repeated(part, 500);
        const Pieces pieces(text);
        EXPECT_GT(pieces.pieces.size(), 5U);
        EXPECT_EQ(pieces.joined(), text);
        EXPECT_EQ(pieces.words(), wordsOfWhole(text));
        for (const Piece& piece : pieces.pieces) {
            EXPECT_LE(piece.text.size(), TextPieces::kLongest);
        }
    }
}

TEST(TextPieces, ofAWordWithoutEndListItOnce) {
    for (const std::size_t length : {399U, 400U, 401U, 1000U, 100'000U}) {
        const std::string text = "a b " + std::string(length, 'x') + ". Next one";
        const Pieces pieces(text);
        EXPECT_EQ(pieces.joined(), text) << length;
        EXPECT_EQ(pieces.words(), wordsOfWhole(text)) << length;
        for (const Piece& piece : pieces.pieces) {
            EXPECT_LE(piece.text.size(), TextPieces::kLongest);
            for (const Word& word : piece.words) {
                EXPECT_LE(word.codePoints.end, piece.text.size());
            }
        }
    }
}

TEST(TextPieces, ofManySignsWithoutWords) {
    const std::string text = repeated("... --- ", 500) + "end";
    const Pieces pieces(text);
    EXPECT_EQ(pieces.joined(), text);
    EXPECT_EQ(pieces.words().size(), 1U);
}

TEST(TextPieces, keepTheWordsOfLongTextsInEveryLanguage) {
    std::string text;
    for (const WordFixture& fixture : wordFixtures()) {
        text += fixture.text + "\n";
    }
    const Pieces pieces(text);
    EXPECT_EQ(pieces.joined(), text);
    EXPECT_EQ(pieces.words(), wordsOfWhole(text));
}

TEST(TextPieces, keepTheWordsOfGeneratedTexts) {
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        const std::string text = toUtf8(TextGenerator(seed).next(5000));
        const Pieces pieces(text);
        EXPECT_EQ(pieces.joined(), text) << "seed " << seed;
        EXPECT_EQ(pieces.words(), wordsOfWhole(text)) << "seed " << seed;
    }
}

TEST(TextPieces, takeAnyLanguage) {
    for (const char* const language : {"", "en", "en-US", "x-nonsense", "cmn-Latn-pinyin", "\xFF"}) {
        EXPECT_EQ(Pieces("Hello.", language).pieces.size(), 1U) << language;
    }
}

TEST(Piece, fromAWordIsTheRest) {
    const Piece rest = Pieces("One two three").pieces.at(0).from(1);
    EXPECT_EQ(rest.text, U"two three");
    ASSERT_EQ(rest.words.size(), 2U);
    EXPECT_EQ(rest.words[0], (Word{{0, 3}, {4, 7}}));
    EXPECT_EQ(rest.words[1], (Word{{4, 9}, {8, 13}}));
}

} // namespace
