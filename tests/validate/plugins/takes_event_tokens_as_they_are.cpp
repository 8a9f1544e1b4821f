// Looks for the token of an event where all hosts but the oldest keep it.
#include "counter_plugin.h"

namespace {
void stepQuietly(REALobject self, std::int64_t by) {
    dataOf(self).count += by % 100;
    host<void*>("GetEventInstance", self, counterPlugin().events.front().hostToken);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepQuietly;
    counterPlugin().start(resolver);
}
