#include "listening.h"

#include "runtime.h"

#include <zqmplatform/listening.h>

namespace zqm::python {

void listenToFile(const std::optional<std::string>& path) {
    enter();
    ZQMPlatformListenToFile(path ? path->c_str() : nullptr);
}

} // namespace zqm::python
