// The host class "NSVoiceZQM": the attributes of one installed voice.

#include "plugin/autorelease_pool.h"
#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#include "speech/platform_constants.h"
#include "speech/records.h"

#include <iterator>

namespace {

// One retain is the host object's; nil until the object is made for a voice.
struct VoiceData {
    NSDictionary* attributes;
};

void NSVoiceConstructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        instanceData<VoiceData>(self).attributes = nil;
    });
}

void NSVoiceDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        releaseInstance(instanceData<VoiceData>(self).attributes);
    });
}

// Declared so that host code can't construct the class: voices come from the synthesizer.
void DummyConstructor(REALobject /*self*/) {}

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
