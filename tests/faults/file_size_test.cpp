// Files that may not grow as long as the speech is: at their beginning, in their middle, and at their very
// end.

#include "tests/faults/program.h"

#include <gtest/gtest.h>

namespace zqm::faults {
namespace {

class FileSize : public testing::TestWithParam<const char*> {
protected:
    Program program_;
};

TEST_P(FileSize, ThatDoesNotDoLeavesNoFile) {
    const std::string name = std::string("speech.") + GetParam();
    const std::string text = std::string(kText) + ' ' + kText;
    std::uintmax_t whole = 0;
    program_.expectWorks();
    Tally tally(std::string("limited size of a file, ") + GetParam());
    {
        live::Speaker speaker(program_.runtime);
        program_.expectWorks(speaker);
        const std::vector<pid_t> engine = engines();
        ASSERT_TRUE(speaker.startToFile(text, program_.folder / name));
        ASSERT_TRUE(speaker.waitForEnd());
        whole = std::filesystem::file_size(program_.folder / name);
        std::filesystem::remove(program_.folder / name);
        std::vector<std::uintmax_t> limits{0, 20, 100, whole / 4, whole / 2, whole - whole / 8};
        if (name != "speech.ogg") { // whose size isn't always the same
            limits.push_back(whole - 1);
        }
        for (const std::uintmax_t most : limits) {
            SCOPED_TRACE(most);
            auto limit = std::make_unique<ScopedLimit>(RLIMIT_FSIZE, most, engines().at(0));
            if (!speaker.startToFile(text, program_.folder / name)) {
                tally.add(Seen::Refused);
            } else {
                ASSERT_TRUE(speaker.waitForEnd());
                EXPECT_EQ(speaker.finished(), false);
                tally.add(Seen::EndedEarly);
            }
            program_.expectEmptyFolder();
            limit.reset();
            program_.expectWorks(speaker);
            EXPECT_EQ(engines(), engine);
        }
    }
    program_.expectNoEngine();
}

INSTANTIATE_TEST_SUITE_P(Formats, FileSize, testing::Values("wav", "aiff", "aifc", "flac", "ogg"),
                         [](const auto& extension) { return std::string(extension.param); });

} // namespace
} // namespace zqm::faults
