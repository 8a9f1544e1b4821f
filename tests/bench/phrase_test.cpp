#include "bench/recognition/phrase.h"

#include "tests/support/temporary_folder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace zqm::recognition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Phrases, AreReadFromALineEach) {
    const support::TemporaryFolder folder;
    std::ofstream(folder / "list") << "flite slt\tcommand\tCafé, \"please\"\t/sounds/1.wav\n"
                                      "flite slt\tsentence\tSomething else.\t2.wav\n";
    const std::vector<Phrase> phrases = {
        {"tuning", "flite slt", "command", "Café, \"please\"", "Café, \"please\"", "/sounds/1.wav"},
        {"tuning", "flite slt", "sentence", "Something else.", "", "2.wav"}};
    EXPECT_EQ(readPhrases(folder / "list", "tuning"), phrases);
}

TEST(Phrases, OfABadListAreRefusedWithTheLine) {
    const support::TemporaryFolder folder;
    EXPECT_THROW(readPhrases(folder / "absent", ""), std::runtime_error);
    std::ofstream(folder / "list") << "a\tcommand\tb\tc\na\tcommand\tb\n";
    try {
        readPhrases(folder / "list", "");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("list, line 2: "));
    }
}

TEST(Phrases, NameEachCommandOnce) {
    const std::vector<Phrase> phrases = {{"", "a", "command", "go", "go", ""},
                                         {"", "a", "command", "stop", "stop", ""},
                                         {"", "a", "sentence", "something else", "", ""},
                                         {"", "b", "command", "go", "go", ""}};
    EXPECT_THAT(commandsOf(phrases), ElementsAre("go", "stop"));
    EXPECT_THAT(commandsOf({}), IsEmpty());
}

} // namespace
} // namespace zqm::recognition
