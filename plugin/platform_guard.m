#import "plugin/platform_guard.h"

#import <Foundation/Foundation.h>

NSException* runUnderPlatformGuard(void (*body)(void* context), void* context) {
    NSException* caught = nil;
    @try {
        body(context);
    } @catch (NSException* exception) {
        caught = [[exception retain] autorelease];
    }
    return caught;
}
