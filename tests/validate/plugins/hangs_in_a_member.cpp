// Counts up to a number, however far that is.
#include "counter_plugin.h"

namespace {
void stepOneByOne(REALobject self, std::int64_t by) {
    for (std::int64_t done = 0; done < by; ++done) {
        asm volatile(""); // no compiler knows the end of it
    }
    step(self, by);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepOneByOne;
    counterPlugin().start(resolver);
}
