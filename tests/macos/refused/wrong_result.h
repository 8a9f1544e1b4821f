// refused by: declarations
// message: -[NSString intValue]: returns NSInteger, recorded is int
#import <Foundation/Foundation.h>

@interface NSString (Planted)
- (NSInteger)intValue;
@end
