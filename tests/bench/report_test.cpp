#include "bench/recognition/report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace zqm::recognition {
namespace {

using testing::HasSubstr;
using testing::Not;

Outcome outcome(const std::string& voice, const std::string& command, const std::vector<std::string>& heard,
                std::optional<double> delay = std::nullopt) {
    return {.way = "live",
            .phrase = {.half = "reporting",
                       .voice = voice,
                       .kind = command.empty() ? "sentence" : "command",
                       .text = "said",
                       .command = command,
                       .file = "f"},
            .heard = heard,
            .delay = delay,
            .seconds = 2,
            .processorSeconds = 0.05};
}

TEST(Outcomes, AreReadAsTheyWereWritten) {
    const std::vector<Outcome> outcomes = {outcome("a", "go", {"go", "stop"}, 0.25), outcome("b", "", {})};
    std::stringstream file;
    for (const Outcome& each : outcomes) {
        writeOutcome(file, each);
    }
    EXPECT_EQ(readOutcomes(file), outcomes);
    std::istringstream bad("{}\n");
    EXPECT_THROW(readOutcomes(bad), std::runtime_error);
}

TEST(Outcomes, AreOfOneKind) {
    const Outcome right = outcome("a", "go", {"go"});
    EXPECT_TRUE(right.isRight() && !right.isWrong() && !right.isMissed() && !right.isFalseAccept());
    const Outcome missed = outcome("a", "go", {});
    EXPECT_TRUE(!missed.isRight() && !missed.isWrong() && missed.isMissed() && !missed.isFalseAccept());
    for (const auto& heard : {std::vector<std::string>{"stop"}, {"go", "stop"}, {"go", "go"}}) {
        const Outcome wrong = outcome("a", "go", heard);
        EXPECT_TRUE(!wrong.isRight() && wrong.isWrong() && !wrong.isMissed() && !wrong.isFalseAccept());
    }
    const Outcome accepted = outcome("a", "", {"go"});
    EXPECT_TRUE(!accepted.isRight() && !accepted.isWrong() && !accepted.isMissed() &&
                accepted.isFalseAccept());
    const Outcome rejected = outcome("a", "", {});
    EXPECT_TRUE(!rejected.isRight() && !rejected.isWrong() && !rejected.isMissed() &&
                !rejected.isFalseAccept());
}

TEST(Report, HasARowForEachVoiceFamilyAndAll) {
    const std::string text =
        report({outcome("flite slt", "go", {"go"}, 0.2), outcome("flite slt", "stop", {"go"}, 0.9),
                outcome("flite slt", "left", {}), outcome("flite slt", "right", {"right"}, 0.4),
                outcome("flite rms", "go", {"go"}, 0.3), outcome("flite rms", "", {}),
                outcome("noise", "", {"go"}, 0.7)});
    EXPECT_THAT(text, HasSubstr("## reporting, live\n"));
    EXPECT_THAT(text, HasSubstr("| flite slt | 4 | 2 (50.0 %) | 1 | 1 | | | 200 ms | 400 ms | 0.025 |\n"));
    EXPECT_THAT(
        text,
        HasSubstr("| flite rms | 1 | 1 (100.0 %) | 0 | 0 | 1 | 0 (0.0 %) | 300 ms | 300 ms | 0.025 |\n"));
    EXPECT_THAT(text, HasSubstr("| noise | | | | | 1 | 1 (100.0 %) |  |  | 0.025 |\n"));
    EXPECT_THAT(
        text,
        HasSubstr("| **flite** | 5 | 3 (60.0 %) | 1 | 1 | 1 | 0 (0.0 %) | 300 ms | 400 ms | 0.025 |\n"));
    EXPECT_THAT(text, Not(HasSubstr("**noise**")));
    EXPECT_THAT(
        text, HasSubstr("| **all** | 5 | 3 (60.0 %) | 1 | 1 | 2 | 1 (50.0 %) | 300 ms | 400 ms | 0.025 |\n"));
}

TEST(Report, SaysWhichTargetsAreMetAndByHowMuchTheOthersAreMissed) {
    const std::string text =
        report({outcome("a", "go", {"go"}, 0.6), outcome("a", "stop", {}), outcome("a", "", {})});
    EXPECT_THAT(text, HasSubstr("| at least 95.0 % | 50.0 % | missed by 45.0 % |"));
    EXPECT_THAT(text, HasSubstr("| at most 2.0 % | 0.0 % | met |"));
    EXPECT_THAT(text, HasSubstr("| at most 500 ms | 600 ms | missed by 100 ms |"));
    EXPECT_THAT(text, HasSubstr("| at most 0.100 | 0.025 | met |"));
}

TEST(Report, CountsNearMissesForThemselvesOnly) {
    Outcome nearMiss = outcome("near misses", "", {"go"});
    nearMiss.phrase.kind = "near-miss";
    const std::string text = report({outcome("a", "", {}), nearMiss});
    EXPECT_THAT(text, HasSubstr("| near misses | | | | | 1 | 1 (100.0 %) |"));
    EXPECT_THAT(text, HasSubstr("| **all** | | | | | 1 | 0 (0.0 %) |"));
    EXPECT_THAT(text, HasSubstr("| at most 2.0 % | 0.0 % | met |"));
}

TEST(Report, KeepsHalvesAndWaysApart) {
    Outcome offline = outcome("a", "go", {"go"});
    offline.way = "offline";
    Outcome tuning = outcome("a", "go", {});
    tuning.phrase.half = "tuning";
    const std::string text = report({outcome("a", "go", {"go"}, 0.1), offline, tuning});
    EXPECT_THAT(text, HasSubstr("## reporting, live\n"));
    EXPECT_THAT(text, HasSubstr("## reporting, offline\n"));
    EXPECT_THAT(text, HasSubstr("## tuning, live\n"));
    EXPECT_THAT(text, Not(HasSubstr("| **all** | 2")));
}

TEST(Mistakes, AreNamedOneByOne) {
    EXPECT_EQ(mistakes({outcome("a", "go", {"go"}), outcome("a", "", {})}), "");
    EXPECT_EQ(mistakes({outcome("a", "go", {}), outcome("b", "", {"go", "stop"})}),
              "- live, reporting, a: \"said\" was missed\n"
              "- live, reporting, b: \"said\" was heard as \"go\", \"stop\"\n");
}

TEST(Quantile, IsTheValueThatThePartDoesNotExceed) {
    EXPECT_DOUBLE_EQ(quantile({3, 1, 2}, 0.5), 2);
    EXPECT_DOUBLE_EQ(quantile({4, 3, 1, 2}, 0.5), 2);
    EXPECT_DOUBLE_EQ(quantile({4, 3, 1, 2}, 0.95), 4);
    EXPECT_DOUBLE_EQ(quantile({7}, 0), 7);
    EXPECT_THROW(quantile({}, 0.5), std::invalid_argument);
}

} // namespace
} // namespace zqm::recognition
