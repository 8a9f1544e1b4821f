// refused by: compiler
// message: conflicting return type in implementation of 'speechSynthesizer:willSpeakPhoneme:'
#import <AppKit/AppKit.h>

@interface PlantedDelegate : NSObject <NSSpeechSynthesizerDelegate>
@end

@implementation PlantedDelegate
- (BOOL)speechSynthesizer:(NSSpeechSynthesizer*)sender willSpeakPhoneme:(short)opcode {
    return NO;
}
@end
