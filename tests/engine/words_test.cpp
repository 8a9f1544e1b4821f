#include "engine/text/words.h"

#include "tests/support/generated_text.h"
#include "tests/support/utf16.h"
#include "tests/support/word_check.h"
#include "tests/support/word_fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::engine;
using namespace zqm::support;

namespace {

// In place of lone surrogates, which a host's text may hold, stands U+FFFD, as on the way to an engine.
std::u32string toUtf32(std::u16string_view text) {
    std::u32string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char32_t unit = text[index];
        const bool leads = unit >= 0xD800 && unit < 0xDC00;
        if (leads && index + 1 < text.size() && text[index + 1] >= 0xDC00 && text[index + 1] < 0xE000) {
            ++index;
            result.push_back(0x10000 + ((unit - 0xD800) << 10) + (text[index] - 0xDC00));
        } else {
            result.push_back(unit >= 0xD800 && unit < 0xE000 ? U'\uFFFD' : unit);
        }
    }
    return result;
}

std::vector<WordRange> rangesIn(std::u16string_view text) {
    static const WordFinder finder;
    std::vector<WordRange> ranges;
    for (const Word& word : finder.find(toUtf32(text))) {
        ranges.push_back({word.utf16.begin, word.utf16.length()});
    }
    return ranges;
}

std::vector<std::string> wordsOf(std::string_view utf8) {
    const std::u16string text = toUtf16(utf8);
    std::vector<std::string> words;
    for (const WordRange& range : rangesIn(text)) {
        words.push_back(toUtf8(cut(text, range.position, range.length)));
    }
    return words;
}

struct Case {
    std::string text;
    std::vector<std::string> words;
};

void PrintTo(const Case& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text);
}

class WordsOf : public testing::TestWithParam<Case> {};

TEST_P(WordsOf, areThese) {
    EXPECT_THAT(wordsOf(GetParam().text), testing::ElementsAreArray(GetParam().words));
}

using Words = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(Nothing, WordsOf,
                         testing::Values(Case{"", {}}, Case{" \t\r\n", {}}, Case{"...!?", {}},
                                         Case{"\xE2\x80\x94 \xE2\x80\xA6 \xC2\xBF", {}}, Case{"-", {}},
                                         Case{std::string(1, '\0'), {}}, Case{"\xEF\xBF\xBD", {}}));

INSTANTIATE_TEST_SUITE_P(
    Letters, WordsOf,
    testing::Values(Case{"Hello world", Words{"Hello", "world"}}, Case{"a", Words{"a"}},
                    Case{"don't l'eau rock'n'roll", Words{"don't", "l'eau", "rock'n'roll"}},
                    Case{"don\xE2\x80\x99t", Words{"don\xE2\x80\x99t"}},
                    Case{"'quoted' dogs' 'tis", Words{"quoted", "dogs", "tis"}},
                    Case{"e-mail, Jean-Luc - no-", Words{"e-mail", "Jean-Luc", "no"}},
                    Case{"U.S.A. e.g. end.", Words{"U.S.A", "e.g", "end"}},
                    Case{"snake_case a__b _x_", Words{"snake_case", "a__b", "x"}},
                    Case{"AT&T R & D", Words{"AT&T", "R", "&", "D"}},
                    Case{"C++, C# and F#.", Words{"C++", "C#", "and", "F#"}},
                    Case{"and/or one\xE2\x80\x94two", Words{"and", "or", "one", "two"}},
                    Case{"(a) [b] {c} \"d\"", Words{"a", "b", "c", "d"}},
                    Case{"line\nbreak\r\nagain\xE2\x80\xA8"
                         "on",
                         Words{"line", "break", "again", "on"}},
                    Case{"cafe\xCC\x81 caf\xC3\xA9", Words{"cafe\xCC\x81", "caf\xC3\xA9"}},
                    Case{"so\xC2\xADy soft\xC2\xAD", Words{"so\xC2\xADy", "soft"}}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, WordsOf,
    testing::Values(Case{"1,000 25.50 10:30 2026-11-20 3/4",
                         Words{"1,000", "25.50", "10:30", "2026-11-20", "3/4"}},
                    Case{"costs $25.50.", Words{"costs", "$25.50"}},
                    Case{"5\xE2\x82\xAC \xE2\x82\xAC"
                         "5 50% 3\xE2\x80\xB0 20\xC2\xB0 20\xC2\xB0"
                         "C",
                         Words{"5\xE2\x82\xAC",
                               ("\xE2\x82\xAC"
                                "5"),
                               "50%", "3\xE2\x80\xB0", "20\xC2\xB0",
                               ("20\xC2\xB0"
                                "C")}},
                    Case{"-5 +7 \xE2\x88\x92"
                         "3 -$4",
                         Words{"-5", "+7",
                               ("\xE2\x88\x92"
                                "3"),
                               "-$4"}},
                    Case{"3-5 (-5)", Words{"3-5", "5"}}, Case{"US$25", Words{"US$25"}},
                    Case{"2 + 2 = 4", Words{"2", "+", "2", "=", "4"}}, Case{"1, 2, 3.", Words{"1", "2", "3"}},
                    Case{"1st 2nd B2B 4x4", Words{"1st", "2nd", "B2B", "4x4"}},
                    Case{"\xD9\xA1\xD9\xA2\xD9\xAB\xD9\xA5", Words{"\xD9\xA1\xD9\xA2\xD9\xAB\xD9\xA5"}},
                    Case{"\xC2\xBD x\xC2\xB2", Words{"\xC2\xBD", "x\xC2\xB2"}}));

INSTANTIATE_TEST_SUITE_P(Addresses, WordsOf,
                         testing::Values(Case{"See https://example.org/a/b?c=d&e=%20#f.",
                                              Words{"See", "https://example.org/a/b?c=d&e=%20#f"}},
                                         Case{"(www.example.com)", Words{"www.example.com"}},
                                         Case{"https://en.example.org/wiki/A_(b), then",
                                              Words{"https://en.example.org/wiki/A_(b)", "then"}},
                                         Case{"HTTP://X.ORG! ftp://a", Words{"HTTP://X.ORG", "ftp://a"}},
                                         Case{"mail first.last+tag@mail.example.org.",
                                              Words{"mail", "first.last+tag@mail.example.org"}},
                                         Case{"mailto:a@b.org", Words{"mailto:a@b.org"}},
                                         Case{"notes.txt, a.tar.gz", Words{"notes.txt", "a.tar.gz"}},
                                         Case{"http:// www.", Words{"http", "www"}},
                                         Case{"#hashtag @name #1", Words{"#hashtag", "@name", "#1"}},
                                         Case{"me @ home # 5", Words{"me", "@", "home", "#", "5"}}));

INSTANTIATE_TEST_SUITE_P(Symbols, WordsOf,
                         testing::Values(Case{"a = b", Words{"a", "=", "b"}}, Case{"a=b", Words{"a", "b"}},
                                         Case{"100 % \xE2\x82\xAC", Words{"100", "%", "\xE2\x82\xAC"}},
                                         Case{"`code`", Words{"code"}}));

INSTANTIATE_TEST_SUITE_P(
    Emoji, WordsOf,
    testing::Values(
        Case{"Hi\xF0\x9F\x98\x80\xF0\x9F\x98\x80!", Words{"Hi", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"}},
        // a family, joined; a skin tone; two flags; a keycap; a heart with its selector
        Case{"\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7",
             Words{"\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7"}},
        Case{"\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBDok", Words{"\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD", "ok"}},
        Case{"\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7",
             Words{"\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA", "\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7"}},
        Case{"1\xEF\xB8\x8F\xE2\x83\xA3"
             "2",
             Words{"1\xEF\xB8\x8F\xE2\x83\xA3", "2"}},
        Case{"\xE2\x9D\xA4\xEF\xB8\x8F", Words{"\xE2\x9D\xA4\xEF\xB8\x8F"}}));

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, WordsOf,
    testing::Values(Case{"我去飞机场, 我的, 你好, 他们",
                         Words{"我", "去", "飞机场", "我", "的", "你好", "他们"}},
                    Case{"\xE6\x88\x91\xE5\x96\x9C\xE6\xAC\xA2\xE4\xB8\xAD\xE5\x9B\xBD\xE3\x80\x82",
                         Words{"\xE6\x88\x91", "\xE5\x96\x9C\xE6\xAC\xA2", "\xE4\xB8\xAD\xE5\x9B\xBD"}},
                    Case{"iPhone\xE6\x89\x8B\xE6\x9C\xBA", Words{"iPhone", "\xE6\x89\x8B\xE6\x9C\xBA"}}));

class MarkedByHand : public testing::TestWithParam<WordFixture> {};

TEST_P(MarkedByHand, areFound) {
    EXPECT_THAT(wordsOf(GetParam().text), testing::ElementsAreArray(GetParam().cutOut))
        << GetParam().place << ": " << GetParam().text;
    EXPECT_EQ(rangesIn(toUtf16(GetParam().text)), GetParam().words) << GetParam().place;
}

INSTANTIATE_TEST_SUITE_P(Fixtures, MarkedByHand, testing::ValuesIn(wordFixtures()), [](const auto& test) {
    std::string name = test.param.place;
    for (char& letter : name) {
        letter = std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
    }
    return name;
});

TEST(Words, ofAnyTextAreWholeAndNoneIsLost) {
    constexpr int kTexts = 2000;
    for (int seed = 0; seed < kTexts; ++seed) {
        TextGenerator generator(static_cast<std::uint64_t>(seed));
        const std::u16string text = generator.next(1 + generator.below(400));
        EXPECT_THAT(wordFaults(text, rangesIn(text)), testing::IsEmpty()) << "seed " << seed;
    }
}

TEST(Words, countCodePointsAndUnitsOfTheSamePlaces) {
    constexpr int kTexts = 300;
    const WordFinder finder;
    for (int seed = 0; seed < kTexts; ++seed) {
        TextGenerator generator(static_cast<std::uint64_t>(seed));
        const std::u32string text = toUtf32(generator.next(200));
        for (const Word& word : finder.find(text)) {
            const auto units = [&](std::size_t end) {
                std::size_t count = 0;
                for (std::size_t index = 0; index < end; ++index) {
                    count += text[index] > 0xFFFF ? 2 : 1;
                }
                return count;
            };
            EXPECT_EQ(word.utf16, (Range{units(word.codePoints.begin), units(word.codePoints.end)}));
        }
    }
}

} // namespace
