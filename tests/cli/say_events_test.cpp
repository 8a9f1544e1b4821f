// `zqmspeech say --events`.

#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/word_fixtures.h"

#include <gtest/gtest.h>

#include <string>

namespace zqm::tests {
namespace {

class SayEvents : public testing::Test {
protected:
    std::string events(const std::vector<std::string>& arguments,
                       const support::ProcessOptions& options = bareOptions()) {
        std::vector<std::string> all{"--events", "-o", (folder_ / "x.wav").string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const support::ProcessResult result = say(all, options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    support::TemporaryFolder folder_;
};

std::string linesFor(const support::MarkedText& marked) {
    std::string lines;
    for (std::size_t index = 0; index < marked.words.size(); ++index) {
        lines += "word " + std::to_string(marked.words[index].position) + " " +
                 std::to_string(marked.words[index].length) + " " + marked.cutOut[index] + "\n";
    }
    return lines + "finish true\n";
}

TEST_F(SayEvents, OfTwoWords) {
    EXPECT_EQ(events({"Hello world"}), "word 0 5 Hello\nword 6 5 world\nfinish true\n");
}

TEST_F(SayEvents, CountUtf16Units) {
    for (const char* line :
         {"⟦costs⟧ ⟦$25.50⟧", "⟦e-mail⟧ ⟦don't⟧",
          "⟦👋🏽⟧ ⟦Hello⟧ ⟦👩‍👩‍👧⟧ ⟦world⟧", "⟦Grüße⟧, ⟦cafe\u0301⟧!"}) {
        const support::MarkedText marked = support::parseMarkedText(line);
        EXPECT_EQ(events({"--", marked.text}), linesFor(marked)) << line;
    }
}

TEST_F(SayEvents, OfSeveralLinesFromStandardInput) {
    support::ProcessOptions options = bareOptions();
    const support::MarkedText marked = support::parseMarkedText("\\n⟦One⟧. ⟦Two⟧?\\u{D}\\n\\n⟦Three⟧!\\n");
    options.input = marked.text;
    EXPECT_EQ(events({}, options), linesFor(marked));
}

TEST_F(SayEvents, OfManyWords) {
    std::string line;
    for (int index = 0; index < 500; ++index) {
        line += "⟦word⟧ ⟦and⟧ ";
    }
    support::ProcessOptions options = bareOptions();
    const support::MarkedText marked = support::parseMarkedText(line);
    options.input = marked.text;
    EXPECT_EQ(events({}, options), linesFor(marked));
}

TEST_F(SayEvents, OfATextWithoutAWord) {
    EXPECT_EQ(events({"..."}), "finish true\n");
}

TEST_F(SayEvents, AreNotPrintedUnasked) {
    EXPECT_EQ(say({"-o", (folder_ / "x.wav").string(), "Hello"}).output, "");
}

TEST_F(SayEvents, ThatCannotBeWrittenAreAFailure) {
    const support::ProcessResult result =
        sayInShell("exec \"$0\" say --events -o \"$1\" Hello > /dev/full", {(folder_ / "x.wav").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "zqmspeech: can't write to standard output\n");
}

// The speech doesn't go on for nobody: the file ends long before the text.
TEST_F(SayEvents, EndTheSpeechWithTheirReader) {
    support::ProcessOptions options = bareOptions();
    for (int index = 0; index < 20'000; ++index) {
        options.input += "word ";
    }
    const std::string file = (folder_ / "x.wav").string();
    const support::ProcessResult result =
        sayInShell("{ \"$0\" say --events -o \"$1\"; echo $? >&2; } | head -n 1", {file}, options);
    EXPECT_EQ(result.output, "word 0 4 word\n");
    EXPECT_EQ(result.errors, "zqmspeech: can't write to standard output\n1\n");
    constexpr double kWholeText = 3'000; // seconds at the least, at 400 words a minute
    EXPECT_LT(support::SoundFile(file).seconds(), kWholeText / 2);
}

} // namespace
} // namespace zqm::tests
