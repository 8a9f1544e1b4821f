// What the synthesizer holds of the system.

#include "tests/platform/speech_fixture.h"
#include "tests/support/process_table.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;

struct Holdings {
    std::size_t descriptors = zqm::support::openDescriptors();
    std::size_t memory = zqm::support::residentMemory();
};

// The address sanitizer keeps it to catch late uses, and looks for leaks itself.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kFreedMemoryIsGivenBack = false;
#else
constexpr bool kFreedMemoryIsGivenBack = true;
#endif

// With so many engines left; those that are still ending hold something too.
template <typename Round>
void expectNothingIsLost(int rounds, std::size_t tolerated, std::size_t engines, Round&& round) {
    const auto run = [&](int count) {
        for (int index = 0; index < count; ++index) {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            round();
            [pool drain];
        }
        EXPECT_TRUE(runUntil([&] { return zqm::support::childrenOfThisProcess().size() == engines; }));
        return Holdings();
    };
    run(rounds / 10 + 1);
    const Holdings before;
    const Holdings once = run(rounds);
    const Holdings twice = run(2 * rounds);
    EXPECT_EQ(before.descriptors, once.descriptors);
    EXPECT_EQ(before.descriptors, twice.descriptors);
    if (kFreedMemoryIsGivenBack) {
        EXPECT_LE(twice.memory, once.memory + tolerated);
    }
}

constexpr std::size_t kTolerated = std::size_t{1} << 20;

TEST_F(Speech, UtterancesLoseNothing) {
    Speaker speaker;
    expectNothingIsLost(1000, kTolerated, 1, [&] {
        speaker.heard = {};
        ASSERT_TRUE(speaker.say("Hi", path("a.wav")) && speaker.runToEnd());
        ASSERT_TRUE(speaker.heard.finished.front());
    });
    EXPECT_EQ(1U, zqm::support::childrenOfThisProcess().size());
}

// However short they are: by some speeches nothing is left to look after when the start has been answered.
TEST_F(Speech, AnEngineHoldsAsMuchBeforeItsFirstSpeechAsBehindIt) {
    Speaker speaker;
    ASSERT_NE(nil, [speaker.synthesizer phonemesFromText:@"Hello"]);
    const Holdings before;
    ASSERT_TRUE(speaker.say(manyWords(100), path("a.wav")) && speaker.runToEnd());
    EXPECT_EQ(before.descriptors, Holdings().descriptors);
}

TEST_F(Speech, ObjectsLoseNothing) {
    expectNothingIsLost(100, kTolerated, 0, [&] {
        Speaker speaker;
        ASSERT_TRUE(speaker.say("Hi", path("a.wav")) && speaker.runToEnd());
    });
}

TEST_F(Speech, DroppingObjectsAmidTheirSpeechLosesNothing) {
    expectNothingIsLost(50, kTolerated, 0, [&] {
        Speaker speaker;
        ASSERT_TRUE(speaker.say(manyWords(1000), path("a.wav")));
    });
    Speaker other;
    EXPECT_TRUE(waitUntil([&] {
        [other.synthesizer isSpeaking];
        return zqm::support::childrenOfThisProcess().empty();
    }));
}

// Foundation itself puts a pipe there; the library has sockets, files and event descriptors.
bool isOurs(int descriptor) {
    std::error_code error;
    const std::string target =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
    return !error && !target.starts_with("pipe:");
}

TEST_F(Speech, WorksInAHostWithoutStandardDescriptors) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            ::close(0);
            ::close(1);
            ::close(2);
            Speaker speaker;
            const bool spoke = speaker.say("Hello world", path("a.wav")) && speaker.runToEnd() &&
                               speaker.heard.finished.front() && std::filesystem::exists(path("a.wav"));
            const bool untouched = !isOurs(0) && !isOurs(1) && !isOurs(2);
            [pool drain];
            ::_exit((spoke ? 0 : 1) + (untouched ? 0 : 2));
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
