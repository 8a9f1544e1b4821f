// Voices whose data is damaged. The engine may end of that; the host program doesn't.

#include "tests/faults/damaged_copy.h"
#include "tests/faults/program.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scoped_environment.h"

#include <gtest/gtest.h>
#include <string_view>

namespace zqm::faults {
namespace {

constexpr unsigned kSeeds = 2;

class VoiceData : public testing::TestWithParam<const char*> {};

TEST_P(VoiceData, ThatIsDamagedIsNotRemembered) {
    Tally tally(std::string("voices with a damaged file ") + GetParam());
    for (const Damage damage : kDamages) {
        for (unsigned seed = 0; seed < (damage == Damage::Random ? kSeeds : 1); ++seed) {
            SCOPED_TRACE(nameOf(damage));
            SCOPED_TRACE(seed);
            support::inFork([&] {
                const DamagedCopy data(ZQM_VOICE_DATA, GetParam(), damage, seed);
                const auto damaged = [&] {
                    return std::make_shared<support::ScopedEnvironment>("ESPEAK_DATA_PATH",
                                                                        data.path().string());
                };
                Program program;
                tally.add(program.speak("speech.wav", damaged)); // no voice is known yet
                program.expectWorks();
                tally.add(program.speak("speech.wav", damaged));
                program.expectWorks();
            });
        }
    }
    // What it finds in no dictionary, espeak-ng says by rules of its own.
    EXPECT_EQ(tally.failures() > 0, std::string_view(GetParam()) != "en_dict");
}

INSTANTIATE_TEST_SUITE_P(Files, VoiceData,
                         testing::Values("phontab", "phonindex", "phondata", "intonations", "en_dict",
                                         "lang/gmw/en-US"),
                         [](const auto& file) {
                             const std::string name = std::filesystem::path(file.param).filename();
                             return name == "en-US" ? "voice" : name;
                         });

} // namespace
} // namespace zqm::faults
