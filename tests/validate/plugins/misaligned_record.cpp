// Has its class record at an odd address.
#include "counter_plugin.h"

namespace {
alignas(ClassRecord) char room[sizeof(ClassRecord) + 1];
} // namespace

void REALPluginMain(REALresolver resolver) {
    CounterPlugin& plugin = counterPlugin();
    plugin.announce(resolver);
    std::memcpy(room + 1, &plugin.fill(), sizeof(ClassRecord));
    host<void>("PluginRegisterClass", static_cast<void*>(room + 1));
}
