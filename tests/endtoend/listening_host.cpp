// A host program that listens to a file and blocks the recognizers of others, holds its engine with SIGSTOP
// in the middle of the file, prints the engine's process number and waits to be killed:
//
//     listening_host PLUGIN FILE

#include "tests/support/command_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 3) {
        return EXIT_FAILURE;
    }
    zqm::host::Runtime runtime;
    zqm::support::loadPlugin(runtime, argv[1]);
    zqm::support::CommandListener listener(runtime, {"open the window"});
    listener.object().set("blocksOtherRecognizers", true);
    ZQMPlatformListenToFile(argv[2]);
    listener.start();
    if (!runtime.runUntil([&] { return listener.timesBegan() > 0; }, zqm::host::Seconds(300))) {
        return EXIT_FAILURE;
    }
    const pid_t engine = zqm::support::childrenOfThisProcess().front();
    kill(engine, SIGSTOP);
    runtime.runFor(zqm::host::Seconds(0.1)); // what it had said before
    if (listener.timesEnded() > 0) {
        std::cerr << "the file is too short\n";
        kill(engine, SIGKILL);
        return EXIT_FAILURE;
    }
    std::cout << engine << std::endl;
    for (;;) {
        pause();
    }
}
