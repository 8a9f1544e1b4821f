// Takes every object for a real one.
#include "counter_plugin.h"

namespace {
void copyFromAny(REALobject self, REALobject other) {
    dataOf(self).count = dataOf(other).count;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("CopyFrom").function = copyFromAny;
    counterPlugin().start(resolver);
}
