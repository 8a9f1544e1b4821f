// A plugin that never comes back from its start.
#include "plugin/host_interface.h"

#include <unistd.h>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

void REALPluginMain(REALresolver) {
    while (true) {
        pause();
    }
}
