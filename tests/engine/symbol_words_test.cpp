#include "engine/text/symbol_words.h"

#include "engine/text/text_pieces.h"
#include "tests/support/utf16.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::u32string> cutOut(std::u32string_view text) {
    std::vector<std::u32string> words;
    for (const Word& word : symbolWords(text)) {
        words.emplace_back(text.substr(word.codePoints.begin, word.codePoints.length()));
    }
    return words;
}

TEST(SymbolWords, StandBetweenWhiteSpace) {
    EXPECT_THAT(cutOut(U"_h1EHl=OW"), ElementsAre(U"_h1EHl=OW"));
    EXPECT_THAT(cutOut(U" ~DAX\t_d1AOg,\n_s1IYm=z/@.\u3000+w1AHn"),
                ElementsAre(U"~DAX", U"_d1AOg,", U"_s1IYm=z/@.", U"+w1AHn"));
    EXPECT_THAT(cutOut(U"_d1AOg_k1AEt"), ElementsAre(U"_d1AOg_k1AEt"));
}

TEST(SymbolWords, HaveASound) {
    EXPECT_THAT(cutOut(U""), IsEmpty());
    EXPECT_THAT(cutOut(U" % %% . ,;:!? _ ~ + 1 2 = / \\ < > \u00E9 \U0001F600 \" - "), IsEmpty());
    EXPECT_THAT(cutOut(U"% _d1AOg . %b"), ElementsAre(U"_d1AOg", U"%b"));
}

TEST(SymbolWords, CountInBothUnits) {
    const std::vector<Word> words = symbolWords(U"\U0001F600 \U0001F600b d");
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[0], (Word{{2, 4}, {3, 6}}));
    EXPECT_EQ(words[1], (Word{{5, 6}, {7, 8}}));
}

TEST(SymbolWords, BeginSentencesBehindTheirMarks) {
    const std::u32string text = U"_d1AOg. _k1AEt, _d1AOg ! ~DAX _b1OY? % _b1OY; _b1OY.";
    EXPECT_THAT(symbolSentences(text, symbolWords(text)), ElementsAre(8, 25, 39));
}

TEST(SymbolWords, AreThoseOfPiecesOfSymbols) {
    std::string text;
    for (int count = 0; count < 100; ++count) {
        text += "_h1EHl=OW, % _wAX2rld ~DAX. ";
    }
    TextPieces pieces(text, "en-US");
    pieces.setInput(zqm::protocol::InputMode::Phonemes);
    std::vector<std::string> words;
    std::size_t sentences = 0;
    while (const auto piece = pieces.next()) {
        EXPECT_TRUE(piece->endsSentence);
        sentences += piece->sentenceStarts.size();
        for (const std::size_t index : piece->sentenceStarts) {
            EXPECT_EQ(text.substr(piece->words.at(index).utf16.begin, 4), "_h1E");
        }
        for (const Word& word : piece->words) {
            words.push_back(text.substr(word.utf16.begin, word.utf16.length()));
        }
    }
    EXPECT_EQ(sentences, 100U);
    ASSERT_EQ(words.size(), 300U);
    EXPECT_THAT(std::vector<std::string>(words.end() - 3, words.end()),
                ElementsAre("_h1EHl=OW,", "_wAX2rld", "~DAX."));
}

TEST(SymbolWords, EndWithThePiecesOfSymbols) {
    const std::string text = "A-b _h1EHl=OW e-mail";
    TextPieces pieces(text, "en-US");
    std::vector<std::string> words;
    for (const std::size_t limit : {std::size_t{4}, std::size_t{14}, TextPieces::kNoLimit}) {
        pieces.setInput(limit == 14 ? zqm::protocol::InputMode::Phonemes : zqm::protocol::InputMode::Text);
        while (const auto piece = pieces.next(limit)) {
            for (const Word& word : piece->words) {
                words.push_back(text.substr(word.utf16.begin, word.utf16.length()));
            }
        }
    }
    EXPECT_THAT(words, ElementsAre("A-b", "_h1EHl=OW", "e-mail"));
}

} // namespace
