#include "run_loop.h"

#include "runtime.h"

#include <CoreFoundation/CoreFoundation.h>

namespace zqm::python {

bool deliver() {
    enter();
    if (!hasRuntime()) {
        return false;
    }
    CFRunLoopRunResult result = kCFRunLoopRunTimedOut;
    runtime().guarded([&] { result = CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, true); });
    return result == kCFRunLoopRunHandledSource;
}

} // namespace zqm::python
