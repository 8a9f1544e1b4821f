// refused by: declarations
// message: NSTimer: superclass is NSString, recorded is NSObject
#import <Foundation/Foundation.h>

@interface NSTimer : NSString
@end
