// Counts on a "Constructor" to have run of what it is given, and has none without a title.
#include "marked_counter.h"

namespace {
void constructorMarking(REALobject self, REALstring title) {
    titledConstructor(self, title);
    isConstructed(self) = true;
}

void copyFromConstructed(REALobject self, REALobject other) {
    if (other != nullptr && !isConstructed(other)) {
        __builtin_trap();
    }
    copyFrom(self, other);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade =
        (counterPlugin() = pluginOfMarkedCounters({
             {.function = constructorMarking, .declaration = "Constructor(title as String)"},
             {.function = copyFromConstructed, .declaration = "CopyFrom(other as Counter)"},
         }),
         true);
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
