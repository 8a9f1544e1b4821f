// Takes its time to register.
#include "counter_plugin.h"

#include <chrono>
#include <thread>

void REALPluginMain(REALresolver resolver) {
    std::this_thread::sleep_for(std::chrono::seconds(2));
    counterPlugin().start(resolver);
}
