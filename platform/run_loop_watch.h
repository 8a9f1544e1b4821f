// The event hub's descriptor in the main thread's run loop.

#pragma once

namespace zqm::platform {

// From now on the run loop lets the hub dispatch whenever the descriptor is readable.
void watchOnMainRunLoop(int descriptor);

// While one of these lives, a C++ exception of a callback does not unwind Foundation's run loop, which
// would leave its state behind: it is kept, and rethrown by rethrowKept() once the run loop has returned.
class NativeExceptionKeeper {
public:
    NativeExceptionKeeper();
    NativeExceptionKeeper(const NativeExceptionKeeper&) = delete;
    NativeExceptionKeeper& operator=(const NativeExceptionKeeper&) = delete;
    ~NativeExceptionKeeper();

    void rethrowKept();
};

} // namespace zqm::platform
