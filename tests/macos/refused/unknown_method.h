// refused by: declarations
// message: -[NSString stringByTrimmingSpaces]: the record has no such method
#import <Foundation/Foundation.h>

@interface NSString (Planted)
- (NSString*)stringByTrimmingSpaces;
@end
