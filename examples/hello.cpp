// Says "Hello, world", printing each word as it comes; into a sound file when one is named.
//
//     hello PLUGIN [FILE]

#include <zqmhost/zqmhost.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>

#include <unistd.h>

using namespace zqm::host;

namespace {

// Files are named by URLs, and those by whole paths.
std::string fileUrl(const std::string& path) {
    if (path.starts_with('/')) {
        return "file://" + path;
    }
    const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), std::free);
    if (folder == nullptr) {
        throw Error("there is no current folder");
    }
    return std::string("file://") + folder.get() + '/' + path;
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2) {
        throw Error("usage: hello PLUGIN [FILE]");
    }
    const std::string text = "Hello, world";
    std::vector<Value> request{text};
    if (argc > 2) {
        request.emplace_back(fileUrl(argv[2]));
    }
    Runtime runtime;
    runtime.load(argv[1]);
    runtime.loadBeside(argv[1], "libZQMFoundation"); // the family's classes of errors and the like
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
