// A speech model that is damaged. Who listens is told; speaking goes on, and so does listening when the model
// is whole again.

#include "tests/faults/damaged_copy.h"
#include "tests/faults/private_mounts.h"
#include "tests/faults/program.h"

#include <gtest/gtest.h>
#include <string>

namespace zqm::faults {
namespace {

constexpr unsigned kSeed = 1;

class ModelData : public testing::TestWithParam<const char*> {};

TEST_P(ModelData, ThatIsDamagedIsAFailureToListenAndNothingElse) {
    Tally tally(std::string("speech model with a damaged file ") + GetParam());
    withPrivateMounts([&] {
        Program program;
        for (const Damage damage : kDamages) {
            SCOPED_TRACE(nameOf(damage));
            const DamagedCopy copy(ZQM_MODEL, GetParam(), damage, kSeed);
            const auto damaged = [&] {
                return std::shared_ptr<void>(new auto(ScopedMount::ofFolder(copy.path(), ZQM_MODEL)));
            };
            tally.add(program.listen(damaged));
            {
                const auto held = damaged();
                program.expectWorks();
            }
            program.expectHears();
        }
    });
    EXPECT_TRUE(testing::Test::IsSkipped() || tally.failures() > 0);
}

INSTANTIATE_TEST_SUITE_P(Files, ModelData,
                         testing::Values("cmudict-en-us.dict", "en-us/mdef", "en-us/means", "en-us/variances",
                                         "en-us/transition_matrices", "en-us/sendump", "en-us/feat.params",
                                         "en-us/noisedict"),
                         [](const auto& file) {
                             std::string name = std::filesystem::path(file.param).filename();
                             for (char& letter : name) {
                                 letter = letter == '.' || letter == '-' ? '_' : letter;
                             }
                             return name;
                         });

} // namespace
} // namespace zqm::faults
