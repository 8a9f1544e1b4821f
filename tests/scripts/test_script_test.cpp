// ./test says what ctest said, and isn't content with tests that did not run.

#include "tests/scripts/script_project.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kPassed = "100% tests passed, 0 tests failed out of 2\n"
                                "\n"
                                "Total Test time (real) =   0.32 sec\n";

// Everything passes.
class TestedProject : public ScriptProject {
public:
    TestedProject() : ScriptProject("test") {
        for (const char* check :
             {"check-readme", "check-format", "check-documentation", "check-macos", "fuzz"}) {
            writeProgram(std::string("scripts/") + check, "");
        }
        write("log", kPassed);
        replace("cmake", "");
        replace("chrt", ""); // on a busy machine what is built ahead would come too late for a test
        replace("ctest", printLog());
    }

    std::string printLog() const { return "cat '" + (*this / "log").string() + "'"; }
};

// Everything passes but ctest, which prints this.
ProcessResult testWith(const std::string& log, int exitCode = 0) {
    const TestedProject project;
    project.write("log", log);
    project.replace("ctest", project.printLog() + "; exit " + std::to_string(exitCode));
    return project.run({});
}

TEST(TestScript, SaysWhatPassed) {
    const ProcessResult result = testWith(kPassed);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("release: 100% tests passed, 0 tests failed out of 2, in 0.32 sec.\n"),
                      HasSubstr("tsan: 100% tests passed"), HasSubstr("All checks passed.\n"),
                      Not(HasSubstr("did not run"))));
}

TEST(TestScript, NamesTestsThatWereSkipped) {
    const ProcessResult result = testWith(std::string(kPassed) + "\nThe following tests did not run:\n"
                                                                 "\t  2 - mounts (Skipped)\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("The following tests did not run:\n\t  2 - mounts (Skipped)\n"),
                      HasSubstr("All checks passed.\n")));
}

// As ctest -N does it, or ctest --help.
TEST(TestScript, FailsWhereNoTestRan) {
    const ProcessResult result = testWith("  Test #1: mounts\n\nTotal Tests: 1\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("release: no test has run.\n"), HasSubstr("FAILED: release, asan, tsan.\n")));
}

TEST(TestScript, ShowsTheLogOfTestsThatFail) {
    const ProcessResult result = testWith("50% tests passed, 1 tests failed out of 2\n", 8);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("1 tests failed out of 2\n"), HasSubstr("FAILED: release, asan, tsan.\n")));
}

// Each suite waits here until the next one is being built.
TEST(TestScript, BuildsAheadWhileASuiteRuns) {
    const TestedProject project;
    const std::string built = (project / "built").string();
    project.replace("cmake", "echo \"$*\" >>'" + built + "'");
    project.replace("ctest", R"(case "$*" in
        *release*) next=asan ;;
        *asan*) next=fuzz ;;
        *) next=build ;;
        esac
        for try in $(seq 2000); do
            if grep -q -e "--build .*$next" ')" +
                                 built + R"('; then
                )" + project.printLog() +
                                 R"(
                exit
            fi
            sleep 0.05
        done
        exit 1)");
    const ProcessResult result = project.run({});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("All checks passed.\n"));
}

TEST(TestScript, TellsOnceWhyWhatWasBuiltAheadCannotBe) {
    const TestedProject project;
    project.replace("cmake", R"(case "$*" in *--build*asan*) echo it is broken; exit 1 ;; esac)");
    const ProcessResult result = project.run({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("release: 100% tests passed"),
                      EndsWith("asan: building ...\nit is broken\nThe asan build failed; see above.\n")));
}

} // namespace
} // namespace zqm::tests
