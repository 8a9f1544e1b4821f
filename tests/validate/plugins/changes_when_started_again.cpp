// Has another constant in the same table each time it is started.
#include "counter_plugin.h"

namespace {
int starts = 0;
std::string constant;
} // namespace

void REALPluginMain(REALresolver resolver) {
    constant = "First=" + std::to_string(++starts);
    counterPlugin().constants.front().declaration = constant.c_str();
    counterPlugin().start(resolver);
}
