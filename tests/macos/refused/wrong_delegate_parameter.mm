// refused by: compiler
// message: conflicting parameter types in implementation of 'speechSynthesizer:didFinishSpeaking:'
#import <AppKit/AppKit.h>

@interface PlantedDelegate : NSObject <NSSpeechSynthesizerDelegate>
@end

@implementation PlantedDelegate
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishSpeaking:(unsigned char)finished {
}
@end
