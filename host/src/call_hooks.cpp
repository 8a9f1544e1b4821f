#include "call_hooks.h"

#include "core.h"

#include <exception>

namespace zqm::host {

void CallHooks::called(Core& core) {
    const auto planned = codes_.extract(++calls_);
    if (planned.empty()) {
        return;
    }
    try {
        planned.mapped()();
    } catch (...) {
        core.keepThrown(std::current_exception());
    }
}

} // namespace zqm::host
