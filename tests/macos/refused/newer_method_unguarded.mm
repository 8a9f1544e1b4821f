// refused by: compiler
// message: 'plantedMethod' is only available on macOS 10.15 or newer
#import <Foundation/Foundation.h>

@interface NSString (Planted)
- (void)plantedMethod MACOS_AVAILABLE(introduced = 10.15);
@end

void send(NSString* string) {
    [string plantedMethod];
}
