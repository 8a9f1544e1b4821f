// What is heard is what a file holds, sample by sample, where a sound device takes the engine's samples as
// they are.

#include "tests/live/speaker.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zqm::live {
namespace {

constexpr int kEngineRate = 22050;
constexpr int kEngineChannels = 1;
constexpr const char* kVoice = "gmw/en-US";

// How sound is made differs from how a file is, and so does how it is cut: by stretches, words and commands.
constexpr const char* kText =
    "This is heard, and this is written. It costs $25.50 in all! [[rate 260]]Some of it is faster, "
    "[[volm 0.35]]some is faint, [[pbas +8]]and [[emph +]]some is high. [[slnc 250]][[rset 0]]"
    "[[inpt PHON]]dAOg[[inpt TEXT]] goes [[char LTRL]]abc[[char NORM]] at the end.";

// A server that is kept waiting plays silence, and goes on with the next sample.
support::Samples withoutSilence(support::Samples samples) {
    std::erase(samples, 0.0F);
    return samples;
}

TEST(SameSamples, AreHeardAndWritten) {
    const support::TemporaryFolder folder;
    const support::PulseServer server(kEngineRate, kEngineChannels);
    const support::ScopedPulseServer use(server);
    host::Runtime runtime;
    loadPlugin(runtime);
    support::Samples heard;
    {
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.object().call("setVoice", kVoice).asBool());
        const support::MonitorRecording recording(server);
        ASSERT_TRUE(speaker.start(kText));
        ASSERT_TRUE(speaker.waitForEnd());
        ASSERT_EQ(speaker.finished(), true);
        ASSERT_TRUE(recording.catchUp());
        heard = withoutSilence(recording.samples());
    }
    ASSERT_GT(support::rms(heard), 0.01);

    for (const char* const extension : {"wav", "aiff", "aifc", "flac"}) {
        SCOPED_TRACE(extension);
        Speaker speaker(runtime); // no engine speaks twice exactly alike
        ASSERT_TRUE(speaker.object().call("setVoice", kVoice).asBool());
        const std::filesystem::path path = folder / (std::string("speech.") + extension);
        ASSERT_TRUE(speaker.startToFile(kText, path));
        ASSERT_TRUE(speaker.waitForEnd());
        const support::SoundFile file(path);
        EXPECT_EQ(file.rate, kEngineRate);
        EXPECT_EQ(file.channels, kEngineChannels);
        const support::Samples written = withoutSilence(file.samples);
        const auto [other, same] = std::mismatch(heard.begin(), heard.end(), written.begin(), written.end());
        EXPECT_TRUE(other == heard.end() && same == written.end())
            << "but for " << other - heard.begin() << " samples, of " << heard.size() << " heard and "
            << written.size() << " written";
    }
    EXPECT_TRUE(runtime.reports().empty());
}

} // namespace
} // namespace zqm::live
