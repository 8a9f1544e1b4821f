// A synthesizer object from creation to its end, and the platform object behind it.

#include "plugin/set_up.h"
#include "tests/speech/synthesizer_host.h"

#include <cstdlib>
#include <memory>
#include <objc/runtime.h>

namespace {

using zqm::host::ByRef;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::String;

using LifeCycle = SynthesizerTest;

TEST_F(LifeCycle, CreatesNoPlatformObjectBeforeAConstructor) {
    const Object object = newObject();
    EXPECT_EQ(platformObjectOf(object), nil);
}

TEST_F(LifeCycle, ConstructsWithTheDefaultVoice) {
    Object object = newSynthesizer();
    EXPECT_EQ(object.get("voice").asText(), [[NSSpeechSynthesizer defaultVoice] UTF8String]);
}

TEST_F(LifeCycle, ConstructsWithTheDefaultVoiceForANilString) {
    Object object = newObject();
    object.call("Constructor", String());
    ASSERT_NE(platformObjectOf(object), nil);
    EXPECT_EQ(object.get("voice").asText(), [[NSSpeechSynthesizer defaultVoice] UTF8String]);
}

TEST_F(LifeCycle, ConstructsWithANamedVoice) {
    NSString* last = [[NSSpeechSynthesizer availableVoices] lastObject];
    ASSERT_FALSE([last isEqual:[NSSpeechSynthesizer defaultVoice]]);
    Object object = newObject();
    object.call("Constructor", [last UTF8String]);
    ASSERT_NE(platformObjectOf(object), nil);
    EXPECT_EQ(object.get("voice").asText(), [last UTF8String]);
}

TEST_F(LifeCycle, StaysUnconstructedForAnUnknownVoiceAndCanBeConstructedLater) {
    Object object = newObject();
    for (const char* unknown : {"no such voice", ""}) {
        object.call("Constructor", host->string(unknown));
        EXPECT_EQ(platformObjectOf(object), nil);
    }
    object.call("Constructor");
    EXPECT_NE(platformObjectOf(object), nil);
}

TEST_F(LifeCycle, RefusesASecondConstructorAndKeepsTheFirstSynthesizer) {
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* const first = platformObjectOf(object);
    const auto expectRefusal = [&](auto... voice) {
        try {
            object.call("Constructor", voice...);
            ADD_FAILURE() << "not refused";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), "UnsupportedOperationException");
            EXPECT_EQ(exception.message(), "Constructor called too often. Object is already initialized.");
        }
        EXPECT_EQ(platformObjectOf(object), first);
    };
    expectRefusal();
    expectRefusal([[first voice] UTF8String]);
    expectRefusal("no such voice");
}

TEST_F(LifeCycle, EndsAnUnconstructedObjectWithoutATrace) {
    const auto before = host->ledger();
    newObject().reset();
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(LifeCycle, GivesItsOneRetainBackAtTheEnd) {
    const auto before = host->ledger();
    Object object = newSynthesizer();
    MyNSSpeechSynthesizer* synthesizer = [platformObjectOf(object) retain];
    EXPECT_EQ([synthesizer delegate], synthesizer);
    EXPECT_EQ([synthesizer retainCount], 2U);

    object.reset();
    EXPECT_EQ([synthesizer retainCount], 1U);
    EXPECT_EQ([synthesizer delegate], nil);
    [synthesizer release];
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(LifeCycle, RaisesNothingAfterDestructor) {
    Object object = newSynthesizer();
    int events = 0;
    object.on("didFinishSpeaking", [&](const auto&) { ++events; });
    MyNSSpeechSynthesizer* synthesizer = platformObjectOf(object);
    [synthesizer speechSynthesizer:synthesizer didFinishSpeaking:YES];
    EXPECT_EQ(events, 1);

    object.call("Destructor");
    EXPECT_EQ([synthesizer delegate], nil);
    [synthesizer speechSynthesizer:synthesizer didFinishSpeaking:YES];
    [synthesizer speechSynthesizer:synthesizer willSpeakWord:NSMakeRange(0, 1) ofString:@"x"];
    EXPECT_EQ(events, 1);
}

TEST_F(LifeCycle, AnswersNilForTheExceptionClassItOnlyNames) {
    EXPECT_TRUE(newObject().call("_exception").isNull());
}

TEST_F(LifeCycle, AnswersNeutrallyWhileUnconstructed) {
    Object object = newObject();
    EXPECT_FALSE(object.call("startSpeakingString", "text").asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "text", "file:///tmp/never").asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "text", Object()).asBool());
    EXPECT_FALSE(object.call("setVoice", "anything").asBool());
    EXPECT_TRUE(object.call("phonemesFromText", "text").isNull());
    EXPECT_TRUE(object.call("objectForProperty", "rate", ByRef{}).isNull());
    EXPECT_FALSE(object.call("setObjectForProperty", 200, "rate", ByRef{}).asBool());
    object.call("pauseSpeakingAtBoundary", 0);
    object.call("stopSpeakingAtBoundary", 0);
    object.call("continueSpeaking");
    object.call("addSpeechDictionary", host->dictionary());
    object.call("stopSpeaking");
    object.call("Destructor");
    EXPECT_EQ(object.get("Volume").asDouble(), 0.0);
    EXPECT_EQ(object.get("Rate").asDouble(), 0.0);
    EXPECT_FALSE(object.get("isSpeaking").asBool());
    EXPECT_FALSE(object.get("usesFeedbackWindow").asBool());
    EXPECT_TRUE(object.get("voice").isNull());
    object.set("Volume", 0.5);
    object.set("Rate", 200.0);
    object.set("usesFeedbackWindow", true);
    object.set("voice", "anything");
    EXPECT_EQ(object.get("Volume").asDouble(), 0.0);
    EXPECT_EQ(object.get("Rate").asDouble(), 0.0);
}

TEST_F(LifeCycle, DoesNotTouchTheArgumentsOfAnUnconstructedObject) {
    Object object = newObject();
    const auto before = host->entryPoints().calls("REALGetStringEncoding");
    object.call("startSpeakingString", "text");
    object.call("startSpeakingString", "text", "file:///tmp/never");
    object.call("startSpeakingString", "text", host->folderItem("/tmp/never"));
    object.call("setVoice", "anything");
    EXPECT_EQ(host->entryPoints().calls("REALGetStringEncoding"), before);
}

TEST_F(LifeCycle, RoundsVolumeAndRateToSinglePrecision) {
    Object object = newSynthesizer();
    object.set("Volume", 0.3);
    EXPECT_EQ(object.get("Volume").asDouble(), static_cast<double>(0.3F));
    object.set("Rate", 200.1);
    EXPECT_EQ(object.get("Rate").asDouble(), static_cast<double>(200.1F));
    object.set("usesFeedbackWindow", true);
    EXPECT_TRUE(object.get("usesFeedbackWindow").asBool());
}

TEST_F(LifeCycle, DropsThePlatformsAnswerToAnUnknownVoice) {
    Object object = newSynthesizer();
    const std::string before = object.get("voice").asText();
    object.set("voice", "no such voice");
    EXPECT_EQ(object.get("voice").asText(), before);
}

TEST_F(LifeCycle, RefusesToSpeakNothingAndToNowhere) {
    Object object = newSynthesizer();
    EXPECT_FALSE(object.call("startSpeakingString", String()).asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "text", String()).asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "text", "no url, with blanks").asBool());
}

// ---- the text that is kept

NSString* lastTextOf(NSSpeechSynthesizer* synthesizer) {
    Ivar variable = class_getInstanceVariable([MyNSSpeechSynthesizer class], "lastText");
    return static_cast<NSString*>(object_getIvar(synthesizer, variable));
}

NSString* spokenText = nil;
NSString* keptText = nil;

BOOL noteStart(NSSpeechSynthesizer* self, SEL /*selector*/, NSString* text) {
    spokenText = text;
    keptText = lastTextOf(self);
    return YES;
}

BOOL noteStartToURL(NSSpeechSynthesizer* self, SEL selector, NSString* text, NSURL* /*url*/) {
    return noteStart(self, selector, text);
}

TEST_F(LifeCycle, KeepsTheTextBeforeItIsSpoken) {
    zqm::support::inFreshProcess([this] {
        Class spoken = [MyNSSpeechSynthesizer class];
        class_addMethod(spoken, @selector(startSpeakingString:),
                        reinterpret_cast<IMP>(reinterpret_cast<void*>(noteStart)), "c@:@");
        class_addMethod(spoken, @selector(startSpeakingString:toURL:),
                        reinterpret_cast<IMP>(reinterpret_cast<void*>(noteStartToURL)), "c@:@@");
        Object object = newSynthesizer();
        for (const char* text : {"first", "second"}) {
            EXPECT_TRUE(object.call("startSpeakingString", text).asBool());
            EXPECT_STREQ([keptText UTF8String], text);
            EXPECT_EQ(keptText, spokenText);
        }
        EXPECT_TRUE(object.call("startSpeakingString", "third", "file:///tmp/third").asBool());
        EXPECT_STREQ([keptText UTF8String], "third");
        EXPECT_TRUE(object.call("startSpeakingString", String()).asBool());
        EXPECT_EQ(spokenText, nil);
        EXPECT_EQ(keptText, nil);
    });
}

// ---- the platform object by itself

class PlatformObject : public SynthesizerTest {
protected:
    MyNSSpeechSynthesizer* newPlatformObject() {
        return [[MyNSSpeechSynthesizer alloc] initWithVoice:[NSSpeechSynthesizer defaultVoice]
                                                  andTarget:nullptr];
    }
};

TEST_F(PlatformObject, IsNilForAnUnknownVoice) {
    EXPECT_EQ([[MyNSSpeechSynthesizer alloc] initWithVoice:@"no such voice" andTarget:nullptr], nil);
}

TEST_F(PlatformObject, CopiesByARetain) {
    MyNSSpeechSynthesizer* synthesizer = newPlatformObject();
    EXPECT_EQ([synthesizer retainCount], 1U);
    EXPECT_EQ([synthesizer copyWithZone:nullptr], synthesizer);
    EXPECT_EQ([synthesizer retainCount], 2U);
    [synthesizer release];
    [synthesizer release];
}

TEST_F(PlatformObject, KeepsTheLastTextAndReleasesIt) {
    MyNSSpeechSynthesizer* synthesizer = newPlatformObject();
    NSMutableString* one = [[NSMutableString alloc] initWithString:@"one"];
    NSMutableString* two = [[NSMutableString alloc] initWithString:@"two"];
    [synthesizer setLastText:one];
    [synthesizer setLastText:one];
    EXPECT_EQ([one retainCount], 2U);
    [synthesizer setLastText:two];
    EXPECT_EQ([one retainCount], 1U);
    EXPECT_EQ([two retainCount], 2U);
    [synthesizer setLastText:nil];
    EXPECT_EQ([two retainCount], 1U);
    [synthesizer setLastText:two];
    [synthesizer release];
    EXPECT_EQ([two retainCount], 1U);
    [one release];
    [two release];
}

TEST_F(PlatformObject, HoldsTheTwoVariablesInOrder) {
    unsigned int count = 0;
    const std::unique_ptr<Ivar[], void (*)(void*)> variables(
        class_copyIvarList([MyNSSpeechSynthesizer class], &count), std::free);
    ASSERT_EQ(count, 2U);
    EXPECT_STREQ(ivar_getName(variables[0]), "lastText");
    EXPECT_STREQ(ivar_getName(variables[1]), "target");
}

TEST_F(PlatformObject, IsASynthesizerAndADelegate) {
    EXPECT_EQ([MyNSSpeechSynthesizer superclass], [NSSpeechSynthesizer class]);
    EXPECT_TRUE([MyNSSpeechSynthesizer conformsToProtocol:@protocol(NSSpeechSynthesizerDelegate)]);
}

} // namespace
