#include "engine/listening/listening_lock.h"

#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using zqm::engine::ListeningLock;
using zqm::protocol::Descriptor;
using zqm::support::ScopedEnvironment;
using zqm::support::TemporaryFolder;

namespace {

constexpr pid_t kOne = 1000;
constexpr pid_t kOther = 4'194'304; // the largest there is
constexpr pid_t kThird = 1;

class ListeningLockTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const { return folder.path() / "zqmspeech-listening"; }

    TemporaryFolder folder;
    ScopedEnvironment use{"XDG_RUNTIME_DIR", folder.path().string()};
};

TEST_F(ListeningLockTest, nobodyIsShutOutWhereNobodyWantsTo) {
    const ListeningLock one(kOne);
    EXPECT_FALSE(one.isShutOut());
    EXPECT_FALSE(std::filesystem::exists(file())) << "asking makes no file";
}

TEST_F(ListeningLockTest, shutsOutOthersUntilItIsLeft) {
    ListeningLock one(kOne);
    const ListeningLock other(kOther);
    one.join();
    EXPECT_TRUE(one.isQueued());
    EXPECT_FALSE(one.isShutOut());
    EXPECT_TRUE(other.isShutOut());
    one.join();
    EXPECT_FALSE(one.isShutOut());
    one.leave();
    EXPECT_FALSE(one.isQueued());
    EXPECT_FALSE(other.isShutOut());
    one.leave();
    one.join();
    EXPECT_TRUE(other.isShutOut());
}

TEST_F(ListeningLockTest, leavesAtItsEnd) {
    const ListeningLock other(kOther);
    {
        ListeningLock one(kOne);
        one.join();
        EXPECT_TRUE(other.isShutOut());
    }
    EXPECT_FALSE(other.isShutOut());
}

TEST_F(ListeningLockTest, doesNotConcernThoseOfTheSameHost) {
    ListeningLock one(kOne);
    ListeningLock twin(kOne);
    one.join();
    EXPECT_FALSE(twin.isShutOut());
    twin.join();
    EXPECT_FALSE(one.isShutOut());
    EXPECT_FALSE(twin.isShutOut());
    one.leave();
    EXPECT_FALSE(twin.isShutOut());
    EXPECT_TRUE(ListeningLock(kOther).isShutOut());
}

TEST_F(ListeningLockTest, isForTheFirstThatCame) {
    constexpr std::size_t kCount = 20;
    std::vector<std::unique_ptr<ListeningLock>> queue;
    for (std::size_t index = 0; index < kCount; ++index) {
        queue.push_back(std::make_unique<ListeningLock>(kOne + static_cast<pid_t>(index)));
        queue.back()->join();
    }
    // Some leave before it is their turn, and one comes again.
    for (const std::size_t index : {3U, 7U, 8U, 19U}) {
        queue[index]->leave();
    }
    queue[7]->join();
    std::vector<std::size_t> order;
    for (;;) {
        std::vector<std::size_t> heard;
        for (std::size_t index = 0; index < kCount; ++index) {
            if (queue[index]->isQueued() && !queue[index]->isShutOut()) {
                heard.push_back(index);
            }
        }
        if (heard.empty()) {
            break;
        }
        ASSERT_EQ(heard.size(), 1U);
        order.push_back(heard[0]);
        queue[heard[0]]->leave();
    }
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 4, 5, 6, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 7}));
    EXPECT_FALSE(ListeningLock(kThird).isShutOut());
}

// Two of one host around another's.
TEST_F(ListeningLockTest, givesTheFloorToAHostWithWhoeverOfItComesFirst) {
    ListeningLock first(kOne);
    ListeningLock second(kOther);
    ListeningLock third(kOne);
    first.join();
    second.join();
    third.join();
    EXPECT_FALSE(third.isShutOut());
    EXPECT_TRUE(second.isShutOut());
    first.leave();
    EXPECT_TRUE(third.isShutOut());
    EXPECT_FALSE(second.isShutOut());
}

// A process that has the floor.
class Holder {
public:
    Holder() {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return;
        }
        const Descriptor reader(ends[0]);
        Descriptor writer(ends[1]);
        process_ = ::fork();
        if (process_ == 0) {
            ListeningLock lock(kOther);
            lock.join();
            const ssize_t written = ::write(writer.get(), "h", 1);
            for (;;) {
                ::sleep(written == 1 ? 1000 : 0);
            }
        }
        writer.reset();
        char sign = 0;
        isReady_ = ::read(reader.get(), &sign, 1) == 1;
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    ~Holder() { kill(); }

    [[nodiscard]] bool isReady() const { return isReady_; }

    void kill() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
            process_ = -1;
        }
    }

private:
    pid_t process_ = -1;
    bool isReady_ = false;
};

TEST_F(ListeningLockTest, isSeenAcrossProcessesAndGoneWithAKilledOne) {
    Holder holder;
    ASSERT_TRUE(holder.isReady());
    ListeningLock one(kOne);
    EXPECT_TRUE(one.isShutOut());
    one.join();
    EXPECT_TRUE(one.isShutOut());
    holder.kill();
    EXPECT_FALSE(one.isShutOut());
}

TEST_F(ListeningLockTest, isTheUsersAlone) {
    ListeningLock lock(kOne);
    lock.join();
    struct stat status {};
    ASSERT_EQ(0, ::stat(file().c_str(), &status));
    EXPECT_EQ(0U, status.st_mode & 077U);
}

TEST_F(ListeningLockTest, followsNoLink) {
    const TemporaryFolder elsewhere;
    const std::filesystem::path target = elsewhere.path() / "target";
    std::filesystem::create_symlink(target, file());
    ListeningLock lock(kOne);
    lock.join();
    EXPECT_FALSE(lock.isQueued());
    EXPECT_FALSE(ListeningLock(kOther).isShutOut());
    EXPECT_FALSE(std::filesystem::exists(target));
}

} // namespace
