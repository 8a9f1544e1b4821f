// Ends the process where it doesn't like the host.
#include "counter_plugin.h"

#include <cstdlib>

void REALPluginMain(REALresolver) {
    std::exit(0); // NOLINT(concurrency-mt-unsafe): one thread
}
