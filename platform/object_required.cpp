#include "platform/object_required.h"

#include <cstdio>
#include <cstdlib>

namespace zqm::platform {

void requireObject(CFTypeRef object, const char* function) {
    if (object == nullptr) {
        std::fprintf(stderr, "%s was called with null.\n", function);
        std::abort();
    }
}

} // namespace zqm::platform
