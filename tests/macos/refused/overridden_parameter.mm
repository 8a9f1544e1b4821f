// refused by: compiler
// message: conflicting parameter types in implementation of 'setVolume:'
#import <AppKit/AppKit.h>

@interface PlantedSynthesizer : NSSpeechSynthesizer
@end

@implementation PlantedSynthesizer
- (void)setVolume:(double)volume {
}
@end
