// A plugin that leaves a file in the working folder, and crashes where another check has left one.
#include "plugin/host_interface.h"

#include <csignal>
#include <fstream>

#include <unistd.h>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

namespace {

void nothing(REALobject) {}

ClassRecord record{
    .version = 13, .name = "Litter", .dataSize = 0, .constructor = nothing, .destructor = nothing};

} // namespace

void REALPluginMain(REALresolver resolver) {
    const pid_t check = getppid();
    pid_t earlier = check;
    std::ifstream("litter") >> earlier;
    if (earlier != check) {
        std::raise(SIGSEGV);
    }
    std::ofstream("litter") << check;
    reinterpret_cast<void (*)(std::int32_t)>(resolver("RegisterPluginVersion"))(13);
    reinterpret_cast<void (*)(void*)>(resolver("PluginRegisterClass"))(&record);
}
