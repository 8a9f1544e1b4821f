#include "tests/support/unread_pipe.h"

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <chrono>

#include <gtest/gtest.h>

namespace zqm::support {
namespace {

constexpr std::chrono::minutes kDeadline{5};

TEST(UnreadPipe, HoldsUpItsWriterUntilItIsRead) {
    const TemporaryFolder folder;
    const UnreadPipe pipe((folder / "pipe").string());
    ASSERT_TRUE(pipe.isMade());
    EXPECT_EQ(pipe.read(), "");
    constexpr std::size_t kBytes = 1'000'000;
    const Process writer("sh", {"-c", "head -c 1000000 /dev/zero > \"$0\"", (folder / "pipe").string()});
    ASSERT_TRUE(pipe.fillsUp());
    EXPECT_TRUE(writer.running());
    std::size_t count = 0;
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    while (count < kBytes) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        count += pipe.read().size();
    }
    EXPECT_TRUE(writer.waitFor(kDeadline));
    EXPECT_EQ(count, kBytes);
}

TEST(UnreadPipe, IsMadeOnlyWhereThereIsNothing) {
    const TemporaryFolder folder;
    EXPECT_FALSE(UnreadPipe(folder.path().string()).isMade());
    EXPECT_FALSE(UnreadPipe((folder / "none/pipe").string()).isMade());
}

} // namespace
} // namespace zqm::support
