// The three documents that `zqmspeech inspect` prints, of a library made up here.

#include "cli/inspect/inspect_json.h"
#include "cli/inspect/inspect_markdown.h"
#include "cli/inspect/inspect_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace zqm::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

const InspectedLibrary kLibrary{
    .name = "libSample.so",
    .revision = 13,
    .classes = {
        {.name = "Base"},
        {.name = "Sample",
         .super = "Base",
         .methods = {{.name = "Constructor", .isCallable = false},
                     {.name = "find",
                      .parameters = {{.name = "name", .type = {"String"}},
                                     {.name = "from", .type = {"Integer", true}, .defaultValue = "nil"},
                                     {.name = "error", .type = {"ErrorZQM"}, .byRef = true}},
                      .result = host::TypeDescription{"String", true}}},
         .sharedMethods = {{.name = "count", .result = host::TypeDescription{"Integer"}, .isShared = true}},
         .properties = {{.name = "Rate", .type = {"Double"}},
                        {.name = "Handle", .type = {"Integer"}, .isWritable = false},
                        {.name = "Sink", .type = {"Single"}, .isReadable = false}},
         .events = {{.name = "ended", .parameters = {{.name = "well", .type = {"Boolean"}}}}},
         .constants = {{.name = "Tick", .value = "a`b``c"}, {.name = "Bell", .value = "\a"}}}}};

TEST(InspectText, ListsTheMembersOfEachClass) {
    EXPECT_EQ(inspectionText(kLibrary, std::nullopt),
              "libSample.so\n"
              "  revision 13 of the plugin interface\n"
              "\n"
              "Class Base\n"
              "\n"
              "Class Sample\n"
              "  inherits Base\n"
              "\n"
              "  Methods\n"
              "    Constructor() (not to be called)\n"
              "    find(name as String, from as Integer() = nil, byref error as ErrorZQM) as String()\n"
              "\n"
              "  Shared methods\n"
              "    count() as Integer\n"
              "\n"
              "  Properties\n"
              "    Rate as Double\n"
              "    Handle as Integer (read-only)\n"
              "    Sink as Single (write-only)\n"
              "\n"
              "  Events\n"
              "    ended(well as Boolean)\n"
              "\n"
              "  Constants\n"
              "    Tick = a`b``c\n"
              "    Bell = ?\n");
}

TEST(InspectText, BreaksLongDeclarationsBeforeParametersAndResults) {
    EXPECT_THAT(inspectionText(kLibrary, 40), HasSubstr("\n    find(name as String,\n"
                                                        "        from as Integer() = nil,\n"
                                                        "        byref error as ErrorZQM)\n"
                                                        "        as String()\n"));
    EXPECT_THAT(inspectionText(kLibrary, 25), HasSubstr("\n    find(name as String,\n"
                                                        "        from as Integer()\n"
                                                        "        = nil,\n"));
    EXPECT_THAT(inspectionText(kLibrary, 25), HasSubstr("\n    Constructor()\n"
                                                        "        (not to be called)\n"));
    EXPECT_THAT(inspectionText(kLibrary, 20), HasSubstr("\n    find(\n"
                                                        "        name as String,\n"));
    EXPECT_THAT(inspectionText(kLibrary, 80),
                HasSubstr("\n    find(name as String, from as Integer() = nil, byref error as ErrorZQM)\n"
                          "        as String()\n"));
    EXPECT_EQ(inspectionText(kLibrary, 200), inspectionText(kLibrary, std::nullopt));
}

TEST(InspectText, UsesTheWholeLineAndNoMore) {
    const std::string whole = inspectionText(kLibrary, std::nullopt);
    const std::string longest =
        "    find(name as String, from as Integer() = nil, byref error as ErrorZQM) as String()";
    EXPECT_EQ(inspectionText(kLibrary, longest.size()), whole);
    EXPECT_NE(inspectionText(kLibrary, longest.size() - 1), whole);
}

TEST(InspectText, WithoutRevision) {
    EXPECT_EQ(inspectionText({.name = "x\ny.so", .revision = {}, .classes = {{.name = "A\x1b[31m"}}}, 80),
              "x?y.so\n\nClass A?[31m\n");
}

TEST(InspectMarkdown, ListsTheMembersOfEachClass) {
    EXPECT_EQ(inspectionMarkdown(kLibrary),
              "# `libSample.so`\n"
              "\n"
              "Of revision 13 of the plugin interface.\n"
              "\n"
              "## `Base`\n"
              "\n"
              "## `Sample`\n"
              "\n"
              "Inherits `Base`.\n"
              "\n"
              "### Methods\n"
              "\n"
              "- `Constructor()` (not to be called)\n"
              "- `find(name as String, from as Integer() = nil, byref error as ErrorZQM) as String()`\n"
              "\n"
              "### Shared methods\n"
              "\n"
              "- `count() as Integer`\n"
              "\n"
              "### Properties\n"
              "\n"
              "- `Rate as Double`\n"
              "- `Handle as Integer` (read-only)\n"
              "- `Sink as Single` (write-only)\n"
              "\n"
              "### Events\n"
              "\n"
              "- `ended(well as Boolean)`\n"
              "\n"
              "### Constants\n"
              "\n"
              "- ``` Tick = a`b``c ```\n"
              "- `Bell = ?`\n");
}

TEST(InspectMarkdown, WithoutRevision) {
    EXPECT_THAT(inspectionMarkdown({.name = "x.so", .revision = {}, .classes = {{.name = "A"}}}),
                Not(HasSubstr("revision")));
}

TEST(InspectJson, TellsEverything) {
    constexpr const char* kWanted = R"json({
        "library": "libSample.so",
        "revision": 13,
        "classes": [
            {"name": "Base", "super": null, "methods": [], "sharedMethods": [], "properties": [],
             "events": [], "constants": []},
            {"name": "Sample", "super": "Base",
             "methods": [
                {"name": "Constructor", "declaration": "Constructor()", "parameters": [], "result": null,
                 "callable": false
},
                {"name": "find",
                 "declaration":
                    "find(name as String, from as Integer() = nil, byref error as ErrorZQM) as String()",
                 "parameters": [
                    {"name": "name", "type": "String", "array": false, "byRef": false, "assigns": false,
                     "default": null},
                    {"name": "from", "type": "Integer", "array": true, "byRef": false, "assigns": false,
                     "default": "nil"},
                    {"name": "error", "type": "ErrorZQM", "array": false, "byRef": true, "assigns": false,
                     "default": null}],
                 "result": {"type": "String", "array": true}, "callable": true}],
             "sharedMethods": [
                {"name": "count", "declaration": "count() as Integer", "parameters": [],
                 "result": {"type": "Integer", "array": false}, "callable": true}],
             "properties": [
                {"name": "Rate", "declaration": "Rate as Double", "type": "Double", "array": false,
                 "readable": true, "writable": true},
                {"name": "Handle", "declaration": "Handle as Integer", "type": "Integer", "array": false,
                 "readable": true, "writable": false},
                {"name": "Sink", "declaration": "Sink as Single", "type": "Single", "array": false,
                 "readable": false, "writable": true}],
             "events": [
                {"name": "ended", "declaration": "ended(well as Boolean)",
                 "parameters": [{"name": "well", "type": "Boolean", "array": false, "byRef": false,
                                 "assigns": false, "default": null}]}],
             "constants": [
                {"name": "Tick", "declaration": "Tick = a`b``c", "value": "a`b``c"},
                {"name": "Bell", "declaration": "Bell = \u0007", "value": "\u0007"}]
}]
})json";
    EXPECT_EQ(nlohmann::json::parse(inspectionJson(kLibrary)), nlohmann::json::parse(kWanted));
}

TEST(InspectJson, IsUtf8WhateverTheLibraryHolds) {
    const auto document = nlohmann::json::parse(
        inspectionJson({.name = "gr\xFC\xDF.so", .revision = {}, .classes = {{.name = "Grüße"}}}));
    EXPECT_EQ(document["library"], "gr\uFFFD\uFFFD.so");
    EXPECT_EQ(document["classes"][0]["name"], "Grüße");
    EXPECT_TRUE(document["revision"].is_null());
}

} // namespace
} // namespace zqm::cli
