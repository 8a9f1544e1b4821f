// The synthesizer with the real engine: what it takes, and what it tells of its speech.

#include "tests/platform/speech_fixture.h"
#include "tests/support/sound_file.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <filesystem>
#include <poll.h>
#include <string>

extern "C" int ZQMPlatformEventDescriptor(void);

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

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

TEST_F(Speech, TheEventDescriptorTellsNothingOfWhatNobodyWants) {
    Speaker speaker;
    pollfd watched{ZQMPlatformEventDescriptor(), POLLIN, 0};
    [speaker.synthesizer setDelegate:nil];
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    EXPECT_EQ(1, ::poll(&watched, 1, 0));
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 1);
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

} // namespace
