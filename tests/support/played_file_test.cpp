#include "tests/support/played_file.h"

#include "tests/support/monitor_recording.h"
#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/spoken_file.h"
#include "tests/support/temporary_folder.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace zqm::support {
namespace {

using namespace std::chrono_literals;

class PlayedFiles : public testing::Test {
protected:
    static void waitFor(const PlayedFile& played) {
        const auto end = std::chrono::steady_clock::now() + 60s;
        while (!played.isOver()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(5ms);
        }
    }

    TemporaryFolder folder_;
    PulseServer server_;
};

TEST_F(PlayedFiles, AreHeardWholeAndTheTimeOfTheirLastSoundIsKnown) {
    writeSpokenFile(ZQMSPEECH_PROGRAM, "flite slt", "Open the window", folder_ / "one.wav");
    const SoundFile file(folder_ / "one.wav");
    const MonitorRecording recording(server_);
    const double begin = monotonicSeconds();
    waitFor(PlayedFile(server_, folder_ / "one.wav"));
    const double end = monotonicSeconds();
    ASSERT_TRUE(recording.catchUp());
    EXPECT_NEAR(heardSeconds(recording.samples(), recording.rate()), heardSeconds(file.samples, file.rate),
                0.05);

    const auto last = recording.lastSound(begin, end + 1);
    ASSERT_TRUE(last.has_value());
    const std::vector<float> samples = recording.samples();
    const auto parts = soundedParts(samples, samples.size() + 1);
    // Near, not equal: what is recorded meanwhile makes the recording's clock a little better.
    EXPECT_NEAR(*last, recording.timeOf(parts.at(0).end - 1), 0.001);
    EXPECT_EQ(recording.lastSound(begin - 10, begin - 5), std::nullopt);
    EXPECT_EQ(recording.lastSound(begin, recording.timeOf(parts.at(0).begin) - 0.01), std::nullopt);
}

TEST_F(PlayedFiles, ThatAreNoSoundAreRefused) {
    EXPECT_THROW(PlayedFile(server_, folder_ / "absent.wav"), std::runtime_error);
    std::ofstream(folder_ / "text.wav") << "no sound";
    EXPECT_THROW(PlayedFile(server_, folder_ / "text.wav"), std::runtime_error);
}

TEST_F(PlayedFiles, SayWhenThereIsNoServer) {
    writeSpokenFile(ZQMSPEECH_PROGRAM, "flite slt", "Go", folder_ / "one.wav");
    server_.kill();
    const PlayedFile played(server_, folder_ / "one.wav");
    EXPECT_THROW(
        {
            while (!played.isOver()) {
                std::this_thread::sleep_for(5ms);
            }
        },
        std::runtime_error);
}

} // namespace
} // namespace zqm::support
