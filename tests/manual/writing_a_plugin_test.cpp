// The plugin with one class, and the program that uses it.

#include "tests/support/process.h"

#include <gmock/gmock.h>
#include <zqmhost/zqmhost.h>

namespace zqm::tests {
namespace {

using host::HostException;
using host::Object;
using host::Runtime;
using host::Seconds;

constexpr const char* kTimer = "NSTimerZQM";

TEST(WritingAPlugin, ItsProgramCountsTicks) {
    const auto result = support::runProcess(ZQM_COUNT_TICKS, {ZQM_TIMER});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "1\n2\n3\nstopped after 3\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(support::runProcess(ZQM_COUNT_TICKS, {}).exitCode, 1);
}

class TimerPlugin : public testing::Test {
public:
    TimerPlugin() { runtime.load(ZQM_TIMER); }
    ~TimerPlugin() override { EXPECT_TRUE(runtime.reports().empty()); }
    TimerPlugin(const TimerPlugin&) = delete;
    TimerPlugin& operator=(const TimerPlugin&) = delete;

    Runtime runtime;
};

TEST_F(TimerPlugin, RaisesWhatHostCodeDidWrong) {
    const auto expectRaised = [&](const char* exception, auto&& call) {
        try {
            call();
            ADD_FAILURE() << exception;
        } catch (const HostException& raised) {
            EXPECT_EQ(raised.className(), exception);
        }
    };
    expectRaised("OutOfBoundsException", [&] { runtime.construct(kTimer, 0); });
    Object timer = runtime.construct(kTimer, 1000);
    expectRaised("UnsupportedOperationException", [&] { timer.call("Constructor", 10); });
    EXPECT_TRUE(timer.get("isRunning").asBool());
}

TEST_F(TimerPlugin, DoesNothingBeforeItIsConstructed) {
    Object timer = runtime.create(kTimer);
    timer.call("Stop");
    EXPECT_FALSE(timer.get("isRunning").asBool());
    EXPECT_EQ(timer.get("Count").asInteger(), 0);
}

TEST_F(TimerPlugin, LeavesNothingBehind) {
    const host::Ledger before = runtime.ledger();
    {
        Object timer = runtime.construct(kTimer, 1);
        bool dropped = false;
        timer.on("Fired", [&](const host::Arguments&) {
            timer = Object(); // the last lock but the plugin's, which goes when this returns
            dropped = true;
        });
        for (int round = 0; round < 6000 && !dropped; ++round) {
            runtime.runFor(Seconds(0.01));
        }
        ASSERT_TRUE(dropped);
    }
    runtime.runFor(Seconds(0.05)); // in which a timer that is left would tick
    EXPECT_EQ(runtime.ledger(), before);
}

} // namespace
} // namespace zqm::tests
