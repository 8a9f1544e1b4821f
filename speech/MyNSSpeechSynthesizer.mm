#import "speech/MyNSSpeechSynthesizer.h"

#include "plugin/host_events.h"

#include <objc/runtime.h>

namespace {

struct Callback {
    SEL selector;
    const EventRecord* event;
};

// The event that a delegate callback is raised as; null for any other selector.
const EventRecord* eventOfCallback(SEL selector) {
    const Callback callbacks[] = {
        {@selector(speechSynthesizer:didFinishSpeaking:), &synthesizerEvents[DidFinishSpeaking]},
        {@selector(speechSynthesizer:willSpeakWord:ofString:), &synthesizerEvents[WillSpeakWord]},
        {@selector(speechSynthesizer:willSpeakPhoneme:), &synthesizerEvents[WillSpeakPhoneme]},
        {@selector(speechSynthesizer:didEncounterErrorAtIndex:ofString:message:),
         &synthesizerEvents[DidEncounterErrorAtIndex]},
        {@selector(speechSynthesizer:didEncounterSyncMessage:), &synthesizerEvents[DidEncounterSyncMessage]},
    };
    for (const Callback& callback : callbacks) {
        if (sel_isEqual(callback.selector, selector)) {
            return callback.event;
        }
    }
    return nullptr;
}

std::int64_t hostInteger(NSUInteger value) {
    return static_cast<std::int64_t>(value);
}

} // namespace

@implementation MyNSSpeechSynthesizer

- (instancetype)initWithVoice:(NSString*)voice andTarget:(REALobject)hostObject {
    self = [super initWithVoice:voice];
    if (self == nil) {
        return nil;
    }
    target = hostObject;
    lastText = nil;
    [self setDelegate:self];
    return self;
}

- (void)dealloc {
    [lastText release];
    lastText = nil;
    target = nullptr;
    [super dealloc];
}

// As a key of a dictionary it stands for itself: there is one synthesizer, never a copy of it.
- (id)copyWithZone:(NSZone*)zone {
    return [self retain];
}

- (void)setLastText:(NSString*)text {
    [text retain];
    [lastText release];
    lastText = text;
}

- (void)clearTarget {
    [self setDelegate:nil];
    target = nullptr;
}

// The platform asks before each callback, so an event without a handler costs nothing.
- (BOOL)respondsToSelector:(SEL)selector {
    if (target != nullptr) {
        const EventRecord* event = eventOfCallback(selector);
        if (event != nullptr && eventHandler(target, *event) == nullptr) {
            return NO;
        }
    }
    return [super respondsToSelector:selector];
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishSpeaking:(BOOL)finishedSpeaking {
    raiseEvent(target, synthesizerEvents[DidFinishSpeaking],
               std::int64_t{static_cast<signed char>(finishedSpeaking)});
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
            willSpeakWord:(NSRange)range
                 ofString:(NSString*)string {
    raiseEvent(target, synthesizerEvents[WillSpeakWord], hostInteger(range.location),
               hostInteger(range.length), string);
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender willSpeakPhoneme:(short)opcode {
    raiseEvent(target, synthesizerEvents[WillSpeakPhoneme], std::int64_t{opcode});
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
    didEncounterErrorAtIndex:(NSUInteger)characterIndex
                    ofString:(NSString*)string
                     message:(NSString*)message {
    raiseEvent(target, synthesizerEvents[DidEncounterErrorAtIndex], hostInteger(characterIndex), string,
               message);
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didEncounterSyncMessage:(NSString*)message {
    raiseEvent(target, synthesizerEvents[DidEncounterSyncMessage], message);
}

@end
