// Whether anything speaks, as one host program learns it of another.

#include "tests/live/speaker.h"
#include "tests/support/process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>

namespace zqm::live {
namespace {

class AnySpeaking : public testing::Test {
protected:
    AnySpeaking() { loadPlugin(runtime_); }
    void TearDown() override { EXPECT_TRUE(runtime_.reports().empty()); }

    bool isAnySpeaking() {
        return runtime_.callShared("NSSpeechSynthesizerZQM", "isAnyApplicationSpeaking").asBool();
    }

    bool becomes(bool speaking) {
        return runtime_.runUntil([&] { return isAnySpeaking() == speaking; }, host::Seconds(300));
    }

    support::TemporaryFolder folder_;
    support::ScopedEnvironment user_{"XDG_RUNTIME_DIR", folder_.path().string()}; // and nobody else's
    support::PulseServer server_;
    support::ScopedPulseServer use_{server_};
    host::Runtime runtime_;
};

TEST_F(AnySpeaking, IsSoWhileAnotherProgramSpeaksAloud) {
    EXPECT_FALSE(isAnySpeaking());
    const support::Process other(ZQMSPEECH_PROGRAM, {"say", longText()});
    EXPECT_TRUE(becomes(true));
    other.signal(SIGKILL);
    EXPECT_TRUE(becomes(false));
}

TEST_F(AnySpeaking, IsSoUntilTheLastProgramIsDone) {
    Speaker speaker(runtime_);
    const support::Process other(ZQMSPEECH_PROGRAM, {"say", longText()});
    EXPECT_TRUE(becomes(true));
    ASSERT_TRUE(speaker.start("Hello"));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_TRUE(isAnySpeaking());
    other.signal(SIGTERM);
    EXPECT_TRUE(becomes(false));
}

} // namespace
} // namespace zqm::live
