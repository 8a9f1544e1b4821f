// refused by: declarations
// message: NSTimer: adopts NSCopying, which is not recorded
#import <Foundation/Foundation.h>

@interface NSTimer : NSObject <NSCopying>
@end
