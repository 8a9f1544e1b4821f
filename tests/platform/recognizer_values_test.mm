// What is set on a recognizer, and what it answers.

#include "tests/platform/raised_exception.h"
#include "tests/platform/recognizer_fixture.h"

namespace {

using namespace zqm::platform::test;

class RecognizerValues : public testing::Test {
protected:
    NSSpeechRecognizer* recognizer_ = [[[NSSpeechRecognizer alloc] init] autorelease];
};

TEST_F(RecognizerValues, AreThoseOfTheSystemInTheBeginning) {
    ASSERT_NE(nil, recognizer_);
    EXPECT_EQ(nil, [recognizer_ commands]);
    EXPECT_EQ(nil, [recognizer_ displayedCommandsTitle]);
    EXPECT_EQ(nil, [recognizer_ delegate]);
    EXPECT_EQ(YES, [recognizer_ listensInForegroundOnly]);
    EXPECT_EQ(NO, [recognizer_ blocksOtherRecognizers]);
}

TEST_F(RecognizerValues, AreKept) {
    Listener listener;
    [recognizer_ setDelegate:[listener.recognizer delegate]];
    EXPECT_EQ([listener.recognizer delegate], [recognizer_ delegate]);
    for (const BOOL flag : {NO, YES, NO}) {
        [recognizer_ setListensInForegroundOnly:flag];
        EXPECT_EQ(flag, [recognizer_ listensInForegroundOnly]);
        [recognizer_ setBlocksOtherRecognizers:flag];
        EXPECT_EQ(flag, [recognizer_ blocksOtherRecognizers]);
    }
}

TEST_F(RecognizerValues, TheDelegateIsNotRetained) {
    Listener listener;
    const NSUInteger count = [[listener.recognizer delegate] retainCount];
    [recognizer_ setDelegate:[listener.recognizer delegate]];
    EXPECT_EQ(count, [[listener.recognizer delegate] retainCount]);
}

TEST_F(RecognizerValues, TheTitleIsACopy) {
    NSMutableString* const title = [NSMutableString stringWithString:@"Doors"];
    [recognizer_ setDisplayedCommandsTitle:title];
    [title appendString:@" and windows"];
    EXPECT_TRUE([[recognizer_ displayedCommandsTitle] isEqualToString:@"Doors"]);
    [recognizer_ setDisplayedCommandsTitle:nil];
    EXPECT_EQ(nil, [recognizer_ displayedCommandsTitle]);
}

TEST_F(RecognizerValues, TheCommandsAreACopy) {
    NSMutableString* const changing = [NSMutableString stringWithString:@"open"];
    NSMutableArray* const commands = [NSMutableArray arrayWithObjects:changing, @"close", nil];
    [recognizer_ setCommands:commands];
    [changing appendString:@" the door"];
    [commands addObject:@"stop"];
    NSArray* const expected = [NSArray arrayWithObjects:@"open", @"close", nil];
    EXPECT_TRUE([[recognizer_ commands] isEqual:expected]);
}

TEST_F(RecognizerValues, CommandsCanBeNoneAtAll) {
    [recognizer_ setCommands:[NSArray array]];
    EXPECT_NE(nil, [recognizer_ commands]);
    EXPECT_EQ(0U, [[recognizer_ commands] count]);
    [recognizer_ setCommands:nil];
    EXPECT_EQ(nil, [recognizer_ commands]);
}

TEST_F(RecognizerValues, CommandsMayBeAnyStrings) {
    const UniChar lone[] = {0xD800, 'a', 0xDC00, 0};
    NSString* const strange = stringOf(lone, 4);
    NSArray* const commands = [NSArray arrayWithObjects:strange, @"", @"open", @"open", nil];
    [recognizer_ setCommands:commands];
    EXPECT_TRUE([[recognizer_ commands] isEqual:commands]);
}

TEST_F(RecognizerValues, NothingButAnArrayOfStringsIsTaken) {
    NSArray* const before = [NSArray arrayWithObject:@"open"];
    [recognizer_ setCommands:before];
    NSArray* const wrong = [NSArray arrayWithObjects:@"close", [NSNumber numberWithInt:5], nil];
    for (id const commands : {static_cast<id>(wrong), static_cast<id>(@"close"),
                              static_cast<id>([NSArray arrayWithObject:[NSNull null]]),
                              static_cast<id>([NSArray arrayWithObject:before])}) {
        NSException* const raised = raisedBy([&] { [recognizer_ setCommands:commands]; });
        ASSERT_NE(nil, raised);
        EXPECT_TRUE([[raised name] isEqualToString:NSInvalidArgumentException]);
        EXPECT_TRUE([[recognizer_ commands] isEqual:before]);
    }
}

} // namespace
