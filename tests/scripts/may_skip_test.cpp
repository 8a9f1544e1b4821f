// tests/may-skip tells skipped tests from failed ones.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

constexpr int kSkipped = 77;
constexpr const char* kSkips = "echo '[  SKIPPED ] Mounts.AreFull (0 ms)'";

// What becomes of a program that does this, and may not print what an expression says.
support::ProcessResult runMaySkip(const std::string& commands) {
    const support::TemporaryFolder folder;
    const auto program = folder / "program";
    std::ofstream(program) << "#!/bin/sh\n" << commands << '\n';
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return support::runProcess(ZQM_SOURCE_FOLDER "/tests/may-skip",
                               {program, "ERROR: [A-Za-z]+Sanitizer", "runtime error: "});
}

TEST(MaySkip, PrintsWhatTheTestsPrint) {
    const auto result = runMaySkip("echo all; echo well >&2");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "all\nwell\n");
}

TEST(MaySkip, TellsThatTestsWereSkipped) {
    EXPECT_EQ(runMaySkip(kSkips).exitCode, kSkipped);
}

TEST(MaySkip, FailsWhereTestsFailedBesideThoseThatWereSkipped) {
    EXPECT_EQ(runMaySkip(std::string(kSkips) + "; exit 1").exitCode, 1);
}

TEST(MaySkip, FailsWhereAllTestsFailed) {
    EXPECT_EQ(runMaySkip("echo '[  PASSED  ] 0 tests.'; exit 1").exitCode, 1);
}

TEST(MaySkip, FailsWhereASanitizerFoundSomethingInAnotherProcess) {
    EXPECT_EQ(runMaySkip("echo 'a.cpp:1: runtime error: overflow' >&2").exitCode, 1);
    EXPECT_EQ(runMaySkip(std::string("echo '==1==ERROR: LeakSanitizer: leaks'; ") + kSkips).exitCode, 1);
}

TEST(MaySkip, FailsWhereAProgramCrashes) {
    EXPECT_NE(runMaySkip(std::string(kSkips) + "; kill -SEGV $$").exitCode, kSkipped);
}

} // namespace
} // namespace zqm::tests
