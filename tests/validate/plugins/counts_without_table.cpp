// Counts events, but has no table of them.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    CounterPlugin& plugin = counterPlugin();
    plugin.announce(resolver);
    plugin.fill().events = nullptr;
    CounterPlugin::add(plugin.record);
}
