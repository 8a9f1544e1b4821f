// refused by: declarations
// message: NSPlanted: the record has no such class
#import <Foundation/Foundation.h>

@interface NSPlanted : NSObject
@end
