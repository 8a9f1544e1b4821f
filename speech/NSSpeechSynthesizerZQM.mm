// The host class "NSSpeechSynthesizerZQM": its life cycle, its constants and its record.

#include "plugin/autorelease_pool.h"
#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#include "speech/platform_constants.h"
#include "speech/records.h"
#include "speech/synthesizer_data.h"
#include "speech/synthesizer_members.h"

#include <iterator>

EventRecord synthesizerEvents[SynthesizerEventCount] = {
    {"didFinishSpeaking(finishedSpeaking as boolean)"},
    {"willSpeakWord(Position as integer, Length as integer, Text as String)"},
    {"willSpeakPhoneme(phonemeOpcode as integer)"},
    {"didEncounterErrorAtIndex(characterIndex as integer, text as string, message as string)"},
    {"didEncounterSyncMessage(message as string)"},
};

namespace {

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
        if (isAlreadyInitialized(synthesizer)) {
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
    {.function = objectForProperty,
     .declaration = "objectForProperty(PropertyName as string, byref error as NSErrorZQM) as Variant"},
    {.function = setObjectForProperty,
     .declaration = "setObjectForProperty(value as variant, PropertyName as string, "
                    "byref error as NSErrorZQM) as boolean"},
    {.function = DummyException, .declaration = "_exception as NSExceptionZQM"},
    {.function = addSpeechDictionary, .declaration = "addSpeechDictionary(speechDictionary as dictionary)"},
    {.function = pauseSpeakingAtBoundary, .declaration = "pauseSpeakingAtBoundary(boundary as integer)"},
    {.function = stopSpeakingAtBoundary, .declaration = "stopSpeakingAtBoundary(boundary as integer)"},
    {.function = phonemesFromText, .declaration = "phonemesFromText(text as string) as string"},
    {.function = continueSpeaking, .declaration = "continueSpeaking"},
    {.function = stopSpeaking, .declaration = "stopSpeaking"},
    {.function = initWithDefaultVoice, .declaration = "Constructor"},
    {.function = initWithVoice, .declaration = "Constructor(voice as string)"},
    {.function = setVoice, .declaration = "setVoice(Voice as String) as boolean"},
    {.function = startSpeakingString, .declaration = "startSpeakingString(Text as String) as boolean"},
    {.function = startSpeakingStringURL,
     .declaration = "startSpeakingString(Text as String, URL as string) as boolean"},
    {.function = startSpeakingStringFile,
     .declaration = "startSpeakingString(Text as String, File as folderitem) as boolean"},
    {.function = Destructor, .declaration = "Destructor"},
};

constexpr MethodRecord kSharedMethods[] = {
#define SPEECH_CONSTANT(constant) {.function = get##constant, .declaration = #constant " as String"},
#include "speech/speech_constants.def"
#undef SPEECH_CONSTANT
    {.function = isAnyApplicationSpeaking, .declaration = "isAnyApplicationSpeaking as Boolean"},
    {.function = availableVoice, .declaration = "availableVoice(index as integer) as String"},
    {.function = availableVoicesCount, .declaration = "availableVoicesCount as integer"},
    {.function = attributesForVoice, .declaration = "attributesForVoice(voice as String) as NSVoiceZQM"},
    {.function = defaultVoice, .declaration = "defaultVoice as String"},
    {.function = availableVoices, .declaration = "availableVoices as String()"},
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
