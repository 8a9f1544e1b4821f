// A plugin that doesn't survive its own start.
#include "plugin/host_interface.h"

#include <csignal>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

void REALPluginMain(REALresolver) {
    std::raise(SIGSEGV);
}
