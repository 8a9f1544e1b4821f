// Remembers the last object it was given without a lock, and locks it later.
#include "counter_plugin.h"

namespace {
REALobject last = nullptr;

void copyFromLast(REALobject self, REALobject other) {
    copyFrom(self, other);
    if (last != nullptr) {
        host<void>("REALLockObject", last);
        host<void>("REALUnlockObject", last);
    }
    last = other;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("CopyFrom").function = copyFromLast;
    counterPlugin().start(resolver);
}
