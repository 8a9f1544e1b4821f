// Locks itself while it counts, and forgets that where no "Constructor" has run.
#include "counter_plugin.h"

namespace {
struct MarkedCounter {
    Counter counter;
    bool isConstructed;
};

bool& isConstructed(REALobject self) {
    return reinterpret_cast<MarkedCounter&>(dataOf(self)).isConstructed;
}

void initialiseUnmarked(REALobject self) {
    initialise(self);
    isConstructed(self) = false;
}

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

CounterPlugin pluginWithMarks() {
    CounterPlugin plugin;
    plugin.record.dataSize = 32;
    plugin.record.constructor = initialiseUnmarked;
    plugin.methods = {
        {.function = constructorMarking, .declaration = "Constructor()"},
        {.function = stepAndLock, .declaration = "Step(by as Integer)"},
    };
    return plugin;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = (counterPlugin() = pluginWithMarks(), true);
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
