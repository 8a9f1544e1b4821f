// Speaks a line of text and highlights the word that is spoken: on a terminal within the line, elsewhere
// [so], a line for each word.
//
//     highlight PLUGIN TEXT [FILE]     FILE: a sound file, instead of aloud

#include "common.h"

#include <exception>
#include <iostream>

#include <unistd.h>

using namespace examples;

int main(int argc, char** argv) try {
    if (argc < 3) {
        throw Error("usage: highlight PLUGIN TEXT [FILE]");
    }
    const std::string text = argv[2];
    Runtime runtime;
    load(runtime, argv[1]);
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM");

    const bool terminal = isatty(STDOUT_FILENO) != 0;
    speaker.on("willSpeakWord", [&](const Arguments& event) {
        const std::size_t begin = bytesOf(event[0].asSize(), text);
        const std::size_t end = bytesOf(event[0].asSize() + event[1].asSize(), text);
        const std::string word = text.substr(begin, end - begin);
        std::cout << (terminal ? "\r" : "") << text.substr(0, begin)
                  << (terminal ? "\033[7m" + word + "\033[0m" : "[" + word + "]") << text.substr(end)
                  << (terminal ? "" : "\n") << std::flush;
    });
    speak(runtime, speaker, text, argc > 3 ? argv[3] : "");
    if (terminal) {
        std::cout << '\r' << text << std::endl;
    }
} catch (const std::exception& error) {
    std::cerr << "highlight: " << error.what() << '\n';
    return 1;
}
