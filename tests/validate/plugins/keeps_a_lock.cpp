// Keeps a lock on every string that it makes.
#include "counter_plugin.h"

namespace {
REALstring describeAndKeep(REALobject self, REALstring prefix) {
    REALstring made = describe(self, prefix);
    if (made != nullptr) {
        host<void>("REALLockString", made);
    }
    return made;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeAndKeep;
    counterPlugin().start(resolver);
}
