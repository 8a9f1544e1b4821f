// Nothing is wrong with it: it makes a string for each prefix that it hasn't seen before, once.
#include "counter_plugin.h"

#include <map>

namespace {
std::map<std::string, REALstring>& knownPrefixes() {
    static std::map<std::string, REALstring> known;
    return known;
}

REALstring describeKnown(REALobject /*self*/, REALstring prefix) {
    REALstring& known = knownPrefixes()[textOf(prefix)];
    if (known == nullptr) {
        known = makeString(textOf(prefix));
    }
    if (known != nullptr) {
        host<void>("REALLockString", known);
    }
    return known;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    knownPrefixes().clear(); // they were another host's
    counterPlugin().method("Describe").function = describeKnown;
    counterPlugin().start(resolver);
}
