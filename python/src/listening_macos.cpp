#include "listening.h"

#include "runtime.h"

namespace zqm::python {

void listenToFile(const std::optional<std::string>& path) {
    enter();
    if (path) {
        throw host::CallError("recognizers hear no sound files on this system");
    }
}

} // namespace zqm::python
