// Opens a file for each object and never closes it.
#include "counter_plugin.h"

#include <fcntl.h>

namespace {
void initialiseWithFile(REALobject self) {
    initialise(self);
    open("/dev/null", O_RDONLY | O_CLOEXEC);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().record.constructor = initialiseWithFile;
    counterPlugin().start(resolver);
}
