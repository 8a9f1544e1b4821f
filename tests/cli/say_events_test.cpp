// `zqmspeech say --events`.

#include "tests/cli/json_schema.h"
#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/word_fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

class SayEvents : public testing::Test {
protected:
    std::string events(const std::vector<std::string>& arguments,
                       const support::ProcessOptions& options = bareOptions(),
                       const std::string& form = "--events") {
        std::vector<std::string> all{form, "-o", (folder_ / "x.wav").string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const support::ProcessResult result = say(all, options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return withoutTimes(result.output);
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

// A problem comes with the word behind it.
TEST_F(SayEvents, OfCommandsInTheText) {
    EXPECT_EQ(events({"One [[sync 0x61]] two [[nothing 1]] three"}),
              "word 0 3 One\nsync 97\nword 18 3 two\nproblem 24 \"nothing\" is no command.\n"
              "word 36 5 three\nfinish true\n");
}

std::vector<nlohmann::json> objects(const std::string& lines) {
    std::vector<nlohmann::json> all;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        all.push_back(nlohmann::json::parse(line));
    }
    return all;
}

TEST_F(SayEvents, AsJsonAreAsTheSchemaSays) {
    const std::string lines = events({"👋 grüße [[sync 7]] two [[nothing]] three"}, bareOptions(), "--json");
    EXPECT_EQ(schemaErrors(lines, ZQM_SAY_SCHEMA), "");
    EXPECT_NE(schemaErrors(R"({"event":"word","position":1,"utf16":1,"word":"x"})", ZQM_SAY_SCHEMA), "")
        << "what lacks the lengths is taken";
    EXPECT_NE(schemaErrors(R"({"event":"finish","completed":true,"more":1})", ZQM_SAY_SCHEMA), "")
        << "what has more is taken";
}

TEST_F(SayEvents, AsJsonCountCodePointsToo) {
    const auto all = objects(events({"👋 grüße [[sync 7]] two"}, bareOptions(), "--json"));
    ASSERT_GT(all.size(), 8U);
    const auto is = [](const char* kind) {
        return [kind](const nlohmann::json& event) { return event["event"] == kind; };
    };
    std::vector<nlohmann::json> words;
    std::ranges::copy_if(all, std::back_inserter(words), is("word"));
    ASSERT_EQ(words.size(), 3U);
    EXPECT_EQ(words[1]["word"], "grüße");
    EXPECT_EQ(words[1]["position"], 2);
    EXPECT_EQ(words[1]["length"], 5);
    EXPECT_EQ(words[1]["utf16"], 3);
    EXPECT_EQ(words[1]["utf16Length"], 5);
    EXPECT_EQ(words[0]["length"], 1);
    EXPECT_EQ(words[0]["utf16Length"], 2);
    EXPECT_EQ(std::ranges::find_if(all, is("sync"))->at("message"), 7);
    EXPECT_TRUE(all.back()["completed"]);
    const auto phoneme = std::ranges::find_if(all, [](const nlohmann::json& event) {
        return event["event"] == "phoneme" && event["symbol"] == "t";
    });
    ASSERT_NE(phoneme, all.end());
    EXPECT_GE(phoneme->at("time"), words[2]["time"]);
    EXPECT_TRUE(std::ranges::is_sorted(
        all, {}, [](const nlohmann::json& event) { return event["time"].get<double>(); }));
    EXPECT_NEAR(all.back()["time"].get<double>(), support::SoundFile(folder_ / "x.wav").seconds(), 0.001);
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

// The speech doesn't go on for nobody, and its beginning replaces no file.
TEST_F(SayEvents, EndTheSpeechWithTheirReader) {
    support::ProcessOptions options = bareOptions();
    for (int index = 0; index < 20'000; ++index) {
        options.input += "word ";
    }
    const std::string file = (folder_ / "x.wav").string();
    std::ofstream(file) << "old";
    const support::ProcessResult result =
        sayInShell("{ \"$0\" say --events -o \"$1\"; echo $? >&2; } | head -n 1", {file}, options);
    EXPECT_EQ(withoutTimes(result.output), "word 0 4 word\n");
    EXPECT_EQ(result.errors, "zqmspeech: can't write to standard output\n1\n");
    EXPECT_EQ(std::filesystem::file_size(file), 3U);
}

} // namespace
} // namespace zqm::tests
