// A plugin that registers nothing.
#include "plugin/host_interface.h"

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

void REALPluginMain(REALresolver resolver) {
    resolver("REALGetRBVersion");
}
