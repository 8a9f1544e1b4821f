// Calls a service without asking whether the host has it.
#include "counter_plugin.h"

namespace {
REALstring describeByService(REALobject self, REALstring prefix) {
    auto* encodingOf = reinterpret_cast<std::uint32_t (*)(REALstring)>(hostResolver("REALGetStringEncoding"));
    return prefix != nullptr && encodingOf(prefix) == 0 ? nullptr : describe(self, prefix);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByService;
    counterPlugin().start(resolver);
}
