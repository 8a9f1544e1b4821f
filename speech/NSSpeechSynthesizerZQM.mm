// The host class "NSSpeechSynthesizerZQM": its life cycle, its members and its record.

#include "plugin/autorelease_pool.h"
#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#import "speech/MyNSSpeechSynthesizer.h"
#include "speech/platform_constants.h"
#include "speech/records.h"

#include <iterator>

EventRecord synthesizerEvents[SynthesizerEventCount] = {
    {"didFinishSpeaking(finishedSpeaking as boolean)"},
    {"willSpeakWord(Position as integer, Length as integer, Text as String)"},
    {"willSpeakPhoneme(phonemeOpcode as integer)"},
    {"didEncounterErrorAtIndex(characterIndex as integer, text as string, message as string)"},
    {"didEncounterSyncMessage(message as string)"},
};

namespace {

// What the host keeps for each object. One retain is the host object's; nil until it is constructed.
struct SynthesizerData {
    MyNSSpeechSynthesizer* synthesizer;
};

MyNSSpeechSynthesizer*& synthesizerOf(REALobject self) {
    return instanceData<SynthesizerData>(self).synthesizer;
}

// ---- life cycle

void NSSpeechSynthesizerConstructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        synthesizerOf(self) = nil;
    });
}

void NSSpeechSynthesizerDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        releaseInstance(synthesizerOf(self));
    });
}

void initWithVoice(REALobject self, REALstring voice) {
    guarded([&] {
        MyNSSpeechSynthesizer*& synthesizer = synthesizerOf(self);
        if (synthesizer != nil) {
            RaiseException("UnsupportedOperationException",
                           "Constructor called too often. Object is already initialized.", 0, 0);
            return;
        }
        CocoaInit();
        NSString* identifier = platformString(voice);
        if (identifier == nil) {
            identifier = [NSSpeechSynthesizer defaultVoice];
        }
        synthesizer = [[MyNSSpeechSynthesizer alloc] initWithVoice:identifier andTarget:self];
        if (synthesizer != nil) {
            rememberInstance(synthesizer, self);
        }
    });
}

void initWithDefaultVoice(REALobject self) {
    initWithVoice(self, nullptr);
}

void Destructor(REALobject self) {
    guarded([&] {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        if ([synthesizer isKindOfClass:[MyNSSpeechSynthesizer class]]) {
            [synthesizer clearTarget];
        }
    });
}

// Never called for its answer: its declaration makes the host know the class "NSExceptionZQM".
REALobject DummyException(REALobject /*self*/) {
    return nullptr;
}

// ---- speaking

bool startSpeakingString(REALobject self, REALstring text) {
    return guarded([&]() -> bool {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        if (synthesizer == nil) {
            return false;
        }
        NSString* string = platformString(text);
        [synthesizer setLastText:string];
        return [synthesizer startSpeakingString:string];
    });
}

// Autoreleased; nil for a null string and for what is no URL.
NSURL* platformURL(REALstring string) {
    CFStringRef text = RBString2CFString(string);
    if (text == nullptr) {
        return nil;
    }
    CFURLRef url = CFURLCreateWithString(nullptr, text, nullptr);
    CFRelease(text);
    return [reinterpret_cast<NSURL*>(const_cast<void*>(static_cast<const void*>(url))) autorelease];
}

bool startSpeakingStringURL(REALobject self, REALstring text, REALstring url) {
    return guarded([&]() -> bool {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        if (synthesizer == nil) {
            return false;
        }
        NSString* string = platformString(text);
        NSURL* file = platformURL(url);
        [synthesizer setLastText:string];
        return [synthesizer startSpeakingString:string toURL:file];
    });
}

void stopSpeaking(REALobject self) {
    guarded([&] { [synthesizerOf(self) stopSpeaking]; });
}

// ---- properties. A message to nil answers zero, but not reliably where the answer is a float.

double volume(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> double {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        return synthesizer != nil ? [synthesizer volume] : 0.0F;
    });
}

void setVolume(REALobject self, std::int64_t /*parameter*/, double value) {
    guarded([&] { [synthesizerOf(self) setVolume:static_cast<float>(value)]; });
}

double rate(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> double {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        return synthesizer != nil ? [synthesizer rate] : 0.0F;
    });
}

void setRate(REALobject self, std::int64_t /*parameter*/, double value) {
    guarded([&] { [synthesizerOf(self) setRate:static_cast<float>(value)]; });
}

bool isSpeaking(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [synthesizerOf(self) isSpeaking]; });
}

bool usesFeedbackWindow(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [synthesizerOf(self) usesFeedbackWindow]; });
}

void setUsesFeedbackWindow(REALobject self, std::int64_t /*parameter*/, bool value) {
    guarded([&] { [synthesizerOf(self) setUsesFeedbackWindow:value]; });
}

REALstring voice(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&] { return hostString([synthesizerOf(self) voice]); });
}

void setVoice2(REALobject self, std::int64_t /*parameter*/, REALstring value) {
    guarded([&] { [synthesizerOf(self) setVoice:platformString(value)]; });
}

// ---- the platform's constants

// NOLINTBEGIN(bugprone-macro-parentheses): The parameter is a name
#define SPEECH_CONSTANT(constant)                                                                            \
    REALstring get##constant() {                                                                             \
        AutoreleasePool pool;                                                                                \
        return hostString(platformConstant(&constant));                                                      \
    }
// NOLINTEND(bugprone-macro-parentheses)
#include "speech/speech_constants.def"
#undef SPEECH_CONSTANT

// ---- record

constexpr PropertyRecord kProperties[] = {
    {.name = "Volume", .type = "Double", .getter = volume, .setter = setVolume},
    {.name = "Rate", .type = "Double", .getter = rate, .setter = setRate},
    {.name = "isSpeaking", .type = "Boolean", .getter = isSpeaking},
    {.name = "usesFeedbackWindow",
     .type = "Boolean",
     .getter = usesFeedbackWindow,
     .setter = setUsesFeedbackWindow},
    {.name = "voice", .type = "String", .getter = voice, .setter = setVoice2},
};

constexpr MethodRecord kMethods[] = {
    {.function = DummyException, .declaration = "_exception as NSExceptionZQM"},
    {.function = stopSpeaking, .declaration = "stopSpeaking"},
    {.function = initWithDefaultVoice, .declaration = "Constructor"},
    {.function = initWithVoice, .declaration = "Constructor(voice as string)"},
    {.function = startSpeakingString, .declaration = "startSpeakingString(Text as String) as boolean"},
    {.function = startSpeakingStringURL,
     .declaration = "startSpeakingString(Text as String, URL as string) as boolean"},
    {.function = Destructor, .declaration = "Destructor"},
};

constexpr MethodRecord kSharedMethods[] = {
#define SPEECH_CONSTANT(constant) {.function = get##constant, .declaration = #constant " as String"},
#include "speech/speech_constants.def"
#undef SPEECH_CONSTANT
};

constexpr ConstantRecord kConstants[] = {
    {"NSSpeechImmediateBoundary=0"},
    {"NSSpeechWordBoundary=1"},
    {"NSSpeechSentenceBoundary=2"},
};

} // namespace

constinit ClassRecord NSSpeechSynthesizerClass = {
    .version = 13,
    .name = "NSSpeechSynthesizerZQM",
    .dataSize = sizeof(SynthesizerData),
    .constructor = NSSpeechSynthesizerConstructor,
    .destructor = NSSpeechSynthesizerDestructor,
    .properties = kProperties,
    .propertyCount = std::size(kProperties),
    .methods = kMethods,
    .methodCount = std::size(kMethods),
    .events = synthesizerEvents,
    .eventCount = SynthesizerEventCount,
    .constants = kConstants,
    .constantCount = std::size(kConstants),
    .sharedMethods = kSharedMethods,
    .sharedMethodCount = std::size(kSharedMethods),
};
