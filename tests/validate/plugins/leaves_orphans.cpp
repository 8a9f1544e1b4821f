// Starts a process for each object that is no child of its host's, and never ends it.
#include "counter_plugin.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {
void initialiseWithOrphan(REALobject self) {
    initialise(self);
    const pid_t between = fork();
    if (between == 0) {
        if (fork() == 0) {
            sleep(60);
        }
        _exit(0);
    }
    waitpid(between, nullptr, 0);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().record.constructor = initialiseWithOrphan;
    counterPlugin().start(resolver);
}
