// Starts a process for each object that is no child of its host's, and never ends it.
#include "counter_plugin.h"
#include "spawned_process.h"

#include <sys/wait.h>

namespace {
void initialiseWithOrphan(REALobject self) {
    initialise(self);
    waitpid(spawn("sleep 60 &"), nullptr, 0);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().record.constructor = initialiseWithOrphan;
    counterPlugin().start(resolver);
}
