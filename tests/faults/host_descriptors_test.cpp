// Programs that may open no more files. The limit is raised by one from try to try, so that each
// step that needs a descriptor fails once.

#include "tests/faults/program.h"
#include "tests/support/command_listener.h"
#include "tests/support/few_descriptors.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/spoken_phrases.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace zqm::faults {
namespace {

using support::ScopedEnvironment;

constexpr int kMostSteps = 60;
constexpr const char* kCommand = "open the window";

Fault fewerDescriptors(int spare) {
    return [spare] { return std::make_shared<support::FewDescriptors>(static_cast<rlim_t>(spare)); };
}

// The run loop needs some of its own when it is first used.
enum class RunLoop { IsThere, ComesLater };

void use(Program& program, RunLoop runLoop) {
    if (runLoop == RunLoop::IsThere) {
        program.runtime.runFor(host::Seconds(0.01));
    }
}

std::string nameOf(RunLoop runLoop) {
    return runLoop == RunLoop::IsThere ? "WithRunLoop" : "WithoutRunLoop";
}

// Whether the engines have as few, or all they want.
class FirstSpeech : public testing::TestWithParam<std::tuple<const char*, RunLoop>> {};

TEST_P(FirstSpeech, OfAProgramWithFewDescriptors) {
    const char* const limits = std::get<0>(GetParam());
    const RunLoop runLoop = std::get<1>(GetParam());
    Tally tally("first speech of a program that may open no more files");
    for (int spare = 0; tally.of(Seen::Completed) == 0 && !HasFailure(); ++spare) {
        SCOPED_TRACE(spare);
        ASSERT_LT(spare, kMostSteps);
        support::inFork([&] {
            const ScopedEnvironment engines("ZQM_ENGINE_LIMITS", limits);
            Program program;
            use(program, runLoop);
            tally.add(program.speak("speech.wav", fewerDescriptors(spare)));
            program.expectWorks();
            program.speak("speech.wav", fewerDescriptors(spare));
            program.expectWorks();
        });
    }
    EXPECT_GT(tally.of(Seen::Refused), 0);
}

std::string nameOf(const testing::TestParamInfo<std::tuple<const char*, RunLoop>>& test) {
    const std::string limits = std::get<const char*>(test.param);
    return (limits.empty() ? "AsFew" : "Enough") + nameOf(std::get<RunLoop>(test.param));
}

INSTANTIATE_TEST_SUITE_P(Engines, FirstSpeech,
                         testing::Combine(testing::Values("", "descriptors=1024"),
                                          testing::Values(RunLoop::IsThere, RunLoop::ComesLater)),
                         [](const auto& engines) { return nameOf(engines); });

Seen listenWithFewDescriptors(Program& program, const std::filesystem::path& file, int spare) {
    ZQMPlatformListenToFile(file.c_str());
    std::optional<support::CommandListener> made;
    {
        const auto limit = fewerDescriptors(spare)();
        made.emplace(program.runtime, std::vector<std::string>{kCommand, "close the door"});
        made->start();
    }
    support::CommandListener& listener = *made;
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
        EXPECT_THAT(listener.failures().back(), testing::EndsWith("Too many open files"));
        listener.stop();
        listener.start();
        EXPECT_TRUE(program.runtime.runUntil(isOver, kPatience));
    }
    EXPECT_EQ(listener.commands(), std::vector<std::string>{kCommand});
    ZQMPlatformListenToFile(nullptr);
    return seen;
}

// It says why, and begins as soon as it can; only a file that can't be opened is given up.
class FirstListening : public testing::TestWithParam<RunLoop> {};

TEST_P(FirstListening, OfAProgramWithFewDescriptors) {
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
            use(program, GetParam());
            tally.add(listenWithFewDescriptors(program, file, spare));
            program.expectHears();
            listenWithFewDescriptors(program, file, spare);
            program.expectHears();
        });
    }
    EXPECT_GT(tally.failures(), 0);
}

INSTANTIATE_TEST_SUITE_P(Programs, FirstListening, testing::Values(RunLoop::IsThere, RunLoop::ComesLater),
                         [](const auto& program) { return nameOf(program.param); });

} // namespace
} // namespace zqm::faults
