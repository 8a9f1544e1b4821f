// Announces the newest revision to every host.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    CounterPlugin& plugin = counterPlugin();
    hostResolver = resolver;
    revision = 13;
    host<void>("RegisterPluginVersion", revision);
    CounterPlugin::add(plugin.fill());
}
