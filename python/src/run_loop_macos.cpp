// The system's run loop has no descriptor that could be waited for beside other things.

#include "run_loop.h"

#include "runtime.h"

#include <algorithm>
#include <chrono>
#include <pybind11/pybind11.h>
#include <thread>

namespace py = pybind11;

namespace zqm::python {

std::optional<int> eventDescriptor() {
    return std::nullopt;
}

void waitForEvents(double seconds) {
    constexpr double kBetweenLooks = 0.01; // words are spoken about every 0.3 s
    enter();
    {
        const py::gil_scoped_release others;
        std::this_thread::sleep_for(std::chrono::duration<double>(std::clamp(seconds, 0.0, kBetweenLooks)));
    }
    if (PyErr_CheckSignals() != 0) {
        throw py::error_already_set();
    }
}

std::optional<std::string> platformFolder() {
    return std::nullopt;
}

} // namespace zqm::python
