// Runs a body and stops an NSException on its way out of it. The work is done in a plain Objective-C source:
// GCC's @catch does not work in Objective-C++. Exceptions of C++ pass.

#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

// The exception, with a reference that the caller owns; nil: none.
NSException* zqmCatchException(void (*body)(void* context), void* context);

// Raises it again, as it is.
void zqmThrowException(NSException* exception) __attribute__((noreturn));

#ifdef __cplusplus
}
#endif
