// A host object as Python holds it. Python may drop its last reference on any thread, and its garbage
// collector does; the host's objects end on the main thread alone, so that what is dropped elsewhere waits
// for it.

#pragma once

#include "runtime.h"

#include <zqmhost/zqmhost.h>

#include <cstdint>

namespace zqm::python {

class Handle {
public:
    explicit Handle(host::Object object) : object_(std::move(object)), forks_(forks()) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    // What the object's end raises is told as Python tells what a `__del__` raised.
    ~Handle();

    // Throws CallError in a process that was forked since.
    host::Object& object();
    // The same for all handles of one object.
    std::uintptr_t address() const { return reinterpret_cast<std::uintptr_t>(object_.handle()); }

private:
    host::Object object_;
    unsigned forks_; // at its beginning
};

// Lets go what other threads have dropped; on the main thread.
void releaseDropped();

} // namespace zqm::python
