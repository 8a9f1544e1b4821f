// refused by: declarations
// message: -[NSSpeechSynthesizer availableVoices]: the record has no such method
#import <AppKit/AppKit.h>

@interface NSSpeechSynthesizer (Planted)
- (NSArray*)availableVoices;
@end
