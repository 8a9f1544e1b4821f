// Asks whether the host makes objects, but not whether it has made this one.
#include "counter_plugin.h"

namespace {
REALobject twinForSure(REALobject self) {
    if (hostResolver("PluginNewInstance") == nullptr) {
        return nullptr;
    }
    REALobject made = host<REALobject>("PluginNewInstance", "Counter");
    dataOf(made).count = dataOf(self).count;
    return made;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Twin").function = twinForSure;
    counterPlugin().start(resolver);
}
