// refused by: compiler
// message: method 'copyWithZone:' in protocol 'NSCopying' not implemented
#import <Foundation/Foundation.h>

@interface PlantedObject : NSObject <NSCopying>
@end

@implementation PlantedObject
@end
