// Counts more methods than its table has.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    CounterPlugin& plugin = counterPlugin();
    plugin.announce(resolver);
    plugin.fill().methodCount = 1'000'000;
    CounterPlugin::add(plugin.record);
}
