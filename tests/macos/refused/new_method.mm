// refused by: golden
// message: methods.txt does not list: -[PlantedObject hash] Q16@0:8
#import <Foundation/Foundation.h>

@interface PlantedObject : NSObject
@end

@implementation PlantedObject
- (NSUInteger)hash {
    return 1;
}
@end
