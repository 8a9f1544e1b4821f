#include "tests/endtoend/speaking.h"
#include "tests/support/eventually.h"
#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <sstream>
#include <string_view>

namespace zqm::endtoend {
namespace {

using support::eventually;
using testing::ElementsAre;

// What was stopped may stay, if it is a sound file; nothing temporary may.
void expectNothingButAWholeFile(const std::filesystem::path& folder, const std::filesystem::path& file) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_EQ(entry.path(), file);
        EXPECT_NO_THROW(support::SoundFile{entry.path()});
    }
}

class Faults : public SpeakingTest {};

TEST_F(Faults, KilledEngineEndsTheSpeechWithFalseAndTheNextStartWorks) {
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), file));
    ASSERT_TRUE(speaker.waitForWord());
    ASSERT_FALSE(support::childrenOfThisProcess().empty());
    for (const pid_t engine : support::childrenOfThisProcess()) {
        kill(engine, SIGKILL);
    }
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(false));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
    speaker.speak("Hello again", file);
    EXPECT_GT(support::SoundFile(file).seconds(), 0.3);
}

TEST_F(Faults, EngineThatCanPutNoMoreFilesInTheirPlacesIsReplacedAtTheNextStart) {
    Speaker speaker(runtime);
    speaker.speak("Hello", file);
    const std::vector<pid_t> engines = support::childrenOfThisProcess();
    std::size_t placers = 0;
    for (const pid_t engine : engines) {
        for (const pid_t placer : support::childrenOf(engine)) {
            kill(placer, SIGKILL);
            EXPECT_TRUE(eventually([&] { return !support::isAlive(placer); }));
            ++placers;
        }
    }
    EXPECT_GT(placers, 0U);
    std::filesystem::remove(file);
    speaker.speak("Hello again", file);
    EXPECT_THAT(speaker.ends, ElementsAre(true, true));
    EXPECT_TRUE(eventually([&] { return std::ranges::none_of(engines, support::isAlive); }));
    EXPECT_GT(support::SoundFile(file).seconds(), 0.3);
}

TEST_F(Faults, HostThatNeverRunsItsLoopGetsTheWholeFile) {
    {
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start("A sentence that is written without any run loop.", file));
        EXPECT_TRUE(eventually([&] { return std::filesystem::exists(file); }));
        EXPECT_TRUE(speaker.words.empty());
    }
    EXPECT_GT(support::SoundFile(file).seconds(), 1.0);
}

TEST_F(Faults, FileThatCanNotBeWrittenIsNotStarted) {
    Speaker speaker(runtime);
    EXPECT_FALSE(speaker.start("Hello", "/nonexistent/folder/speech.wav"));
    EXPECT_FALSE(speaker.start("Hello", folder.path()));
    EXPECT_FALSE(speaker.object.call("startSpeakingString", "Hello", "no URL at all").asBool());
    EXPECT_FALSE(speaker.object.call("startSpeakingString", "Hello", host::String()).asBool());
    EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
    speaker.speak("Hello", file);
    EXPECT_THAT(speaker.ends, ElementsAre(true));
}

TEST_F(Faults, TextThatIsNoTextOfItsEncodingDoesNoHarm) {
    Speaker speaker(runtime);
    const host::String text = runtime.string("\xFF\xFE\x80", host::encoding::kUtf8);
    EXPECT_FALSE(speaker.object.call("startSpeakingString", text, fileUrl(file)).asBool());
    const host::String lone = runtime.string({"a\0\x00\xD8 \0b\0", 8}, host::encoding::kUtf16);
    ASSERT_TRUE(speaker.object.call("startSpeakingString", lone, fileUrl(file)).asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(true));
    // UTF-8 has no place for the lone surrogate, so the words come without their text.
    EXPECT_THAT(speaker.texts, testing::Each(std::string()));
}

TEST_F(Faults, DroppedObjectLeavesNoEngine) {
    {
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start(longText(), file));
        ASSERT_TRUE(speaker.waitForWord());
    }
    EXPECT_TRUE(eventually([] {
        const auto children = support::childrenOfThisProcess();
        return std::ranges::none_of(children, support::isAlive);
    }));
    expectNothingButAWholeFile(folder.path(), file); // the end of the object stops its speech
}

class Leaving : public testing::TestWithParam<const char*> {};

TEST_P(Leaving, HostThatEndsInMidSpeechLeavesNoEngine) {
    const support::TemporaryFolder folder;
    const auto file = folder / "speech.wav";
    const auto result = support::runProcess(ZQM_LEAVING_HOST, {ZQM_PLUGIN, file.string(), GetParam()});
    ASSERT_FALSE(result.timedOut);
    std::istringstream output(result.output);
    const std::vector<pid_t> engines{std::istream_iterator<pid_t>(output), {}};
    ASSERT_FALSE(engines.empty()) << result.errors;
    for (const pid_t engine : engines) {
        EXPECT_TRUE(eventually([engine] { return !support::isAlive(engine); })) << engine;
    }
    if (std::string_view(GetParam()) == "return") {
        expectNothingButAWholeFile(folder.path(), file); // the runtime's end stopped the speech
    } else {
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
}

INSTANTIATE_TEST_SUITE_P(All, Leaving, testing::Values("return", "exit", "_exit", "abort", "kill"),
                         [](const auto& name) {
                             return name.param[0] == '_' ? std::string("immediately")
                                                         : std::string(name.param);
                         });

} // namespace
} // namespace zqm::endtoend
