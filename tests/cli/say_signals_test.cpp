// Signals that come to `zqmspeech say -o` at a time that is sure: in a long silence, or when it has spoken
// all and writes it into a pipe that takes no more.

#include "tests/cli/say.h"
#include "tests/support/eventually.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::tests {
namespace {

constexpr std::chrono::milliseconds kDeadline{60000};

// None waits to be delivered.
bool hasTakenSignals(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::uint64_t waiting = 0;
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("ShdPnd:") || line.starts_with("SigPnd:")) {
            waiting |= std::stoull(line.substr(line.find('\t')), nullptr, 16);
        }
    }
    return waiting == 0;
}

// Silence for a day, then a word.
class SayInSilence : public testing::Test {
protected:
    // Interrupts the speech into this file as soon as it has begun.
    support::ProcessResult interrupted(const std::string& output, const std::vector<std::string>& more = {}) {
        support::ProcessOptions options = bareOptions();
        options.environment["TMPDIR"] = temporary_.path().string();
        std::vector<std::string> arguments{"-o", output, "[[slnc 86400000]] Hello"};
        arguments.insert(arguments.begin(), more.begin(), more.end());
        const support::Process process(ZQMSPEECH_PROGRAM, sayArguments(arguments), options);
        EXPECT_TRUE(support::eventually([this] { return !std::filesystem::is_empty(temporary_.path()); }));
        process.signal(SIGINT);
        EXPECT_TRUE(process.waitFor(kDeadline));
        EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
        return process.result();
    }

    support::TemporaryFolder folder_;
    support::TemporaryFolder temporary_;
    std::string path_ = (folder_ / "x.wav").string();
};

TEST_F(SayInSilence, ASignalLeavesTheFileThatIsThere) {
    std::ofstream(path_) << "before";
    const support::ProcessResult result = interrupted(path_);
    EXPECT_EQ(result.exitCode, 128 + SIGINT);
    EXPECT_EQ(result.errors, "");
    std::ifstream file(path_);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "before");
}

TEST_F(SayInSilence, ASignalLeavesNoFile) {
    const support::ProcessResult result = interrupted(
        path_, {"--subtitles", (folder_ / "x.vtt").string(), "--timeline", (folder_ / "x.svg").string()});
    EXPECT_EQ(result.exitCode, 128 + SIGINT);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SayInSilence, ASignalLeavesAPipeEmpty) {
    const support::ProcessResult result = interrupted("-");
    EXPECT_EQ(result.exitCode, 128 + SIGINT);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "");
}

class SayIntoAFullPipe : public testing::Test {
protected:
    SayIntoAFullPipe() {
        EXPECT_EQ(mkfifo(path_.c_str(), 0600), 0);
        pipe_ = open(path_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        EXPECT_GE(pipe_, 0);
    }
    void TearDown() override { close(pipe_); }

    support::Process start() {
        support::ProcessOptions options = bareOptions();
        options.environment["TMPDIR"] = temporary_.path().string();
        return {ZQMSPEECH_PROGRAM,
                sayArguments({"--events", "-o", path_, "One two three four five six seven eight nine ten"}),
                options};
    }
    bool isFull() const {
        int held = 0;
        return ioctl(pipe_, FIONREAD, &held) == 0 && held == fcntl(pipe_, F_GETPIPE_SZ);
    }
    std::size_t takeAll() const {
        std::string bytes(65536, '\0');
        std::size_t all = 0;
        for (ssize_t count = 1; count > 0; all += count > 0 ? static_cast<std::size_t>(count) : 0) {
            count = read(pipe_, bytes.data(), bytes.size());
        }
        return all;
    }

    support::TemporaryFolder folder_;
    support::TemporaryFolder temporary_;
    std::string path_ = (folder_ / "pipe.wav").string();
    int pipe_ = -1;
};

TEST_F(SayIntoAFullPipe, ASignalAfterAllWasSpokenStopsNothing) {
    const support::Process process = start();
    ASSERT_TRUE(support::eventually([this] { return isFull(); }));
    process.signal(SIGINT);
    ASSERT_TRUE(support::eventually([&] { return hasTakenSignals(process.pid()); }));
    std::size_t size = 0;
    ASSERT_TRUE(support::eventually([&] {
        size += takeAll();
        return !process.running();
    }));
    const support::ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(withoutTimes(result.output), testing::EndsWith("\nfinish true\n"));
    EXPECT_GT(size + takeAll(), 65536);
    EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
}

class SayImpatience : public SayIntoAFullPipe, public testing::WithParamInterface<int> {};

TEST_P(SayImpatience, LeavesNothingBehind) {
    const support::Process process = start();
    const rlimit noCore{0, 0};
    ASSERT_EQ(::prlimit(process.pid(), RLIMIT_CORE, &noCore, nullptr), 0);
    ASSERT_TRUE(support::eventually([this] { return isFull(); }));
    EXPECT_FALSE(std::filesystem::is_empty(temporary_.path()));
    ASSERT_TRUE(support::eventually([&] {
        if (process.running()) {
            process.signal(GetParam());
        }
        return !process.running();
    }));
    EXPECT_EQ(process.result().signal, GetParam());
    EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
}

INSTANTIATE_TEST_SUITE_P(All, SayImpatience,
                         testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGUSR1));

} // namespace
} // namespace zqm::tests
