// Has a function for the newest revision alone, and calls it with any host.
#include "counter_plugin.h"

namespace {
using Step = void (*)(REALobject, std::int64_t);

Step newestStep() {
    return revision >= 13 ? step : nullptr;
}

void stepByRevision(REALobject self, std::int64_t by) {
    newestStep()(self, by);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepByRevision;
    counterPlugin().start(resolver);
}
