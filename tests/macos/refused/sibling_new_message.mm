// refused by: golden
// message: selectors_sent.txt does not list: stopSpeaking
// library: ZQMFoundation
#import <AppKit/AppKit.h>

void finish(NSSpeechSynthesizer* synthesizer) {
    [synthesizer stopSpeaking];
}
