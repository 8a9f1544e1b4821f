// A plugin that stops its whole group of processes.
#include "plugin/host_interface.h"

#include <csignal>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

void REALPluginMain(REALresolver) {
    kill(0, SIGSTOP);
}
