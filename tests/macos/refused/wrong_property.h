// refused by: declarations
// message: -[NSTimer setFireDate:]: parameter 1 is NSString *, recorded is NSDate *
#import <Foundation/Foundation.h>

@interface NSTimer : NSObject
@property(copy) NSString* fireDate;
@end
