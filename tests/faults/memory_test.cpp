// Engines that get no more memory.

#include "tests/faults/program.h"
#include "tests/support/scoped_environment.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace zqm::faults {
namespace {

using support::ScopedEnvironment;

// A sanitizer reserves more memory than there is.
#ifndef __SANITIZE_ADDRESS__

constexpr std::uint64_t kStep = 8'000'000;
constexpr std::uint64_t kNextToNothing = 4096; // none at all means no limit to some kernels
constexpr std::uint64_t kMost = 2'000'000'000; // with that everything works

// Bytes of address space; of memory that is a process's own.
struct Memory {
    std::uint64_t all = 0;
    std::uint64_t data = 0;
};

Memory memoryOf(pid_t process) {
    constexpr std::uint64_t kKilobyte = 1024;
    Memory memory;
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        std::istringstream words(line);
        std::string name;
        std::uint64_t kilobytes = 0;
        words >> name >> kilobytes;
        if (name == "VmSize:") {
            memory.all = kilobytes * kKilobyte;
        } else if (name == "VmData:") {
            memory.data = kilobytes * kKilobyte;
        }
    }
    return memory;
}

class Memories : public testing::TestWithParam<const char*> {
protected:
    std::string with(std::uint64_t bytes) const {
        return std::string(GetParam()) + '=' + std::to_string(bytes);
    }

    Program program_;
};

TEST_P(Memories, ThatDoNotDoForTheStartOfAnEngine) {
    program_.expectWorks();
    Tally tally(std::string("engine started with too little ") + GetParam());
    for (std::uint64_t bytes = kStep; tally.of(Seen::Completed) == 0 && !HasFailure(); bytes += kStep) {
        SCOPED_TRACE(bytes);
        ASSERT_LT(bytes, kMost);
        const auto limited = [&] {
            return std::make_shared<ScopedEnvironment>("ZQM_ENGINE_LIMITS", with(bytes));
        };
        tally.add(program_.speak("speech.wav", limited));
        program_.expectWorks();
    }
    EXPECT_GT(tally.of(Seen::Refused), 0);
}

// What is asked for is more than there is memory for, and at first more than there is for any request.
TEST_P(Memories, ThatDoNotDoForARequest) {
    Tally tally(std::string("engine that gets no more ") + GetParam() + " for a request");
    const std::string text = veryLongText();
    const std::filesystem::path file = program_.folder / "speech.wav";
    const bool isData = std::string(GetParam()) == "data";
    program_.expectWorks();
    {
        live::Speaker speaker(program_.runtime);
        for (const std::uint64_t more : {0U, 1'000'000U, 4'000'000U, 8'000'000U, 16'000'000U}) {
            SCOPED_TRACE(more);
            program_.expectWorks(speaker);
            const pid_t engine = engines().at(0);
            const Memory memory = memoryOf(engine);
            const ScopedLimit limit(isData ? RLIMIT_DATA : RLIMIT_AS,
                                    (isData ? memory.data : memory.all) + more, engine);
            // A new engine may take the place of the one that can't.
            if (speaker.startToFile(text, file)) {
                speaker.stop();
                EXPECT_TRUE(speaker.waitForEnd());
                EXPECT_EQ(speaker.finished(), false);
            }
            tally.add(engines() == std::vector<pid_t>{engine} ? Seen::Completed : Seen::EndedEarly);
            std::filesystem::remove(file);
            program_.expectEmptyFolder();
        }
        program_.expectWorks(speaker);
    }
    program_.expectNoEngine();
    EXPECT_GT(tally.failures(), 0);
}

// In the middle of a speech, which either goes on or is over.
TEST_P(Memories, ThatEndInMidSpeech) {
    Tally tally(std::string("speech for which there is suddenly no more ") + GetParam());
    const std::filesystem::path file = program_.folder / "speech.wav";
    const bool isData = std::string(GetParam()) == "data";
    program_.expectWorks();
    {
        live::Speaker speaker(program_.runtime);
        ASSERT_TRUE(speaker.startToFile(sentences(100), file));
        ASSERT_TRUE(speaker.waitForWords(1));
        const ScopedLimit limit(isData ? RLIMIT_DATA : RLIMIT_AS, kNextToNothing, engines().at(0));
        ASSERT_TRUE(speaker.waitForEnd());
        tally.add(*speaker.finished() ? Seen::Completed : Seen::EndedEarly);
        EXPECT_EQ(speaker.timesFinished(), 1U);
        EXPECT_EQ(std::filesystem::remove(file), *speaker.finished());
        program_.expectEmptyFolder();
        live::Speaker other(program_.runtime);
        program_.expectWorks(other);
    }
    program_.expectNoEngine();
}

INSTANTIATE_TEST_SUITE_P(Kinds, Memories, testing::Values("memory", "data"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST(ListeningMemory, ThatDoesNotDoIsAFailureOfThatFile) {
    constexpr std::uint64_t kLeast = 40'000'000;
    constexpr std::uint64_t kListeningStep = 30'000'000;
    Program program;
    program.expectHears();
    Tally tally("engine that listens with too little memory");
    for (std::uint64_t bytes = kLeast; tally.of(Seen::Completed) == 0 && !HasFailure();
         bytes += kListeningStep) {
        SCOPED_TRACE(bytes);
        ASSERT_LT(bytes, kMost);
        tally.add(program.listen([&] {
            return std::make_shared<ScopedEnvironment>("ZQM_ENGINE_LIMITS",
                                                       "memory=" + std::to_string(bytes));
        }));
        program.expectHears();
    }
    EXPECT_GT(tally.of(Seen::EndedEarly), 0);
}

#endif

} // namespace
} // namespace zqm::faults
