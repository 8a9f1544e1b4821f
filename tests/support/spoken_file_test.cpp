#include "tests/support/spoken_file.h"

#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace zqm::support {
namespace {

TEST(SpokenFile, HoldsWhatAVoiceSays) {
    const TemporaryFolder folder;
    for (const char* voice : {"flite slt", "espeak-ng gmw/en-US"}) {
        SCOPED_TRACE(voice);
        writeSpokenFile(ZQMSPEECH_PROGRAM, voice, "Go", folder / "short.wav");
        writeSpokenFile(ZQMSPEECH_PROGRAM, voice, "Go on to the end of the street", folder / "long.wav");
        const SoundFile shorter(folder / "short.wav");
        const SoundFile longer(folder / "long.wav");
        EXPECT_GT(heardSeconds(shorter.samples, shorter.rate), 0.1);
        EXPECT_GT(heardSeconds(longer.samples, longer.rate), 3 * heardSeconds(shorter.samples, shorter.rate));
    }
}

TEST(SpokenFile, IsNotWrittenByAVoiceThatIsNotThere) {
    const TemporaryFolder folder;
    for (const char* voice : {"flite nobody", "flite", "espeak-ng nobody", "nobody", ""}) {
        SCOPED_TRACE(voice);
        EXPECT_THROW(writeSpokenFile(ZQMSPEECH_PROGRAM, voice, "Go", folder / "no.wav"), std::runtime_error);
    }
}

} // namespace
} // namespace zqm::support
