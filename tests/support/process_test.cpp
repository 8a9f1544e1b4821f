#include "tests/support/process.h"

#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

namespace zqm::support {
namespace {

using namespace std::chrono_literals;

TEST(Process, PassesArgumentsAndInputAndKeepsBothOutputsApart) {
    const ProcessResult result =
        runProcess("sh", {"-c", "cat; printf '%s|' \"$@\"; echo problem >&2; exit 3", "sh", "a b", "", "ü"},
                   {.input = "from stdin\n"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.signal, 0);
    EXPECT_FALSE(result.timedOut);
    EXPECT_FALSE(result.succeeded());
    EXPECT_EQ(result.output, "from stdin\na b||ü|");
    EXPECT_EQ(result.errors, "problem\n");
}

TEST(Process, NeverWaitsForAReaderHoweverMuchItWrites) {
    const ProcessResult result = runProcess("sh", {"-c", "head -c 3000000 /dev/zero"});
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.output.size(), 3000000U);
}

TEST(Process, ChangesOnlyTheNamedVariables) {
    ASSERT_EQ(setenv("ZQM_TEST_REMOVED", "x", 1), 0);
    const TemporaryFolder folder;
    const ProcessResult result =
        runProcess("sh", {"-c", "echo \"$ZQM_TEST_SET,${ZQM_TEST_REMOVED-none},${PATH:+kept}\"; pwd"},
                   {.environment = {{"ZQM_TEST_SET", "a=b"}, {"ZQM_TEST_REMOVED", std::nullopt}},
                    .folder = folder.path()});
    unsetenv("ZQM_TEST_REMOVED");
    EXPECT_EQ(result.output, "a=b,none,kept\n" + folder.path().string() + "\n");
}

TEST(Process, TellsTheSignalThatEndedIt) {
    const ProcessResult result = runProcess("sh", {"-c", "kill -TERM $$"});
    EXPECT_EQ(result.signal, SIGTERM);
    EXPECT_EQ(result.exitCode, -1);
    EXPECT_FALSE(result.succeeded());
}

TEST(Process, IsKilledAtItsDeadline) {
    ProcessResult result;
    // A busy machine may not even have begun by then.
    for (auto deadline = 300ms; result.output.empty(); deadline *= 2) {
        result = runProcess("sh", {"-c", "echo begun; sleep 1000"}, {}, deadline);
        ASSERT_TRUE(result.timedOut);
        ASSERT_FALSE(result.succeeded());
    }
    EXPECT_EQ(result.output, "begun\n");
}

TEST(Process, ThrowsWhenTheProgramOrTheFolderIsMissing) {
    const std::size_t descriptors = openDescriptors();
    EXPECT_THROW(runProcess("/nonexistent/program", {}), std::system_error);
    EXPECT_THROW(runProcess("true", {}, {.folder = "/nonexistent"}), std::system_error);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_TRUE(childrenOfThisProcess().empty());
}

TEST(Process, TakesItsWholeGroupWithIt) {
    pid_t grandchild = 0;
    {
        const Process process("sh", {"-c", "sleep 1000 & echo $!; wait"});
        while (process.result().output.empty()) {
            std::this_thread::sleep_for(1ms);
        }
        grandchild = std::stoi(process.result().output);
        EXPECT_TRUE(process.running());
        EXPECT_TRUE(isAlive(grandchild));
        EXPECT_FALSE(process.waitFor(1ms));
    }
    while (isAlive(grandchild)) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_TRUE(childrenOfThisProcess().empty());
}

TEST(Process, StartsWithDefaultSignalsAndNoDescriptorButTheStandardOnes) {
    const ProcessResult result = runProcess("sh", {"-c", "exec ls /proc/self/fd"});
    EXPECT_EQ(result.output, "0\n1\n2\n3\n"); // 3 is the listing's own
}

} // namespace
} // namespace zqm::support
