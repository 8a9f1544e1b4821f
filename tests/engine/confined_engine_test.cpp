// The engine program, looked at from outside.

#include "engine/speaker/voices.h"
#include "tests/engine/engine_process.h"
#include "tests/engine/kernel_confinement.h"
#include "tests/support/eventually.h"
#include "tests/support/fresh_process.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <ostream>
#include <sched.h>
#include <seccomp.h>
#include <system_error>
#include <unistd.h>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::test;
using zqm::support::eventually;
using zqm::support::TemporaryFolder;

namespace {

// Of a thread, by name.
std::map<std::string, std::string> statusOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> values;
    std::ifstream file(folder / "status");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(":\t");
        if (colon != std::string::npos) {
            values[line.substr(0, colon)] = line.substr(colon + 2);
        }
    }
    return values;
}

constexpr int kThreads = 2; // the first one and that of espeak-ng; a sanitizer may have its own

constexpr int kExitFailure = 1;

class ConfinedEngine : public testing::Test {
protected:
    void SetUp() override {
        if (!kernelFiltersSystemCalls()) {
            GTEST_SKIP() << "there is no seccomp here";
        }
        engine_.send(ListVoices{});
        ASSERT_TRUE(engine_.nextOf<Voices>()); // it is confined before it answers
    }

    EngineProcess engine_;
};

TEST_F(ConfinedEngine, isSoInEachOfItsThreads) {
    int threads = 0;
    const std::string process = "/proc/" + std::to_string(engine_.pid());
    for (const auto& thread : std::filesystem::directory_iterator(process + "/task")) {
        auto status = statusOf(thread.path());
        EXPECT_EQ(status["Seccomp"], "2") << thread.path();
        EXPECT_EQ(status["NoNewPrivs"], "1") << thread.path();
        ++threads;
    }
    EXPECT_GE(threads, kThreads);
}

TEST_F(ConfinedEngine, hasAProcessForItsFilesThatIsConfinedTooAndEndsWithIt) {
    const auto helpers = zqm::support::childrenOf(engine_.pid());
    ASSERT_EQ(helpers.size(), 1U);
    const std::filesystem::path helper = "/proc/" + std::to_string(helpers.front());
    // It confines itself while the engine starts.
    ASSERT_TRUE(eventually([&] { return statusOf(helper)["Seccomp"] != "0"; }));
    auto status = statusOf(helper);
    EXPECT_EQ(status["Name"], "zqmspeech-files");
    EXPECT_EQ(status["Seccomp"], "2");
    EXPECT_EQ(status["NoNewPrivs"], "1");
    ::kill(engine_.pid(), SIGKILL);
    EXPECT_TRUE(eventually([&] { return !zqm::support::isAlive(helpers.front()); }));
}

// Whose process for its files ends before it.
class ConfinedEngineWithoutHelper : public ConfinedEngine {
protected:
    void signalHelper(int number) {
        const auto helpers = zqm::support::childrenOf(engine_.pid());
        ASSERT_EQ(helpers.size(), 1U);
        ::kill(helpers.front(), number);
        ASSERT_TRUE(eventually([&] { return number != SIGKILL || !zqm::support::isAlive(helpers.front()); }));
    }

    // Whether it begins to.
    bool speaksInto(Target& target, std::uint64_t utterance) {
        Speak request = speak(utterance, "Hello.");
        request.output = target.output;
        engine_.send(request, std::move(target.descriptors));
        const auto started = engine_.nextOf<Started>();
        return started && started->error.empty();
    }

    void expectItsEndInsteadOf(Target target, std::uint64_t utterance) {
        ASSERT_FALSE(speaksInto(target, utterance));
        EXPECT_EQ(engine_.wait(), kExitFailure);
        EXPECT_EQ(engine_.errors(), "zqmspeech-engine: the process for files has ended\n");
        EXPECT_FALSE(std::filesystem::exists(target.file));
    }

    TemporaryFolder folder_;
};

TEST_F(ConfinedEngineWithoutHelper, endsBeforeItsNextFileWithOneLine) {
    signalHelper(SIGKILL);
    expectItsEndInsteadOf(Target(folder_.path(), "a.wav"), 1);
}

TEST_F(ConfinedEngineWithoutHelper, saysOfAFileThatItHasBegunThatItIsNotInItsPlace) {
    signalHelper(SIGSTOP); // so that it is waited for
    Target target(folder_.path(), "a.wav");
    ASSERT_TRUE(speaksInto(target, 1));
    signalHelper(SIGKILL);
    const auto end = finished(engine_.untilEnd(1));
    ASSERT_TRUE(end);
    EXPECT_FALSE(end->completed);
    EXPECT_FALSE(std::filesystem::exists(target.file));
    expectItsEndInsteadOf(Target(folder_.path(), "b.wav"), 2);
}

TEST_F(ConfinedEngineWithoutHelper, tellsPhonemesAllTheSame) {
    signalHelper(SIGKILL);
    engine_.send(GetPhonemes{.text = "Hello.", .voice = "gmw/en-US", .manner = {}});
    const auto answer = engine_.nextOf<Phonemes>();
    ASSERT_TRUE(answer);
    EXPECT_FALSE(answer->text.empty());
}

using Filter = std::unique_ptr<void, decltype(&::seccomp_release)>;

// From now on a process of this one's kind starts threads and programs, but no second one of itself.
void refuseProcesses() {
    const Filter filter(::seccomp_init(SCMP_ACT_ALLOW), &::seccomp_release);
    constexpr scmp_arg_cmp kNoThread{0, SCMP_CMP_MASKED_EQ, CLONE_VM, 0};
    ::seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(EAGAIN), SCMP_SYS(clone), 1, &kNoThread);
    ::seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EAGAIN), SCMP_SYS(fork), 0);
    ::seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0);
    ::seccomp_load(filter.get());
}

TEST(EngineThatCanStartNoProcess, endsAtItsStartWithOneLine) {
    if (!kernelFiltersSystemCalls()) {
        GTEST_SKIP() << "there is no seccomp here";
    }
    zqm::support::inFork([] {
        refuseProcesses();
        EngineProcess engine;
        EXPECT_FALSE(engine.next());
        EXPECT_EQ(engine.wait(), kExitFailure);
        EXPECT_EQ(engine.errors(), "zqmspeech-engine: no process for files: " +
                                       std::generic_category().message(EAGAIN) + "\n");
    });
}

// From now on the kernel answers such calls as one that doesn't know them, or as one that forbids them, in
// every process that this one starts.
void takeAway(const std::vector<int>& calls, std::uint32_t error) {
    const Filter filter(::seccomp_init(SCMP_ACT_ALLOW), &::seccomp_release);
    // By which the superuser alone may go without: what an engine does by itself is to be seen.
    ::seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_NNP, ::geteuid() == 0 ? 0 : 1);
    for (const int call : calls) {
        ::seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(error), call, 0);
    }
    ASSERT_EQ(::seccomp_load(filter.get()), 0);
}

struct Kernel {
    const char* lacks;
    std::vector<int> calls;
    std::uint32_t error;
};

void PrintTo(const Kernel& kernel, std::ostream* stream) {
    *stream << "one without " << kernel.lacks;
}

class EngineOnAKernelThatLacks : public testing::TestWithParam<Kernel> {};

TEST_P(EngineOnAKernelThatLacks, SpeaksWithWhatThereIs) {
    if (!kernelFiltersSystemCalls()) {
        GTEST_SKIP() << "there is no seccomp here";
    }
    zqm::support::inFork([] {
        takeAway(GetParam().calls, GetParam().error);
        const TemporaryFolder folder;
        EngineProcess engine;
        Target target(folder.path(), "a.wav");
        Speak request = speak(1, "Hello.");
        request.output = target.output;
        engine.send(request, std::move(target.descriptors));
        const auto end = finished(engine.untilEnd(1));
        ASSERT_TRUE(end);
        EXPECT_TRUE(end->completed);
        EXPECT_TRUE(std::filesystem::exists(target.file));
        std::vector<pid_t> processes = zqm::support::childrenOf(engine.pid());
        ASSERT_EQ(processes.size(), 1U);
        processes.push_back(engine.pid());
        for (const pid_t process : processes) {
            EXPECT_EQ(statusOf("/proc/" + std::to_string(process))["NoNewPrivs"], "1");
        }
        EXPECT_EQ(engine.errors(), "");
    });
}

INSTANTIATE_TEST_SUITE_P(
    Kernels, EngineOnAKernelThatLacks,
    testing::Values(Kernel{"seccomp", {SCMP_SYS(seccomp)}, ENOSYS},
                    Kernel{"theRightToSeccomp", {SCMP_SYS(seccomp)}, EPERM},
                    Kernel{"Landlock", {SCMP_SYS(landlock_create_ruleset)}, ENOSYS},
                    Kernel{"theRightToLandlock", {SCMP_SYS(landlock_create_ruleset)}, EPERM},
                    Kernel{"both", {SCMP_SYS(seccomp), SCMP_SYS(landlock_create_ruleset)}, ENOSYS}),
    [](const auto& one) { return std::string(one.param.lacks); });

// An engine whose voices are those of a folder.
bool findsVoices(const std::filesystem::path& folder) {
    EngineProcess engine({{"ESPEAK_DATA_PATH", folder.string()}});
    engine.send(ListVoices{});
    const auto answer = engine.nextOf<Voices>();
    return answer && !answer->voices.empty();
}

TEST(ConfinedEngineFiles, areNotThoseThatItsDataLinksToElsewhere) {
    if (kernelLandlockVersion() == 0) {
        GTEST_SKIP() << "this kernel has no Landlock";
    }
    constexpr const char* kFile = "phontab"; // without which nothing is spoken
    const TemporaryFolder data;
    const TemporaryFolder elsewhere;
    std::filesystem::copy(zqm::engine::voiceFolder(), data.path(), std::filesystem::copy_options::recursive);
    const auto findsVoicesWithItIn = [&](const std::filesystem::path& place) {
        std::filesystem::copy_file(std::filesystem::path(zqm::engine::voiceFolder()) / kFile, place);
        std::filesystem::remove(data / kFile);
        std::filesystem::create_symlink(place, data / kFile);
        return findsVoices(data.path());
    };
    EXPECT_TRUE(findsVoicesWithItIn(data / "another name"));
    EXPECT_FALSE(findsVoicesWithItIn(elsewhere / kFile));
}

} // namespace
