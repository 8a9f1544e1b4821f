// Engines that end, or whose conversation with the host is cut, garbled or delayed, at every message of it.

#include "tests/endtoend/engine_faults.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sound_file.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ValuesIn;
using Lines = std::vector<std::string>;

// ---- a short text into a file

class WritingFaults : public EngineFaults, public testing::WithParamInterface<FaultCase> {
protected:
    // Of the start and all that follows.
    Lines start(Speaker& speaker) {
        return loggedByHost([&] {
            if (speaker.start(kShortText, file)) {
                ++starts_;
                EXPECT_TRUE(speaker.waitForEnd());
            }
        });
    }

    [[nodiscard]] std::vector<bool> endsOf(const Speaker& speaker) const {
        return {speaker.ends.begin() + static_cast<std::ptrdiff_t>(endsBefore_), speaker.ends.end()};
    }

    void expectRefused(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 0);
        EXPECT_THAT(endsOf(speaker), IsEmpty());
        EXPECT_THAT(log, ElementsAre(kNotStarted + GetParam().fault.reason));
    }

    void expectEndedEarly(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 1);
        EXPECT_THAT(endsOf(speaker), ElementsAre(false));
        EXPECT_THAT(log, ElementsAre(kEndedEarly + GetParam().fault.reason));
        if (std::filesystem::exists(file)) {
            expectWhole(file);
        }
    }

    void expectCompleted(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 1);
        EXPECT_THAT(endsOf(speaker), ElementsAre(true));
        EXPECT_THAT(log, IsEmpty());
        expectWhole(file);
    }

    void expectConsistent(Speaker& speaker, const Lines& log) {
        if (GetParam().fault.effect == Fault::Effect::Either) {
            EXPECT_EQ(endsOf(speaker).size(), static_cast<std::size_t>(starts_));
            if (std::filesystem::exists(file)) {
                EXPECT_NO_THROW(support::SoundFile{file}); // the second request ended the first
            }
        } else if (!GetParam().isLoss() || GetParam().isBehind("finished")) {
            expectCompleted(speaker, log);
        } else if (GetParam().isBehind("started")) {
            expectEndedEarly(speaker, log);
        } else if (GetParam().isUsed) {
            expectCompleted(speaker, log); // by another engine
        } else {
            expectRefused(speaker, log);
        }
    }

    void expectNextWorks(Speaker& speaker) const {
        EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
        const std::size_t ends = speaker.ends.size();
        ASSERT_TRUE(speaker.start(kShortText, next));
        EXPECT_TRUE(speaker.waitForEnd());
        EXPECT_EQ(speaker.ends.size(), ends + 1);
        EXPECT_TRUE(speaker.ends.back());
        expectWhole(next);
    }

    std::size_t endsBefore_ = 0;

private:
    int starts_ = 0;
};

TEST_P(WritingFaults, AreToldAndOver) {
    Speaker speaker(runtime);
    if (GetParam().isUsed) {
        speaker.speak(kShortText, file);
        std::filesystem::remove(file);
        endsBefore_ = speaker.ends.size();
    }
    plan(GetParam());
    const Lines log = start(speaker);
    expectConsistent(speaker, log);
    expectNextWorks(speaker);
}

INSTANTIATE_TEST_SUITE_P(All, WritingFaults,
                         ValuesIn(newAndUsed(faultCases({request("speak"), event("started"), event("phoneme"),
                                                         event("word"), event("phoneme", 2),
                                                         event("finished")}))),
                         nameOf);

} // namespace
} // namespace zqm::endtoend
