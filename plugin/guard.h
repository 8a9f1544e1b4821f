// The guard that every function called by the host wears: a pool for what the platform autoreleases, and
// around the body a catch for platform exceptions, which become host exceptions.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/host_errors.h"
#include "plugin/platform_guard.h"

#include <type_traits>

// Runs the body and answers its result; after a platform exception, which is raised into the host, the
// neutral result. Native exceptions pass through.
template <typename Body>
std::invoke_result_t<Body> guarded(Body&& body) {
    using Result = std::invoke_result_t<Body>;
    AutoreleasePool pool;
    if constexpr (std::is_void_v<Result>) {
        raiseIfCaught(runUnderPlatformGuard(body));
    } else {
        Result result{};
        bool failed = raiseIfCaught(runUnderPlatformGuard([&] { result = body(); }));
        return failed ? Result{} : result;
    }
}
