// refused by: audit
// message: didFinishedSpeaking:] is none of the methods of NSSpeechSynthesizerDelegate
// message: the library implements speechSynthesizer:didFinishedSpeaking:, which the record does not know
#import <AppKit/AppKit.h>

@interface PlantedDelegate : NSObject <NSSpeechSynthesizerDelegate>
@end

@implementation PlantedDelegate
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishedSpeaking:(BOOL)finished {
}
@end
