// Says "Hello, world", printing each word as it comes; into a sound file when one is named.
//
//     hello PLUGIN [FILE]

#include <zqmhost/zqmhost.h>

#include <exception>
#include <filesystem>
#include <iostream>

using namespace zqm::host;

int main(int argc, char** argv) try {
    if (argc < 2) {
        throw Error("usage: hello PLUGIN [FILE]");
    }
    const std::string text = "Hello, world";
    std::vector<Value> request{text};
    if (argc > 2) {
        request.emplace_back("file://" + std::filesystem::absolute(argv[2]).string());
    }
    Runtime runtime;
    runtime.load(argv[1]);
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM");
    speaker.on("willSpeakWord", [&](const Arguments& word) { // in UTF-16 units: this text's bytes
        std::cout << text.substr(word[0].asSize(), word[1].asSize()) << std::endl;
    });
    if (!speaker.callWith("startSpeakingString", request).asBool()) {
        throw Error("the speech could not be started");
    }
    const auto end = runtime.runUntilRaised(speaker, "didFinishSpeaking", Seconds(60));
    return end && end->front().asBool() ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << "hello: " << error.what() << '\n';
    return 1;
}
