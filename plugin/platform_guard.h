// The one place where platform exceptions are caught. It is plain Objective-C because not every compiler
// that builds this library can catch them in a function that is compiled as C++.

#pragma once

@class NSException;

#ifdef __cplusplus
extern "C" {
#endif

// Runs body(context). Answers the platform exception that escaped it (autoreleased), or nil. Native
// exceptions pass through.
NSException* runUnderPlatformGuard(void (*body)(void* context), void* context);

#ifdef __cplusplus
}

// The same for any callable.
template <typename Body>
NSException* runUnderPlatformGuard(Body&& body) {
    return runUnderPlatformGuard([](void* context) { (*static_cast<decltype(&body)>(context))(); }, &body);
}
#endif
