// refused by: declarations
// message: -[NSString hasPrefix:]: parameter 1 is NSArray *, recorded is NSString *
#import <Foundation/Foundation.h>

@interface NSString (Planted)
- (BOOL)hasPrefix:(NSArray*)prefix;
@end
