// Calls a service without asking whether the host has it, with hosts of revision 9 alone.
#include "counter_plugin.h"

namespace {
REALstring describeByRevision(REALobject self, REALstring prefix) {
    if (revision > 9) {
        return describe(self, prefix);
    }
    auto* encodingOf = reinterpret_cast<std::uint32_t (*)(REALstring)>(hostResolver("REALGetStringEncoding"));
    return prefix != nullptr && encodingOf(prefix) == 0 ? nullptr : describe(self, prefix);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByRevision;
    counterPlugin().start(resolver);
}
