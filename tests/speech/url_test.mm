// What is refused as the place of a sound file, through the host's method.

#include "tests/speech/synthesizer_host.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>

namespace {

class Urls : public SynthesizerTest {
protected:
    bool isTaken(const std::string& url) {
        return newSynthesizer().call("startSpeakingString", "text", url).asBool();
    }

    zqm::support::TemporaryFolder folder;
};

TEST_F(Urls, OfFilesHereAreTaken) {
    EXPECT_TRUE(isTaken("file://" + (folder / "one.wav").string()));
    EXPECT_TRUE(isTaken("file://localhost" + (folder / "two.wav").string()));
    EXPECT_TRUE(isTaken("FILE://" + (folder / "three.wav").string()));
}

TEST_F(Urls, OfAnythingElseAreRefusedAndTouchNoFile) {
    for (const std::string& url :
         {"http://localhost" + (folder / "a.wav").string(), "file://elsewhere" + (folder / "b.wav").string(),
          (folder / "c.wav").string(), "file://" + (folder / "d%00e.wav").string(),
          "file://" + (folder / "f g.wav").string(), "file://" + (folder / "%FF.wav").string(),
          std::string("file:"), std::string(":")}) {
        EXPECT_FALSE(isTaken(url)) << url;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
