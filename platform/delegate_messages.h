// The messages by which a synthesizer's delegate hears of its events.

#pragma once

#include "platform/speech_event.h"

#import <AppKit/NSSpeechSynthesizer.h>

namespace zqm::platform {

SEL selectorOf(SpeechEvent::Kind kind);

// The object is kept alive meanwhile, whatever the delegate does. The string is the utterance's text.
void tell(id<NSSpeechSynthesizerDelegate> delegate, NSSpeechSynthesizer* object, const SpeechEvent& event,
          NSString* string);

} // namespace zqm::platform
