// Uses its tables before it has made them.
#include "counter_plugin.h"

namespace {
CounterPlugin* volatile tables = nullptr;
} // namespace

void REALPluginMain(REALresolver resolver) {
    tables->start(resolver);
}
