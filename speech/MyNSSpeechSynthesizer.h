// The platform object behind each constructed synthesizer of the host: a synthesizer that is its own
// delegate and raises the events of its host object.

#pragma once

#include "plugin/host_interface.h"

#import <AppKit/AppKit.h>

// The events of the host class, in the order of its table.
enum SynthesizerEvent : std::uint8_t {
    DidFinishSpeaking,
    WillSpeakWord,
    WillSpeakPhoneme,
    DidEncounterErrorAtIndex,
    DidEncounterSyncMessage,
    SynthesizerEventCount
};
extern EventRecord synthesizerEvents[SynthesizerEventCount];

@interface MyNSSpeechSynthesizer : NSSpeechSynthesizer <NSSpeechSynthesizerDelegate> {
    NSString* lastText; // retained: keeps the text alive while the platform speaks it
    REALobject target;  // not locked: the host object owns this one; null once cleared
}

// Answers nil for a voice that the platform doesn't know.
- (instancetype)initWithVoice:(NSString*)voice andTarget:(REALobject)hostObject;

// Retains the text that is about to be spoken, in place of the one before; nil is no text.
- (void)setLastText:(NSString*)text;

// The receiver itself, retained once more.
- (id)copyWithZone:(NSZone*)zone;

// Ends the connection to the host object: no event is raised from here on.
- (void)clearTarget;

@end
