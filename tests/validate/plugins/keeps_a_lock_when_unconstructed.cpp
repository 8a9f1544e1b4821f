// Locks itself while it counts, and forgets that where no "Constructor" has run.
#include "marked_counter.h"

namespace {
void constructorMarking(REALobject self) {
    constructor(self);
    isConstructed(self) = true;
}

void stepAndLock(REALobject self, std::int64_t by) {
    host<void>("REALLockObject", self);
    if (isConstructed(self)) {
        step(self, by);
        host<void>("REALUnlockObject", self);
    }
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = (counterPlugin() = pluginOfMarkedCounters({
                                    {.function = constructorMarking, .declaration = "Constructor()"},
                                    {.function = stepAndLock, .declaration = "Step(by as Integer)"},
                                }),
                                true);
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
