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

TEST(Phrases, AreReadAsTheyWereWritten) {
    const support::TemporaryFolder folder;
    const std::vector<Phrase> phrases = {
        {.half = "tuning",
         .voice = "flite slt",
         .text = "Café, \"please\"",
         .command = "café",
         .file = folder / "one.wav"},
        {.half = "reporting", .voice = "noise", .text = "white", .command = "", .file = "/two.wav"}};
    writePhrases(folder / "list", phrases);
    EXPECT_EQ(readPhrases(folder / "list"), phrases);
}

TEST(Phrases, NameFilesFromTheFolderOfTheirList) {
    const support::TemporaryFolder folder;
    writePhrases(folder / "list", {{.half = "", .voice = "", .text = "", .command = "", .file = "one.wav"}});
    EXPECT_EQ(readPhrases(folder / "list").at(0).file, folder / "one.wav");
}

TEST(Phrases, OfABadListAreRefusedWithTheLine) {
    const support::TemporaryFolder folder;
    EXPECT_THROW(readPhrases(folder / "absent"), std::runtime_error);
    writePhrases(folder / "list", {{.half = "", .voice = "", .text = "", .command = "", .file = ""}});
    std::ofstream(folder / "list", std::ios::app) << "nonsense\n";
    try {
        readPhrases(folder / "list");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("list, line 2: "));
    }
}

TEST(Phrases, AreOfTheCommandsOfTheirHalf) {
    const std::vector<Phrase> phrases = {
        {.half = "tuning", .voice = "", .text = "Go!", .command = "go", .file = ""},
        {.half = "tuning", .voice = "", .text = "stop", .command = "stop", .file = ""},
        {.half = "tuning", .voice = "", .text = "something else", .command = "", .file = ""},
        {.half = "tuning", .voice = "", .text = "go", .command = "go", .file = ""},
        {.half = "reporting", .voice = "", .text = "left", .command = "left", .file = ""}};
    EXPECT_THAT(commandsOf(phrases, "tuning"), ElementsAre("go", "stop"));
    EXPECT_THAT(commandsOf(phrases, "reporting"), ElementsAre("left"));
    EXPECT_THAT(commandsOf(phrases, "neither"), IsEmpty());
}

} // namespace
} // namespace zqm::recognition
