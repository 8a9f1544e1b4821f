// Has a property without a name.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().properties.back().name = nullptr;
    counterPlugin().start(resolver);
}
