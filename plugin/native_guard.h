// The guard of the few functions whose own C++ code can throw: native exceptions become host exceptions.

#pragma once

#include "plugin/platform_guard.h"

#import <Foundation/Foundation.h>
#include <type_traits>

// To be called while an exception is being handled: raises the host exception for the kind of a native one.
// What is no native exception, such as the end of a thread, goes on.
void raiseCurrentNativeException();

// Runs the body and answers its result; after a native exception, which is raised into the host, the
// neutral result. `catch (...)` would take a platform exception too, so the body runs in a platform guard
// and what that caught is thrown again outside.
template <typename Body>
std::invoke_result_t<Body> nativeGuarded(Body&& body) {
    std::invoke_result_t<Body> result{};
    NSException* platformException = nil;
    try {
        platformException = runUnderPlatformGuard([&] { result = body(); });
    } catch (...) {
        raiseCurrentNativeException();
        return {};
    }
    [platformException raise];
    return result;
}
