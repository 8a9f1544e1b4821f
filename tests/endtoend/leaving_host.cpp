// A host program that begins a long speech into a file, prints the process numbers of its engines and ends:
//
//     leaving_host PLUGIN FILE return|exit|_exit|abort|kill

#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "zqmhost/zqmhost.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 4) {
        return EXIT_FAILURE;
    }
    const std::string_view way = argv[3];
    zqm::host::Runtime runtime;
    zqm::support::loadPlugin(runtime, argv[1]);
    zqm::host::Object object = runtime.create("NSSpeechSynthesizerZQM");
    object.call("Constructor");
    std::string text;
    for (int sentence = 0; sentence < 100000; ++sentence) {
        text += "This is a sentence that takes its time. ";
    }
    object.call("startSpeakingString", text, "file://" + std::string(argv[2]));
    for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
        std::cout << engine << std::endl;
    }
    if (way == "exit") {
        std::exit(EXIT_SUCCESS);
    } else if (way == "_exit") {
        _exit(EXIT_SUCCESS);
    } else if (way == "abort") {
        std::abort();
    } else if (way == "kill") {
        kill(getpid(), SIGKILL);
    }
    return EXIT_SUCCESS;
}
