// What an engine may ask for, and what one that was taken over would: each is asked for by a process that is
// confined as an engine is.

#include "engine/output/file_placer.h"

#include "engine/confinement/file_rules.h"
#include "engine/confinement/landlock.h"
#include "engine/confinement/system_calls.h"
#include "engine/protocol/temporary_name.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

using zqm::engine::FilePlacer;
using zqm::protocol::Descriptor;
using zqm::protocol::temporaryName;
using zqm::support::TemporaryFolder;

namespace {

// The placer's to a process that has its socket.
int answer(const std::function<int()>& request) {
    const pid_t process = ::fork();
    if (process == 0) {
        zqm::engine::restrictFiles(zqm::engine::fileRules());
        zqm::engine::restrictSystemCalls(zqm::engine::Work::Speech);
        ::_exit(request());
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFEXITED(status)) << "by signal " << WTERMSIG(status);
    return WEXITSTATUS(status);
}

class Placing : public testing::Test {
protected:
    [[nodiscard]] Descriptor makeFile(const std::string& name, int mode = O_RDWR) const {
        std::ofstream(folder_ / name) << name;
        return Descriptor(::open((folder_ / name).c_str(), mode | O_CLOEXEC));
    }
    [[nodiscard]] static Descriptor open(const std::filesystem::path& folder, int mode = O_PATH) {
        return Descriptor(::open(folder.c_str(), mode | O_DIRECTORY | O_CLOEXEC));
    }
    [[nodiscard]] int place(const Descriptor& file, const Descriptor& folder, const std::string& temporary,
                            const std::string& final) const {
        return answer([&] { return placer_.place(file.get(), folder.get(), temporary, final); });
    }
    [[nodiscard]] int remove(const Descriptor& file, const Descriptor& folder,
                             const std::string& temporary) const {
        return answer([&] { return placer_.remove(file.get(), folder.get(), temporary); });
    }
    [[nodiscard]] std::string contentOf(const std::string& name) const {
        std::ifstream file(folder_ / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool isThere(const std::string& name) const {
        return std::filesystem::exists(folder_ / name);
    }

    TemporaryFolder folder_;
    TemporaryFolder other_;
    Descriptor place_ = open(folder_.path());
    std::string temporary_ = temporaryName(1);
    FilePlacer placer_;
};

TEST_F(Placing, givesTheFinalNameInsteadOfTheTemporaryOne) {
    std::ofstream(folder_ / "final") << "old";
    const Descriptor file = makeFile(temporary_);
    EXPECT_EQ(place(file, place_, temporary_, "final"), 0);
    EXPECT_EQ(contentOf("final"), temporary_);
    EXPECT_FALSE(isThere(temporary_));
}

// A file that was opened without a name in the folder, where the file system has such files.
class PlacingNameless : public Placing {
protected:
    void SetUp() override {
        if (!file_ && (error_ == EOPNOTSUPP || error_ == EISDIR)) {
            GTEST_SKIP() << "no files without names in this folder: "
                         << std::generic_category().message(error_);
        }
        ASSERT_TRUE(file_) << std::generic_category().message(error_);
    }

    Descriptor file_{::open(folder_.path().c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600)};
    int error_ = errno;
};

TEST_F(PlacingNameless, givesItAName) {
    EXPECT_EQ(place(file_, place_, temporary_, "final"), 0);
    EXPECT_TRUE(isThere("final"));
    EXPECT_FALSE(isThere(temporary_));
}

TEST_F(PlacingNameless, putsItIntoNoOtherFolder) {
    const std::filesystem::path beneath = folder_ / "beneath";
    std::filesystem::create_directory(beneath);
    for (const std::filesystem::path& elsewhere : {other_.path(), beneath, folder_.path().parent_path()}) {
        EXPECT_EQ(place(file_, open(elsewhere), temporary_, "final"), EPERM) << elsewhere;
    }
    EXPECT_TRUE(std::filesystem::is_empty(beneath));
    EXPECT_TRUE(std::filesystem::is_empty(other_.path()));
}

TEST_F(Placing, removesTheTemporaryName) {
    const Descriptor file = makeFile(temporary_);
    EXPECT_EQ(remove(file, place_, temporary_), 0);
    EXPECT_FALSE(isThere(temporary_));
    EXPECT_EQ(remove(file, place_, temporary_), ENOENT);
}

TEST_F(Placing, removesTheTemporaryNameWhenTheOtherCanNotBeGiven) {
    std::filesystem::create_directory(folder_ / "final");
    const Descriptor file = makeFile(temporary_);
    EXPECT_EQ(place(file, place_, temporary_, "final"), EISDIR);
    EXPECT_FALSE(isThere(temporary_));
}

// The name of another file than that which is open.
TEST_F(Placing, touchesNoOtherFile) {
    const std::string otherName = temporaryName(2);
    const Descriptor file = makeFile(temporary_);
    const Descriptor other = makeFile(otherName);
    EXPECT_EQ(place(file, place_, otherName, "final"), EPERM);
    EXPECT_EQ(remove(file, place_, otherName), EPERM);
    EXPECT_EQ(remove(file, open(other_.path()), temporary_), EPERM);
    EXPECT_TRUE(isThere(temporary_));
    EXPECT_TRUE(isThere(otherName));
}

// For reading; for writing, as standard error may be; for neither, and as a place, for which no right to the
// file is needed.
TEST_F(Placing, touchesNoFileThatIsNotOpenForReadingAndWriting) {
    constexpr int kNeither = O_ACCMODE;
    for (const int mode : {O_RDONLY, O_WRONLY, kNeither, O_PATH}) {
        const Descriptor file = makeFile(temporary_, mode);
        ASSERT_TRUE(file) << mode;
        EXPECT_EQ(place(file, place_, temporary_, "final"), EPERM) << mode;
        EXPECT_EQ(remove(file, place_, temporary_), EPERM) << mode;
    }
    EXPECT_TRUE(isThere(temporary_));
    EXPECT_FALSE(isThere("final"));
}

TEST_F(Placing, touchesNoFileOfAnotherName) {
    for (const char* const name : {"shown", ".hidden", ".zqmspeech-hidden"}) {
        const Descriptor file = makeFile(name);
        EXPECT_EQ(place(file, place_, name, "final"), EPERM) << name;
        EXPECT_EQ(remove(file, place_, name), EPERM) << name;
        EXPECT_TRUE(isThere(name));
    }
    EXPECT_FALSE(isThere("final"));
}

TEST_F(Placing, touchesNothingInMemory) {
    const Descriptor file(::memfd_create("a", MFD_CLOEXEC));
    EXPECT_EQ(place(file, open("/"), temporary_, "zqm-memory"), EPERM);
}

TEST_F(Placing, goesIntoNoOtherFolderByAName) {
    const Descriptor file = makeFile(temporary_);
    const std::string elsewhere = "../" + other_.path().filename().string() + "/final";
    for (const std::string& name :
         {elsewhere, std::string("."), std::string(".."), (other_ / "final").string()}) {
        EXPECT_EQ(place(file, place_, temporary_, name), EPERM) << name;
    }
    EXPECT_EQ(place(file, place_, temporary_, ""), ENOENT);
    EXPECT_EQ(place(file, place_, temporary_, std::string(300, 'a')), ENAMETOOLONG);
    EXPECT_TRUE(isThere(temporary_));
    EXPECT_TRUE(std::filesystem::is_empty(other_.path()));
}

// A mere place, as an engine can open none.
TEST_F(Placing, needsAFolderAsHostsOpenIt) {
    const Descriptor file = makeFile(temporary_);
    EXPECT_EQ(place(file, open(folder_.path(), O_RDONLY), temporary_, "final"), EPERM);
    EXPECT_NE(place(file, file, temporary_, "final"), 0);
    EXPECT_NE(place(place_, place_, temporary_, "final"), 0);
    EXPECT_TRUE(isThere(temporary_));
}

TEST_F(Placing, endsWhenItsProcessDoesAndThatIsSeen) {
    EXPECT_FALSE(placer_.hasEnded());
    const auto processes = zqm::support::childrenOfThisProcess();
    ASSERT_EQ(processes.size(), 1U);
    ::kill(processes.front(), SIGKILL);
    while (!placer_.hasEnded()) {
        ::usleep(1000);
    }
    EXPECT_NE(place(makeFile(temporary_), place_, temporary_, "final"), 0);
}

} // namespace
