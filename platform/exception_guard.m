#import "platform/exception_guard.h"

NSException* zqmCatchException(void (*body)(void* context), void* context) {
    @try {
        body(context);
    } @catch (NSException* exception) {
        return [exception retain];
    }
    return nil;
}

void zqmThrowException(NSException* exception) {
    [exception raise];
    __builtin_unreachable();
}
