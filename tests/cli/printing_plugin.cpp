// A plugin that prints when it is loaded and when it starts.
#include "plugin/host_interface.h"

#include <cstdio>

#include <unistd.h>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

namespace {

void nothing(REALobject) {}

ClassRecord record{
    .version = 13, .name = "Printer", .dataSize = 0, .constructor = nothing, .destructor = nothing};

const bool isLoaded = std::puts("loaded") >= 0;

} // namespace

void REALPluginMain(REALresolver resolver) {
    constexpr char kStarted[] = "started\n";
    if (isLoaded && write(STDOUT_FILENO, kStarted, sizeof kStarted - 1) > 0) {
        reinterpret_cast<void (*)(std::int32_t)>(resolver("RegisterPluginVersion"))(13);
        reinterpret_cast<void (*)(void*)>(resolver("PluginRegisterClass"))(&record);
    }
}
