#include "tests/support/pulse_server.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/monitor_recording.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

namespace zqm::support {
namespace {

using testing::IsEmpty;

constexpr int kRate = 22050;

// A second of silence, then half a second of a tone, as raw 16-bit samples.
std::string silenceThenTone() {
    std::string bytes;
    for (int frame = 0; frame < kRate * 3 / 2; ++frame) {
        const double value = frame < kRate ? 0 : 10000 * std::sin(2 * std::numbers::pi * 440 * frame / kRate);
        const auto sample = static_cast<std::uint16_t>(std::lround(value));
        bytes += static_cast<char>(sample & 0xFF);
        bytes += static_cast<char>(sample >> 8);
    }
    return bytes;
}

ProcessResult play(const PulseServer& server) {
    return runProcess(
        "pacat", {"--playback", "--raw", "--format=s16le", "--channels=1", "--rate=" + std::to_string(kRate)},
        {.input = silenceThenTone(), .environment = server.environment()});
}

TEST(PulseServer, PlaysInRealTimeAndIsHeardThroughItsMonitor) {
    const PulseServer server(kRate);
    const MonitorRecording recording(server);
    EXPECT_EQ(recording.rate(), kRate);
    const ProcessResult played = play(server);
    ASSERT_TRUE(played.succeeded()) << played.errors;
    ASSERT_TRUE(recording.catchUp());
    const std::vector<float> samples = recording.samples();
    const auto isLoud = [](float sample) { return std::abs(sample) > 0.02F; };
    const auto first = std::ranges::find_if(samples, isLoud);
    ASSERT_NE(first, samples.end());
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isLoud).base();
    const double seconds = static_cast<double>(last - first) / kRate;
    EXPECT_NEAR(seconds, 0.5, 0.02);
    EXPECT_NEAR(rms(std::span(first, last)), 10000 / 32768.0 / std::numbers::sqrt2, 0.02);

    const auto start = static_cast<std::size_t>(first - samples.begin());
    EXPECT_DOUBLE_EQ(recording.timeOf(start + kRate) - recording.timeOf(start), 1);
    EXPECT_LT(recording.timeOf(start), monotonicSeconds());
}

TEST(PulseServer, CanBeKilledAndStartedAgainOnTheSameAddress) {
    PulseServer server;
    const std::string address = server.address();
    const MonitorRecording recording(server);
    server.kill();
    EXPECT_FALSE(play(server).succeeded());
    EXPECT_FALSE(recording.samples().empty());
    EXPECT_THROW(MonitorRecording{server}, std::runtime_error);
    server.restart();
    EXPECT_EQ(server.address(), address);
    const MonitorRecording again(server);
    EXPECT_TRUE(play(server).succeeded());
}

TEST(PulseServer, AnswersNobodyWhenFrozen) {
    PulseServer server;
    server.freeze();
    EXPECT_TRUE(runProcess("pactl", {"info"}, {.environment = server.environment()}, std::chrono::seconds(1))
                    .timedOut);
    server.thaw();
    EXPECT_TRUE(runProcess("pactl", {"info"}, {.environment = server.environment()}).succeeded());
}

TEST(PulseServer, SeveralStandSideBySideAndNoneIsLeftBehind) {
    {
        const PulseServer one;
        const PulseServer other;
        EXPECT_NE(one.address(), other.address());
        EXPECT_EQ(childrenOfThisProcess().size(), 2U);
    }
    EXPECT_THAT(childrenOfThisProcess(), IsEmpty());
}

TEST(ScopedPulseServer, SetsAndRestoresTheEnvironment) {
    const PulseServer server;
    ASSERT_EQ(setenv("PULSE_SERVER", "before", 1), 0);
    {
        const ScopedPulseServer use(server);
        EXPECT_EQ(std::getenv("PULSE_SERVER"), server.address());
        const ScopedPulseServer none(ScopedPulseServer::unreachableAddress());
        EXPECT_EQ(std::getenv("PULSE_SERVER"), ScopedPulseServer::unreachableAddress());
    }
    EXPECT_STREQ(std::getenv("PULSE_SERVER"), "before");
    unsetenv("PULSE_SERVER");
    EXPECT_FALSE(runProcess("pactl", {"info"},
                            {.environment = {{"PULSE_SERVER", ScopedPulseServer::unreachableAddress()}}})
                     .succeeded());
}

} // namespace
} // namespace zqm::support
