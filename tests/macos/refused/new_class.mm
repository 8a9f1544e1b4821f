// refused by: golden
// message: classes.txt does not list: PlantedObject : NSObject
#import <Foundation/Foundation.h>

@interface PlantedObject : NSObject
@end

@implementation PlantedObject
@end
