// A plugin that ends its host.
#include "plugin/host_interface.h"

#include <cstdlib>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

void REALPluginMain(REALresolver) {
    std::_Exit(3);
}
