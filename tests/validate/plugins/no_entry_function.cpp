// Has its entry function under another name.
#include "counter_plugin.h"

extern "C" __attribute__((visibility("default"))) void pluginMain(REALresolver resolver);

void pluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
}
