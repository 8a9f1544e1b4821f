// Takes what the first start left to it for a string.
#include "counter_plugin.h"

namespace {
bool wasStarted = false;
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
    if (wasStarted) {
        host<void>("REALLockString", reinterpret_cast<REALstring>(&wasStarted));
    }
    wasStarted = true;
}
