// A plugin whose only class has no name.
#include "plugin/host_interface.h"

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

namespace {

ClassRecord nameless{
    .version = 13, .name = nullptr, .dataSize = 0, .constructor = nullptr, .destructor = nullptr};

} // namespace

void REALPluginMain(REALresolver resolver) {
    reinterpret_cast<void (*)(std::int32_t)>(resolver("RegisterPluginVersion"))(13);
    reinterpret_cast<void (*)(void*)>(resolver("PluginRegisterClass"))(&nameless);
}
