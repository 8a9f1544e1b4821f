// What `zqmspeech validate` prints, of results made up here.

#include "cli/validate/validate_json.h"
#include "cli/validate/validate_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>
#include <string>

namespace zqm::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const CheckResult kGood{.check = "load", .summary = "can be loaded"};
const CheckResult kBad{.check = "start",
                       .summary = "starts",
                       .verdict = Verdict::Crash,
                       .findings = {{Verdict::Warning, "odd\nlines"}, {Verdict::Crash, "SIGSEGV, at: step"}},
                       .duration = Findings::Seconds(1.23456),
                       .output = "said\n\aringing"};
const Validation kValidation{
    .library = "libSample.so", .seed = 18446744073709551615U, .results = {kGood, kBad}};

constexpr ValidateLayout kPlain{std::nullopt, false};

TEST(ValidateText, HasALineForEachFinding) {
    const std::string good = resultText(kGood, kPlain);
    EXPECT_THAT(good, StartsWith("pass     load "));
    EXPECT_THAT(good, testing::EndsWith("  can be loaded\n"));
    const std::string bad = resultText(kBad, kPlain);
    EXPECT_THAT(bad, StartsWith("warning  start "));
    EXPECT_THAT(bad, HasSubstr("  odd?lines\ncrash    start "));
    EXPECT_THAT(bad, HasSubstr("  SIGSEGV, at: step\n         | said\n         | ?ringing\n"));
    EXPECT_EQ(std::ranges::count(bad, '\n'), 4);
}

TEST(ValidateText, WhatIsBadIsBold) {
    EXPECT_THAT(resultText(kBad, {std::nullopt, true}), HasSubstr("\x1b[1mcrash\x1b[0m    start "));
    EXPECT_THAT(resultText(kGood, {std::nullopt, true}), StartsWith("pass     load "));
}

TEST(ValidateText, FitsTheTerminal) {
    CheckResult result = kBad;
    result.findings = {
        {Verdict::Fail, "a text of many words that is longer than a line of a narrow terminal is"}};
    result.output = "";
    std::istringstream lines(resultText(result, {60, false}));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_LE(line.size(), 60U);
        EXPECT_EQ(line.starts_with("fail "), count == 0) << line;
    }
    EXPECT_GT(count, 1U);
    EXPECT_EQ(std::ranges::count(resultText(result, {10, false}), '\n'), 1); // there is no room for more
}

TEST(ValidateText, NothingAndBlanksAreALineToo) {
    for (const char* text : {"", "  "}) {
        CheckResult result = kGood;
        result.findings = {{Verdict::Fail, text}};
        EXPECT_THAT(resultText(result, {60, false}), testing::MatchesRegex("fail +load *\n"));
    }
}

TEST(ValidateText, TheSummaryCountsTheChecks) {
    EXPECT_EQ(summaryText(kValidation), "libSample.so, seed 18446744073709551615: 1 pass, 1 crash\n");
}

TEST(ValidateText, TheListHasEachCheck) {
    EXPECT_THAT(checkList(), StartsWith("load\tcan be loaded"));
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(checkList(), '\n')), checks().size());
}

TEST(ValidateJson, HasAllThatIsKnown) {
    const auto document = nlohmann::json::parse(validationJson(kValidation));
    EXPECT_EQ(document["library"], "libSample.so");
    EXPECT_EQ(document["seed"], 18446744073709551615U);
    EXPECT_EQ(document["verdict"], "crash");
    EXPECT_EQ(document["checks"][0], (nlohmann::json{{"check", "load"},
                                                     {"verdict", "pass"},
                                                     {"findings", nlohmann::json::array()},
                                                     {"seconds", 0.0},
                                                     {"output", ""}}));
    EXPECT_EQ(document["checks"][1]["findings"][0],
              (nlohmann::json{{"verdict", "warning"}, {"text", "odd\nlines"}}));
    EXPECT_EQ(document["checks"][1]["seconds"], 1.235);
    EXPECT_EQ(document["checks"][1]["output"], "said\n\aringing");
}

TEST(ValidateJson, BytesThatAreNoTextAreReplaced) {
    Validation validation = kValidation;
    validation.library = "\xff.so";
    EXPECT_EQ(nlohmann::json::parse(validationJson(validation))["library"], "\uFFFD.so");
}

} // namespace
} // namespace zqm::cli
