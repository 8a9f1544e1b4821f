// A second class, whose method takes counters, and no counter can be made.
#include "counter_plugin.h"

namespace {
void constructorOfNone(REALobject /*self*/) {
    __builtin_trap();
}

void add(REALobject /*self*/, REALobject /*counter*/) {}

MethodRecord adderMethods[] = {{.function = add, .declaration = "Add(counter as Counter)"}};
ClassRecord adder{.version = 13,
                  .name = "Adder",
                  .dataSize = 0,
                  .constructor = nullptr,
                  .destructor = nullptr,
                  .methods = adderMethods,
                  .methodCount = 1};
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().announce(resolver);
    counterPlugin().methods = {{.function = constructorOfNone, .declaration = "Constructor()"}};
    adder.version = static_cast<std::uint32_t>(revision);
    CounterPlugin::add(adder);
    CounterPlugin::add(counterPlugin().fill());
}
