#include "tests/support/process_table.h"

#include <chrono>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/process.h"

namespace zqm::support {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProcessTable, ListsRunningChildrenAndThoseThatWaitToBeReaped) {
    EXPECT_THAT(childrenOfThisProcess(), IsEmpty());
    {
        const Process process("sleep", {"1000"});
        EXPECT_THAT(childrenOfThisProcess(), ElementsAre(process.pid()));
        EXPECT_TRUE(isAlive(process.pid()));
        process.signal(SIGKILL);
        ASSERT_TRUE(process.waitFor(std::chrono::seconds(60)));
        EXPECT_THAT(childrenOfThisProcess(), ElementsAre(process.pid()));
        EXPECT_FALSE(isAlive(process.pid()));
    }
    EXPECT_THAT(childrenOfThisProcess(), IsEmpty());
    EXPECT_THAT(childrenOf(getppid()), Contains(getpid()));
}

TEST(ProcessTable, FindsChildrenByWhatTheyRun) {
    const Process process("sleep", {"1000"});
    EXPECT_THAT(childrenThatRun("sleep"), ElementsAre(process.pid()));
    EXPECT_THAT(childrenThatRun("slee"), IsEmpty());
    process.signal(SIGKILL);
    ASSERT_TRUE(process.waitFor(std::chrono::seconds(60)));
    EXPECT_THAT(childrenThatRun("sleep"), IsEmpty());
}

TEST(ProcessTable, CountsOpenDescriptors) {
    const std::size_t before = openDescriptors();
    const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(openDescriptors(), before + 1);
    close(descriptor);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(openDescriptorsOf(getpid()), before + 1);
}

TEST(ProcessTable, CountsTheTimeThatProcessorsSpend) {
    // Until it has been given half a second, however long a busy machine takes for that.
    const Process busy("sh", {"-c", "while :; do :; done"});
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(5);
    while (processorSecondsOf(busy.pid()) < 0.5) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    const Process idle("sleep", {"1000"});
    EXPECT_LT(processorSecondsOf(idle.pid()), 0.2);
    busy.signal(SIGKILL);
    ASSERT_TRUE(busy.waitFor(std::chrono::seconds(60)));
    EXPECT_EQ(processorSecondsOf(-1), 0);
}

TEST(ProcessTable, SeesMemoryThatIsHeld) {
    constexpr std::size_t kSize = std::size_t{64} * 1024 * 1024;
    const std::size_t before = residentMemory();
    const std::vector<char> held(kSize, 'x');
    const std::size_t during = residentMemory();
    EXPECT_EQ(held.back(), 'x');
    EXPECT_GT(during, before + kSize / 2);
}

} // namespace
} // namespace zqm::support
