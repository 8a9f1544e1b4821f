#include "engine/listening/pronunciation_dictionary.h"
#include "tests/support/temporary_folder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PronunciationDictionaryOfLines : public testing::Test {
protected:
    PronunciationDictionary dictionary(const std::string& lines) {
        std::ofstream(file(), std::ios::binary) << lines;
        return PronunciationDictionary(file());
    }

    std::filesystem::path file() { return folder_.path() / "words.dict"; }

private:
    zqm::support::TemporaryFolder folder_;
};

TEST_F(PronunciationDictionaryOfLines, findsAWord) {
    const PronunciationDictionary words = dictionary("one W AH N\ntwo T UW\n");
    EXPECT_THAT(words.find("one"), ElementsAre("W AH N"));
    EXPECT_THAT(words.find("two"), ElementsAre("T UW"));
    EXPECT_THAT(words.find("three"), IsEmpty());
    EXPECT_THAT(words.find("on"), IsEmpty());
    EXPECT_THAT(words.find(""), IsEmpty());
}

TEST_F(PronunciationDictionaryOfLines, hasThePronunciationsOfAWordInTheOrderOfTheFile) {
    const PronunciationDictionary words = dictionary("a AH\na's EY Z\na(2) EY\nab AE B\na(3) AA\n");
    EXPECT_THAT(words.find("a"), ElementsAre("AH", "EY", "AA"));
    EXPECT_THAT(words.find("a(2)"), IsEmpty());
}

TEST_F(PronunciationDictionaryOfLines, partsPhonesBySingleBlanks) {
    const PronunciationDictionary words = dictionary("one  W\tAH  N \r\ntwo\tT UW");
    EXPECT_THAT(words.find("one"), ElementsAre("W AH N"));
    EXPECT_THAT(words.find("two"), ElementsAre("T UW"));
}

TEST_F(PronunciationDictionaryOfLines, takesNoWordOutOfLinesWithoutPhones) {
    const PronunciationDictionary words =
        dictionary(";; a comment\n## another\n\nalone\n(2) T UW\none W AH N\n");
    EXPECT_THAT(words.find(";;"), IsEmpty());
    EXPECT_THAT(words.find("##"), IsEmpty());
    EXPECT_THAT(words.find("alone"), IsEmpty());
    EXPECT_THAT(words.find("(2)"), ElementsAre("T UW"));
    EXPECT_THAT(words.find("one"), ElementsAre("W AH N"));
}

TEST_F(PronunciationDictionaryOfLines, saysWhichFileIsMissing) {
    try {
        const PronunciationDictionary missing(file());
        FAIL() << "was read";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr(file().string()));
    }
}

TEST_F(PronunciationDictionaryOfLines, isNoFolderAndNoFileWithoutWords) {
    EXPECT_THROW(PronunciationDictionary(file().parent_path()), std::runtime_error);
    EXPECT_THROW(dictionary(""), std::runtime_error);
    EXPECT_THROW(dictionary("\n;; nothing\n"), std::runtime_error);
}

TEST(PronunciationDictionary, hasTheWordsOfTheModel) {
    const PronunciationDictionary words(ZQM_PRONUNCIATIONS);
    EXPECT_THAT(words.find("seven"), ElementsAre("S EH V AH N"));
    EXPECT_THAT(words.find("the"), ElementsAre("DH AH", "DH IY"));
    EXPECT_THAT(words.find("don't"), ElementsAre("D OW N T", "D OW N"));
    EXPECT_THAT(words.find("kubernetes"), IsEmpty());
}

} // namespace
