// The NSException that something raises. Only a plain Objective-C source can catch one (raised_exception.m).

#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C"
#endif
    NSException*
    zqmExceptionRaisedBy(void (*body)(void* context), void* context);

#ifdef __cplusplus
#include <utility>

namespace zqm::platform::test {

// nil: none.
template <typename Body>
NSException* raisedBy(Body&& body) {
    return zqmExceptionRaisedBy(
        [](void* context) { (*static_cast<std::remove_reference_t<Body>*>(context))(); }, &body);
}

} // namespace zqm::platform::test
#endif
