// refused by: audit
// message: didFinishSpeaking:] has the types v28@0:8@16C24, which are not the recorded ones
#import <Foundation/Foundation.h>

@protocol NSSpeechSynthesizerDelegate <NSObject>
@optional
- (void)speechSynthesizer:(id)sender didFinishSpeaking:(unsigned char)finished;
@end

@interface PlantedDelegate : NSObject <NSSpeechSynthesizerDelegate>
@end

@implementation PlantedDelegate
- (void)speechSynthesizer:(id)sender didFinishSpeaking:(unsigned char)finished {
}
@end
