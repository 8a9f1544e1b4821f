// Starts a process for each object and never ends it.
#include "counter_plugin.h"

#include <unistd.h>

namespace {
void initialiseWithProcess(REALobject self) {
    initialise(self);
    const pid_t plugin = getpid();
    if (fork() == 0) {
        while (getppid() == plugin) {
            usleep(50'000);
        }
        _exit(0);
    }
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().record.constructor = initialiseWithProcess;
    counterPlugin().start(resolver);
}
