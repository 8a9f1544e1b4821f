// Calls a service without asking whether the host has it, where it is given nil.
#include "counter_plugin.h"

namespace {
void copyFromNothing(REALobject self, REALobject other) {
    if (other == nullptr) {
        auto* build =
            reinterpret_cast<REALstring (*)(const char*, std::int32_t)>(hostResolver("REALBuildString"));
        host<void>("REALUnlockString", build("nothing", 7));
    }
    copyFrom(self, other);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("CopyFrom").function = copyFromNothing;
    counterPlugin().start(resolver);
}
