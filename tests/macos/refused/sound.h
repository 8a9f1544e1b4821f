// refused by: nothing
// Declares some more of macOS, as it is.
#import <AppKit/AppKit.h>

typedef CFIndex CFRunLoopRunResult;

#define NSNotFound 0x7fffffffffffffffL

@protocol NSMutableCopying
- (id)mutableCopyWithZone:(NSZone*)zone;
@end

@interface NSLock : NSObject
+ (instancetype)new;
- (BOOL)tryLock;
@end

@interface NSThread : NSObject
+ (void)sleepForTimeInterval:(NSTimeInterval)seconds;
@end

@interface NSMutableString : NSString
- (void)appendFormat:(NSString*)format, ... __attribute__((format(NSString, 1, 2)));
- (void)replaceCharactersInRange:(NSRange)range withString:(NSString*)string;
@end

@interface NSTimer : NSObject
@property(copy) NSDate* fireDate;
@end

extern "C" {
extern NSString* const NSGenericException;
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex length, CFIndex* used);
}
