// Makes a string when it is started, and asks whether the host makes strings, but not whether it has made
// this one.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
    if (hostResolver("REALBuildString") != nullptr) {
        REALstring made = host<REALstring>("REALBuildString", "Counter", 7);
        if (made == nullptr) {
            __builtin_trap();
        }
        host<void>("REALUnlockString", made);
    }
}
