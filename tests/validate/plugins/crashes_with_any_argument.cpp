// Follows a pointer that was never set, whatever it is given.
#include "counter_plugin.h"

namespace {
std::int64_t* volatile steps = nullptr;

void stepAndCount(REALobject self, std::int64_t by) {
    step(self, by);
    ++*steps;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepAndCount;
    counterPlugin().start(resolver);
}
