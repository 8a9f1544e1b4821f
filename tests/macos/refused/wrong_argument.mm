// refused by: compiler
// message: cannot initialize a parameter of type 'float' with an rvalue of type 'NSString *'
#import <AppKit/AppKit.h>

void hurry(NSSpeechSynthesizer* synthesizer) {
    [synthesizer setRate:@"fast"];
}
