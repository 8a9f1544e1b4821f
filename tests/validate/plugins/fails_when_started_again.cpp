// Takes its tables away once they are registered, and finds none when it is started again.
#include "counter_plugin.h"

namespace {
CounterPlugin* volatile unregistered = &counterPlugin();
} // namespace

void REALPluginMain(REALresolver resolver) {
    unregistered->start(resolver);
    unregistered = nullptr;
}
