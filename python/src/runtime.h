// The one host runtime of the process, and the thread that it belongs to.

#pragma once

#include <zqmhost/zqmhost.h>

namespace zqm::python {

// Called on another thread than Python's main thread, whose run loop events come from.
class ThreadError : public host::Error {
public:
    using host::Error::Error;
};

// To be called once, as the module is imported.
void findMainThread();
bool onMainThread();

// To be called in each process that Python forks, since objects of before are the parent's alone.
void afterFork();
// How many forks are between the process that loaded the module and this one.
unsigned forks();

// What every call into the host begins with: throws ThreadError elsewhere than on the main thread, where it
// lets go what other threads have dropped.
void enter();

// Made at the first call. Throws CallError once the runtime has ended.
host::Runtime& runtime();
bool hasRuntime();

// Ends all host objects. Handles that Python still holds are empty from then on.
void endRuntime();

} // namespace zqm::python
