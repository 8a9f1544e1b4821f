// A method of which another differs by a parameter alone that may be left out.
#include "counter_plugin.h"

namespace {
void stepOnce(REALobject /*self*/, std::int64_t /*by*/) {
    __builtin_trap();
}

void stepAgain(REALobject self, std::int64_t by, bool again) {
    step(self, again ? by : 0);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = [] {
        counterPlugin().method("Step").function = stepOnce;
        counterPlugin().methods.push_back({.function = anyFunction(stepAgain),
                                           .declaration = "Step(by as Integer, again as Boolean = true)"});
        return true;
    }();
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
