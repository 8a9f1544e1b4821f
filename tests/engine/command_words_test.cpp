#include "engine/listening/command_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

const PronunciationDictionary& dictionary() {
    static const PronunciationDictionary instance(ZQM_PRONUNCIATIONS);
    return instance;
}

CommandWords wordsOf(const std::string& command) {
    return CommandReader(dictionary(), [](const std::string&) { return std::vector<std::string>(); })
        .wordsOf(command);
}

TEST(CommandWords, areThoseOfTheDictionary) {
    EXPECT_EQ(wordsOf("Play the"),
              CommandWords(std::vector<CommandWord>{{"play", {"P L EY"}}, {"the", {"DH AH", "DH IY"}}}));
}

TEST(CommandWords, areMissingInBlanks) {
    EXPECT_EQ(wordsOf("  "), CommandWords("it has no words"));
}

} // namespace
