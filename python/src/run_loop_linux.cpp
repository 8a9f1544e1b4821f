// The platform library has all that engines say on one descriptor.

#include "run_loop.h"

#include "runtime.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <cmath>
#include <dlfcn.h>
#include <poll.h>
#include <pybind11/pybind11.h>

// Readable whenever the run loop has something to do; -1 when the system has no descriptors left.
extern "C" int ZQMPlatformEventDescriptor(void);

namespace py = pybind11;

namespace zqm::python {

std::optional<int> eventDescriptor() {
    enter();
    const int descriptor = ZQMPlatformEventDescriptor();
    return descriptor < 0 ? std::nullopt : std::optional(descriptor);
}

void waitForEvents(double seconds) {
    constexpr double kLongest = 1;
    const int milliseconds = static_cast<int>(std::ceil(std::clamp(seconds, 0.0, kLongest) * 1000));
    pollfd watched{eventDescriptor().value_or(-1), POLLIN, 0}; // one below 0 is passed over
    {
        const py::gil_scoped_release others;
        ::poll(&watched, 1, milliseconds);
    }
    if (PyErr_CheckSignals() != 0) {
        throw py::error_already_set();
    }
}

std::optional<std::string> platformFolder() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<const void*>(&CFRunLoopRunInMode), &info) == 0 ||
        info.dli_fname == nullptr) {
        return std::nullopt;
    }
    const std::string file = info.dli_fname;
    return file.substr(0, file.rfind('/'));
}

} // namespace zqm::python
