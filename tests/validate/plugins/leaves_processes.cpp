// Starts a process for each object and never ends it.
#include "counter_plugin.h"
#include "spawned_process.h"

namespace {
void initialiseWithProcess(REALobject self) {
    initialise(self);
    spawn("exec sleep 60");
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().record.constructor = initialiseWithProcess;
    counterPlugin().start(resolver);
}
