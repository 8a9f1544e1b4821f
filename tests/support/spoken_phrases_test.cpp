#include "tests/support/spoken_phrases.h"

#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace zqm::support {
namespace {

TEST(SpokenPhrases, StandBetweenSilences) {
    const TemporaryFolder folder;
    writeSpokenPhrases({"open the door", "stop"}, folder / "x.wav");
    const SoundFile file(folder / "x.wav");
    const auto parts = partsBetweenSilences(file.samples, file.rate, 0.9);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_GT(parts[0].size(), parts[1].size());
    EXPECT_GT(rms(parts[1]), 0.01);
    EXPECT_EQ(rms(std::span(file.samples).first(static_cast<std::size_t>(file.rate))), 0);
    EXPECT_EQ(rms(std::span(file.samples).last(static_cast<std::size_t>(file.rate))), 0);
}

TEST(SpokenPhrases, SayThatTheyCannotBeWritten) {
    EXPECT_THROW(writeSpokenPhrases({"stop"}, "/nonexistent/x.wav"), std::runtime_error);
}

} // namespace
} // namespace zqm::support
