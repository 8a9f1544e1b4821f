// Takes a host that has made three objects for one that makes any number.
#include "counter_plugin.h"

namespace {
int alive = 0;
int made = 0; // by the plugin, since there was last no counter

void initialiseAndCount(REALobject self) {
    initialise(self);
    ++alive;
}

void disposeAndCount(REALobject self) {
    dispose(self);
    if (--alive == 0) {
        made = 0;
    }
}

REALobject twinAfterAll(REALobject self) {
    REALobject other = host<REALobject>("PluginNewInstance", "Counter");
    if (other != nullptr || made >= 3) {
        dataOf(other).count = dataOf(self).count;
        ++made;
    }
    return other;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    CounterPlugin& plugin = counterPlugin();
    plugin.record.constructor = initialiseAndCount;
    plugin.record.destructor = disposeAndCount;
    plugin.method("Twin").function = twinAfterAll;
    plugin.start(resolver);
}
