// The host class "NSSpeechRecognizerZQM": recognition of spoken commands.

#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/set_up.h"
#include "speech/records.h"

namespace {

// One retain is the host object's; nil where the platform has no recognizer.
struct RecognizerData {
    id recognizer;
};

void NSSpeechRecognizerConstructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        instanceData<RecognizerData>(self).recognizer = nil;
    });
}

void NSSpeechRecognizerDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        releaseInstance(instanceData<RecognizerData>(self).recognizer);
    });
}

} // namespace

constinit ClassRecord NSSpeechRecognizerClass = {
    .version = 13,
    .name = "NSSpeechRecognizerZQM",
    .dataSize = sizeof(RecognizerData),
    .constructor = NSSpeechRecognizerConstructor,
    .destructor = NSSpeechRecognizerDestructor,
};
