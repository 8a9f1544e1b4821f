// Disks without room, from the start of a file on, in its middle, and near its end.

#include "tests/faults/private_mounts.h"
#include "tests/faults/program.h"

#include <array>
#include <fstream>
#include <gtest/gtest.h>

namespace zqm::faults {
namespace {

constexpr std::uintmax_t kPage = 4096; // no disk in memory is smaller
constexpr std::array kFormats{"wav", "aiff", "aifc", "flac", "ogg"};

TEST(FullDisk, LeavesNoFileOfAnyFormat) {
    Tally tally("full disk");
    withPrivateMounts([&] {
        Program program;
        program.expectWorks();
        for (const std::string format : kFormats) {
            SCOPED_TRACE(format);
            const std::string name = "speech." + format;
            const std::string text = std::string(kText) + ' ' + kText;
            const std::filesystem::path file = program.folder / name;
            std::uintmax_t whole = 0;
            {
                live::Speaker speaker(program.runtime);
                ASSERT_TRUE(speaker.startToFile(text, file));
                ASSERT_TRUE(speaker.waitForEnd());
                whole = std::filesystem::file_size(file);
                std::filesystem::remove(file);
            }
            for (const std::uintmax_t bytes : {kPage, whole / 4, whole / 2, whole - whole / 8}) {
                SCOPED_TRACE(bytes);
                {
                    const auto disk = ScopedMount::ofMemory(program.folder.path(), bytes);
                    const Seen seen = program.speak(
                        name, [] { return nullptr; }, text);
                    EXPECT_NE(seen, Seen::Completed);
                    tally.add(seen);
                }
                program.expectWorks();
            }
        }
    });
}

TEST(FullDisk, ThatGetsRoomTakesTheNextFileOfTheSameEngine) {
    withPrivateMounts([&] {
        Program program;
        program.expectWorks();
        {
            live::Speaker speaker(program.runtime);
            {
                const auto disk = ScopedMount::ofMemory(program.folder.path(), kPage);
                ASSERT_TRUE(speaker.startToFile(kText, program.folder / "speech.wav"));
                ASSERT_TRUE(speaker.waitForEnd());
                EXPECT_EQ(speaker.finished(), false);
                program.expectEmptyFolder();
            }
            const pid_t engine = engines().at(0);
            program.expectWorks(speaker);
            EXPECT_EQ(engines().at(0), engine);
        }
        program.expectNoEngine();
    });
}

// Its own folder takes the only one there may be.
TEST(FullDisk, ThatTakesNoMoreFilesIsARefusal) {
    withPrivateMounts([&] {
        Program program;
        program.expectWorks();
        {
            const auto disk = ScopedMount::ofMemory(program.folder.path(), 1'000'000, 1);
            EXPECT_EQ(program.speak("speech.wav", [] { return nullptr; }), Seen::Refused);
        }
        program.expectWorks();
    });
}

// A file that was there stays as it was.
TEST(FullDisk, KeepsTheFileThatWasToBeReplaced) {
    withPrivateMounts([&] {
        Program program;
        program.expectWorks();
        const auto disk = ScopedMount::ofMemory(program.folder.path(), 2 * kPage);
        const std::filesystem::path file = program.folder / "speech.wav";
        std::ofstream(file) << "as it was";
        {
            live::Speaker speaker(program.runtime);
            ASSERT_TRUE(speaker.startToFile(kText, file));
            ASSERT_TRUE(speaker.waitForEnd());
            EXPECT_EQ(speaker.finished(), false);
        }
        std::string line;
        std::getline(std::ifstream(file), line);
        EXPECT_EQ(line, "as it was");
        std::filesystem::remove(file);
        program.expectEmptyFolder();
        program.expectNoEngine();
    });
}

} // namespace
} // namespace zqm::faults
