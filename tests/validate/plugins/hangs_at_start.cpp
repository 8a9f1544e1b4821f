// Waits in its entry function for something that never comes.
#include "counter_plugin.h"

#include <unistd.h>

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
    while (true) {
        pause();
    }
}
