// Locks itself while it compares, and forgets that where there is nothing to compare.
#include "counter_plugin.h"

namespace {
bool isTitledAndLocked(REALobject self, REALstring title) {
    host<void>("REALLockObject", self);
    if (title == nullptr) {
        return false;
    }
    const bool result = isTitled(self, title);
    host<void>("REALUnlockObject", self);
    return result;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("IsTitled").function = isTitledAndLocked;
    counterPlugin().start(resolver);
}
