// What the recognizers of this process do beyond telling their delegates of commands, and where they hear it
// from: for programs that show it, and for tests without a microphone. Plain C, for the main thread.

#ifndef ZQM_LISTENING_H
#define ZQM_LISTENING_H

#include "zqmplatform/linkage.h"

#include <stddef.h>

ZQM_EXTERN_C_BEGIN

// What happens; each tells with which members of the event.
typedef enum {
    ZQMListeningBegan = 1,          // sound arrives; the seconds of what follows count from here
    ZQMListeningFailed,             // none does, for `reason`; from a microphone it is tried again
    ZQMListeningLevel,              // how loud it is: `level`, ten times a second of sound
    ZQMListeningRecognized,         // a phrase from `begin` to `end`, and the `command` that it is
    ZQMListeningRejected,           // a phrase from `begin` to `end` that is none of the commands
    ZQMListeningEnded,              // all of a file was heard
    ZQMListeningCommandRefused,     // a `command` that can't be listened for, for `reason`
    ZQMListeningMoreCommandsRefused // after a hundred of those: `count` more that can't be, in all
} ZQMListeningEventKind;

// One of them; members that don't belong to it are zero.
typedef struct {
    ZQMListeningEventKind kind;
    double begin, end; // seconds of sound
    double level;      // decibels of full scale: 0 is the loudest there is
    // UTF-8, empty where there is nothing to tell; valid during the call.
    const char* command;
    const char* reason; // for people
    size_t count;
} ZQMListeningEvent;

typedef void (*ZQMListeningObserver)(const ZQMListeningEvent* event, void* context);

// Whom to tell of what happens from now on; NULL: nobody. Called from the run loop, of a command before its
// recognizer's delegate; of a recognizer that was stopped nothing more is told. It may do what a delegate
// may. Levels come of listening that is started while somebody observes.
ZQM_EXPORT void ZQMPlatformObserveListening(ZQMListeningObserver observer, void* context);

// The sound file that each startListening hears from now on, from its beginning and as fast as it can be
// read; NULL: the microphone. A relative path is one of the folder that is current now. At the file's end a
// recognizer goes on listening, and hears nothing, until it is stopped.
ZQM_EXPORT void ZQMPlatformListenToFile(const char* path);

ZQM_EXTERN_C_END

#endif
