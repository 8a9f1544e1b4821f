// Ends the program when it is given what it can't use.
#include "counter_plugin.h"

#include <cstdlib>

namespace {
void stepOrExit(REALobject self, std::int64_t by) {
    if (by < 0) {
        std::exit(0); // NOLINT(concurrency-mt-unsafe): one thread
    }
    step(self, by);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepOrExit;
    counterPlugin().start(resolver);
}
