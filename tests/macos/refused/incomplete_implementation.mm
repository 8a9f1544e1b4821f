// refused by: compiler
// message: method definition for 'answer' not found
#import <Foundation/Foundation.h>

@interface PlantedObject : NSObject
- (int)answer;
@end

@implementation PlantedObject
@end
