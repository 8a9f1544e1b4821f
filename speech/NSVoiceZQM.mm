// The host class "NSVoiceZQM": the attributes of one installed voice.

#include "bridge/dictionaries.h"
#include "plugin/autorelease_pool.h"
#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#include "speech/platform_constants.h"
#include "speech/records.h"
#include "speech/voice_data.h"

#include <iterator>

namespace {

void NSVoiceConstructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        attributesOf(self) = nil;
    });
}

void NSVoiceDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        releaseInstance(attributesOf(self));
    });
}

// Declared so that host code can't construct the class: voices come from the synthesizer.
void DummyConstructor(REALobject /*self*/) {}

// ---- attributes. The keys are weak: where the system has none of that name the attribute is missing.

REALobject queryDictionary(REALobject self) {
    return guarded([&] { return NSDictionaryRB(attributesOf(self)); });
}

REALstring textAttribute(REALobject self, NSString* key) {
    return guarded([&] { return hostString([attributesOf(self) objectForKey:key]); });
}

REALstring queryNSVoiceName(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceName));
}

REALstring queryNSVoiceIdentifier(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceIdentifier));
}

std::int64_t queryNSVoiceAge(REALobject self) {
    return guarded([&]() -> std::int64_t {
        return [[attributesOf(self) objectForKey:platformConstant(&NSVoiceAge)] intValue];
    });
}

REALstring queryNSVoiceGender(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceGender));
}

REALstring queryNSVoiceDemoText(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceDemoText));
}

REALstring queryNSVoiceLanguage(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceLanguage));
}

REALstring queryNSVoiceLocaleIdentifier(REALobject self) {
    return textAttribute(self, platformConstant(&NSVoiceLocaleIdentifier));
}

// ---- the platform's constants

// NOLINTBEGIN(bugprone-macro-parentheses): The parameter is a name
#define VOICE_CONSTANT(method, constant)                                                                     \
    REALstring get##constant() {                                                                             \
        AutoreleasePool pool;                                                                                \
        return hostString(platformConstant(&constant));                                                      \
    }
// NOLINTEND(bugprone-macro-parentheses)
#include "speech/voice_constants.def"
#undef VOICE_CONSTANT

constexpr MethodRecord kMethods[] = {
    {.function = DummyConstructor, .declaration = "Constructor", .flags = kUnconstructibleFlags},
    {.function = queryDictionary, .declaration = "Properties as Dictionary"},
    {.function = queryNSVoiceName, .declaration = "Name as String"},
    {.function = queryNSVoiceIdentifier, .declaration = "Identifier as String"},
    {.function = queryNSVoiceAge, .declaration = "Age as Integer"},
    {.function = queryNSVoiceGender, .declaration = "Gender as String"},
    {.function = queryNSVoiceDemoText, .declaration = "DemoText as String"},
    {.function = queryNSVoiceLanguage, .declaration = "Language as String"},
    {.function = queryNSVoiceLocaleIdentifier, .declaration = "LocaleIdentifier as String"},
};

constexpr MethodRecord kSharedMethods[] = {
#define VOICE_CONSTANT(method, constant) {.function = get##constant, .declaration = #method " as String"},
#include "speech/voice_constants.def"
#undef VOICE_CONSTANT
};

} // namespace

constinit ClassRecord NSVoiceClass = {
    .version = 13,
    .name = "NSVoiceZQM",
    .dataSize = sizeof(VoiceData),
    .constructor = NSVoiceConstructor,
    .destructor = NSVoiceDestructor,
    .methods = kMethods,
    .methodCount = std::size(kMethods),
    .sharedMethods = kSharedMethods,
    .sharedMethodCount = std::size(kSharedMethods),
};
