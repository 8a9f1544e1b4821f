#include "tests/support/word_fixtures.h"

#include <fstream>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tests/support/utf16.h"

namespace zqm::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

TEST(MarkedText, TakesTheMarksOutAndCountsInUtf16) {
    const MarkedText marked = parseMarkedText("⟦Hello⟧, ⟦𝒳⟧⟦日本⟧\\n⟦e\\u{301}⟧ \\\\\\t!");
    EXPECT_EQ(marked.text, "Hello, 𝒳日本\ne\u0301 \\\t!");
    EXPECT_THAT(marked.words,
                ElementsAre(WordRange{0, 5}, WordRange{7, 2}, WordRange{9, 2}, WordRange{12, 2}));
    EXPECT_THAT(marked.cutOut, ElementsAre("Hello", "𝒳", "日本", "e\u0301"));
}

TEST(MarkedText, RefusesWhatIsMalformed) {
    const auto parsing = [](const char* line) { return [line] { parseMarkedText(line); }; };
    EXPECT_THAT(parsing("⟦a"), ThrowsMessage<std::runtime_error>(HasSubstr("not closed")));
    EXPECT_THAT(parsing("⟦a⟦b⟧⟧"), ThrowsMessage<std::runtime_error>(HasSubstr("inside a word")));
    EXPECT_THAT(parsing("a⟧"), ThrowsMessage<std::runtime_error>(HasSubstr("not opened")));
    EXPECT_THAT(parsing("⟦⟧"), ThrowsMessage<std::runtime_error>(HasSubstr("empty")));
    EXPECT_THAT(parsing("\\q"), ThrowsMessage<std::runtime_error>(HasSubstr("unknown escape")));
    EXPECT_THAT(parsing("\\"), ThrowsMessage<std::runtime_error>(HasSubstr("unknown escape")));
    for (const char* code : {"\\u{}", "\\u{12", "\\u{xyz}", "\\u{D800}", "\\u{110000}"}) {
        EXPECT_THAT(parsing(code), ThrowsMessage<std::runtime_error>(HasSubstr("no character"))) << code;
    }
}

TEST(WordFixtures, NameTheLineThatIsWrong) {
    const TemporaryFolder folder;
    std::ofstream(folder / "xx.txt") << "#! language: X\n#! script: Y\n#! voice: z\n\n⟦fine⟧\n⟦broken\n";
    EXPECT_THAT([&] { readWordFixtures(folder / "xx.txt"); },
                ThrowsMessage<std::runtime_error>("xx.txt:6: a word is not closed"));
    std::ofstream(folder / "yy.txt") << "⟦no header⟧\n";
    EXPECT_THROW(readWordFixtures(folder / "yy.txt"), std::runtime_error);
    EXPECT_THROW(readWordFixtures(folder / "absent.txt"), std::runtime_error);
}

TEST(WordFixtures, AreManyInManyScripts) {
    std::set<std::string> scripts;
    std::size_t english = 0;
    for (const WordFixture& fixture : wordFixtures()) {
        scripts.insert(fixture.script);
        english += fixture.language == "English" ? 1 : 0;
    }
    EXPECT_GE(wordFixtures().size(), 330U);
    EXPECT_GE(scripts.size(), 14U);
    EXPECT_GE(english, 80U);
}

TEST(WordFixtures, HoldTogether) {
    std::set<std::string> texts;
    for (const WordFixture& fixture : wordFixtures()) {
        SCOPED_TRACE(fixture.place + ": " + fixture.text);
        EXPECT_THAT(wordFaults(toUtf16(fixture.text), fixture.words), IsEmpty());
        EXPECT_TRUE(texts.insert(fixture.text).second) << "the text stands there twice";
        for (std::size_t index = 0; index < fixture.words.size(); ++index) {
            const WordRange& word = fixture.words[index];
            EXPECT_EQ(cut(fixture.text, word.position, word.length), fixture.cutOut[index]);
        }
    }
}

TEST(WordFixtures, OfAVoiceMakeAParagraph) {
    std::set<std::string> voices;
    std::size_t words = 0;
    for (const WordFixture& paragraph : wordFixtureParagraphs()) {
        SCOPED_TRACE(paragraph.voice);
        EXPECT_TRUE(voices.insert(paragraph.voice).second);
        ASSERT_EQ(paragraph.words.size(), paragraph.cutOut.size());
        for (std::size_t index = 0; index < paragraph.words.size(); ++index) {
            const WordRange& word = paragraph.words[index];
            EXPECT_EQ(cut(paragraph.text, word.position, word.length), paragraph.cutOut[index]);
        }
        words += paragraph.words.size();
    }
    std::size_t expected = 0;
    for (const WordFixture& fixture : wordFixtures()) {
        expected += fixture.words.size();
    }
    EXPECT_EQ(words, expected);
}

} // namespace
} // namespace zqm::support
