// refused by: compiler
// message: method possibly missing a [super dealloc] call
#import <AppKit/AppKit.h>

@interface PlantedSynthesizer : NSSpeechSynthesizer
@end

@implementation PlantedSynthesizer
- (void)dealloc {
}
@end
