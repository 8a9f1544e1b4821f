// Gives back at its end what the host took along.
#include "counter_plugin.h"

namespace {
struct AtTheEnd {
    AtTheEnd() = default;
    AtTheEnd(const AtTheEnd&) = delete;
    AtTheEnd& operator=(const AtTheEnd&) = delete;
    ~AtTheEnd() { reinterpret_cast<void (*)(REALobject)>(hostResolver("REALUnlockObject"))(nullptr); }
};
const AtTheEnd atTheEnd;
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
}
