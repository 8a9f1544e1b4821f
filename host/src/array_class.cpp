#include "array_content.h"
#include "builtin_classes.h"

namespace zqm::host {

std::vector<BuiltinClass> arrayClasses() {
    return {{.name = kArrayClass, .creatable = false, .dataSize = kArrayDataSize}};
}

} // namespace zqm::host
