// Looks into every title that it is made with, nil too.
#include "counter_plugin.h"

namespace {
volatile char initial = 0;

void constructorByInitial(REALobject self, REALstring title) {
    titledConstructor(self, title);
    initial = *reinterpret_cast<const char*>(title);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().methods[1].function = constructorByInitial;
    counterPlugin().start(resolver);
}
