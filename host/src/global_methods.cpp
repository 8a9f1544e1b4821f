#include "global_methods.h"

#include "core.h"

#include <bit>
#include <vector>

namespace zqm::host {

namespace {

std::int64_t lenB(REALstring string) {
    Core* core = Core::active();
    if (core == nullptr || string == nullptr) {
        return 0;
    }
    const auto* handle = core->handles().find<StringHandle>(string, "LenB");
    return handle == nullptr ? 0 : static_cast<std::int64_t>(handle->bytes.size());
}

struct GlobalMethod {
    Declaration declaration;
    void* function;
};

const std::vector<GlobalMethod>& globalMethods() {
    static const std::vector<GlobalMethod> methods{
        {parseDeclaration("LenB(s as String) as Integer"), std::bit_cast<void*>(&lenB)},
    };
    return methods;
}

} // namespace

void* findGlobalMethod(const Declaration& wanted) {
    for (const GlobalMethod& method : globalMethods()) {
        if (sameSignature(method.declaration, wanted)) {
            return method.function;
        }
    }
    return nullptr;
}

} // namespace zqm::host
