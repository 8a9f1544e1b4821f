// Counts on a "Constructor" to have run of what it is given, and has none without a title.
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

void constructorMarking(REALobject self, REALstring title) {
    titledConstructor(self, title);
    isConstructed(self) = true;
}

void copyFromConstructed(REALobject self, REALobject other) {
    if (other != nullptr && !isConstructed(other)) {
        __builtin_trap();
    }
    copyFrom(self, other);
}

CounterPlugin pluginWithMarks() {
    CounterPlugin plugin;
    plugin.record.dataSize = 32;
    plugin.record.constructor = initialiseUnmarked;
    plugin.methods = {
        {.function = constructorMarking, .declaration = "Constructor(title as String)"},
        {.function = copyFromConstructed, .declaration = "CopyFrom(other as Counter)"},
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
