// An engine's number that belongs to another process by now, since the host waits for its children itself.

#include "tests/platform/engine_fault_fixture.h"

#include <cerrno>
#include <csignal>
#include <linux/sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace zqm::platform::test;
using zqm::support::ScopedEnvironment;

// A child that waits to be killed; -1 when it can't have that number, and errno says why.
pid_t childOfNumber(pid_t number) {
    clone_args arguments{};
    arguments.exit_signal = SIGCHLD;
    arguments.set_tid = reinterpret_cast<__u64>(&number);
    arguments.set_tid_size = 1;
    const auto child = static_cast<pid_t>(::syscall(SYS_clone3, &arguments, sizeof arguments));
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) {
            ::pause();
        }
    }
    return child;
}

// A number that is in use is refused only to those who may choose one.
bool mayChooseNumbers() {
    return childOfNumber(::getpid()) < 0 && errno == EEXIST;
}

TEST_F(EngineFault, AnotherProcessOfItsNumberIsLeftAlone) {
    if (!mayChooseNumbers()) {
        GTEST_SKIP() << "this user may not choose the numbers of processes";
    }
    Speaker speaker;
    const ScopedEnvironment fault("ZQM_BAD_ENGINE", "never finish");
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    const pid_t engine = zqm::support::childrenOfThisProcess().back();
    ::kill(engine, SIGKILL);
    ASSERT_EQ(engine, ::waitpid(engine, nullptr, 0));
    ASSERT_EQ(engine, childOfNumber(engine)) << errno;
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    EXPECT_EQ(0, ::waitpid(engine, nullptr, WNOHANG)) << "it is not killed";
    ::kill(engine, SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine); }));
    [speaker.synthesizer isSpeaking];
    speaker.release();
    runOut();
    int status = 0;
    EXPECT_EQ(engine, ::waitpid(engine, &status, 0)) << "it is not reaped";
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

} // namespace
