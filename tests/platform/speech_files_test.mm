// What may be spoken into, and what is there afterwards.

#include "tests/platform/speech_fixture.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

TEST_F(Speech, TheExtensionDecidesTheFormat) {
    Speaker speaker;
    std::size_t finishes = 0;
    for (const auto& [name, format] :
         {std::pair{"a.wav", "WAV"}, std::pair{"a.aiff", "AIFF"}, std::pair{"a.AIF", "AIFF"},
          std::pair{"a.flac", "FLAC"}, std::pair{"a.ogg", "OGG"}}) {
        ASSERT_TRUE(speaker.say("Hello world", path(name))) << name;
        ASSERT_TRUE(speaker.runToEnd(++finishes));
        EXPECT_EQ(0U, SoundFile(path(name)).format.find(format)) << SoundFile(path(name)).format;
    }
}

// What is done to the files of a folder, as the system notes it, whenever one looks.
class FolderWatch {
public:
    explicit FolderWatch(const std::filesystem::path& folder)
        : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(::inotify_add_watch(descriptor_, folder.c_str(), IN_MODIFY | IN_MOVED_TO | IN_DELETE), 0);
    }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch() { ::close(descriptor_); }

    std::vector<std::uint32_t> happenedTo(const std::string& name) const {
        const std::string bytes = waitingIn(descriptor_);
        std::vector<std::uint32_t> kinds;
        for (std::size_t at = 0; at < bytes.size();) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            if (name == bytes.data() + at + sizeof event) {
                kinds.push_back(event.mask);
            }
            at += sizeof event + event.len;
        }
        return kinds;
    }

private:
    int descriptor_;
};

TEST_F(Speech, AnExistingFileIsReplacedWhenTheNewOneIsWhole) {
    std::ofstream(path("a.wav")) << "old";
    std::filesystem::permissions(path("a.wav"), std::filesystem::perms(0640));
    const FolderWatch watch(folder_.path());
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(3000), path("a.wav")) && speaker.runToEnd());
    EXPECT_EQ((std::vector<std::uint32_t>{IN_MOVED_TO}), watch.happenedTo("a.wav"))
        << "neither was written into, the old one before nor the new one behind that";
    EXPECT_GT(SoundFile(path("a.wav")).seconds(), 300);
    EXPECT_EQ(std::filesystem::perms(0640), std::filesystem::status(path("a.wav")).permissions());
    EXPECT_EQ(1U, filesIn(folder_));
}

TEST_F(Speech, LinksAreFollowed) {
    std::filesystem::create_directory(path("real"));
    std::filesystem::create_symlink("real/target.wav", path("link.wav"));
    std::filesystem::create_symlink("link.wav", path("again.wav"));
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("again.wav")) && speaker.runToEnd());
    EXPECT_TRUE(std::filesystem::is_symlink(path("again.wav")) &&
                std::filesystem::is_symlink(path("link.wav")));
    EXPECT_GT(SoundFile(path("real/target.wav")).seconds(), 0.5);
    std::filesystem::create_symlink("b.wav", path("a.wav"));
    std::filesystem::create_symlink("a.wav", path("b.wav"));
    EXPECT_FALSE(speaker.say("Hello world", path("a.wav"))) << "a circle";
    std::filesystem::create_symlink("none/b.wav", path("c.wav"));
    EXPECT_FALSE(speaker.say("Hello world", path("c.wav")));
}

TEST_F(Speech, DevicesArePlayedIntoInPlace) {
    Speaker speaker;
    std::filesystem::create_symlink("/dev/null", path("null.wav"));
    ASSERT_TRUE(speaker.say("Hello world", path("null.wav")) && speaker.runToEnd());
    EXPECT_TRUE(speaker.heard.finished.front());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Speech, APipeTakesAFormatThatIsWrittenFromBeginningToEnd) {
    ASSERT_EQ(0, ::mkfifo(path("a.ogg").c_str(), 0600));
    ASSERT_EQ(0, ::mkfifo(path("a.wav").c_str(), 0600));
    Speaker speaker;
    EXPECT_FALSE(speaker.say("Hello world", path("a.ogg"))) << "nobody reads";
    const int ogg = ::open(path("a.ogg").c_str(), O_RDONLY | O_NONBLOCK);
    const int wav = ::open(path("a.wav").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_FALSE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.say("Hello world", path("a.ogg")));
    std::string bytes;
    ASSERT_TRUE(runUntil([&] {
        bytes += waitingIn(ogg);
        return !speaker.heard.finished.empty();
    }));
    EXPECT_TRUE(speaker.heard.finished.front());
    ::close(ogg);
    ::close(wav);
    std::ofstream(path("copy.ogg"), std::ios::binary) << bytes;
    EXPECT_GT(SoundFile(path("copy.ogg")).seconds(), 0.5);
}

TEST_F(Speech, APipeThatNobodyReadsHoldsUpNoStop) {
    const UnreadPipe pipe(path("a.ogg"));
    ASSERT_TRUE(pipe.isMade());
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(300), path("a.ogg")));
    const auto engines = zqm::support::childrenOfThisProcess();
    ASSERT_EQ(1U, engines.size());
    ASSERT_TRUE(pipe.fillsUp());
    [speaker.synthesizer stopSpeaking];
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_TRUE(zqm::support::isAlive(engines.front())) << "it did not answer in time, and was killed";
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd(2));
    EXPECT_EQ(engines, zqm::support::childrenOfThisProcess());
}

TEST_F(Speech, APipeThatNobodyReadsKeepsNoEngineBeyondItsHost) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const UnreadPipe pipe(path("a.ogg"));
    ASSERT_TRUE(pipe.isMade());
    const std::string note = path("engine");
    EXPECT_EXIT(
        {
            Speaker speaker;
            const bool works = speaker.say(manyWords(300), path("a.ogg")) && pipe.fillsUp();
            std::ofstream(note) << zqm::support::childrenOfThisProcess().back();
            ::_exit(works ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    pid_t engine = 0;
    std::ifstream(note) >> engine;
    ASSERT_GT(engine, 0);
    EXPECT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine); }));
}

TEST_F(Speech, NamesMayBeComposedOrDecomposed) {
    const std::string composed = "\xC3\xA9.wav";
    const std::string decomposed = "e\xCC\x81.wav";
    Speaker speaker;
    ASSERT_TRUE(speaker.say("a", path(decomposed)) && speaker.runToEnd(1));
    EXPECT_TRUE(std::filesystem::exists(path(composed)));
    EXPECT_EQ(1U, filesIn(folder_));
    ASSERT_TRUE(speaker.say("a", path(composed)) && speaker.runToEnd(2));
    EXPECT_EQ(1U, filesIn(folder_));
    std::filesystem::rename(path(composed), path(decomposed));
    ASSERT_TRUE(speaker.say("a", path(composed)) && speaker.runToEnd(3));
    EXPECT_EQ(1U, filesIn(folder_));
    EXPECT_TRUE(std::filesystem::exists(path(decomposed)));
}

} // namespace
