// scripts/coverage tells how much of each folder runs, and fails where that is too little.

#include "tests/scripts/script_project.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// The tests pass, and too few lines of this folder run.
class MeasuredProject : public ScriptProject {
public:
    explicit MeasuredProject(const std::string& poor = "none") : ScriptProject("scripts/coverage") {
        replace("cmake", "");
        replace("ctest", "");
        replace("gcovr", "echo \"$*\" >>'" + (*this / "asked").string() +
                             "'\n"
                             "case \"$*\" in *--print-summary*)\n"
                             "    echo 'lines: 97.0% (97 out of 100)'\n"
                             "    echo 'functions: 50.0% (1 out of 2)'\n"
                             "    echo 'branches: 80.0% (8 out of 10)'\n"
                             "    case \"$*\" in *'" +
                             poor +
                             "/'*) exit 2 ;; esac ;;\n"
                             "esac");
    }
};

TEST(CoverageScript, TellsOfEachFolder) {
    const MeasuredProject project;
    const ProcessResult result = project.run({});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "plugin     lines 97.0% (97 out of 100), branches 80.0% (8 out of 10)\n"
                             "speech     lines 97.0% (97 out of 100), branches 80.0% (8 out of 10)\n"
                             "bridge     lines 97.0% (97 out of 100), branches 80.0% (8 out of 10)\n"
                             "platform   lines 97.0% (97 out of 100), branches 80.0% (8 out of 10)\n");
}

TEST(CoverageScript, FailsWhereTooLittleOfAFolderRuns) {
    const MeasuredProject project("bridge");
    const ProcessResult result = project.run({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("platform "));
    EXPECT_THAT(result.errors, HasSubstr("Less than 95 % of the lines of a folder run."));
}

// What gcovr writes to is a new file afterwards, whatever it was before: /dev/null, too, for the superuser.
TEST(CoverageScript, HasNoDeviceReplaced) {
    const MeasuredProject project;
    project.run({});
    EXPECT_THAT(project.read("asked"), AllOf(HasSubstr("--output "), Not(HasSubstr("/dev/"))));
}

TEST(CoverageScript, CountsNothingOfTestsThatFail) {
    const MeasuredProject project;
    project.replace("ctest", "exit 8");
    const ProcessResult result = project.run({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("A count of tests that fail tells nothing."));
    EXPECT_EQ(project.read("asked"), "");
}

} // namespace
} // namespace zqm::tests
