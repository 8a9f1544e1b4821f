// refused by: compiler
// message: conflicting return type in implementation of 'rate'
#import <AppKit/AppKit.h>

@interface PlantedSynthesizer : NSSpeechSynthesizer
@end

@implementation PlantedSynthesizer
- (int)rate {
    return 1;
}
@end
