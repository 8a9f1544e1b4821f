// The host class "NSVoiceZQM": the attributes of one installed voice.

#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/set_up.h"
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
        NSDictionary*& attributes = instanceData<VoiceData>(self).attributes;
        if (attributes != nil) {
            forgetInstance(attributes);
            [attributes release];
            attributes = nil;
        }
    });
}

// Declared so that host code can't construct the class: voices come from the synthesizer.
void DummyConstructor(REALobject /*self*/) {}

constexpr MethodRecord kMethods[] = {
    {.function = DummyConstructor, .declaration = "Constructor", .flags = kUnconstructibleFlags},
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
};
