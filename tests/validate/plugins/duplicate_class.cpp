// Registers two classes of one name.
#include "counter_plugin.h"

namespace {
ClassRecord second;
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
    second = counterPlugin().record;
    CounterPlugin::add(second);
}
