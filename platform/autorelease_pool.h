// An autorelease pool that ends with its scope.

#pragma once

#include "platform/exception_guard.h"

#import <Foundation/Foundation.h>

#include <type_traits>

namespace zqm::platform {

class AutoreleasePool {
public:
    AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { [pool_ drain]; }

private:
    NSAutoreleasePool* pool_;
};

// Runs a body in a pool of its own. An NSException that leaves it would be freed with the pool: it is kept
// until it has left that too.
template <typename Body>
void runInPool(Body&& body) {
    NSException* raised = nil;
    {
        const AutoreleasePool pool;
        raised = zqmCatchException(
            [](void* context) { (*static_cast<std::remove_reference_t<Body>*>(context))(); }, &body);
    }
    if (raised != nil) {
        zqmThrowException([raised autorelease]);
    }
}

} // namespace zqm::platform
