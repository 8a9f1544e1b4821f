#include "tests/soak/random_program.h"

#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::soak {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::ThrowsMessage;

std::size_t timesDone(const RandomProgram& program, const std::string& name) {
    return program.done().at(name);
}

TEST(RandomProgram, CountsWhatWasDoneNotWhatWasTried) {
    RandomProgram program(ZQM_PLUGIN, 1);
    for (const auto& [name, count] : program.done()) {
        EXPECT_EQ(count, 0U) << name;
    }
    // There is no object and no engine but those that stay.
    for (const char* const name :
         {"spoken into files", "spoken aloud", "refused starts", "stopped, paused and continued",
          "rates, volumes and voices set", "properties set", "nested values converted", "properties read",
          "phonemes asked for", "dictionaries added", "objects copied", "objects released",
          "listenings stopped", "engines killed", "engines stopped and continued"}) {
        EXPECT_FALSE(program.act(name)) << name;
        EXPECT_EQ(timesDone(program, name), 0U) << name;
    }
    EXPECT_TRUE(program.act("objects made"));
    EXPECT_TRUE(program.act("spoken into files"));
    EXPECT_TRUE(program.act("engines stopped and continued"));
    EXPECT_TRUE(program.act("engines killed"));
    EXPECT_FALSE(program.act("engines killed"));
    for (const char* const name :
         {"objects made", "spoken into files", "engines stopped and continued", "engines killed"}) {
        EXPECT_EQ(timesDone(program, name), 1U) << name;
    }
    EXPECT_TRUE(program.act("listenings begun"));
    EXPECT_TRUE(program.act("listenings stopped"));
    EXPECT_FALSE(program.act("listenings stopped"));
    EXPECT_NO_THROW(program.episode()); // at whose end an engine may have been killed
}

TEST(RandomProgram, CountsNoStartThatIsRefused) {
    const support::TemporaryFolder folders;
    const support::ScopedEnvironment folder("TMPDIR", folders.path().string());
    RandomProgram program(ZQM_PLUGIN, 1);
    for (const auto& entry : fs::directory_iterator(folders.path())) {
        if (fs::exists(entry.path() / "resident.wav")) { // it speaks into files there
            fs::remove_all(entry.path());
        }
    }
    EXPECT_TRUE(program.act("objects made"));
    EXPECT_FALSE(program.act("spoken into files"));
    EXPECT_EQ(timesDone(program, "spoken into files"), 0U);
    EXPECT_THAT(program.log().take(), Contains(HasSubstr("Speech can't be started: ")));
}

TEST(RandomProgram, FailsByALineOfTheLogThatNothingExplains) {
    RandomProgram program(ZQM_PLUGIN, 1);
    std::fputs("2026-01-01 00:00:00.000 program[1:1] it is broken\n", stderr);
    EXPECT_THAT([&] { program.episode(); }, ThrowsMessage<std::runtime_error>(HasSubstr(
                                                "nothing explains what was logged:\n    it is broken")));
}

constexpr const char* kEnd = "Speech ended early: the speech engine ended unexpectedly\n";

TEST(RandomProgram, TellsTheTextsOfAnEpisodeInWhichAnEngineEndsByItself) {
    testing::internal::CaptureStderr();
    {
        RandomProgram program(ZQM_PLUGIN, 1);
        while (timesDone(program, "engines ended by themselves") == 0) { // where none was killed
            program.act("objects made");
            if (!program.act("spoken into files")) {
                ADD_FAILURE() << "nothing is spoken";
                break;
            }
            std::fputs(kEnd, stderr);
            program.episode();
        }
    }
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_THAT(told,
                testing::AllOf(HasSubstr("Engines ended by themselves in episode "),
                               HasSubstr(". It spoke:\n"), testing::ContainsRegex("\n[a-z]+/[A-Za-z-]+: ")));
}

TEST(RandomProgram, CountsEnginesThatEndByThemselvesAndFailsByMany) {
    RandomProgram program(ZQM_PLUGIN, 1);
    while (timesDone(program, "engines ended by themselves") == 0) { // where none was killed
        std::fputs(kEnd, stderr);
        program.episode();
    }
    EXPECT_THAT(
        [&] {
            for (int episode = 0; episode < 90; ++episode) {
                std::fputs(kEnd, stderr);
                program.episode();
            }
        },
        ThrowsMessage<std::runtime_error>("engines end by themselves too often"));
}

} // namespace
} // namespace zqm::soak
