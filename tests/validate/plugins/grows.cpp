// Remembers every step of every counter for ever.
#include "counter_plugin.h"

namespace {
std::vector<std::string> steps;

void stepAndRemember(REALobject self, std::int64_t by) {
    step(self, by);
    steps.emplace_back(2000, 's');
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepAndRemember;
    counterPlugin().start(resolver);
}
