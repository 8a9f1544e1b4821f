// Engines that were started with enough, and then may open no more files. The limit is raised by one from try
// to try, so that each step that needs a descriptor fails once.

#include "tests/faults/program.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace zqm::faults {
namespace {

constexpr int kMostSteps = 60;
constexpr int kStepsOfFile = 6;
// What a slow engine may not have closed yet of the file before: file, folder, and the socket that they go
// to.
constexpr int kHeldForAWhile = 3;

class EngineWithoutDescriptors : public testing::Test {
protected:
    // What the only engine may open beyond what it has, once the one before has ended.
    static std::shared_ptr<ScopedLimit> limitEngine(int spare) {
        EXPECT_TRUE(eventually([] { return engines().size() == 1; }));
        const pid_t engine = engines().at(0);
        return std::make_shared<ScopedLimit>(
            RLIMIT_NOFILE, support::openDescriptorsOf(engine) + static_cast<rlim_t>(spare), engine);
    }

    Program program_;
};

// Or another engine does: one that can't take the file is replaced.
TEST_F(EngineWithoutDescriptors, WritesAFileOrSaysThatItDidNot) {
    Tally tally("file of an engine that may open no more files");
    program_.expectWorks();
    for (int spare = 0; spare < kStepsOfFile; ++spare) {
        SCOPED_TRACE(spare);
        const std::filesystem::path file = program_.folder / "speech.wav";
        {
            live::Speaker speaker(program_.runtime);
            program_.expectWorks(speaker);
            const auto limit = limitEngine(spare);
            ASSERT_TRUE(speaker.startToFile(kText, file));
            ASSERT_TRUE(speaker.waitForEnd());
            tally.add(*speaker.finished() ? Seen::Completed : Seen::EndedEarly);
            EXPECT_EQ(std::filesystem::remove(file), *speaker.finished());
            program_.expectEmptyFolder();
        }
        program_.expectWorks();
    }
}

TEST_F(EngineWithoutDescriptors, DoesNotSpeakAloudButItsSuccessorDoes) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Tally tally("speech aloud with an engine that may open no more files");
    program_.expectWorks();
    bool isReplaced = false; // by the start, as one that a sanitizer ended which needs a pipe
    for (int spare = -kHeldForAWhile; tally.of(Seen::Completed) == 0 && !HasFailure(); ++spare) {
        SCOPED_TRACE(spare);
        ASSERT_LT(spare, kMostSteps);
        {
            live::Speaker speaker(program_.runtime);
            program_.expectWorks(speaker);
            const auto limit = limitEngine(spare);
            const pid_t limited = engines().at(0);
            if (!speaker.start("Hello")) {
                tally.add(Seen::Refused);
            } else {
                EXPECT_TRUE(speaker.waitForEnd());
                tally.add(speaker.finished() == true ? Seen::Completed : Seen::EndedEarly);
            }
            isReplaced = isReplaced || !support::isAlive(limited);
        }
        program_.expectWorks();
    }
    EXPECT_TRUE(tally.failures() > 0 || isReplaced);
}

} // namespace
} // namespace zqm::faults
