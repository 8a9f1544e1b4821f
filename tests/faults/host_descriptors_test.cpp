// Programs that may open no more files. The limit is raised by one from try to try, so that each
// step that needs a descriptor fails once.

#include "tests/faults/program.h"
#include "tests/support/command_listener.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/spoken_phrases.h"

#include <gtest/gtest.h>
#include <unistd.h>

// The sanitizers look through a pipe whether memory is there, and take its lack for a fault.
#ifndef __SANITIZE_ADDRESS__

namespace zqm::faults {
namespace {

using support::ScopedEnvironment;

constexpr int kMostSteps = 60;
constexpr const char* kCommand = "open the window";

// The first one that is not in use, which the next file gets.
rlim_t freeDescriptor() {
    const int descriptor = ::dup(STDIN_FILENO);
    ::close(descriptor);
    return static_cast<rlim_t>(descriptor);
}

Fault fewerDescriptors(int spare) {
    return [spare] {
        return std::make_shared<ScopedLimit>(RLIMIT_NOFILE, freeDescriptor() + static_cast<rlim_t>(spare));
    };
}

// Whether the engines have as few, or all they want.
class FewDescriptors : public testing::TestWithParam<const char*> {};

TEST_P(FewDescriptors, ForTheFirstSpeechOfAProgram) {
    Tally tally("first speech of a program that may open no more files");
    for (int spare = 0; tally.of(Seen::Completed) == 0 && !HasFailure(); ++spare) {
        SCOPED_TRACE(spare);
        ASSERT_LT(spare, kMostSteps);
        support::inFork([&] {
            const ScopedEnvironment engines("ZQM_ENGINE_LIMITS", GetParam());
            Program program;
            tally.add(program.speak("speech.wav", fewerDescriptors(spare)));
            program.expectWorks();
            program.speak("speech.wav", fewerDescriptors(spare));
            program.expectWorks();
        });
    }
    EXPECT_GT(tally.of(Seen::Refused), 0);
}

INSTANTIATE_TEST_SUITE_P(Engines, FewDescriptors, testing::Values("", "descriptors=1024"),
                         [](const auto& limits) { return limits.param[0] == 0 ? "AsFew" : "Enough"; });

Seen listenWithFewDescriptors(Program& program, const std::filesystem::path& file, int spare) {
    support::CommandListener listener(program.runtime, {kCommand, "close the door"});
    ZQMPlatformListenToFile(file.c_str());
    {
        const auto limit = fewerDescriptors(spare)();
        listener.start();
    }
    const auto isOver = [&] { return listener.timesEnded() > 0; };
    const auto isGivenUp = [&] {
        return !listener.failures().empty() && listener.failures().back().starts_with(file.string());
    };
    EXPECT_TRUE(program.runtime.runUntil([&] { return isOver() || isGivenUp(); }, kPatience))
        << testing::PrintToString(listener.failures());
    const Seen seen = isGivenUp()                   ? Seen::Refused
                      : listener.failures().empty() ? Seen::Completed
                                                    : Seen::EndedEarly;
    if (isGivenUp()) {
        listener.stop();
        listener.start();
        EXPECT_TRUE(program.runtime.runUntil(isOver, kPatience));
    }
    EXPECT_EQ(listener.commands(), std::vector<std::string>{kCommand});
    ZQMPlatformListenToFile(nullptr);
    return seen;
}

// It says why, and begins as soon as it can; only a file that can't be opened is given up.
TEST(NoDescriptors, ForTheFirstListeningOfAProgram) {
    const ScopedEnvironment engines("ZQM_ENGINE_LIMITS", "descriptors=1024");
    const support::TemporaryFolder folder;
    const std::filesystem::path file = folder / "command.wav";
    support::writeSpokenPhrases({kCommand}, file);
    Tally tally("first listening of a program that may open no more files");
    for (int spare = 0; tally.of(Seen::Completed) == 0 && !HasFailure(); ++spare) {
        SCOPED_TRACE(spare);
        ASSERT_LT(spare, kMostSteps);
        support::inFork([&] {
            Program program;
            tally.add(listenWithFewDescriptors(program, file, spare));
            program.expectHears();
            listenWithFewDescriptors(program, file, spare);
            program.expectHears();
        });
    }
    EXPECT_GT(tally.failures(), 0);
}

} // namespace
} // namespace zqm::faults

#endif
