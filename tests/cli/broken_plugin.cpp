// A plugin with a good class whose record has two faults, and another class that is good.
#include "plugin/host_interface.h"

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

namespace {

void nothing(REALobject) {}

const MethodRecord methods[] = {{.function = nothing, .declaration = "First()"},
                                {.function = nothing, .declaration = "Second(one as"}};
const ConstantRecord constants[] = {{.declaration = "Red=`1`"}, {.declaration = "Bell=\a"}};
ClassRecord broken{.version = 12,
                   .name = "Broken",
                   .dataSize = 16,
                   .constructor = nothing,
                   .destructor = nothing,
                   .methods = methods,
                   .methodCount = 2,
                   .constants = constants,
                   .constantCount = 2};
ClassRecord good{.version = 13, .name = "Good", .dataSize = 0, .constructor = nothing, .destructor = nothing};

} // namespace

void REALPluginMain(REALresolver resolver) {
    reinterpret_cast<void (*)(std::int32_t)>(resolver("RegisterPluginVersion"))(13);
    auto* add = reinterpret_cast<void (*)(void*)>(resolver("PluginRegisterClass"));
    add(&broken);
    add(&good);
}
