// scripts/fuzz fails by what a target finds, and by what a sanitizer finds in another process that it
// started.

#include "tests/scripts/script_project.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using testing::HasSubstr;
using testing::StartsWith;

// With one target, a program that does this.
class FuzzedProject : public ScriptProject {
public:
    explicit FuzzedProject(const std::string& commands) : ScriptProject("scripts/fuzz") {
        replace("cmake", "echo built >>'" + (*this / "steps").string() + "'");
        write("steps", "");
        write("fuzz/corpora/channel/input", "");
        write("build/fuzz/CMakeCache.txt", "");
        writeProgram("build/fuzz/fuzz/fuzz_channel", commands);
    }
};

TEST(FuzzScript, PassesWhereNothingIsFound) {
    const FuzzedProject project("echo 'stat::number_of_executed_units: 5'");
    const ProcessResult result = project.run({"--runs", "5"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("| channel | 5 |"));
    EXPECT_THAT(result.output, HasSubstr("| none |"));
}

TEST(FuzzScript, FailsByATargetThatFails) {
    const FuzzedProject project("echo 'DOES NOT HOLD: it is'; exit 1");
    const ProcessResult result = project.run({"--runs", "5"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("DOES NOT HOLD: it is\n"));
}

TEST(FuzzScript, FailsByAReportOfASanitizerThatEndedAnotherProcess) {
    for (const char* const report :
         {"a.cpp:1: runtime error: overflow", "==5==ERROR: AddressSanitizer: SEGV"}) {
        const FuzzedProject project(std::string("echo '") + report + "'");
        const ProcessResult result = project.run({"--runs", "5"});
        EXPECT_EQ(result.exitCode, 1) << report;
        EXPECT_THAT(result.errors, HasSubstr("1 of the targets found something."));
    }
}

TEST(FuzzScript, RefusesWhatIsNoTargetBeforeItBuilds) {
    for (const char* const name : {"", ".", "..", "nothing", "channel/"}) {
        const FuzzedProject project("");
        const ProcessResult result = project.run({name});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr("There is no target \"" + std::string(name) + '"'));
        EXPECT_EQ(project.read("steps"), "");
    }
}

// As all do that look for it by help_if_asked.
TEST(FuzzScript, ShowsItsHead) {
    for (const char* const script :
         {"count-instructions", "coverage", "fuzz", "measure", "measure-recognizer", "soak", "tidy"}) {
        for (const char* const option : {"--help", "-h"}) {
            const ScriptProject project(std::string("scripts/") + script);
            const ProcessResult result =
                project.runWithOnly({"bash", "dirname", "sed", "readlink", "realpath"}, {option});
            EXPECT_EQ(result.exitCode, 0) << script << result.errors;
            EXPECT_THAT(result.output, testing::ContainsRegex("^[A-Z][a-z]+[:,]? ")) << script;
            EXPECT_EQ(result.errors, "") << script;
        }
    }
}

} // namespace
} // namespace zqm::tests
