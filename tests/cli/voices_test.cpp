#include "tests/cli/installation.h"
#include "tests/cli/one_line.h"
#include "tests/cli/zqmspeech.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include "cli/text/display_width.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using nlohmann::json;
using support::ProcessOptions;
using support::ProcessResult;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
    }
    return lines;
}

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, '\t');) {
        fields.push_back(field);
    }
    return fields;
}

json voices(std::vector<std::string> filters = {}) {
    filters.insert(filters.begin(), {"voices", "--json"});
    const ProcessResult result = zqmspeech(filters);
    EXPECT_TRUE(result.succeeded()) << result.errors;
    return json::parse(result.output);
}

std::set<std::string> languagesOf(const json& list) {
    std::set<std::string> languages;
    for (const json& voice : list) {
        languages.insert(voice["language"]);
    }
    return languages;
}

// With a validator of JSON schemas that is not ours. What one schema refers to stands beside it.
ProcessResult check(const std::string& schema, const std::string& document) {
    const std::string program = "import json, jsonschema, sys\n"
                                "path = sys.argv[1]\n"
                                "schema = json.load(open(path))\n"
                                "resolver = jsonschema.RefResolver('file://' + path, schema)\n"
                                "jsonschema.validate(json.load(sys.stdin), schema, resolver=resolver)\n";
    ProcessOptions options = bareOptions();
    options.input = document;
    return support::runProcess("/usr/bin/python3", {"-W", "ignore", "-c", program, schema}, options);
}

constexpr const char* kVoicesSchema = ZQM_DOCS "/voices.schema.json";
constexpr const char* kVoiceSchema = ZQM_DOCS "/voice.schema.json";

TEST(Voices, AreALineEachForPrograms) {
    const ProcessResult result = zqmspeech({"voices"});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    const std::vector<std::string> lines = linesOf(result.output);
    const json list = voices();
    ASSERT_EQ(lines.size(), list.size());
    EXPECT_GT(lines.size(), 100U);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_THAT(fieldsOf(lines[index]),
                    testing::ElementsAre(list[index]["identifier"], list[index]["language"],
                                         list[index]["gender"], list[index]["name"]));
    }
    EXPECT_THAT(lines, testing::Contains("gmw/de\tde\tmale\tGerman"));
}

TEST(Voices, JsonIsAsTheSchemaSays) {
    const std::string all = zqmspeech({"voices", "--json"}).output;
    const ProcessResult checked = check(kVoicesSchema, all);
    EXPECT_TRUE(checked.succeeded()) << checked.errors;
    json list = json::parse(all);
    list.front().erase("name");
    EXPECT_THAT(check(kVoicesSchema, list.dump()).errors, HasSubstr("ValidationError"));
    EXPECT_EQ(std::ranges::count_if(list, [](const json& voice) { return voice["default"] == true; }), 1);
}

TEST(Voices, OfALanguageAndItsKinds) {
    const json english = voices({"--language", "en"});
    EXPECT_GT(english.size(), 3U);
    for (const std::string& language : languagesOf(english)) {
        EXPECT_THAT(language, StartsWith("en")) << language;
    }
    EXPECT_THAT(languagesOf(english), testing::IsSupersetOf({"en-GB", "en-US"}));
    EXPECT_THAT(languagesOf(voices({"--language", "EN_us"})), testing::ElementsAre("en-US", "en-US-nyc"));
    EXPECT_EQ(languagesOf(voices({"--language=fr"})).count("frr"), 0U);
}

TEST(Voices, OfAGender) {
    const json all = voices();
    std::size_t count = 0;
    for (const char* gender : {"male", "female", "neuter"}) {
        const ProcessResult result = zqmspeech({"voices", "--json", "--gender", gender});
        const json some = json::parse(result.output);
        for (const json& voice : some) {
            EXPECT_EQ(voice["gender"], gender);
        }
        EXPECT_EQ(result.exitCode, some.empty() ? 3 : 0);
        count += some.size();
    }
    EXPECT_EQ(count, all.size());
}

TEST(Voices, NoneAsWantedIsTold) {
    const ProcessResult none = zqmspeech({"voices", "--language", "xx", "--gender", "male"});
    expectOneLine(none, 3, "no voice speaks xx and is male");
    EXPECT_EQ(zqmspeech({"voices", "--language", "xx", "--json"}).output, "[]\n");
}

TEST(Voices, WrongUseIsOneLine) {
    expectOneLine(zqmspeech({"voices", "--gender", "man"}), 2, "man is not male, female or neuter");
    expectOneLine(zqmspeech({"voices", "--language", ""}), 2, "it is empty");
    expectOneLine(zqmspeech({"voice", "-o", "-"}), 2,
                  "the attributes and the sound can't both go to standard output");
    expectOneLine(zqmspeech({"voices", "de"}), 2, "voices takes options only, not \"de\"");
    expectOneLine(zqmspeech({"voices", "--jsn"}), 2, "--jsn is not an option");
}

TEST(WhatIsNotThere, IsAnsweredByWhatIsNear) {
    expectOneLine(zqmspeech({"sya", "x"}), 2,
                  "sya is not a command (near it: say); zqmspeech --help lists them");
    expectOneLine(zqmspeech({"xyzzy"}), 2, "xyzzy is not a command; zqmspeech --help lists them");
    expectOneLine(zqmspeech({"manual-pages"}), 2, "manual-pages is not a command (near it: manual-page)");
    expectOneLine(zqmspeech({"voices", "--lang=de"}), 2, "--lang=de is not an option (near it: --language)");
    expectOneLine(zqmspeech({"say", "--evnts", "x"}), 2,
                  "--evnts is not an option (near it: --events; a text that begins with - goes after --)");
}

// Each engine that doesn't answer is waited for.
TEST(Voices, AreAskedForOnceWhenThereAreNone) {
    const Installation bad({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    const std::filesystem::path engine = bad.path() / "zqmspeech-engine";
    std::ofstream(engine) << "#!/bin/sh\necho begun >> \"${0%/*}/engines\"\n";
    std::filesystem::permissions(engine, std::filesystem::perms(0700));
    for (const char* const command : {"voices", "voice"}) {
        SCOPED_TRACE(command);
        expectOneLine(bad.run({command}), 1,
                      "there are no voices: the speech engine is missing, does not answer, or finds none");
        std::ifstream engines(bad.path() / "engines");
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(engines), {}), "begun\n");
        std::filesystem::remove(bad.path() / "engines");
    }
}

class VoicesTable : public testing::TestWithParam<unsigned short> {};

TEST_P(VoicesTable, FitsTheTerminal) {
    const std::string table =
        zqmspeechOnTerminal({"voices", "--language", "en"}, GetParam(), {{"TERM", "dumb"}});
    const std::vector<std::string> lines = linesOf(table);
    ASSERT_GT(lines.size(), 4U);
    EXPECT_THAT(lines.front(), StartsWith("  IDENTIFIER"));
    EXPECT_EQ(lines.front().find("GENDER") != std::string::npos, GetParam() >= 80);
    std::size_t marked = 0;
    for (const std::string& line : lines) {
        EXPECT_LT(cli::columnsOf(line), GetParam()) << line;
        EXPECT_THAT(line, testing::AnyOf(StartsWith("  "), StartsWith("* ")));
        marked += line.starts_with("* ") ? 1 : 0;
    }
    EXPECT_EQ(marked, 1U);
    EXPECT_THAT(table, HasSubstr("  gmw/en-GB-scotland  English"));
}

INSTANTIATE_TEST_SUITE_P(All, VoicesTable, testing::Values(40, 80, 200));

TEST(Voices, AreColouredOnTerminalsOnly) {
    const std::vector<std::string> arguments{"voices", "--language", "en"};
    const std::string bold = "\x1b[1m";
    EXPECT_THAT(zqmspeechOnTerminal(arguments, 80, {{"TERM", "xterm"}, {"NO_COLOR", std::nullopt}}),
                AllOf(StartsWith(bold + "  IDENTIFIER"), HasSubstr(bold + "* gmw/en")));
    EXPECT_THAT(zqmspeechOnTerminal(arguments, 80, {{"TERM", "xterm"}, {"NO_COLOR", "1"}}),
                Not(HasSubstr("\x1b")));
    EXPECT_THAT(zqmspeechOnTerminal(arguments, 80, {{"TERM", "dumb"}}), Not(HasSubstr("\x1b")));
    ProcessOptions options = bareOptions();
    options.environment["TERM"] = "xterm";
    EXPECT_THAT(zqmspeech(arguments, options).output, Not(HasSubstr("\x1b")));
}

TEST(AVoice, IsFoundByIdentifierOrName) {
    const std::string german = zqmspeech({"voice", "gmw/de"}).output;
    EXPECT_THAT(german, AllOf(StartsWith("Name:       German\n"), HasSubstr("\nIdentifier: gmw/de\n"),
                              HasSubstr("\nLanguage:   de\n"), HasSubstr("\nLocale:     de\n"),
                              HasSubstr("\nGender:     male\n"), HasSubstr("\nDemo text:  Hallo!")));
    EXPECT_EQ(zqmspeech({"voice", "German"}).output, german);
    EXPECT_EQ(zqmspeech({"voice", "GMW/DE"}).output, german);
    EXPECT_EQ(zqmspeech({"voice", "English", "(scotland)"}).output,
              zqmspeech({"voice", "gmw/en-GB-scotland"}).output);
}

TEST(AVoice, IsTheDefaultOneWithoutAName) {
    const json voice = json::parse(zqmspeech({"voice", "--json"}).output);
    EXPECT_EQ(voice["default"], true);
    EXPECT_THAT(zqmspeech({"voice"}).output,
                HasSubstr("Name:       " + voice["name"].get<std::string>() + " (the default voice)\n"));
}

TEST(AVoice, JsonIsAsTheSchemaSays) {
    const std::string voice = zqmspeech({"voice", "--json", "gmw/de"}).output;
    const ProcessResult checked = check(kVoiceSchema, voice);
    EXPECT_TRUE(checked.succeeded()) << checked.errors;
    json changed = json::parse(voice);
    EXPECT_EQ(changed["identifier"], "gmw/de");
    changed["gender"] = "VoiceGenderMale";
    EXPECT_THAT(check(kVoiceSchema, changed.dump()).errors, HasSubstr("ValidationError"));
}

TEST(AVoice, ThatIsUnknownIsAnsweredByNearOnes) {
    expectOneLine(zqmspeech({"voice", "gmw/en-UK"}), 1, "there is no voice \"gmw/en-UK\" (near it: gmw/en, ");
    expectOneLine(zqmspeech({"voice", "en-US"}), 1, "(near it: gmw/en-US, ");
    expectOneLine(zqmspeech({"voice", "Germna"}), 1, "(near it: gmw/de; zqmspeech voices lists all)");
    expectOneLine(zqmspeech({"voice", "xyzzy"}), 1,
                  "there is no voice \"xyzzy\" (zqmspeech voices lists them)");
    expectOneLine(zqmspeech({"voice", ""}), 1, "there is no voice \"\"");
    expectOneLine(zqmspeech({"voice", "\xff"}), 1, "the name of the voice");
    expectOneLine(zqmspeech({"say", "-v", "gmw/de-DE", "x"}), 1,
                  "(near it: gmw/de; zqmspeech voices lists all)");
}

TEST(AVoice, SpeaksASampleIntoAFile) {
    const support::TemporaryFolder folder;
    const std::filesystem::path file = folder / "sample.wav";
    const ProcessResult result = zqmspeech({"voice", "gmw/de", "-o", file.string()});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    EXPECT_THAT(result.output, StartsWith("Name:       German\n"));
    EXPECT_GT(support::SoundFile(file).seconds(), 1);
}

TEST(AVoice, ThatCannotSpeakASampleIsStillTold) {
    const ProcessResult result = zqmspeech({"voice", "gmw/de", "--sample"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, StartsWith("Name:       German\n"));
    EXPECT_THAT(result.errors, StartsWith("zqmspeech: no sound can be played: "));
}

TEST(AVoice, OnANarrowTerminalHangsBehindItsLabels) {
    const std::vector<std::string> lines =
        linesOf(zqmspeechOnTerminal({"voice", "gmw/en-US-nyc"}, 30, {{"TERM", "dumb"}}));
    EXPECT_THAT(lines,
                testing::IsSupersetOf({"Name:       English (America,", "            New York City)"}));
}

TEST(Phonemes, AreThoseOfTheVoice) {
    const ProcessResult english = zqmspeech({"phonemes", "good", "day"});
    EXPECT_TRUE(english.succeeded()) << english.errors;
    EXPECT_THAT(english.output, AllOf(HasSubstr("d1EY"), EndsWith("\n")));
    const ProcessResult german = zqmspeech({"phonemes", "-v", "gmw/de", "good day"});
    EXPECT_TRUE(german.succeeded()) << german.errors;
    EXPECT_NE(german.output, english.output);
}

TEST(Phonemes, TakeAVoiceByItsName) {
    const ProcessResult german = zqmspeech({"phonemes", "-v", "gmw/de", "good day"});
    EXPECT_EQ(zqmspeech({"phonemes", "-v", "German", "good day"}).output, german.output);
    EXPECT_EQ(zqmspeech({"phonemes", "-v", "GMW/DE", "good day"}).output, german.output);
}

TEST(Phonemes, OfStandardInput) {
    ProcessOptions options = bareOptions();
    options.input = "good day";
    EXPECT_EQ(zqmspeech({"phonemes"}, options).output, zqmspeech({"phonemes", "good", "day"}).output);
}

TEST(Phonemes, OfWhatHasNoneFail) {
    expectOneLine(zqmspeech({"phonemes", "..."}), 1, "the text has no phonemes");
    expectOneLine(zqmspeech({"phonemes", " "}), 1, "there is nothing to speak");
    expectOneLine(zqmspeech({"phonemes", "-v", "nobody", "x"}), 1, "there is no voice \"nobody\"");
    expectOneLine(zqmspeech({"phonemes", "-f", "/nonexistent"}), 1, "can't read /nonexistent");
    expectOneLine(zqmspeech({"phonemes", "-f", "x", "text"}), 2, "can't both be given");
}

TEST(Phonemes, OfABadEngineFailWithItsReason) {
    const Installation bad({ZQM_PLATFORM_LIBRARY, "libZQMNSSpeech.so"});
    std::filesystem::copy(ZQM_BAD_ENGINE_PATH, bad.path());
    ProcessOptions options = bareOptions();
    options.environment["ZQM_BAD_ENGINE"] = "die on phonemes";
    expectOneLine(bad.run({"phonemes", "x"}, options), 1,
                  "the phonemes can't be told: the speech engine ended unexpectedly");
    options.environment["ZQM_BAD_ENGINE"] = "something else for phonemes";
    expectOneLine(bad.run({"phonemes", "x"}, options), 1,
                  "the phonemes can't be told: the speech engine said something that makes no sense");
}

} // namespace
} // namespace zqm::tests
