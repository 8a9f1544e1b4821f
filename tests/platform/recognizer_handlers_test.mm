// What a recognizer's delegate may do while it is told of a command.

#include "tests/platform/observed_listening.h"
#include "tests/platform/raised_exception.h"
#include "tests/platform/recognizer_fixture.h"

#include <stdexcept>

// One that tells of its end.
@interface ZQMMortalRecognizer : NSSpeechRecognizer {
@private
    bool* _isGone;
}
- (instancetype)initWithFlag:(bool*)isGone;
@end

@implementation ZQMMortalRecognizer

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

class RecognizerHandlers : public Recognition {
protected:
    // A second listener's command comes after everything that an engine has said before.
    void sayPhrases(PlayedEngine& engine, std::uint64_t count) {
        for (std::uint64_t index = 0; index < count; ++index) {
            engine.say(phrase(1, 1, index));
        }
    }
};

TEST_F(RecognizerHandlers, MayStop) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    listener.heard.onCommand = [](NSSpeechRecognizer* sender) { [sender stopListening]; };
    sayPhrases(*engine, 2);
    ASSERT_TRUE(listener.runUntilHeard(1));
    engine->hear<StopListening>();
    [listener.recognizer startListening];
    engine->hear<Listen>();
    engine->say(phrase(2, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "open")) << "nothing came between";
}

TEST_F(RecognizerHandlers, MayStartAgain) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    listener.heard.onCommand = [](NSSpeechRecognizer* sender) {
        [sender stopListening];
        [sender startListening];
    };
    sayPhrases(*engine, 2);
    ASSERT_TRUE(listener.runUntilHeard(1));
    engine->hear<StopListening>();
    EXPECT_EQ(2U, engine->hear<Listen>().session);
    engine->say(phrase(2, 1, 1));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
}

TEST_F(RecognizerHandlers, MaySetCommands) {
    Listener listener(Texts{"menu"});
    auto engine = start(listener);
    listener.heard.onCommand = [&](NSSpeechRecognizer* sender) {
        [sender setCommands:arrayOf({std::to_string(listener.heard.texts.size())})];
    };
    engine->say(phrase(1, 1, 0));
    for (std::uint64_t list = 2; list < 5; ++list) {
        ASSERT_TRUE(listener.runUntilHeard(list - 1));
        EXPECT_EQ((SetCommands{list, {std::to_string(list - 1)}}), engine->hear<SetCommands>());
        engine->say(CommandsSet{list, {}});
        engine->say(phrase(1, list, 0));
    }
    ASSERT_TRUE(listener.runUntilHeard(4));
    EXPECT_THAT(listener.heard.texts, ElementsAre("menu", "1", "2", "3"));
}

TEST_F(RecognizerHandlers, MayDropTheRecognizer) {
    bool isGone = false;
    Listener listener([[ZQMMortalRecognizer alloc] initWithFlag:&isGone]);
    [listener.recognizer setCommands:arrayOf({"open", "close"})];
    auto engine = start(listener);
    listener.heard.onCommand = [&](NSSpeechRecognizer* sender) {
        listener.release();
        ASSERT_FALSE(isGone) << "the sender of a callback lives as long as that";
        EXPECT_EQ(2U, [[sender commands] count]);
    };
    sayPhrases(*engine, 2);
    ASSERT_TRUE(runUntil([&] { return isGone; }));
    EXPECT_TRUE(engine->isLeft());
    EXPECT_THAT(listener.heard.texts, ElementsAre("open"));
}

TEST_F(RecognizerHandlers, MayRunTheRunLoop) {
    Listener listener(Texts{"one", "two", "three"});
    auto engine = start(listener);
    std::size_t depth = 0;
    std::size_t deepest = 0;
    listener.heard.onCommand = [&](NSSpeechRecognizer*) {
        deepest = std::max(deepest, ++depth);
        EXPECT_TRUE(listener.runUntilHeard(std::min<std::size_t>(depth + 1, 3)));
        --depth;
    };
    sayPhrases(*engine, 3);
    ASSERT_TRUE(listener.runUntilHeard(3));
    EXPECT_EQ(3U, deepest) << "the inner run loop delivers too";
    EXPECT_THAT(listener.heard.texts, ElementsAre("one", "two", "three"));
}

TEST_F(RecognizerHandlers, MayRaiseExceptions) {
    Listener listener(Texts{"one", "two", "three"});
    auto engine = start(listener);
    const NSUInteger count = [listener.recognizer retainCount];
    listener.heard.onCommand = [](NSSpeechRecognizer*) {
        [NSException raise:@"ZQMTestException" format:@"by the delegate"];
    };
    sayPhrases(*engine, 3);
    for (std::size_t heard = 1; heard <= 3; ++heard) {
        NSException* const raised = raisedBy([&] { runUntil([] { return false; }); });
        ASSERT_NE(nil, raised);
        EXPECT_TRUE([[raised reason] isEqualToString:@"by the delegate"]);
        EXPECT_EQ(heard, listener.heard.texts.size());
        EXPECT_EQ(count, [listener.recognizer retainCount]);
    }
    EXPECT_THAT(listener.heard.texts, ElementsAre("one", "two", "three"));
}

TEST_F(RecognizerHandlers, MayThrowNativeExceptions) {
    Listener listener(Texts{"one", "two"});
    auto engine = start(listener);
    const NSUInteger count = [listener.recognizer retainCount];
    listener.heard.onCommand = [](NSSpeechRecognizer*) { throw std::runtime_error("by the delegate"); };
    sayPhrases(*engine, 2);
    for (std::size_t heard = 1; heard <= 2; ++heard) {
        EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
        EXPECT_EQ(heard, listener.heard.texts.size());
        EXPECT_EQ(count, [listener.recognizer retainCount]);
    }
    EXPECT_THAT(listener.heard.texts, ElementsAre("one", "two"));
}

TEST_F(RecognizerHandlers, LeaveTheRetainCountsAsTheyWere) {
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    const NSUInteger count = [listener.recognizer retainCount];
    for (std::size_t heard = 1; heard <= 100; ++heard) {
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(listener.runUntilHeard(heard));
    }
    EXPECT_EQ(count, [listener.recognizer retainCount]);
    bool isGone = false;
    Listener mortal([[ZQMMortalRecognizer alloc] initWithFlag:&isGone]);
    mortal.release();
    EXPECT_TRUE(isGone);
}

} // namespace
