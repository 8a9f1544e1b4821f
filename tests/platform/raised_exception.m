#import "tests/platform/raised_exception.h"

NSException* zqmExceptionRaisedBy(void (*body)(void* context), void* context) {
    @try {
        body(context);
    } @catch (NSException* exception) {
        return exception;
    }
    return nil;
}
