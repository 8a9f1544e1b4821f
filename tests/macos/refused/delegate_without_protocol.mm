// refused by: compiler
// message: sending 'PlantedObject *' to parameter of type 'id<NSSpeechSynthesizerDelegate>'
#import <AppKit/AppKit.h>

@interface PlantedObject : NSObject
@end

@implementation PlantedObject
@end

void attach(NSSpeechSynthesizer* synthesizer, PlantedObject* object) {
    [synthesizer setDelegate:object];
}
