// Lets a timer of the plugin beside it tick three times.
//
//     count_ticks PLUGIN

#include <zqmhost/zqmhost.h>

#include <exception>
#include <iostream>

using namespace zqm::host;

int main(int argc, char** argv) try {
    if (argc != 2) {
        throw Error("usage: count_ticks PLUGIN");
    }
    Runtime runtime;
    runtime.load(argv[1]);
    Object timer = runtime.construct("NSTimerZQM", 10);
    timer.on("Fired", [](const Arguments& tick) {
        std::cout << tick[0].asInteger() << std::endl;
        if (tick[0].asInteger() == 3) {
            Object(tick.sender()).call("Stop");
        }
    });
    while (timer.get("isRunning").asBool()) {
        runtime.runFor(Seconds(0.1));
    }
    std::cout << "stopped after " << timer.get("Count").asInteger() << std::endl;
    return 0;
} catch (const std::exception& error) {
    std::cerr << "count_ticks: " << error.what() << '\n';
    return 1;
}
