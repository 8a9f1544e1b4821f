// Looks for two services to take one of, and never thinks of a host that lacks both.
#include "counter_plugin.h"

namespace {
REALstring describeByEither(REALobject self, REALstring prefix) {
    const bool canGet = hostResolver("REALGetStringEncoding") != nullptr;
    const bool canSet = hostResolver("REALSetStringEncoding") != nullptr;
    if (!canGet && !canSet) {
        __builtin_trap();
    }
    return describe(self, prefix);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByEither;
    counterPlugin().start(resolver);
}
