// Nothing is wrong with it.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
}
