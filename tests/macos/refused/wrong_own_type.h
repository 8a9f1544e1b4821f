// refused by: declarations
// message: -[NSString componentsSeparatedByString:]: returns instancetype, recorded is NSArray *
#import <Foundation/Foundation.h>

@interface NSString (Planted)
- (instancetype)componentsSeparatedByString:(NSString*)separator;
@end
