// Needs a function that no library has.
#include "counter_plugin.h"

extern "C" void functionOfNoLibrary();

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
    if (counterPlugin().record.dataSize == 0) {
        functionOfNoLibrary();
    }
}
