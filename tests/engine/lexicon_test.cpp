#include "engine/speaker/lexicon.h"

#include "engine/phonemes/phoneme_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::protocol::LexiconDictionary;
using zqm::protocol::LexiconEntry;

namespace zqm::engine {

void PrintTo(const LexiconProblem& problem, std::ostream* stream) {
    *stream << "dictionary " << problem.dictionary
            << (problem.isAbbreviation ? ", abbreviation " : ", entry ") << problem.entry << ": "
            << problem.message;
}

} // namespace zqm::engine

namespace {

// One phoneme of each set of espeak-ng's is enough to tell entries apart.
const PhonemeSet& set() {
    static const PhonemeSet instance("en-us",
                                     {"@", "b", "d", "0", "g", "k", "a", "t", "s", "i:", "I", "E", "z"});
    return instance;
}

LexiconDictionary dictionary(const char* date, std::vector<LexiconEntry> pronunciations,
                             std::vector<LexiconEntry> abbreviations = {}, const char* locale = "en_US") {
    return {locale, date, std::move(pronunciations), std::move(abbreviations)};
}

constexpr const char* kOld = "2020-01-01 00:00:00 +0000";
constexpr const char* kNew = "2021-01-01 00:00:00 +0000";

// The phonemes for each word of a text; "-" where the lexicon says nothing.
std::vector<std::string> found(const std::vector<LexiconDictionary>& dictionaries, const std::string& text,
                               const std::string& language = "en-US") {
    const Lexicon lexicon(dictionaries, language, set());
    TextPieces pieces(text, language);
    const Piece piece = pieces.next().value();
    std::vector<std::string> phonemes;
    for (std::size_t word = 0; word < piece.words.size();) {
        const auto match = lexicon.find(piece, word);
        phonemes.push_back(match ? match->phonemes->front() : "-");
        word += match ? match->words : 1;
    }
    return phonemes;
}

const std::string kBad = phonemeInput(U"bAEd", set()).words.front().mnemonics;
const std::string kTake = phonemeInput(U"tIHk", set()).words.front().mnemonics;

TEST(Lexicon, isEmptyAtFirst) {
    TextPieces pieces("a dog", "en");
    EXPECT_FALSE(Lexicon().find(pieces.next().value(), 1));
}

TEST(Lexicon, findsWords) {
    EXPECT_THAT(found({dictionary(kOld, {{"dog", "bAEd"}})}, "A dog, dogs."), ElementsAre("-", kBad, "-"));
}

TEST(Lexicon, takesASmallWordInAnyLettersAndAnotherAsItIs) {
    EXPECT_THAT(found({dictionary(kOld, {{"dog", "bAEd"}, {"US", "tIHk"}})}, "Dog DOG us US"),
                ElementsAre(kBad, kBad, "-", kTake));
    EXPECT_THAT(found({dictionary(kOld, {{"straße", "bAEd"}})}, "STRASSE Straße"), ElementsAre(kBad, kBad));
    EXPECT_THAT(found({dictionary(kOld, {{"cafe\u0301", "bAEd"}})}, "caf\u00E9"), ElementsAre(kBad));
}

TEST(Lexicon, countsTheNewestDictionary) {
    const LexiconDictionary older = dictionary(kOld, {{"dog", "bAEd"}});
    const LexiconDictionary newer = dictionary(kNew, {{"dog", "tIHk"}});
    EXPECT_THAT(found({older, newer}, "dog"), ElementsAre(kTake));
    EXPECT_THAT(found({newer, older}, "dog"), ElementsAre(kTake));
    // An hour further west, the same clock shows a later time.
    EXPECT_THAT(found({dictionary("2020-01-01 00:00:00 -0100", {{"dog", "tIHk"}}), older}, "dog"),
                ElementsAre(kTake));
    EXPECT_THAT(found({dictionary(kNew, {{"dog", "tIHk"}}), dictionary(kOld, {{"Dog", "bAEd"}})}, "Dog"),
                ElementsAre(kTake));
}

TEST(Lexicon, countsTheLastOfEquallyOldDictionaries) {
    EXPECT_THAT(found({dictionary(kOld, {{"dog", "bAEd"}}), dictionary(kOld, {{"dog", "tIHk"}})}, "dog"),
                ElementsAre(kTake));
}

TEST(Lexicon, countsADictionaryWithoutDateAsTheOldest) {
    EXPECT_THAT(
        found({dictionary(kOld, {{"dog", "bAEd"}}), dictionary("today", {{"dog", "tIHk"}, {"cat", "tIHk"}})},
              "dog cat"),
        ElementsAre(kBad, kTake));
}

TEST(Lexicon, isOfTheLanguage) {
    const auto of = [](const char* locale) {
        return std::vector<LexiconDictionary>{dictionary(kOld, {{"dog", "bAEd"}}, {}, locale)};
    };
    EXPECT_THAT(found(of("en_US"), "dog", "en-US"), ElementsAre(kBad));
    EXPECT_THAT(found(of("en_US"), "dog", "en-GB"), ElementsAre(kBad));
    EXPECT_THAT(found(of("EN"), "dog", "en-US"), ElementsAre(kBad));
    EXPECT_THAT(found(of(""), "dog", "de"), ElementsAre(kBad));
    EXPECT_THAT(found(of("en_US"), "dog", "de"), ElementsAre("-"));
    EXPECT_THAT(found(of("e"), "dog", "en"), ElementsAre("-"));
}

TEST(Lexicon, findsSeveralWordsTogether) {
    EXPECT_THAT(found({dictionary(kOld, {{"New York", "bAEd"}, {"New", "tIHk"}})}, "New\n York, New Jersey"),
                ElementsAre(kBad, kTake, "-"));
}

TEST(Lexicon, givesAbbreviationsTheirStop) {
    TextPieces pieces("Dr. No and Mr. No", "en-US");
    const Piece piece = pieces.next().value();
    const Lexicon lexicon({dictionary(kOld, {{"Mr", "tIHk"}, {"No", "tIHk"}}, {{"Dr.", "bAEd"}})}, "en-US",
                          set());
    const auto doctor = lexicon.find(piece, 0);
    ASSERT_TRUE(doctor);
    EXPECT_THAT(*doctor->phonemes, ElementsAre(kBad));
    EXPECT_TRUE(doctor->takesStop);
    const auto mister = lexicon.find(piece, 3);
    ASSERT_TRUE(mister);
    EXPECT_FALSE(mister->takesStop);
    EXPECT_THAT(found({dictionary(kOld, {}, {{"Dr", "bAEd"}, {"e.g.", "tIHk"}})}, "Dr no e.g. this"),
                ElementsAre(kBad, "-", kTake, "-"));
}

TEST(Lexicon, tellsWhatIsWrongByIndexAndKeepsTheRest) {
    const std::vector<LexiconDictionary> dictionaries{
        dictionary(kOld, {{"dog", "bAEd"}, {"cat", "b!!XQ#d"}, {"cow", "tIHk"}},
                   {{"Dr.", "?"}, {"Mr.", "tIHk"}}),
        dictionary(kOld, {{"", "bAEd"}, {"...", "bAEd"}, {"pig", ""}, {"#&", "bAEd"}})};
    std::vector<std::pair<std::size_t, std::size_t>> places;
    std::vector<bool> areAbbreviations;
    for (const LexiconProblem& problem : lexiconProblems(dictionaries, set())) {
        places.emplace_back(problem.dictionary, problem.entry);
        areAbbreviations.push_back(problem.isAbbreviation);
        EXPECT_NE(problem.message, "");
    }
    using Place = std::pair<std::size_t, std::size_t>;
    EXPECT_THAT(places,
                ElementsAre(Place{0, 1}, Place{0, 0}, Place{1, 0}, Place{1, 1}, Place{1, 2}, Place{1, 3}));
    EXPECT_THAT(areAbbreviations, ElementsAre(false, true, false, false, false, false));
    EXPECT_THAT(found(dictionaries, "dog cat cow Mr. pig"), ElementsAre(kBad, "-", kTake, kTake, "-"));
}

TEST(Lexicon, leavesOutPunctuationOfPhonemes) {
    EXPECT_THAT(found({dictionary(kOld, {{"dog", "_b1AEd."}})}, "dog"), ElementsAre(kBad));
}

} // namespace
