// The host class "NSSpeechRecognizerZQM": its life cycle and its record.

#include "plugin/guard.h"
#include "plugin/set_up.h"
#include "speech/recognizer_data.h"
#include "speech/recognizer_members.h"
#include "speech/records.h"

#include <iterator>

EventRecord recognizerEvents[RecognizerEventCount] = {
    {"DidRecognizeCommand(command as string)"},
};

namespace {

// ---- life cycle

void NSSpeechRecognizerConstructor(REALobject self) {
    guarded([&] {
        MyNSSpeechRecognizerZQM*& recognizer = recognizerOf(self);
        if (isAlreadyInitialized(recognizer)) {
            return;
        }
        CocoaInit();
        // The pool's until it has become the host object's, since the platform may raise before.
        MyNSSpeechRecognizerZQM* made = [[[MyNSSpeechRecognizerZQM alloc] init] autorelease];
        if (made == nil) {
            return;
        }
        [made setDelegate:made];
        made->target = self;
        recognizer = [made retain];
        rememberInstance(recognizer, self);
    });
}

void NSSpeechRecognizerDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        releaseInstance(recognizerOf(self));
    });
}

void Destructor(REALobject self) {
    guarded([&] {
        MyNSSpeechRecognizerZQM* recognizer = recognizerOf(self);
        if ([recognizer isKindOfClass:[MyNSSpeechRecognizerZQM class]]) {
            [recognizer clearTarget];
        }
    });
}

// ---- record

constexpr PropertyRecord kProperties[] = {
    {.name = "listensInForegroundOnly",
     .type = "Boolean",
     .getter = listensInForegroundOnly,
     .setter = setListensInForegroundOnly},
    {.name = "displayedCommandsTitle",
     .type = "String",
     .getter = displayedCommandsTitle,
     .setter = setDisplayedCommandsTitle},
    {.name = "blocksOtherRecognizers",
     .type = "Boolean",
     .getter = blocksOtherRecognizers,
     .setter = setBlocksOtherRecognizers},
};

constexpr MethodRecord kMethods[] = {
    {.function = Destructor, .declaration = "Destructor"},
    {.function = commands, .declaration = "commands as string()"},
    {.function = setCommands, .declaration = "setCommands(commands() as string)"},
    {.function = startListening, .declaration = "startListening"},
    {.function = stopListening, .declaration = "stopListening"},
};

} // namespace

constinit ClassRecord NSSpeechRecognizerClass = {
    .version = 13,
    .name = "NSSpeechRecognizerZQM",
    .dataSize = sizeof(RecognizerData),
    .constructor = NSSpeechRecognizerConstructor,
    .destructor = NSSpeechRecognizerDestructor,
    .properties = kProperties,
    .propertyCount = std::size(kProperties),
    .methods = kMethods,
    .methodCount = std::size(kMethods),
    .events = recognizerEvents,
    .eventCount = RecognizerEventCount,
};
