#include "engine/text/text_pieces.h"

#include "tests/support/generated_text.h"
#include "tests/support/utf16.h"
#include "tests/support/word_fixtures.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
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

// ---- sentences

struct Begun {
    std::string text;
    std::vector<std::string> words; // the first of each sentence
};

void PrintTo(const Begun& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text);
}

std::vector<std::string> firstWords(const std::string& text, const std::vector<Piece>& pieces) {
    std::vector<std::string> words;
    for (const Piece& piece : pieces) {
        for (const std::size_t index : piece.sentenceStarts) {
            const Range range = piece.words.at(index).utf16;
            words.push_back(cut(text, range.begin, range.length()));
        }
    }
    return words;
}

class SentenceStarts : public testing::TestWithParam<Begun> {};

TEST_P(SentenceStarts, areTheFirstWords) {
    EXPECT_EQ(firstWords(GetParam().text, Pieces(GetParam().text).pieces), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(Sentences, SentenceStarts,
                         testing::Values(Begun{"", {}}, Begun{"... !", {}}, Begun{"one", {"one"}},
                                         Begun{"One two. Three four! Five?", {"One", "Three", "Five"}},
                                         Begun{"- \"(One two.) 'Three four.'\"", {"One", "Three"}},
                                         Begun{"Mrs. Smith met Dr. Jones. They spoke.", {"Mrs", "They"}},
                                         Begun{"It is 3.5 or p.m. there, e.g. now.", {"It"}},
                                         Begun{"It took J. R. Smith. Nobody else.", {"It", "Nobody"}},
                                         // a line may end inside a sentence, a paragraph may not
                                         Begun{"One two\nthree four\r\nfive.\nSix", {"One", "Six"}},
                                         Begun{"A title\n\nThe text", {"A", "The"}},
                                         Begun{"A title\r\n \r\nThe text", {"A", "The"}},
                                         Begun{"He saw him.\n\nThe end", {"He", "The"}},
                                         Begun{"A title\u2029the text", {"A", "the"}},
                                         Begun{"\u6211\u4EEC\u53BB\u3002\u4F60\u4E5F\u53BB\u3002",
                                               {"\u6211\u4EEC", "\u4F60"}},
                                         Begun{"\u0928\u092E\u0938\u094D\u0924\u0947\u0964 \u0906\u092A",
                                               {"\u0928\u092E\u0938\u094D\u0924\u0947", "\u0906\u092A"}}));

TEST(TextPieces, startTheSameSentencesWhereverTheyAreCut) {
    const std::string text = repeated("This goes on. And then, it ends here! Somebody has no more, ", 40);
    const std::vector<std::string> all = firstWords(text, Pieces(text).pieces);
    EXPECT_EQ(all.size(), 81U);
    for (const std::size_t step : {1U, 3U, 7U, 20U, 150U, 399U, 401U}) {
        TextPieces reader(text, "en-US");
        std::vector<Range> starts;
        for (std::size_t limit = 0; limit < text.size();) {
            limit = text.find_first_of(" ,.!", limit + step);
            while (const auto piece = reader.next(limit)) {
                for (const std::size_t index : piece->sentenceStarts) {
                    starts.push_back(piece->words.at(index).utf16);
                }
            }
        }
        ASSERT_EQ(starts.size(), all.size()) << step;
        for (std::size_t index = 0; index < all.size(); ++index) {
            EXPECT_EQ(text[starts[index].begin], all[index].front()) << step;
        }
    }
}

// ---- limits

struct Limited {
    std::string text;
    std::size_t limit;
    std::string first;
    bool endsSentence;
    std::vector<std::string> sentences; // their first words
};

void PrintTo(const Limited& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text) << " to " << example.limit;
}

class LimitedPieces : public testing::TestWithParam<Limited> {};

TEST_P(LimitedPieces, endAtTheLimit) {
    TextPieces reader(GetParam().text, "en-US");
    std::vector<Piece> pieces;
    pieces.push_back(reader.next(GetParam().limit).value());
    EXPECT_EQ(toBytes(pieces[0].text), GetParam().first);
    EXPECT_EQ(pieces[0].endsSentence, GetParam().endsSentence);
    EXPECT_FALSE(reader.next(GetParam().limit));
    while (auto piece = reader.next()) {
        pieces.push_back(std::move(*piece));
    }
    std::string joined;
    for (const Piece& piece : pieces) {
        joined += toBytes(piece.text);
    }
    EXPECT_EQ(joined, GetParam().text);
    EXPECT_TRUE(pieces.back().endsSentence);
    EXPECT_EQ(firstWords(GetParam().text, pieces), GetParam().sentences);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, LimitedPieces,
    testing::Values(
        Limited{"One two three.", 4, "One ", false, {"One"}},
        Limited{"One two three.", 3, "One", false, {"One"}},
        Limited{"One two three.", 5, "One t", false, {"One"}},
        Limited{"One two three.", 14, "One two three.", true, {"One"}},
        Limited{"One two three.", 99, "One two three.", true, {"One"}},
        Limited{"One two three.", 13, "One two three", false, {"One"}},
        Limited{"One later. Three.", 10, "One later.", true, {"One", "Three"}},
        Limited{"One later. Three.", 11, "One later. ", true, {"One", "Three"}},
        Limited{"One later. (Three.)", 12, "One later. (", true, {"One", "Three"}},
        Limited{"One later. three.", 11, "One later. ", false, {"One"}},
        Limited{"Dr. Three.", 4, "Dr. ", false, {"Dr"}},
        Limited{"Title\n\ntext", 5, "Title", true, {"Title", "text"}},
        Limited{"Title\n\ntext", 6, "Title\n", true, {"Title", "text"}},
        Limited{"(One)", 1, "(", false, {"One"}},
        Limited{"\U0001F600 \U0001F600 One", 2, "\U0001F600", false, {"\U0001F600"}},
        Limited{"\U0001F600 \U0001F600 One", 3, "\U0001F600 ", false, {"\U0001F600"}},
        Limited{
            std::string(1000, 'x') + " end", 300, std::string(300, 'x'), false, {std::string(300, 'x')}}));

TEST(TextPieces, ofAWordWithoutEndStopAtTheLimitToo) {
    const std::string text = std::string(3000, 'x') + " end";
    for (const std::size_t limit : {400U, 401U, 900U, 2999U, 3000U}) {
        TextPieces reader(text, "en-US");
        std::size_t length = 0;
        std::vector<Range> words;
        while (const auto piece = reader.next(limit)) {
            EXPECT_LE(piece->text.size(), TextPieces::kLongest);
            length += piece->text.size();
            for (const Word& word : piece->words) {
                words.push_back(word.utf16);
            }
        }
        EXPECT_EQ(length, limit);
        ASSERT_EQ(words.size(), 1U) << limit;
        EXPECT_EQ(words[0], (Range{0, limit}));
    }
}

TEST(TextPieces, atALimitBehindThemAreNone) {
    TextPieces reader("One two", "en-US");
    EXPECT_FALSE(reader.next(0));
    EXPECT_TRUE(reader.next(4));
    EXPECT_FALSE(reader.next(2));
    EXPECT_TRUE(reader.next());
    EXPECT_FALSE(reader.next());
}

TEST(TextPieces, keepTextAndPlacesWithAnyLimits) {
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        TextGenerator generator(seed);
        const std::string text = toUtf8(generator.next(2000));
        const std::u16string units = toUtf16(text);
        TextPieces reader(text, "en-US");
        std::string joined;
        std::size_t place = 0;
        std::size_t end = 0;
        for (std::size_t limit = 0; limit < units.size();) {
            limit += 1 + generator.below(seed % 2 == 0 ? 20 : 900);
            limit += partsSurrogatePair(units, std::min(limit, units.size())) ? 1 : 0;
            while (const auto piece = reader.next(limit)) {
                const std::string bytes = toBytes(piece->text);
                joined += bytes;
                place += toUtf16(bytes).size();
                EXPECT_LE(place, limit) << "seed " << seed;
                for (const Word& word : piece->words) {
                    EXPECT_GE(word.utf16.begin, end) << "seed " << seed;
                    EXPECT_LE(word.utf16.end, limit) << "seed " << seed;
                    end = word.utf16.end;
                }
            }
        }
        EXPECT_EQ(joined, text) << "seed " << seed;
    }
}

TEST(Piece, fromAWordKeepsTheSentencesBehindIt) {
    const Piece piece = Pieces("One two. Three four. Five").pieces.at(0);
    EXPECT_EQ(piece.sentenceStarts, (std::vector<std::size_t>{0, 2, 4}));
    EXPECT_EQ(piece.from(1).sentenceStarts, (std::vector<std::size_t>{1, 3}));
    EXPECT_EQ(piece.from(2).sentenceStarts, (std::vector<std::size_t>{0, 2}));
}

TEST(Piece, fromAWordIsTheRest) {
    const Piece rest = Pieces("One two three").pieces.at(0).from(1);
    EXPECT_EQ(rest.text, U"two three");
    ASSERT_EQ(rest.words.size(), 2U);
    EXPECT_EQ(rest.words[0], (Word{{0, 3}, {4, 7}}));
    EXPECT_EQ(rest.words[1], (Word{{4, 9}, {8, 13}}));
}

} // namespace
