// Takes the other service where one is missing, and never thinks of a host that lacks both.
#include "counter_plugin.h"

namespace {
REALstring describeByEither(REALobject self, REALstring prefix) {
    if (hostResolver("REALGetStringEncoding") == nullptr &&
        hostResolver("REALSetStringEncoding") == nullptr) {
        __builtin_trap();
    }
    return describe(self, prefix);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByEither;
    counterPlugin().start(resolver);
}
