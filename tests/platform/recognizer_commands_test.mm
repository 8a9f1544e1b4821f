// Commands on their way to the engine and back.

#include "tests/platform/observed_listening.h"
#include "tests/platform/recognizer_fixture.h"

namespace {

using namespace zqm::platform::test;
using zqm::support::logged;

class RecognizerCommands : public Recognition {};

TEST_F(RecognizerCommands, ComeBackAsTheyWereGiven) {
    const UniChar lone[] = {0xD800, 'a', 0xDC00};
    NSString* const strange = stringOf(lone, 3);
    NSArray* const given = [NSArray arrayWithObjects:@"Open the DOOR, please!", @"Caf\u00E9 \U0001F600", @"",
                                                     strange, @"  two  spaces ", nil];
    Listener listener;
    [listener.recognizer setCommands:given];
    [listener.recognizer startListening];
    auto engine = stage_.next();
    EXPECT_EQ(
        (Texts{"Open the DOOR, please!", "Caf\u00E9 \U0001F600", "", "\uFFFDa\uFFFD", "  two  spaces "}),
        engine->hear<SetCommands>().commands);
    for (NSUInteger index = 0; index < [given count]; ++index) {
        engine->say(phrase(1, 1, index));
        ASSERT_TRUE(listener.runUntilHeard(index + 1));
        EXPECT_TRUE([listener.heard.last isEqualToString:[given objectAtIndex:index]]);
        EXPECT_EQ([[listener.recognizer commands] objectAtIndex:index], listener.heard.last)
            << "it is the very object";
    }
}

TEST_F(RecognizerCommands, OfAMutableStringIsWhatItWas) {
    NSMutableString* const changing = [NSMutableString stringWithString:@"open"];
    Listener listener;
    [listener.recognizer setCommands:[NSArray arrayWithObject:changing]];
    auto engine = start(listener);
    [changing setString:@"close"];
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open"));
}

TEST_F(RecognizerCommands, ThatAreReplacedCountUntilTheEngineHearsByTheNewOnes) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    [listener.recognizer setCommands:arrayOf({"left", "right"})];
    [listener.recognizer setCommands:arrayOf({"up", "down"})];
    EXPECT_EQ((SetCommands{2, {"left", "right"}}), engine->hear<SetCommands>());
    EXPECT_EQ((SetCommands{3, {"up", "down"}}), engine->hear<SetCommands>());
    engine->say(phrase(1, 1, 1)); // it was being said meanwhile
    engine->say(CommandsSet{3, {}});
    engine->say(phrase(1, 3, 1));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close", "down"));
}

TEST_F(RecognizerCommands, ThatWereHeardOutliveTheirList) {
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    engine->say(phrase(1, 1, 0));
    engine->say(phrase(1, 1, 1));
    ASSERT_TRUE(listener.runUntilHeard(1));
    [listener.recognizer setCommands:nil];
    EXPECT_EQ((SetCommands{2, {}}), engine->hear<SetCommands>());
    engine->say(CommandsSet{2, {}});
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "close"));
}

TEST_F(RecognizerCommands, ThatCantBeListenedForAreLogged) {
    Observed observed;
    Listener listener(Texts{"open", "?!", "caf\u00E9"});
    const auto log = logged([&] {
        [listener.recognizer startListening];
        auto engine = stage_.next();
        engine->hear<SetCommands>();
        engine->say(CommandsSet{1, {{1, "it has no words"}, {2, "a reason"}}, 2});
        engine->say(Listening{1, ""});
        EXPECT_TRUE(observed.runUntil(ZQMListeningBegan));
    });
    EXPECT_THAT(log, ElementsAre("\"?!\" can't be listened for: it has no words",
                                 "\"caf\u00E9\" can't be listened for: a reason"));
    EXPECT_THAT(
        observed.of(ZQMListeningCommandRefused),
        ElementsAre(
            ObservedEvent{.kind = ZQMListeningCommandRefused, .command = "?!", .reason = "it has no words"},
            ObservedEvent{.kind = ZQMListeningCommandRefused, .command = "caf\u00E9", .reason = "a reason"}));
}

TEST_F(RecognizerCommands, ThatAreNotToldAreCounted) {
    Observed observed;
    Listener listener(Texts{"?!", "open", "...", "!"});
    const auto log = logged([&] {
        [listener.recognizer startListening];
        auto engine = stage_.next();
        engine->hear<SetCommands>();
        engine->say(CommandsSet{1, {{0, "it has no words"}}, 3});
        engine->say(Listening{1, ""});
        EXPECT_TRUE(observed.runUntil(ZQMListeningBegan));
    });
    EXPECT_THAT(log, ElementsAre("\"?!\" can't be listened for: it has no words",
                                 "2 more of the commands can't be listened for"));
    EXPECT_THAT(
        observed.events,
        ElementsAre(
            ObservedEvent{.kind = ZQMListeningCommandRefused, .command = "?!", .reason = "it has no words"},
            ObservedEvent{.kind = ZQMListeningMoreCommandsRefused, .count = 2},
            ObservedEvent{.kind = ZQMListeningBegan}));
}

TEST_F(RecognizerCommands, LoseNothingHoweverOftenTheyChange) {
    Listener listener(Texts{"0"});
    auto engine = start(listener);
    for (std::uint64_t list = 2; list < 2000; ++list) {
        NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
        const std::string name = std::to_string(list);
        [listener.recognizer setCommands:arrayOf({name})];
        EXPECT_EQ((SetCommands{list, {name}}), engine->hear<SetCommands>());
        engine->say(CommandsSet{list, {}});
        engine->say(phrase(1, list, 0));
        [pool drain];
    }
    ASSERT_TRUE(listener.runUntilHeard(1998));
    EXPECT_EQ("2", listener.heard.texts.front());
    EXPECT_EQ("1999", listener.heard.texts.back());
}

} // namespace
