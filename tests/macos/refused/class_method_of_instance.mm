// refused by: compiler
// message: instance method '-availableVoices' not found
#import <AppKit/AppKit.h>

NSArray* voices(NSSpeechSynthesizer* synthesizer) {
    return [synthesizer availableVoices];
}
