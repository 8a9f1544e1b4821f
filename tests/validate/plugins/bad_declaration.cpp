// Has a declaration whose parenthesis is never closed.
#include "counter_plugin.h"

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").declaration = "Step(by as Integer";
    counterPlugin().start(resolver);
}
