// refused by: audit
// message: the library implements plantedAnswer, which the record does not know
#import <Foundation/Foundation.h>

@interface PlantedObject : NSObject
- (int)plantedAnswer;
@end

@implementation PlantedObject
- (int)plantedAnswer {
    return 1;
}
@end
