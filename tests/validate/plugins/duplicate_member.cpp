// Has two properties of one name.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().properties.back().name = "Count";
    counterPlugin().start(resolver);
}
