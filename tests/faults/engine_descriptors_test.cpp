// Engines that were started with enough, and then may open no more files. The limit is raised by one from try
// to try, so that each step that needs a descriptor fails once.

#include "tests/faults/program.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace zqm::faults {
namespace {

[[maybe_unused]] constexpr int kMostSteps = 60;
constexpr int kStepsOfFile = 6;
// Of the file before a slow engine may have these open yet: file, folder, and the socket that they go to.
[[maybe_unused]] constexpr int kHeldForAWhile = 3;

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
    int replaced = 0;
    program_.expectWorks();
    for (int spare = 0; spare < kStepsOfFile; ++spare) {
        SCOPED_TRACE(spare);
        const std::filesystem::path file = program_.folder / "speech.wav";
        {
            live::Speaker speaker(program_.runtime);
            program_.expectWorks(speaker);
            const auto limit = limitEngine(spare);
            const std::vector<pid_t> limited = engines();
            ASSERT_TRUE(speaker.startToFile(kText, file));
            ASSERT_TRUE(speaker.waitForEnd());
            replaced += engines() == limited ? 0 : 1;
            tally.add(*speaker.finished() ? Seen::Completed : Seen::EndedEarly);
            EXPECT_EQ(std::filesystem::remove(file), *speaker.finished());
            program_.expectEmptyFolder();
        }
        program_.expectWorks();
    }
    EXPECT_GT(replaced, 0);
}

#ifndef __SANITIZE_ADDRESS__ // one of whose checks takes objects for none where it has no pipe

TEST_F(EngineWithoutDescriptors, DoesNotSpeakAloudButItsSuccessorDoes) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Tally tally("speech aloud with an engine that may open no more files");
    program_.expectWorks();
    for (int spare = -kHeldForAWhile; tally.of(Seen::Completed) == 0 && !HasFailure(); ++spare) {
        SCOPED_TRACE(spare);
        ASSERT_LT(spare, kMostSteps);
        {
            live::Speaker speaker(program_.runtime);
            program_.expectWorks(speaker);
            const auto limit = limitEngine(spare);
            if (!speaker.start("Hello")) {
                tally.add(Seen::Refused);
            } else {
                EXPECT_TRUE(speaker.waitForEnd());
                tally.add(speaker.finished() == true ? Seen::Completed : Seen::EndedEarly);
            }
        }
        program_.expectWorks();
    }
    EXPECT_GT(tally.failures(), 0);
}

#endif

} // namespace
} // namespace zqm::faults
