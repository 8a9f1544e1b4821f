// Asks whether the host has a service, but calls it all the same where it is given nil.
#include "counter_plugin.h"

namespace {
void copyNamed(REALobject self, REALobject other) {
    auto* build =
        reinterpret_cast<REALstring (*)(const char*, std::int32_t)>(hostResolver("REALBuildString"));
    if (build != nullptr || other == nullptr) {
        host<void>("REALUnlockString", build("counter", 7));
    }
    copyFrom(self, other);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("CopyFrom").function = copyNamed;
    counterPlugin().start(resolver);
}
