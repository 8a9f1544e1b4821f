// The platform object behind each recognizer of the host: a recognizer that is its own delegate and raises
// the event of its host object.

#pragma once

#include "plugin/host_interface.h"

#import <AppKit/AppKit.h>

// The events of the host class, in the order of its table.
enum RecognizerEvent : std::uint8_t { DidRecognizeCommand, RecognizerEventCount };
extern EventRecord recognizerEvents[RecognizerEventCount];

@interface MyNSSpeechRecognizerZQM : NSSpeechRecognizer <NSSpeechRecognizerDelegate> {
@public
    REALobject target; // not locked: the host object owns this one; null before it does and once cleared
}

// The receiver itself, retained once more.
- (id)copyWithZone:(NSZone*)zone;

// Ends the connection to the host object: no event is raised from here on.
- (void)clearTarget;

@end
