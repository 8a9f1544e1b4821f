#import "speech/MyNSSpeechRecognizerZQM.h"

#include "plugin/host_events.h"

@implementation MyNSSpeechRecognizerZQM

// As a key of a dictionary it stands for itself: there is one recognizer, never a copy of it.
- (id)copyWithZone:(NSZone*)zone {
    return [self retain];
}

- (void)clearTarget {
    [self setDelegate:nil];
    target = nullptr;
}

- (void)speechRecognizer:(NSSpeechRecognizer*)sender didRecognizeCommand:(NSString*)command {
    raiseEvent(target, recognizerEvents[DidRecognizeCommand], command);
}

@end
