// Exports a function of its own beside the entry function.
#include "counter_plugin.h"

extern "C" __attribute__((visibility("default"))) int counterHelper();

int counterHelper() {
    return 1;
}

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
}
