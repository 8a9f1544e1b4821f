// Two methods that no number tells apart, of which one crashes.
#include "counter_plugin.h"

namespace {
void scale(REALobject self, double by) {
    dataOf(self).count = by > 0 && by < 100 ? dataOf(self).count % 100 * static_cast<std::int64_t>(by) : 0;
}

void scaleBySingle(REALobject /*self*/, float /*by*/) {
    __builtin_trap();
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = [] {
        counterPlugin().methods.push_back(
            {.function = anyFunction(scale), .declaration = "Scale(by as Double)"});
        counterPlugin().methods.push_back(
            {.function = anyFunction(scaleBySingle), .declaration = "Scale(by as Single)"});
        return true;
    }();
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
