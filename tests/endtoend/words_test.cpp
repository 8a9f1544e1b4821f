// Word positions, through the library.

#include "tests/endtoend/speaking.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sound_file.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using support::WordRange;
using testing::Each;
using testing::ElementsAre;

class Words : public SpeakingTest {};

TEST_F(Words, OfHelloWorld) {
    Speaker speaker(runtime);
    speaker.speak("Hello world", file);
    EXPECT_THAT(speaker.words, ElementsAre(WordRange{0, 5}, WordRange{6, 5}));
    EXPECT_THAT(speaker.texts, Each(std::string("Hello world")));
    EXPECT_THAT(speaker.ends, ElementsAre(true));
    const support::SoundFile sound(file);
    EXPECT_GT(support::rms(sound.samples), 0.01);
    EXPECT_GT(sound.seconds(), 0.4);
}

TEST_F(Words, PositionsCountTheTextsUnitsWhateverItsEncoding) {
    const host::String text = runtime.string({"\x3D\xD8\x00\xDE \0a\0b\0", 10}, host::encoding::kUtf16);
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.object.call("startSpeakingString", text, fileUrl(file)).asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.words, ElementsAre(WordRange{0, 2}, WordRange{3, 2}));
    EXPECT_THAT(speaker.texts, Each(std::string("\U0001F600 ab")));
}

// Each event carries the whole text, so that the work grows with the square of the words. In either number
// the engine says more than is read of it at one go.
#ifdef NDEBUG
constexpr std::size_t kManyWords = 20'000;
#else
constexpr std::size_t kManyWords = 12'000;
#endif

TEST_F(Words, OfALongTextAllCome) {
    std::string text;
    std::vector<WordRange> expected;
    for (std::size_t word = 0; word < kManyWords; ++word) {
        const std::string next = word % 9 == 8 ? "end." : word % 4 == 0 ? "long" : "words";
        expected.push_back({text.size(), next.back() == '.' ? next.size() - 1 : next.size()});
        text += next + ' ';
    }
    Speaker speaker(runtime);
    // Only the positions are kept.
    speaker.object.on("willSpeakWord", [&](const host::Arguments& word) {
        speaker.words.push_back(
            {static_cast<std::size_t>(word[0].asInteger()), static_cast<std::size_t>(word[1].asInteger())});
    });
    speaker.object.set("Rate", 400);
    speaker.speak(text, file);
    EXPECT_EQ(speaker.words, expected);
}

TEST(WordsOfAnOldHost, ComeByTheIndirectTokens) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        host::Runtime runtime(host::Options{.version = 2011.0});
        loadPlugin(runtime);
        Speaker speaker(runtime);
        speaker.speak("Hello world", folder / "speech.wav");
        EXPECT_THAT(speaker.words, ElementsAre(WordRange{0, 5}, WordRange{6, 5}));
        EXPECT_THAT(speaker.texts, Each(std::string("Hello world")));
        expectNoReports(runtime);
    });
}

} // namespace
} // namespace zqm::endtoend
