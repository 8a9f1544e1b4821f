// Says "Hello, world", printing each word as it comes; into a sound file when one is named.
//
//     hello PLUGIN [FILE]

#include "common.h"

#include <exception>
#include <iostream>

using namespace examples;

int main(int argc, char** argv) try {
    if (argc < 2) {
        throw Error("usage: hello PLUGIN [FILE]");
    }
    Runtime runtime;
    load(runtime, argv[1]);
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM");
    const std::string text = "Hello, world";
    speaker.on("willSpeakWord", [&](const Arguments& word) { // in UTF-16 units: this text's bytes
        std::cout << text.substr(word[0].asSize(), word[1].asSize()) << std::endl;
    });
    speak(runtime, speaker, text, argc > 2 ? argv[2] : "");
} catch (const std::exception& error) {
    std::cerr << "hello: " << error.what() << '\n';
    return 1;
}
