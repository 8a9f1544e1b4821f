// The synthesizer where there is no engine. The library loaded here is a link in a folder that no other
// program uses, with a link to bad_engine.cpp's program beside it, which the tests take away.

#include "tests/platform/speech_listener.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;
using zqm::support::ScopedEnvironment;
using zqm::support::TemporaryFolder;

const std::filesystem::path kEngine = ZQM_ENGINE_PATH;

class MissingEngine : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    bool isFolderEmpty() const { return std::filesystem::is_empty(folder_.path()); }

    TemporaryFolder folder_;
};

class HiddenEngine {
public:
    HiddenEngine() { std::filesystem::rename(kEngine, hidden_); }
    HiddenEngine(const HiddenEngine&) = delete;
    HiddenEngine& operator=(const HiddenEngine&) = delete;
    ~HiddenEngine() { std::filesystem::rename(hidden_, kEngine); }

private:
    std::filesystem::path hidden_ = kEngine.string() + ".hidden";
};

TEST_F(MissingEngine, WithoutAnEngineThereAreNoVoices) {
    EXPECT_EXIT(
        {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            bool right = false;
            {
                const HiddenEngine hidden;
                right = [[NSSpeechSynthesizer availableVoices] count] == 0 &&
                        [NSSpeechSynthesizer defaultVoice] == nil &&
                        [[NSSpeechSynthesizer alloc] initWithVoice:nil] == nil;
            }
            [pool drain];
            ::_exit(right ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(MissingEngine, AnEngineThatIsGoneIsARefusal) {
    Speaker speaker;
    {
        const HiddenEngine hidden;
        EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
        EXPECT_TRUE(isFolderEmpty());
    }
    EXPECT_TRUE(speaker.say("Hello world", path("a.wav")));
}

TEST_F(MissingEngine, NeitherPathNorEnvironmentMakesAnEngine) {
    Speaker speaker;
    const HiddenEngine hidden;
    std::filesystem::copy("/bin/true", path("zqmspeech-engine"));
    const ScopedEnvironment search("PATH", folder_.path().string());
    EXPECT_FALSE(speaker.say("Hello world", "/dev/null"));
}

} // namespace
