// What handlers may do while the synthesizer calls them.

#include "tests/platform/raised_exception.h"
#include "tests/platform/speech_fixture.h"

#include <CoreFoundation/CoreFoundation.h>

#include <stdexcept>

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

} // namespace
