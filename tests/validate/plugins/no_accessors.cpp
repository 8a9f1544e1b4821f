// Has a property that can neither be read nor set.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().properties.back().getter = nullptr;
    counterPlugin().start(resolver);
}
