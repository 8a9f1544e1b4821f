// `zqmspeech inspect` as people run it, on good plugins and on everything else.

#include "tests/cli/one_line.h"
#include "tests/cli/say.h"
#include "tests/cli/terminal.h"
#include "tests/support/eventually.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using support::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kSpeech = (fs::path(ZQMSPEECH_PROGRAM).parent_path() / "libZQMNSSpeech.so").string();
const std::string kFoundation = (fs::path(ZQMSPEECH_PROGRAM).parent_path() / "libZQMFoundation.so").string();

ProcessResult inspect(std::vector<std::string> arguments,
                      const support::ProcessOptions& options = bareOptions()) {
    arguments.insert(arguments.begin(), "inspect");
    return support::runProcess(ZQMSPEECH_PROGRAM, arguments, options);
}

nlohmann::json jsonOf(const std::string& library) {
    const ProcessResult result = inspect({"--json", library});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    return nlohmann::json::parse(result.output);
}

std::vector<std::string> classNames(const nlohmann::json& document) {
    std::vector<std::string> names;
    for (const nlohmann::json& type : document["classes"]) {
        names.push_back(type["name"]);
    }
    return names;
}

TEST(Inspect, PrintsNothingOfWhatTheLibraryPrints) {
    EXPECT_EQ(classNames(jsonOf(ZQM_PRINTING_PLUGIN)), std::vector<std::string>{"Printer"});
}

TEST(Inspect, TellsAPluginsClasses) {
    const ProcessResult result = inspect({ZQM_WIDGET_PLUGIN});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, StartsWith("widget_plugin.so\n"
                                          "  revision 13 of the plugin interface\n"
                                          "\n"
                                          "Class Widget\n"
                                          "\n"
                                          "  Methods\n"
                                          "    Constructor()\n"));
    EXPECT_THAT(result.output, HasSubstr("\nClass Gadget\n"
                                         "  inherits Widget\n"
                                         "\n"
                                         "  Methods\n"
                                         "    Describe(what as String) as String\n"));
}

TEST(Inspect, ReadsTheSpeechLibraryAlone) {
    const nlohmann::json document = jsonOf(kSpeech);
    EXPECT_EQ(document["library"], "libZQMNSSpeech.so");
    EXPECT_THAT(classNames(document),
                ElementsAre("NSSpeechRecognizerZQM", "NSVoiceZQM", "NSSpeechSynthesizerZQM"));
    const nlohmann::json& synthesizer = document["classes"][2];
    EXPECT_EQ(synthesizer["events"].size(), 5U);
    std::vector<std::string> declarations;
    for (const nlohmann::json& method : synthesizer["methods"]) {
        declarations.push_back(method["declaration"]);
    }
    EXPECT_THAT(declarations,
                testing::Contains("objectForProperty(PropertyName as String, byref error as NSErrorZQM) as "
                                  "Variant"));
}

TEST(Inspect, ReadsTheSiblingWhenItIsAskedFor) {
    const std::vector<std::string> names = classNames(jsonOf(kFoundation));
    EXPECT_THAT(names, testing::Contains("NSErrorZQM"));
    EXPECT_THAT(names, Not(testing::Contains("NSSpeechSynthesizerZQM")));
}

// With a validator of JSON schemas that is not ours.
TEST(Inspect, JsonIsAsTheSchemaSays) {
    const std::string check = "import json, jsonschema, sys\n"
                              "jsonschema.validate(json.load(sys.stdin), json.load(open(sys.argv[1])))\n";
    support::ProcessOptions options = bareOptions();
    const auto checked = [&](const std::string& document) {
        options.input = document;
        return support::runProcess("/usr/bin/python3", {"-c", check, ZQM_INSPECT_SCHEMA}, options);
    };
    for (const std::string& library :
         {kSpeech, kFoundation, std::string(ZQM_WIDGET_PLUGIN), std::string(ZQM_BROKEN_PLUGIN)}) {
        const ProcessResult result = checked(inspect({"--json", library}).output);
        EXPECT_EQ(result.exitCode, 0) << library << ": " << result.errors;
    }
    nlohmann::json document = jsonOf(ZQM_WIDGET_PLUGIN);
    document["classes"][0]["methods"][0].erase("callable");
    EXPECT_THAT(checked(document.dump()).errors, HasSubstr("ValidationError"));
}

TEST(Inspect, MarkdownHasAHeadingForEachClass) {
    const ProcessResult result = inspect({"--markdown", ZQM_WIDGET_PLUGIN});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("# `widget_plugin.so`\n"));
    EXPECT_THAT(result.output, HasSubstr("\n## `Widget`\n"));
    EXPECT_THAT(result.output, HasSubstr("\n## `Gadget`\n\nInherits `Widget`.\n"));
}

TEST(Inspect, TakesAFileOfTheFolderOneIsIn) {
    support::ProcessOptions options = bareOptions();
    options.folder = fs::path(ZQM_WIDGET_PLUGIN).parent_path();
    EXPECT_THAT(inspect({"widget_plugin.so"}, options).output, StartsWith("widget_plugin.so\n"));
}

TEST(Inspect, FitsTheTerminal) {
    for (const unsigned short columns : std::initializer_list<unsigned short>{40, 80, 200}) {
        const Terminal terminal(columns);
        const ProcessResult result =
            support::runProcess("/bin/sh",
                                {"-c", "exec \"$0\" inspect \"$1\" > \"$2\"", ZQMSPEECH_PROGRAM,
                                 ZQM_WIDGET_PLUGIN, terminal.path()},
                                bareOptions());
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        std::istringstream written(terminal.written());
        std::size_t longest = 0;
        for (std::string line; std::getline(written, line);) {
            longest = std::max(longest, line.size() - 1); // the terminal adds a carriage return
        }
        EXPECT_LE(longest, columns);
        EXPECT_GT(longest, columns == 200 ? 80U : columns / 2U);
    }
}

TEST(InspectFailure, OfWhatIsNoPlugin) {
    const TemporaryFolder folder;
    const std::string text = (folder / "text.so").string();
    std::ofstream(text)
        << "This is no library at all, but a text that is longer than any header of one is.\n";
    expectOneLine(inspect({"/nonexistent/plugin.so"}), 1, "there is no plugin /nonexistent/plugin.so");
    expectOneLine(inspect({folder.path().string()}), 1, folder.path().string());
    expectOneLine(inspect({folder.path().string() + "/"}), 1, "Is a directory");
    expectOneLine(inspect({text}), 1, text + ": ");
    expectOneLine(inspect({"/dev/null"}), 1, "/dev/null: ");
    expectOneLine(inspect({ZQM_NO_ENTRY_PLUGIN}), 1,
                  "no_entry_plugin.so is no plugin: it has no function REALPluginMain");
    expectOneLine(inspect({"--json", ZQM_EMPTY_PLUGIN}), 1, "empty_plugin.so registered no class");
    expectOneLine(inspect({"two\nlines"}), 1, "there is no plugin two?lines");
}

// Its first bytes are those of a library, what they tell of is beyond its end.
TEST(InspectFailure, OfALibraryThatIsCutOff) {
    const TemporaryFolder folder;
    const std::string cut = (folder / "cut.so").string();
    fs::copy_file(ZQM_WIDGET_PLUGIN, cut);
    fs::resize_file(cut, 5000);
    expectOneLine(inspect({cut}), 1, cut + " is damaged or has a fault: what loads it ends (");
}

TEST(InspectFailure, OfALibraryThatEndsWhatLoadsIt) {
    expectOneLine(inspect({ZQM_CRASHING_PLUGIN}), 1,
                  ZQM_CRASHING_PLUGIN " is damaged or has a fault: what loads it ends (Segmentation fault)");
    expectOneLine(inspect({ZQM_LEAVING_PLUGIN}), 1,
                  ZQM_LEAVING_PLUGIN " is damaged or has a fault: what loads it ends (exit code 3)");
}

// It stops what belongs to it, and not the command.
TEST(InspectFailure, OfALibraryThatStopsWhatLoadsIt) {
    const support::Process command(ZQMSPEECH_PROGRAM, {"inspect", ZQM_STOPPING_PLUGIN}, bareOptions());
    ASSERT_TRUE(command.waitFor(support::kProcessDeadline));
    expectOneLine(command.result(), 1, "what loads it ends (Stopped (signal))");
}

TEST(InspectFailure, OfALibraryThatHangsEndsWithTheCommand) {
    const support::Process command(ZQMSPEECH_PROGRAM, {"inspect", ZQM_HANGING_PLUGIN}, bareOptions());
    ASSERT_TRUE(support::eventually([&] { return !support::childrenOf(command.pid()).empty(); }));
    const pid_t child = support::childrenOf(command.pid()).front();
    command.signal(SIGINT);
    ASSERT_TRUE(command.waitFor(support::kProcessDeadline));
    EXPECT_EQ(command.result().signal, SIGINT);
    EXPECT_TRUE(support::eventually([child] { return !support::isAlive(child); }));
}

TEST(InspectFailure, OfWrongUse) {
    expectOneLine(inspect({}), 2, "there is no library to inspect");
    expectOneLine(inspect({"a.so", "b.so"}), 2, "one library is inspected at a time");
    expectOneLine(inspect({"--json", "--markdown", "a.so"}), 2, "can't both be given");
}

TEST(InspectFailure, WhatIsWrongInARecordIsSaidAndTheRestTold) {
    const ProcessResult result = inspect({ZQM_BROKEN_PLUGIN});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              "zqmspeech: bad record: class \"Broken\": of revision 12, announced was 13\n"
              "zqmspeech: bad declaration: class \"Broken\": method 1: a type expected at character 14 of "
              "\"Second(one as\"\n");
    EXPECT_EQ(result.output, "broken_plugin.so\n"
                             "  revision 13 of the plugin interface\n"
                             "\n"
                             "Class Broken\n"
                             "\n"
                             "  Methods\n"
                             "    First()\n"
                             "\n"
                             "  Constants\n"
                             "    Red = `1`\n"
                             "    Bell = ?\n"
                             "\n"
                             "Class Good\n");
}

TEST(InspectFailure, WhatIsWrongIsSaidWhereNothingCouldBeRegistered) {
    const ProcessResult result = inspect({ZQM_NAMELESS_PLUGIN});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "zqmspeech: bad record: PluginRegisterClass: a class without a name\n"
                             "zqmspeech: " ZQM_NAMELESS_PLUGIN " registered no class\n");
}

TEST(InspectFailure, ADocumentThatCantBeWrittenIsSaid) {
    const ProcessResult result = support::runProcess(
        "/bin/sh", {"-c", "exec \"$0\" inspect \"$1\" > /dev/full", ZQMSPEECH_PROGRAM, ZQM_WIDGET_PLUGIN},
        bareOptions());
    expectOneLine(result, 1, "can't write to standard output");
}

} // namespace
} // namespace zqm::tests
