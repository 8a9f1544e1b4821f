// Gives up a lock that is not its own, so that nothing can be called after it.
#include "counter_plugin.h"

namespace {
std::int64_t lastCount(REALobject self, std::int64_t parameter) {
    const std::int64_t result = count(self, parameter);
    host<void>("REALUnlockObject", self);
    return result;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().property("Count").getter = lastCount;
    counterPlugin().start(resolver);
}
