// Gives up a lock on its title that it hands to its caller.
#include "counter_plugin.h"

namespace {
REALstring titleOnce(REALobject self, std::int64_t /*parameter*/) {
    return dataOf(self).title;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().property("Title").getter = titleOnce;
    counterPlugin().start(resolver);
}
