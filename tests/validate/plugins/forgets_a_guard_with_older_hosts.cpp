// Asks whether the host has a service, but calls it all the same with hosts of revision 9.
#include "counter_plugin.h"

namespace {
REALstring describeByRevision(REALobject self, REALstring prefix) {
    auto* encodingOf = reinterpret_cast<std::uint32_t (*)(REALstring)>(hostResolver("REALGetStringEncoding"));
    if (encodingOf == nullptr && revision > 9) {
        return describe(self, prefix);
    }
    return prefix != nullptr && encodingOf(prefix) == 0 ? nullptr : describe(self, prefix);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByRevision;
    counterPlugin().start(resolver);
}
