// N rounds against 2N: nothing may grow with the work.

#include "tests/endtoend/speaking.h"
#include "tests/support/process_table.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

class Endurance : public SpeakingTest {
protected:
    struct Held {
        host::Ledger ledger;
        std::size_t descriptors;
        std::size_t processes;
        bool operator==(const Held&) const = default;
    };

    Held held() {
        return {runtime.ledger(), support::openDescriptors(), support::childrenOfThisProcess().size()};
    }
};

TEST_F(Endurance, NewObjectsLeaveNothingBehind) {
    const auto rounds = [&](int count) {
        for (int round = 0; round < count; ++round) {
            Speaker speaker(runtime);
            speaker.speak("Hello world", file);
            EXPECT_THROW(speaker.object.call("Constructor"), host::HostException);
        }
        // The engines of dropped objects end by themselves; the next call reaps them.
        EXPECT_TRUE(runtime.runUntil(
            [] {
                const auto children = support::childrenOfThisProcess();
                return std::ranges::none_of(children, support::isAlive);
            },
            kDeadline));
        Speaker last(runtime);
        last.speak("Hello", file);
    };
    rounds(10);
    const Held after = held();
    rounds(20);
    EXPECT_EQ(held().ledger, after.ledger);
    EXPECT_EQ(held().descriptors, after.descriptors);
    EXPECT_LE(held().processes, after.processes);
}

TEST_F(Endurance, OneObjectSpeaksOftenWithoutGrowing) {
    Speaker speaker(runtime);
    const auto rounds = [&](int count) {
        for (int round = 0; round < count; ++round) {
            speaker.words.clear();
            speaker.texts.clear();
            speaker.speak("Hello world", file);
            ASSERT_EQ(speaker.words.size(), 2U);
        }
    };
    rounds(100);
    const Held after = held();
    rounds(200);
    EXPECT_EQ(held().ledger, after.ledger);
    EXPECT_EQ(held().descriptors, after.descriptors);
    EXPECT_EQ(held().processes, after.processes);
}

} // namespace
} // namespace zqm::endtoend
