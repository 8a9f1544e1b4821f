#include "engine/protocol/speaking_lock.h"

#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using zqm::protocol::Descriptor;
using zqm::protocol::SpeakingLock;
using zqm::support::ScopedEnvironment;
using zqm::support::TemporaryFolder;

namespace {

constexpr const char* kFolderVariable = "XDG_RUNTIME_DIR";

class SpeakingLockTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const { return folder.path() / "zqmspeech-speaking"; }

    TemporaryFolder folder;
    ScopedEnvironment use{kFolderVariable, folder.path().string()};
};

// A process that holds the lock.
class Holder {
public:
    Holder() {
        int ends[2];
        if (::pipe(ends) != 0) {
            return;
        }
        const Descriptor reader(ends[0]);
        Descriptor writer(ends[1]);
        process_ = ::fork();
        if (process_ == 0) {
            SpeakingLock lock;
            lock.hold();
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

TEST_F(SpeakingLockTest, isSeenWhileItIsHeld) {
    EXPECT_FALSE(SpeakingLock::isHeld());
    EXPECT_FALSE(std::filesystem::exists(file())) << "asking makes no file";
    SpeakingLock lock;
    EXPECT_FALSE(SpeakingLock::isHeld());
    lock.hold();
    EXPECT_TRUE(SpeakingLock::isHeld());
    lock.release();
    EXPECT_FALSE(SpeakingLock::isHeld());
    lock.hold();
    lock.hold();
    lock.release();
    EXPECT_FALSE(SpeakingLock::isHeld());
    {
        SpeakingLock other;
        other.hold();
        EXPECT_TRUE(SpeakingLock::isHeld());
    }
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingLockTest, isHeldByAnyNumber) {
    SpeakingLock one;
    SpeakingLock other;
    one.hold();
    other.hold();
    one.release();
    EXPECT_TRUE(SpeakingLock::isHeld());
    other.release();
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingLockTest, isSeenAcrossProcessesAndGoneWithAKilledOne) {
    Holder one;
    Holder other;
    ASSERT_TRUE(one.isReady() && other.isReady());
    EXPECT_TRUE(SpeakingLock::isHeld());
    one.kill();
    EXPECT_TRUE(SpeakingLock::isHeld());
    other.kill();
    EXPECT_FALSE(SpeakingLock::isHeld());
}

TEST_F(SpeakingLockTest, isOfTheFolderOfTheUser) {
    const TemporaryFolder elsewhere;
    SpeakingLock lock;
    lock.hold();
    {
        const ScopedEnvironment other(kFolderVariable, elsewhere.path().string());
        EXPECT_FALSE(SpeakingLock::isHeld());
    }
    EXPECT_TRUE(SpeakingLock::isHeld());
}

TEST_F(SpeakingLockTest, isTheUsersAlone) {
    SpeakingLock lock;
    lock.hold();
    struct stat status {};
    ASSERT_EQ(0, ::stat(file().c_str(), &status));
    EXPECT_EQ(0U, status.st_mode & 077U);
}

TEST_F(SpeakingLockTest, followsNoLink) {
    const TemporaryFolder elsewhere;
    const std::filesystem::path target = elsewhere.path() / "target";
    std::filesystem::create_symlink(target, file());
    SpeakingLock lock;
    lock.hold();
    EXPECT_FALSE(SpeakingLock::isHeld());
    EXPECT_FALSE(std::filesystem::exists(target));
}

// Each has another folder instead, which is of no more concern here than that it works.
TEST_F(SpeakingLockTest, usesNoFolderThatIsNotTheUsersAlone) {
    const TemporaryFolder open;
    std::filesystem::permissions(open.path(), std::filesystem::perms::all);
    const std::filesystem::path link = folder.path() / "link";
    std::filesystem::create_directory(folder.path() / "folder");
    std::filesystem::create_directory_symlink(folder.path() / "folder", link);
    for (const std::string& path : {open.path().string(), link.string(), std::string("relative"),
                                    std::string(), (folder.path() / "none").string()}) {
        const ScopedEnvironment other(kFolderVariable, path);
        SpeakingLock lock;
        lock.hold();
        EXPECT_TRUE(SpeakingLock::isHeld()) << path;
    }
    EXPECT_TRUE(std::filesystem::is_empty(open.path()));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "folder"));
    EXPECT_FALSE(std::filesystem::exists("relative"));
}

TEST(SpeakingLockWithoutAVariable, isSeenAllTheSame) {
    const ScopedEnvironment none(kFolderVariable, std::nullopt);
    SpeakingLock lock;
    lock.hold();
    EXPECT_TRUE(SpeakingLock::isHeld());
}

} // namespace
