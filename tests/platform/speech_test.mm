// The synthesizer with the real engine, mostly into files.

#include "tests/platform/raised_exception.h"
#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <poll.h>
#include <set>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern "C" int ZQMPlatformEventDescriptor(void);

// One that tells of its end.
@interface ZQMMortalSynthesizer : NSSpeechSynthesizer {
@private
    bool* _isGone;
}
- (instancetype)initWithFlag:(bool*)isGone;
@end

@implementation ZQMMortalSynthesizer

- (instancetype)initWithFlag:(bool*)isGone {
    self = [super init];
    if (self != nil) {
        _isGone = isGone;
    }
    return self;
}

- (void)dealloc {
    *_isGone = true;
    [super dealloc];
}

@end

namespace {

using namespace zqm::platform::test;
using zqm::support::ScopedEnvironment;
using zqm::support::SoundFile;
using zqm::support::TemporaryFolder;

// Where every access to memory is checked, long texts are shorter by this, and take about as long.
#ifdef __SANITIZE_ADDRESS__
constexpr int kSlowness = 10;
#else
constexpr int kSlowness = 1;
#endif

const std::vector<HeardWord> kHelloWorld{{0, 5}, {6, 5}};

std::string manyWords(int count) {
    std::string text;
    for (int index = 0; index < count; ++index) {
        text += index % 10 == 9 ? "end. " : "word ";
    }
    return text;
}

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

// What a pipe that doesn't block holds now.
std::string waitingIn(int reader) {
    std::string bytes;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(reader, buffer, sizeof buffer)) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
}

// A pipe that is read only when told, so that no speech of some length into it ends before.
class UnreadPipe {
public:
    explicit UnreadPipe(const std::string& path)
        : made_(::mkfifo(path.c_str(), 0600) == 0),
          reader_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
          writer_(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) {}
    UnreadPipe(const UnreadPipe&) = delete;
    UnreadPipe& operator=(const UnreadPipe&) = delete;
    ~UnreadPipe() {
        ::close(reader_);
        ::close(writer_);
    }

    bool isMade() const { return made_ && reader_ >= 0 && writer_ >= 0; }

    bool fillsUp() const {
        return waitUntil([this] {
            pollfd watched{writer_, POLLOUT, 0};
            return ::poll(&watched, 1, 0) == 0;
        });
    }

    // What is in it now.
    std::string read() const { return waitingIn(reader_); }

private:
    bool made_;
    int reader_;
    int writer_;
};

class Speech : public testing::Test {
protected:
    // The engines of earlier tests may take a moment to end; what is counted here begins at none.
    void SetUp() override {
        Speaker other; // later calls reap
        ASSERT_TRUE(waitUntil([&] {
            [other.synthesizer isSpeaking];
            return zqm::support::childrenOfThisProcess().empty();
        }));
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }

    TemporaryFolder folder_;
};

TEST_F(Speech, TellsWordsAndEndAndWritesTheFile) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    const SoundFile sound(path("a.wav"));
    EXPECT_GT(sound.seconds(), 0.5);
    EXPECT_GT(zqm::support::rms(sound.samples), 0.01);
    EXPECT_EQ(1U, filesIn(folder_));
}

TEST_F(Speech, HandsOverTheVeryString) {
    Speaker speaker;
    const unichar units[] = {'a', ' ', 0xD800, ' ', 'b', 'c', ' ', 0xD83D, 0xDE00, ' ', 'd'};
    auto* const text = (NSString*)CFStringCreateWithCharacters(nullptr, units, 11);
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:text toURL:fileUrl(path("a.wav"))]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(text, speaker.heard.lastString);
    EXPECT_EQ((HeardWord{0, 1}), speaker.heard.words.front());
    EXPECT_EQ((HeardWord{10, 1}), speaker.heard.words.back());
    EXPECT_NE(speaker.heard.words.end(), std::ranges::find(speaker.heard.words, HeardWord{4, 2}));
    EXPECT_EQ(1U, [text retainCount]);
    [text release];
}

TEST_F(Speech, TakesASnapshotOfAMutableString) {
    Speaker speaker;
    NSMutableString* const text = [NSMutableString stringWithString:@"Hello world"];
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:text toURL:fileUrl(path("a.wav"))]);
    [text setString:@""];
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
}

TEST_F(Speech, SpeaksAroundNulCharacters) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(std::string("one\0two", 7), path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(HeardWord({4, 3}), speaker.heard.words.back());
    EXPECT_TRUE(speaker.heard.finished.front());
}

TEST_F(Speech, RefusesWhatItCantDo) {
    Speaker speaker;
    NSSpeechSynthesizer* const synthesizer = speaker.synthesizer;
    EXPECT_FALSE([synthesizer startSpeakingString:nil]);
    EXPECT_FALSE([synthesizer startSpeakingString:nil toURL:fileUrl(path("a.wav"))]);
    EXPECT_FALSE([synthesizer startSpeakingString:@"a" toURL:nil]);
    for (NSString* const url :
         {@"http://localhost/a.wav", @"a.wav", @"file://elsewhere/tmp/a.wav", @"FILE://elsewhere/tmp/a.wav",
          @"file://localhost.elsewhere/tmp/a.wav", @"files:///tmp/a.wav", @"file:///"}) {
        EXPECT_FALSE([synthesizer startSpeakingString:@"a" toURL:[NSURL URLWithString:url]])
            << [url UTF8String];
    }
    EXPECT_FALSE(speaker.say("a", folder_.path().string()));
    EXPECT_FALSE(speaker.say("a", path("none/a.wav")));
    EXPECT_FALSE(speaker.say("a", path("a.unknown")));
    EXPECT_FALSE(speaker.say("a", path(std::string(250, 'n') + ".wav!")));
    EXPECT_FALSE(speaker.say("a", "/proc/a.wav"));
    EXPECT_FALSE([synthesizer isSpeaking]);
    EXPECT_EQ(0U, filesIn(folder_)) << "something was left behind";
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(Speech, TakesAnyFileUrlOfThisMachine) {
    Speaker speaker;
    std::size_t finishes = 0;
    for (const std::string start :
         {"file://", "FILE://", "File://", "file://localhost", "FILE://LOCALHOST", "file:"}) {
        NSURL* const url = [NSURL URLWithString:stringOf(start + path("a.wav"))];
        ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hello world" toURL:url]) << start;
        ASSERT_TRUE(speaker.runToEnd(++finishes));
        EXPECT_TRUE(speaker.heard.finished.back()) << start;
        EXPECT_TRUE(std::filesystem::remove(path("a.wav"))) << start;
    }
}

TEST_F(Speech, RefusingLeavesWhatIsSpokenAlone) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(3000 / kSlowness), path("a.wav")));
    EXPECT_FALSE(speaker.say("a", path("none/a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(Speech, AnEmptyTextEndsAtOnceThroughTheRunLoop) {
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@""]);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
    EXPECT_TRUE(speaker.heard.words.empty());

    ASSERT_TRUE(speaker.say("", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_TRUE(speaker.heard.finished.back());
    EXPECT_EQ(0U, SoundFile(path("a.wav")).frames());
}

TEST_F(Speech, AnEmptyTextEndsTheOneBeingSpoken) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(20000), path("a.wav")));
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@""]);
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<bool>{false, true}), speaker.heard.finished);
    EXPECT_TRUE(speaker.heard.words.empty());
}

TEST_F(Speech, DeliversNothingOutsideTheRunLoop) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.say("Hello world", path("b.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f', 'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{true, true}), speaker.heard.finished);
}

TEST_F(Speech, TheFileIsCompleteWithoutARunLoop) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(2000), path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(path("a.wav")); }));
    EXPECT_GT(SoundFile(path("a.wav")).seconds(), 300);
}

TEST_F(Speech, OneCallbackForEachHandledSource) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    for (std::size_t count = 1; count <= 3; ++count) {
        EXPECT_EQ(kCFRunLoopRunHandledSource, CFRunLoopRunInMode(kCFRunLoopDefaultMode, 5, 1));
        EXPECT_EQ(count, speaker.heard.order.size());
    }
    EXPECT_EQ(kCFRunLoopRunTimedOut, CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 1));
}

TEST_F(Speech, TheEventDescriptorTellsWhenToRunTheRunLoop) {
    Speaker speaker;
    pollfd watched{ZQMPlatformEventDescriptor(), POLLIN, 0};
    ASSERT_GT(watched.fd, 2);
    runOut();
    EXPECT_EQ(0, ::poll(&watched, 1, 0));
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    while (speaker.heard.finished.empty()) {
        ASSERT_EQ(1, ::poll(&watched, 1, 60000));
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 1);
    }
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
    runOut();
    EXPECT_EQ(0, ::poll(&watched, 1, 0));
}

TEST_F(Speech, AsksTheDelegateBeforeEachCallback) {
    Speaker speaker;
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) { speaker.heard.wantsWords = false; };
    ASSERT_TRUE(speaker.say("one two three four", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(1U, speaker.heard.words.size());
    EXPECT_EQ(4, speaker.heard.questions);
}

TEST_F(Speech, WorksWithoutADelegate) {
    Speaker speaker;
    [speaker.synthesizer setDelegate:nil];
    EXPECT_EQ(nil, [speaker.synthesizer delegate]);
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
    EXPECT_TRUE(std::filesystem::exists(path("a.wav")));
}

TEST_F(Speech, AfterAStopOnlyTheEndIsTold) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE([speaker.synthesizer isSpeaking]);
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(std::filesystem::exists(path("a.wav"))) << "a stop keeps the file";
    EXPECT_EQ(1U, filesIn(folder_));
    EXPECT_GE(SoundFile(path("a.wav")).seconds(), 0);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ(std::vector<char>{'f'}, speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    [speaker.synthesizer stopSpeaking];
    runOut();
    EXPECT_EQ(1U, speaker.heard.order.size()) << "a stop of nothing is heard of nowhere";
}

TEST_F(Speech, AStopDropsTheWordsOfWhatTheEngineHadCompleted) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("One two three four", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    ASSERT_TRUE(speaker.say("five six", path("b.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<char>{'f', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{true, true}), speaker.heard.finished) << "both files are whole";
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd(3));
    EXPECT_EQ(kHelloWorld, speaker.heard.words) << "a stop is for what was begun before it";
}

TEST_F(Speech, AHandlerMayStopWhatTheEngineHadCompleted) {
    Speaker speaker;
    speaker.heard.onWord = [](NSSpeechSynthesizer* sender) { [sender stopSpeaking]; };
    ASSERT_TRUE(speaker.say("One two three four", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ((std::vector<char>{'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(Speech, StartingEndsTheOneBefore) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.say("Hello world", path("b.wav")));
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<char>{'f', 'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{false, true}), speaker.heard.finished);
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
}

TEST_F(Speech, AHandlerMayStop) {
    Speaker speaker;
    speaker.heard.onWord = [](NSSpeechSynthesizer* sender) { [sender stopSpeaking]; };
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ((std::vector<char>{'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
}

TEST_F(Speech, AHandlerMayStart) {
    Speaker speaker;
    speaker.heard.onFinish = [&](NSSpeechSynthesizer*) {
        if (speaker.heard.finished.size() < 5) {
            EXPECT_TRUE(speaker.say("Hello world", path("a.wav")));
        }
    };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(5));
    runOut();
    EXPECT_EQ(std::vector<bool>(5, true), speaker.heard.finished);
    EXPECT_EQ(10U, speaker.heard.words.size());
}

TEST_F(Speech, AHandlerMayStartAmidTheWords) {
    Speaker speaker;
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) {
        if (speaker.heard.words.size() == 1) {
            EXPECT_TRUE(speaker.say("Hello world", path("b.wav")));
        }
    };
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<char>{'w', 'f', 'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{false, true}), speaker.heard.finished);
}

TEST_F(Speech, AHandlerMayDropTheObject) {
    for (const bool atTheEnd : {false, true}) {
        bool isGone = false;
        Speaker speaker;
        speaker.replace([[ZQMMortalSynthesizer alloc] initWithFlag:&isGone]);
        auto drop = [&](NSSpeechSynthesizer* sender) {
            speaker.release();
            ASSERT_FALSE(isGone) << "the sender of a callback lives as long as that";
            EXPECT_GT([[sender voice] length], 0U);
        };
        (atTheEnd ? speaker.heard.onFinish : speaker.heard.onWord) = drop;
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
        ASSERT_TRUE(runUntil([&] { return speaker.synthesizer == nil; }));
        EXPECT_TRUE(isGone);
        runOut();
        EXPECT_EQ(atTheEnd ? 3U : 1U, speaker.heard.order.size());
    }
}

TEST_F(Speech, AHandlerMayRunTheRunLoop) {
    Speaker speaker;
    int depth = 0;
    int deepest = 0;
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) {
        deepest = std::max(deepest, ++depth);
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.2, 1);
        --depth;
    };
    ASSERT_TRUE(speaker.say("one two three four", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<HeardWord>{{0, 3}, {4, 3}, {8, 5}, {14, 4}}), speaker.heard.words);
    EXPECT_GT(deepest, 1) << "the inner run loop delivers too";
    EXPECT_EQ('f', speaker.heard.order.back());
}

TEST_F(Speech, AnExceptionOfTheDelegateLeavesEverythingInOrder) {
    Speaker speaker;
    const NSUInteger count = [speaker.synthesizer retainCount];
    speaker.heard.onWord = [](NSSpeechSynthesizer*) {
        [NSException raise:@"ZQMTestException" format:@"by the delegate"];
    };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    for (int round = 0; round < 2; ++round) {
        NSException* const raised = raisedBy([&] { runUntil([] { return false; }); });
        ASSERT_NE(nil, raised);
        EXPECT_TRUE([[raised reason] isEqualToString:@"by the delegate"]);
        EXPECT_EQ(nil, [[NSRunLoop currentRunLoop] currentMode])
            << "Foundation's run loop was not left properly";
        EXPECT_EQ(count, [speaker.synthesizer retainCount]);
    }
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
}

TEST_F(Speech, AnExceptionOfTheDelegateComesOutOfFoundationsRunLoopToo) {
    Speaker speaker;
    bool raise = true;
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) {
        if (std::exchange(raise, false)) {
            [NSException raise:@"ZQMTestException" format:@"by the delegate"];
        }
    };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    NSException* const raised =
        raisedBy([] { [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:60]]; });
    ASSERT_NE(nil, raised);
    EXPECT_TRUE([[raised reason] isEqualToString:@"by the delegate"]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
}

TEST_F(Speech, ANativeExceptionOfTheDelegateLeavesEverythingInOrder) {
    Speaker speaker;
    const NSUInteger count = [speaker.synthesizer retainCount];
    speaker.heard.onWord = [](NSSpeechSynthesizer*) { throw std::runtime_error("by the delegate"); };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    for (int round = 0; round < 2; ++round) {
        EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
        EXPECT_EQ(nil, [[NSRunLoop currentRunLoop] currentMode])
            << "Foundation's run loop was not left properly";
        EXPECT_EQ(count, [speaker.synthesizer retainCount]);
    }
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
}

TEST_F(Speech, TwoObjectsSpeakAtOnce) {
    const UnreadPipe pipe(path("a.ogg"));
    ASSERT_TRUE(pipe.isMade());
    Speaker one;
    Speaker other;
    ASSERT_TRUE(one.say(manyWords(300), path("a.ogg")));
    ASSERT_TRUE(other.say(manyWords(300), path("b.wav")));
    ASSERT_TRUE(other.runToEnd());
    EXPECT_TRUE([one.synthesizer isSpeaking]);
    ASSERT_TRUE(runUntil([&] {
        pipe.read();
        return !one.heard.finished.empty();
    }));
    EXPECT_EQ(300U, one.heard.words.size());
    EXPECT_EQ(one.heard.words, other.heard.words);
    EXPECT_TRUE(one.heard.finished.front() && other.heard.finished.front());
}

TEST_F(Speech, EveryOfManyWordsIsTold) {
    constexpr std::size_t kWords = 100'000 / kSlowness;
    std::string text;
    for (std::size_t index = 0; index < kWords; ++index) {
        text += index % 10 == 9 ? "to. " : "to ";
    }
    Speaker speaker;
    ASSERT_TRUE(speaker.say(text, path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    ASSERT_EQ(kWords, speaker.heard.words.size());
    for (std::size_t index = 0; index < kWords; ++index) {
        ASSERT_EQ((HeardWord{index / 10 * 31 + index % 10 * 3, 2}), speaker.heard.words[index]) << index;
    }
    EXPECT_TRUE(speaker.heard.finished.front());
}

TEST_F(Speech, TenMillionCharactersCanBeStartedAndStopped) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(2'000'000), path("a.wav")));
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_FALSE(speaker.heard.finished.front());
}

TEST_F(Speech, AKilledEngineEndsTheSpeechAndTheNextStartBringsANewOne) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(100'000), path("a.wav")));
    const auto engines = zqm::support::childrenOfThisProcess();
    ASSERT_FALSE(engines.empty());
    ::kill(engines.back(), SIGKILL);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_EQ(0U, filesIn(folder_)) << "the temporary file is removed";
    speaker.heard.words.clear();
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
    EXPECT_TRUE(speaker.heard.finished.back());
}

TEST_F(Speech, AnIdleEngineMayDie) {
    Speaker speaker;
    for (std::size_t round = 1; round <= 3; ++round) {
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
        ASSERT_TRUE(speaker.runToEnd(round));
        EXPECT_TRUE(speaker.heard.finished.back());
        for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
            ::kill(engine, SIGKILL);
        }
    }
}

TEST_F(Speech, NothingIsHeardAfterTheLastRelease) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    speaker.release();
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(Speech, NoEngineOutlivesItsObject) {
    {
        Speaker speaker;
        ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    }
    Speaker other; // later calls reap
    EXPECT_TRUE(waitUntil([&] {
        [other.synthesizer isSpeaking];
        return zqm::support::childrenOfThisProcess().empty();
    }));
}

TEST_F(Speech, AForkLeavesTheParentsSpeechAlone) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(5000 / kSlowness), path("a.wav")));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool dead = ![speaker.synthesizer isSpeaking] && !speaker.say("a", path("b.wav"));
        [speaker.synthesizer stopSpeaking];
        [speaker.synthesizer setRate:300];
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.1, 0);
        const bool silent = speaker.heard.order.empty();
        speaker.release();
        Speaker own; // an object of its own works
        const bool works =
            own.say("Hello world", path("child.wav")) && own.runToEnd() && own.heard.finished.front();
        ::_exit((dead ? 0 : 1) + (silent ? 0 : 2) + (works ? 0 : 4));
    }
    int status = -1;
    ASSERT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(5000U / kSlowness, speaker.heard.words.size());
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
    EXPECT_FALSE(std::filesystem::exists(path("b.wav")));
}

TEST_F(Speech, NoEngineOutlivesItsHost) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const std::string note = path("engine");
    EXPECT_EXIT(
        {
            Speaker speaker;
            speaker.say(manyWords(50000), path("a.wav"));
            std::ofstream(note) << zqm::support::childrenOfThisProcess().back();
            ::_exit(0);
        },
        testing::ExitedWithCode(0), "");
    pid_t engine = 0;
    std::ifstream(note) >> engine;
    ASSERT_GT(engine, 0);
    EXPECT_TRUE(waitUntil([&] { return !zqm::support::isAlive(engine); }));
    std::filesystem::remove(note);
    EXPECT_TRUE(waitUntil([&] { return filesIn(folder_) == 0; })) << "nor does its half-written file";
}

// ---- properties

TEST_F(Speech, RateAndVolumeAreKeptAsGiven) {
    Speaker speaker;
    EXPECT_EQ(1.0F, [speaker.synthesizer volume]);
    EXPECT_GT([speaker.synthesizer rate], 100.0F);
    [speaker.synthesizer setVolume:0.1F];
    [speaker.synthesizer setRate:321.5F];
    EXPECT_EQ(0.1F, [speaker.synthesizer volume]);
    EXPECT_EQ(321.5F, [speaker.synthesizer rate]);
    EXPECT_FALSE([speaker.synthesizer usesFeedbackWindow]);
    [speaker.synthesizer setUsesFeedbackWindow:YES];
    EXPECT_TRUE([speaker.synthesizer usesFeedbackWindow]);
}

TEST_F(Speech, RateAndVolumeAreHeard) {
    Speaker speaker;
    const std::string text = "A sentence of some length, to be compared.";
    ASSERT_TRUE(speaker.say(text, path("normal.wav")) && speaker.runToEnd(1));
    [speaker.synthesizer setRate:350];
    ASSERT_TRUE(speaker.say(text, path("fast.wav")) && speaker.runToEnd(2));
    [speaker.synthesizer setRate:175];
    [speaker.synthesizer setVolume:0.25F];
    ASSERT_TRUE(speaker.say(text, path("low.wav")) && speaker.runToEnd(3));
    const SoundFile normal(path("normal.wav"));
    const SoundFile low(path("low.wav"));
    EXPECT_LT(SoundFile(path("fast.wav")).seconds(), normal.seconds() * 0.75);
    EXPECT_NEAR(0.25, zqm::support::rms(low.samples) / zqm::support::rms(normal.samples), 0.03);
}

TEST_F(Speech, ARateChangesWhileSpeaking) {
    const UnreadPipe pipe(path("pipe.ogg"));
    ASSERT_TRUE(pipe.isMade());
    Speaker speaker;
    const std::string text = manyWords(500);
    ASSERT_TRUE(speaker.say(text, path("normal.wav")) && speaker.runToEnd(1));
    ASSERT_TRUE(speaker.say(text, path("pipe.ogg")));
    ASSERT_TRUE(pipe.fillsUp());
    [speaker.synthesizer setRate:350];
    std::string bytes;
    ASSERT_TRUE(runUntil([&] {
        bytes += pipe.read();
        return speaker.heard.finished.size() == 2;
    }));
    bytes += pipe.read();
    std::ofstream(path("fast.ogg"), std::ios::binary) << bytes;
    EXPECT_LT(SoundFile(path("fast.ogg")).seconds(), SoundFile(path("normal.wav")).seconds() * 0.9);
}

TEST_F(Speech, TakesAnyNumberForRateAndVolume) {
    for (const float value : {0.0F, -1.0F, 1.0e30F, std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()}) {
        Speaker speaker;
        [speaker.synthesizer setRate:value];
        [speaker.synthesizer setVolume:value];
        ASSERT_TRUE(speaker.say("Hello world", path("a.wav"))) << value;
        [speaker.synthesizer setRate:value];
        ASSERT_TRUE(speaker.runToEnd()) << value;
        EXPECT_TRUE(speaker.heard.finished.front()) << value;
    }
}

// ---- voices

TEST(Voices, AreListed) {
    NSArray* const voices = [NSSpeechSynthesizer availableVoices];
    ASSERT_GT([voices count], 50U);
    std::set<std::string> seen;
    for (NSUInteger index = 0; index < [voices count]; ++index) {
        NSString* const voice = [voices objectAtIndex:index];
        EXPECT_TRUE(seen.insert([voice UTF8String]).second);
        NSDictionary* const attributes = [NSSpeechSynthesizer attributesForVoice:voice];
        EXPECT_TRUE([[attributes objectForKey:NSVoiceIdentifier] isEqual:voice]);
        EXPECT_GT([[attributes objectForKey:NSVoiceName] length], 0U);
        NSString* const language = [attributes objectForKey:NSVoiceLanguage];
        EXPECT_GT([language length], 0U);
        EXPECT_TRUE([[[attributes objectForKey:NSVoiceLocaleIdentifier]
            stringByReplacingOccurrencesOfString:@"_"
                                      withString:@"-"] isEqualToString:language]);
        NSString* const gender = [attributes objectForKey:NSVoiceGender];
        EXPECT_TRUE([gender isEqual:NSVoiceGenderMale] || [gender isEqual:NSVoiceGenderFemale] ||
                    [gender isEqual:NSVoiceGenderNeuter]);
    }
    EXPECT_TRUE([voices isEqual:[NSSpeechSynthesizer availableVoices]]);
}

TEST(Voices, UnknownOnesAreNil) {
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:@"none"]);
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:@""]);
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:nil]);
    EXPECT_EQ(nil, [[NSSpeechSynthesizer alloc] initWithVoice:@"none"]);
    EXPECT_EQ(nil, [[NSSpeechSynthesizer alloc] initWithVoice:@""]);
}

TEST(Voices, TheDefaultFollowsTheLocale) {
    struct Case {
        const char* all;
        const char* messages;
        const char* language;
        const char* voice;
    };
    for (const Case& each :
         {Case{"de_DE.UTF-8", "fr_FR", "it_IT", "gmw/de"}, Case{"", "it_IT.UTF-8", "de_DE", "roa/it"},
          Case{"", "", "en_US.UTF-8", "gmw/en-US"}, Case{"", "", "C", "gmw/en-US"},
          Case{"POSIX", "", "de_DE", "gmw/en-US"}, Case{"", "", "", "gmw/en-US"},
          Case{"xx_YY", "", "", "gmw/en-US"}, Case{"de_AT@euro", "", "", "gmw/de"},
          Case{"zh_CN.UTF-8", "", "", "sit/cmn"}, Case{"nb_NO", "", "", "gmq/nb"},
          Case{"no_NO", "", "", "gmq/nb"}}) {
        const ScopedEnvironment all("LC_ALL", each.all);
        const ScopedEnvironment messages("LC_MESSAGES", each.messages);
        const ScopedEnvironment language("LANG", each.language);
        EXPECT_STREQ(each.voice, [[NSSpeechSynthesizer defaultVoice] UTF8String]);
        NSSpeechSynthesizer* const synthesizer = [[NSSpeechSynthesizer alloc] init];
        EXPECT_STREQ(each.voice, [[synthesizer voice] UTF8String]);
        [synthesizer release];
    }
}

TEST_F(Speech, AVoiceCanBeSetUnlessSpeaking) {
    Speaker speaker(@"gmw/de");
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:@"gmw/de"]);
    [speaker.synthesizer setRate:300];
    [speaker.synthesizer setVolume:0.5F];
    EXPECT_FALSE([speaker.synthesizer setVoice:@"none"]);
    EXPECT_FALSE([speaker.synthesizer setVoice:@""]);
    EXPECT_EQ(300.0F, [speaker.synthesizer rate]);
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    EXPECT_FALSE([speaker.synthesizer setVoice:@"roa/fr"]);
    [speaker.synthesizer stopSpeaking];
    EXPECT_TRUE([speaker.synthesizer setVoice:@"roa/fr"]);
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:@"roa/fr"]);
    EXPECT_EQ(1.0F, [speaker.synthesizer volume]);
    EXPECT_NE(300.0F, [speaker.synthesizer rate]);
    EXPECT_TRUE([speaker.synthesizer setVoice:nil]);
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:[NSSpeechSynthesizer defaultVoice]]);
}

// ---- files

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

TEST_F(Speech, AnExistingFileIsReplacedWhenTheNewOneIsWhole) {
    std::ofstream(path("a.wav")) << "old";
    std::filesystem::permissions(path("a.wav"), std::filesystem::perms(0640));
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(3000), path("a.wav")));
    EXPECT_EQ(3U, std::filesystem::file_size(path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
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

// ---- what is held of the system

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

template <typename Round>
void expectNothingIsLost(int rounds, std::size_t tolerated, Round&& round) {
    const auto run = [&](int count) {
        for (int index = 0; index < count; ++index) {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            round();
            [pool drain];
        }
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
    expectNothingIsLost(1000, kTolerated, [&] {
        speaker.heard = {};
        ASSERT_TRUE(speaker.say("Hi", path("a.wav")) && speaker.runToEnd());
        ASSERT_TRUE(speaker.heard.finished.front());
    });
    EXPECT_EQ(1U, zqm::support::childrenOfThisProcess().size());
}

TEST_F(Speech, ObjectsLoseNothing) {
    expectNothingIsLost(100, kTolerated, [&] {
        Speaker speaker;
        ASSERT_TRUE(speaker.say("Hi", path("a.wav")) && speaker.runToEnd());
    });
}

TEST_F(Speech, DroppingObjectsAmidTheirSpeechLosesNothing) {
    expectNothingIsLost(50, kTolerated, [&] {
        Speaker speaker;
        ASSERT_TRUE(speaker.say(manyWords(1000), path("a.wav")));
    });
    Speaker other;
    EXPECT_TRUE(waitUntil([&] {
        [other.synthesizer isSpeaking];
        return zqm::support::childrenOfThisProcess().empty();
    }));
}

// ---- sound

TEST_F(Speech, IsHeardThroughASoundServer) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    EXPECT_TRUE([speaker.synthesizer isSpeaking]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(Speech, IsRefusedWithoutASoundServer) {
    const zqm::support::ScopedPulseServer use(zqm::support::ScopedPulseServer::unreachableAddress());
    Speaker speaker;
    EXPECT_FALSE([speaker.synthesizer startSpeakingString:@"Hello world"]);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    runOut();
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(Speech, IsStoppedAmidTheSound) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    Speaker speaker;
    speaker.heard.onWord = [](NSSpeechSynthesizer* sender) { [sender stopSpeaking]; };
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(manyWords(1000))]);
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
}

// ---- a host without its standard descriptors

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
