// The counter that knows whether a "Constructor" has run of it, for plugins that count on that.

#pragma once

#include "counter_plugin.h"

#include <utility>

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

// Which has no members but these; their constructors are to mark the object.
CounterPlugin pluginOfMarkedCounters(std::vector<MethodRecord> methods) {
    CounterPlugin plugin;
    plugin.record.dataSize = 32;
    plugin.record.constructor = initialiseUnmarked;
    plugin.methods = std::move(methods);
    return plugin;
}

} // namespace
