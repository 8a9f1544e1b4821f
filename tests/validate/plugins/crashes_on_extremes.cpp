// Takes every number for an index into its table.
#include "counter_plugin.h"

namespace {
volatile std::int64_t table[1000];

void stepByTable(REALobject self, std::int64_t by) {
    step(self, table[by]);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepByTable;
    counterPlugin().start(resolver);
}
