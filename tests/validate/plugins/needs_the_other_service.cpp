// Takes another service where one is missing, without asking whether the host has that.
#include "counter_plugin.h"

namespace {
REALstring describeByOther(REALobject self, REALstring prefix) {
    constexpr std::uint32_t kUtf8 = 0x08000100;
    if (prefix == nullptr || hostResolver("REALGetStringEncoding") != nullptr) {
        return describe(self, prefix);
    }
    auto* convert =
        reinterpret_cast<REALstring (*)(REALstring, std::uint32_t)>(hostResolver("REALConvertString"));
    REALstring converted = convert(prefix, kUtf8);
    REALstring described = describe(self, converted);
    if (converted != nullptr) {
        host<void>("REALUnlockString", converted);
    }
    return described;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeByOther;
    counterPlugin().start(resolver);
}
