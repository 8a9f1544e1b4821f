#include "handle.h"

#include "runtime.h"

#include <mutex>
#include <pybind11/pybind11.h>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace zqm::python {

namespace {

std::mutex droppedMutex;
std::vector<host::Object> dropped;

void release(host::Object object) {
    const py::error_scope keptError; // this may run while an exception is on its way
    try {
        object.reset();
    } catch (py::error_already_set& error) {
        error.discard_as_unraisable("the end of a host object");
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
        PyErr_WriteUnraisable(py::str("the end of a host object").ptr());
    }
}

int releasePending(void* /*context*/) {
    releaseDropped();
    return 0;
}

} // namespace

Handle::~Handle() {
    if (onMainThread()) {
        release(std::move(object_));
        return;
    }
    const std::scoped_lock lock(droppedMutex);
    dropped.push_back(std::move(object_));
    // Where Python has no room for the call, the next one into the host does it.
    Py_AddPendingCall(releasePending, nullptr);
}

host::Object& Handle::object() {
    if (forks_ != forks()) {
        throw host::CallError("this object belongs to the process that this one was forked from");
    }
    return object_;
}

void releaseDropped() {
    std::vector<host::Object> objects;
    {
        const std::scoped_lock lock(droppedMutex);
        objects.swap(dropped);
    }
    for (host::Object& object : objects) {
        release(std::move(object));
    }
}

} // namespace zqm::python
