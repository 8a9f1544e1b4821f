// Says "Hello, world", printing each word as it comes; into a sound file when one is named.
//
//     hello PLUGIN [FILE]

#include <zqmhost/zqmhost.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

using namespace zqm::host;

int main(int argc, char** argv) try {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: hello PLUGIN [FILE]\n";
        return EXIT_FAILURE;
    }
    const std::string text = "Hello, world";
    bool ended = false;
    bool whole = false;

    Runtime runtime;
    runtime.load(argv[1]);
    Object speaker = runtime.create("NSSpeechSynthesizerZQM");
    speaker.call("Constructor");
    speaker.on("willSpeakWord", [&](const Arguments& word) { // the text is ASCII, so its units are its bytes
        std::cout << text.substr(static_cast<std::size_t>(word[0].asInteger()),
                                 static_cast<std::size_t>(word[1].asInteger()))
                  << std::endl;
    });
    speaker.on("didFinishSpeaking", [&](const Arguments& end) {
        ended = true;
        whole = end[0].asBool();
    });
    const bool started = (argc == 2 ? speaker.call("startSpeakingString", text)
                                    : speaker.call("startSpeakingString", text,
                                                   "file://" + std::filesystem::absolute(argv[2]).string()))
                             .asBool();
    if (!started) {
        std::cerr << "hello: the speech could not be started\n";
        return EXIT_FAILURE;
    }
    runtime.runUntil([&] { return ended; }, Seconds(60));
    return whole ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const Error& error) {
    std::cerr << "hello: " << error.what() << '\n';
    return EXIT_FAILURE;
}
