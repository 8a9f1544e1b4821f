#include "runtime.h"

#include "handle.h"

#include <pybind11/pybind11.h>

namespace py = pybind11;

namespace zqm::python {

namespace {

unsigned long mainThread = 0;
unsigned forkCount = 0;
bool ended = false;
// Not destroyed with the process's other statics: the interpreter, which handlers need, has ended by then.
host::Runtime* theRuntime = nullptr;

} // namespace

void findMainThread() {
    mainThread = py::module_::import("threading").attr("main_thread")().attr("ident").cast<unsigned long>();
}

bool onMainThread() {
    return PyThread_get_thread_ident() == mainThread;
}

void afterFork() {
    ++forkCount;
}

unsigned forks() {
    return forkCount;
}

void enter() {
    if (!onMainThread()) {
        throw ThreadError("host objects live on the main thread alone; this is another one");
    }
    releaseDropped();
}

host::Runtime& runtime() {
    if (ended) {
        throw host::CallError("the host runtime has ended with the interpreter");
    }
    if (theRuntime == nullptr) {
        theRuntime = new host::Runtime;
    }
    return *theRuntime;
}

bool hasRuntime() {
    return theRuntime != nullptr;
}

void endRuntime() {
    enter();
    ended = true;
    delete std::exchange(theRuntime, nullptr);
}

} // namespace zqm::python
