// The run loop.

#ifndef ZQM_CFRUNLOOP_H
#define ZQM_CFRUNLOOP_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef CFStringRef CFRunLoopMode;
typedef SInt32 CFRunLoopRunResult;

enum {
    kCFRunLoopRunFinished = 1,
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
    kCFRunLoopRunHandledSource = 4
};

CF_EXPORT const CFRunLoopMode kCFRunLoopDefaultMode;

// Runs the calling thread's run loop for so many seconds; 0 or less handles what is ready and returns. A
// mode in which nothing is watched waits out its time. With returnAfterSourceHandled it returns as soon as
// one speech callback was delivered, with kCFRunLoopRunHandledSource; otherwise with kCFRunLoopRunTimedOut.
// Each round has an autorelease pool of its own. May be called from within a callback. An exception out of
// a callback, Objective-C or native, comes out of here.
CF_EXPORT CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                                Boolean returnAfterSourceHandled);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
