// The folder of a check, in a process that a signal ends.

#include "cli/validate/scratch_folder.h"

#include "cli/system/interruption.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr int kStays = 3;

void raiseBesideAFolder(int signalNumber, int times) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder.path() + "/inner");
    std::ofstream(folder.path() + "/inner/file") << "text";
    for (int time = 0; time < times; ++time) {
        std::raise(signalNumber);
    }
    if (Interruption::signalNumber() != signalNumber) {
        _exit(EXIT_FAILURE);
    }
}

// How a process ends that has such a folder in this one.
int statusAfter(int signalNumber, int times, const std::filesystem::path& place) {
    const pid_t process = fork();
    if (process == 0) {
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        setenv("TMPDIR", place.c_str(), 1); // NOLINT(concurrency-mt-unsafe): one thread
        const Interruption interruption;
        raiseBesideAFolder(signalNumber, times);
        _exit(kStays);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status;
}

class SignalBesideAScratchFolder : public testing::TestWithParam<int> {};

TEST_P(SignalBesideAScratchFolder, EndsTheProcessWhenThatHasGone) {
    const support::TemporaryFolder place;
    const int status = statusAfter(GetParam(), 2, place.path());
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
    EXPECT_TRUE(std::filesystem::is_empty(place.path()));
}

INSTANTIATE_TEST_SUITE_P(All, SignalBesideAScratchFolder,
                         testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT, SIGALRM, SIGUSR1, SIGUSR2,
                                         SIGVTALRM, SIGPROF, SIGXCPU));

TEST(ScratchFolderSignal, IsOnlyNotedIfItIsTheFirstToInterrupt) {
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        const support::TemporaryFolder place;
        const int status = statusAfter(signalNumber, 1, place.path());
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), kStays);
        EXPECT_TRUE(std::filesystem::is_empty(place.path()));
    }
}

} // namespace
} // namespace zqm::cli
