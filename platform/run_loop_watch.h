// The event hub's descriptor in the main thread's run loop.

#pragma once

namespace zqm::platform {

// Both are false where the process has no run loop yet and no descriptors for one.

// From now on the run loop lets the hub dispatch whenever the descriptor is readable.
bool watchOnMainRunLoop(int descriptor);

// After a moment the run loop lets the hub recover.
bool recoverOnMainRunLoop();

// While one of these lives, an exception of a callback, native or NSException, does not unwind Foundation's
// run loop, which would leave memory and state behind: it is kept, and thrown again by rethrowKept() once the
// run loop has returned.
class ExceptionKeeper {
public:
    ExceptionKeeper();
    ExceptionKeeper(const ExceptionKeeper&) = delete;
    ExceptionKeeper& operator=(const ExceptionKeeper&) = delete;
    ~ExceptionKeeper();

    void rethrowKept();
};

} // namespace zqm::platform
