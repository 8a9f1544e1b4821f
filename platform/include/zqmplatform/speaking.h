// What the synthesizers of this process tell their delegates, and when in the sound it is heard: for programs
// that show or write it down. Plain C, for the main thread.

#ifndef ZQM_SPEAKING_H
#define ZQM_SPEAKING_H

#include "zqmplatform/linkage.h"

#include <stddef.h>
#include <stdint.h>

ZQM_EXTERN_C_BEGIN

// What is told, and with which members of the event.
typedef enum {
    ZQMSpeakingWord = 1, // at `position`, of `length`
    ZQMSpeakingPhoneme,  // of `opcode` and `symbol`; it lasts to the next one
    ZQMSpeakingSync,     // `message`
    ZQMSpeakingProblem,  // a mistake in the text at `position`: `text`
    ZQMSpeakingFinished  // `completed` or not; the last of an utterance
} ZQMSpeakingEventKind;

// One of them; members that don't belong to it are zero.
typedef struct {
    ZQMSpeakingEventKind kind;
    // Seconds of the utterance's sound at which it is heard, from 0; of the finish: how long the sound is.
    // What is told again after a pause has the time that it had. Of sound to be heard that was stopped, or
    // whose engine ended, the finish has the time of the last that was told.
    double time;
    size_t position, length; // UTF-16 units of the text, its commands included
    int opcode;              // the number of NSSpeechSynthesizer's phonemes
    // UTF-8, empty where there is nothing to tell; valid during the call.
    const char* symbol; // of a phoneme, as in phoneme text
    const char* text;   // for people
    uint32_t message;
    int completed;
} ZQMSpeakingEvent;

typedef void (*ZQMSpeakingObserver)(const ZQMSpeakingEvent* event, void* context);

// Whom to tell of what is spoken from now on; NULL: nobody. Called from the run loop, of each event before
// its synthesizer's delegate, whether that wants it or not. It may do what a delegate may.
ZQM_EXPORT void ZQMPlatformObserveSpeaking(ZQMSpeakingObserver observer, void* context);

ZQM_EXTERN_C_END

#endif
