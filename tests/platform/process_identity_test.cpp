#include "platform/process_identity.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace zqm::platform {
namespace {

// Whether the check holds in a fork of this process.
template <typename Check>
bool holdsInFork(Check&& check) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(check() ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(ProcessIdentity, NumberIsTheCallingProcesss) {
    const auto isRight = [] { return currentProcess() == ::getpid(); };
    EXPECT_TRUE(isRight());
    EXPECT_TRUE(holdsInFork(isRight));
    EXPECT_TRUE(holdsInFork([&] { return isRight() && holdsInFork(isRight) && isRight(); }));
    EXPECT_TRUE(isRight());
}

TEST(ProcessIdentity, IsCurrentInItsOwnProcessAlone) {
    const ProcessIdentity ours;
    EXPECT_TRUE(ours.isCurrent());
    EXPECT_TRUE(holdsInFork([&] {
        const ProcessIdentity own;
        return !ours.isCurrent() && own.isCurrent() && holdsInFork([&] { return !own.isCurrent(); });
    }));
    EXPECT_TRUE(ours.isCurrent());
}

} // namespace
} // namespace zqm::platform
