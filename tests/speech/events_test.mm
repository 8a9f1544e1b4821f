// From the platform's callback to the host program's handler.

#include "tests/speech/synthesizer_host.h"

#include <functional>
#include <stdexcept>

// An exception that raises another one when it is to be logged.
@interface IndescribableException : NSException
@end

@implementation IndescribableException
- (id)init {
    return [self initWithName:@"Indescribable" reason:@"on purpose" userInfo:nil];
}
- (NSString*)description {
    [NSException raise:@"Description" format:@"raised"];
    return nil;
}
@end

namespace {

using testing::ElementsAre;
using zqm::host::Arguments;
using zqm::host::Object;

struct Callback {
    const char* event;
    SEL selector;
    std::function<void(MyNSSpeechSynthesizer*)> call;
};

std::vector<Callback> callbacks() {
    return {
        {"didFinishSpeaking", @selector(speechSynthesizer:didFinishSpeaking:),
         [](MyNSSpeechSynthesizer* s) { [s speechSynthesizer:s didFinishSpeaking:YES]; }},
        {"willSpeakWord", @selector(speechSynthesizer:willSpeakWord:ofString:),
         [](MyNSSpeechSynthesizer* s) {
             [s speechSynthesizer:s willSpeakWord:NSMakeRange(6, 5) ofString:@"Hello world"];
         }},
        {"willSpeakPhoneme", @selector(speechSynthesizer:willSpeakPhoneme:),
         [](MyNSSpeechSynthesizer* s) { [s speechSynthesizer:s willSpeakPhoneme:11]; }},
        {"didEncounterErrorAtIndex", @selector(speechSynthesizer:didEncounterErrorAtIndex:ofString:message:),
         [](MyNSSpeechSynthesizer* s) {
             [s speechSynthesizer:s didEncounterErrorAtIndex:3 ofString:@"text" message:@"message"];
         }},
        {"didEncounterSyncMessage", @selector(speechSynthesizer:didEncounterSyncMessage:),
         [](MyNSSpeechSynthesizer* s) { [s speechSynthesizer:s didEncounterSyncMessage:@"A"]; }},
    };
}

using Events = SynthesizerTest;

TEST_F(Events, CarryTheirArgumentsInOrder) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    std::vector<std::string> seen;
    object.on("didFinishSpeaking",
              [&](const Arguments& a) { seen.push_back(a[0].asBool() ? "true" : "false"); });
    object.on("willSpeakWord", [&](const Arguments& a) {
        seen.push_back(std::to_string(a[0].asInteger()) + "," + std::to_string(a[1].asInteger()) + "," +
                       a[2].asText());
    });
    object.on("willSpeakPhoneme",
              [&](const Arguments& a) { seen.push_back(std::to_string(a[0].asInteger())); });
    object.on("didEncounterErrorAtIndex", [&](const Arguments& a) {
        seen.push_back(std::to_string(a[0].asInteger()) + "," + a[1].asText() + "," + a[2].asText());
    });
    object.on("didEncounterSyncMessage", [&](const Arguments& a) { seen.push_back(a[0].asText()); });

    const auto before = host->ledger();
    for (const Callback& callback : callbacks()) {
        callback.call(synthesizer);
    }
    [synthesizer speechSynthesizer:synthesizer didFinishSpeaking:NO];
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(seen, ElementsAre("true", "6,5,Hello world", "11", "3,text,message", "A", "false"));
}

TEST_F(Events, NameTheObjectThatRaisesThem) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    for (const Callback& callback : callbacks()) {
        bool isSender = false;
        object.on(callback.event, [&](const Arguments& a) { isSender = a.sender() == object; });
        callback.call(synthesizer);
        EXPECT_TRUE(isSender) << callback.event;
    }
}

TEST_F(Events, KeepTheSignOfAPhonemeOpcode) {
    Object object = newSynthesizer();
    std::vector<std::int64_t> opcodes;
    object.on("willSpeakPhoneme", [&](const Arguments& a) { opcodes.push_back(a[0].asInteger()); });
    for (const short opcode : {short{0}, short{41}, std::numeric_limits<short>::min(), short{-1}}) {
        [platformObjectOf(object) speechSynthesizer:nil willSpeakPhoneme:opcode];
    }
    EXPECT_THAT(opcodes, ElementsAre(0, 41, -32768, -1));
}

TEST_F(Events, PassPositionsAsTheyAre) {
    Object object = newSynthesizer();
    std::vector<std::int64_t> numbers;
    object.on("willSpeakWord", [&](const Arguments& a) {
        numbers.push_back(a[0].asInteger());
        numbers.push_back(a[1].asInteger());
    });
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    [synthesizer speechSynthesizer:synthesizer willSpeakWord:NSMakeRange(NSNotFound, 0) ofString:@""];
    [synthesizer speechSynthesizer:synthesizer willSpeakWord:NSMakeRange(7'000'000'000, 9) ofString:@"short"];
    EXPECT_THAT(numbers, ElementsAre(static_cast<std::int64_t>(NSNotFound), 0, 7'000'000'000, 9));
}

TEST_F(Events, PassNilAndEmptyStringsAsNil) {
    Object object = newSynthesizer();
    int nils = 0;
    object.on("didEncounterErrorAtIndex", [&](const Arguments& a) { nils += a[1].isNull() + a[2].isNull(); });
    [platformObjectOf(object) speechSynthesizer:nil didEncounterErrorAtIndex:0 ofString:nil message:@""];
    EXPECT_EQ(nils, 2);
}

// ---- which callbacks the platform may make

TEST_F(Events, AreAskedForOnlyWhereTheProgramHasAHandler) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    for (const Callback& callback : callbacks()) {
        EXPECT_FALSE([synthesizer respondsToSelector:callback.selector]) << callback.event;
        callback.call(synthesizer);
        object.on(callback.event, [](const Arguments&) {});
        EXPECT_TRUE([synthesizer respondsToSelector:callback.selector]) << callback.event;
        object.off(callback.event);
        EXPECT_FALSE([synthesizer respondsToSelector:callback.selector]) << callback.event;
    }
}

TEST_F(Events, LeaveOtherSelectorsToTheSuperclass) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    EXPECT_TRUE([synthesizer respondsToSelector:@selector(startSpeakingString:)]);
    EXPECT_TRUE([synthesizer respondsToSelector:@selector(copyWithZone:)]);
    EXPECT_FALSE([synthesizer respondsToSelector:@selector(length)]);
}

TEST_F(Events, AreAllAnsweredForWithoutATarget) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    object.call("Destructor");
    for (const Callback& callback : callbacks()) {
        EXPECT_TRUE([synthesizer respondsToSelector:callback.selector]) << callback.event;
        callback.call(synthesizer);
    }
}

TEST_F(Events, EndSilentlyWithoutTheHostsHandlerLookUp) {
    zqm::support::inFreshProcess([this] {
        PluginHost::refuse("GetEventInstance");
        Object object = newSynthesizer();
        MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
        for (const Callback& callback : callbacks()) {
            object.on(callback.event, [](const Arguments&) { ADD_FAILURE(); });
            EXPECT_FALSE([synthesizer respondsToSelector:callback.selector]) << callback.event;
            callback.call(synthesizer);
        }
    });
}

// ---- hosts of the oldest revision, whose tokens stand in a record of their own

class OldEvents : public SynthesizerTest {
protected:
    OldEvents() : SynthesizerTest(2011.0) {}
};

TEST_F(OldEvents, ReachTheirHandlers) {
    ASSERT_EQ(CurrentREALControlVersion, 9U);
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    for (const Callback& callback : callbacks()) {
        EXPECT_FALSE([synthesizer respondsToSelector:callback.selector]) << callback.event;
        object.on(callback.event, [](const Arguments&) {});
        EXPECT_TRUE([synthesizer respondsToSelector:callback.selector]) << callback.event;
        callback.call(synthesizer);
        EXPECT_EQ(object.timesRaised(callback.event), 1U) << callback.event;
    }
}

TEST_F(OldEvents, AreSilentForAClassThatWasNotRegistered) {
    zqm::support::inFreshProcess([this] {
        Object object = newSynthesizer();
        for (EventRecord& event : synthesizerEvents) {
            event.hostToken = 0;
        }
        object.on("didFinishSpeaking", [](const Arguments&) { ADD_FAILURE(); });
        EXPECT_FALSE([platformObjectOf(object) respondsToSelector:@selector(speechSynthesizer:
                                                                            didFinishSpeaking:)]);
        host->clearReports(); // the token 0 that the host was asked for
    });
}

// ---- what the host is asked to do for one event

std::vector<std::string> hostCalls;

template <typename Handle>
void (*original(const char* name))(Handle) {
    return reinterpret_cast<void (*)(Handle)>(zqm::host::Runtime::resolver()(name));
}

TEST_F(Events, LockTheObjectAroundTheHandlerAndUnlockTheStringsBeforeIt) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "GetEventInstance", +[](REALobject, std::uint64_t) {
                return reinterpret_cast<void*>(+[](REALobject, std::int64_t, REALstring, REALstring) {
                    hostCalls.push_back("handler");
                });
            });
        PluginHost::replace(
            "REALLockObject", +[](REALobject object) {
                hostCalls.push_back("lock object");
                original<REALobject>("REALLockObject")(object);
            });
        PluginHost::replace(
            "REALUnlockObject", +[](REALobject object) {
                hostCalls.push_back("unlock object");
                original<REALobject>("REALUnlockObject")(object);
            });
        PluginHost::replace(
            "REALUnlockString", +[](REALstring string) {
                hostCalls.push_back("unlock string");
                original<REALstring>("REALUnlockString")(string);
            });
        Object object = newSynthesizer();
        hostCalls.clear();
        [platformObjectOf(object) speechSynthesizer:nil
                           didEncounterErrorAtIndex:1
                                           ofString:@"text"
                                            message:@"message"];
        EXPECT_THAT(hostCalls,
                    ElementsAre("lock object", "handler", "unlock string", "unlock string", "unlock object"));
    });
}

// ---- handlers that misbehave

void raisePlatformException(REALobject /*sender*/, std::int64_t /*opcode*/) {
    [NSException raise:@"InHandler" format:@"on purpose"];
}

void throwNativeException(REALobject /*sender*/, std::int64_t /*opcode*/) {
    throw std::runtime_error("on purpose");
}

TEST_F(Events, LogAndDropAPlatformExceptionAndUnlockEverything) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "GetEventInstance",
            +[](REALobject, std::uint64_t) { return reinterpret_cast<void*>(raisePlatformException); });
        Object object = newSynthesizer();
        const auto before = host->ledger();
        testing::internal::CaptureStderr();
        for (const Callback& callback : callbacks()) {
            callback.call(platformObjectOf(object));
        }
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_THAT(log, testing::HasSubstr("on purpose"));
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 5) << log;
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), testing::IsEmpty());
    });
}

TEST_F(Events, DropAnExceptionThatCannotEvenBeDescribed) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "GetEventInstance", +[](REALobject, std::uint64_t) {
                return reinterpret_cast<void*>(
                    +[](REALobject, std::int64_t) { [[[IndescribableException alloc] init] raise]; });
            });
        Object object = newSynthesizer();
        const auto before = host->ledger();
        [platformObjectOf(object) speechSynthesizer:nil willSpeakPhoneme:1];
        EXPECT_EQ(host->ledger(), before);
    });
}

TEST_F(Events, PassANativeExceptionOnWithEverythingUnlocked) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "GetEventInstance",
            +[](REALobject, std::uint64_t) { return reinterpret_cast<void*>(throwNativeException); });
        Object object = newSynthesizer();
        const auto before = host->ledger();
        for (const Callback& callback : callbacks()) {
            EXPECT_THROW(callback.call(platformObjectOf(object)), std::runtime_error) << callback.event;
        }
        EXPECT_EQ(host->ledger(), before);
    });
}

TEST_F(Events, UnlockNothingWhereTheHostCannotLock) {
    zqm::support::inFreshProcess([this] {
        PluginHost::refuse("REALLockObject");
        Object object = newSynthesizer();
        const auto before = host->ledger();
        for (const Callback& callback : callbacks()) {
            object.on(callback.event, [](const Arguments&) {});
            callback.call(platformObjectOf(object));
            EXPECT_EQ(object.timesRaised(callback.event), 1U) << callback.event;
        }
        EXPECT_EQ(host->ledger(), before);
    });
}

TEST_F(Events, KeepTheObjectAliveForAHandlerThatDropsIt) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = [platformObjectOf(object) retain];
    bool handled = false;
    object.on("didFinishSpeaking", [&](const Arguments& a) {
        object.reset();
        EXPECT_EQ(platformObjectOf(a.sender()), synthesizer);
        handled = true;
    });
    [synthesizer speechSynthesizer:synthesizer didFinishSpeaking:YES];
    EXPECT_TRUE(handled);
    // The last lock went with the delivery, and with it the object.
    EXPECT_EQ([synthesizer retainCount], 1U);
    EXPECT_EQ([synthesizer delegate], nil);
    [synthesizer release];
}

TEST_F(Events, UnlockTheObjectThatTheyLockedEvenIfTheHandlerClearsTheTarget) {
    Object object = newSynthesizer();
    const auto before = host->ledger();
    object.on("didEncounterSyncMessage", [&](const Arguments&) { object.call("Destructor"); });
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    [synthesizer speechSynthesizer:synthesizer didEncounterSyncMessage:@"S"];
    EXPECT_EQ(host->ledger().objects, before.objects);
}

} // namespace
