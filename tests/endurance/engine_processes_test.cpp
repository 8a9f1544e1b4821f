#include "tests/endurance/engine_processes.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::endurance {
namespace {

// As an engine is, and its process for files before that has a name of its own.
struct Pair {
    Pair() {
        int numbers[2]{};
        EXPECT_EQ(pipe(numbers), 0);
        leader = fork();
        if (leader == 0) {
            setpgid(0, 0);
            const pid_t child = fork();
            if (child != 0) {
                const bool isTold = write(numbers[1], &child, sizeof child) == sizeof child;
                static_cast<void>(isTold);
            }
            for (;;) {
                pause();
            }
        }
        EXPECT_EQ(read(numbers[0], &member, sizeof member), static_cast<ssize_t>(sizeof member));
        close(numbers[0]);
        close(numbers[1]);
    }

    pid_t leader = 0;
    pid_t member = 0;
};

void killAndAwait(pid_t process) {
    EXPECT_EQ(kill(process, SIGKILL), 0);
    siginfo_t end{};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT), 0);
}

TEST(EngineProcesses, TellsAnEngineFromTheProcessForFilesThatADeadOneLeft) {
    using Processes = std::vector<pid_t>;
    const EngineProcesses engines;
    const Pair pair;
    EXPECT_EQ(engines.children(), Processes{pair.leader});
    EXPECT_EQ(engines.living(), Processes{pair.leader});

    killAndAwait(pair.leader);
    EXPECT_THAT(engines.children(), testing::UnorderedElementsAre(pair.leader, pair.member));
    EXPECT_EQ(engines.all(), Processes{pair.leader});
    EXPECT_TRUE(engines.living().empty());
    EXPECT_FALSE(engines.reapOrphans());

    killAndAwait(pair.member);
    EXPECT_TRUE(engines.reapOrphans());
    EXPECT_EQ(engines.children(), Processes{pair.leader});
    EXPECT_EQ(waitpid(pair.leader, nullptr, 0), pair.leader);
}

// Whom the platform library waits for.
TEST(EngineProcesses, LeavesAnEngineThatWasKilledBeforeItLedAGroup) {
    const EngineProcesses engines;
    const pid_t engine = fork();
    if (engine == 0) {
        for (;;) {
            pause();
        }
    }
    killAndAwait(engine);
    EXPECT_EQ(engines.all(), std::vector<pid_t>{engine});
    EXPECT_TRUE(engines.reapOrphans());
    EXPECT_EQ(waitpid(engine, nullptr, 0), engine);
}

} // namespace
} // namespace zqm::endurance
