// refused by: audit
// message: speechRecognizer:willSpeakPhoneme:] is none of the methods of NSSpeechRecognizerDelegate
#import <AppKit/AppKit.h>

@interface PlantedDelegate : NSObject <NSSpeechRecognizerDelegate>
@end

@implementation PlantedDelegate
- (void)speechRecognizer:(NSSpeechRecognizer*)sender willSpeakPhoneme:(short)opcode {
}
@end
